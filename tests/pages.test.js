'use strict';

// Launches without an answer: pages, and a time limit that the game sets itself.

const assert = require('node:assert/strict');
const { ask, device, ends, test, timeUp, track, turn, wantOf } = require('./support');

test('a launch sends its string, ignores all other arguments, and stays pending', async () => {
    for (const [method, type, name] of [
        ['launchWelcomeBanner', 13, 'greetingInfo'], ['launchCommonPage', 15, 'pageInfo'],
    ]) {
        const launched = [track(ask(method, '{"a": "\u9f99"}', () => assert.fail('called'), 3)), track(ask(method))];
        await turn();
        const wants = ['{"a": "\u9f99"}', ''].map((text) => wantOf(type, { [name]: text }));
        assert.deepEqual(device.modals().map(({ want }) => want), wants);
        assert.deepEqual([launched.map(({ state }) => state), ends()], [[['pending'], ['pending']], []]);
        device.reset();
    }
});

test('a limit lasts its seconds, and has a page of its text', async () => {
    ask('launchAntiAddiction', 60, 'Bed time', 14);
    const waited = await timeUp();
    assert.ok(waited >= 60000 && waited <= 75000, `after ${waited} ms`);
    assert.deepEqual(device.modals()[0].want, wantOf(6, { endText: 'Bed time' }));
});
