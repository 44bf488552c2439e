'use strict';

// Launches without an answer: pages, and a time limit that the game sets itself.

const assert = require('node:assert/strict');
const { CTX, RELEASED, assertAgrees, call, wait } = require('./model/oracle');
const { OTHERS } = require('./model/values');
const { device, ends, game, test, timeUp, track, wantOf } = require('./support');

test('a launch sends its string, and takes any number of arguments', async () => {
    for (const method of ['launchWelcomeBanner', 'launchCommonPage']) {
        for (const values of [['{"a": "\u9f99"}'], ['page', () => assert.fail('called'), 3], [''], [], [5],
            ...OTHERS.map((value) => [value])]) {
            await assertAgrees([call(method, [CTX, ...values]), RELEASED]);
        }
    }
    const launched = track(game.launchCommonPage(device.createAbilityContext(), 'page'));
    assert.deepEqual(device.modals().at(-1).want, wantOf(15, { pageInfo: 'page' }));
    assert.deepEqual([launched.state, ends()], [['pending'], []]);
});

test('a launch without any argument is a promise that stays pending', async () => {
    for (const method of ['launchWelcomeBanner', 'launchCommonPage', 'launchAntiAddiction']) {
        await assertAgrees([call(method), wait(15000)]);
    }
});

test('a limit lasts its seconds, and has a page of its text', async () => {
    device.clock.manual();
    game.launchAntiAddiction(device.createAbilityContext(), 60, 'Bed time', 14);
    const waited = await timeUp();
    assert.ok(waited >= 60000 && waited <= 75000, `after ${waited} ms`);
    assert.deepEqual(device.modals()[0].want, wantOf(6, { endText: 'Bed time' }));
});
