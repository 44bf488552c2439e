'use strict';

// Launches without an answer: pages, and a time limit that the game sets itself.

const assert = require('node:assert/strict');
const { CTX, RELEASED, answered, assertAgrees, call, listen, wait, window } = require('./model/oracle');
const { NUMBERS, OTHERS } = require('./model/values');
const { device, ends, game, test, timeUp, track, wantOf } = require('./support');

const limit = (...values) => call('launchAntiAddiction', [CTX, ...values]);

test('a launch sends its string, reads any other value as empty, and takes any number of arguments', async () => {
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

test('a launch without any argument is a promise that stays pending, and nothing else', async () => {
    for (const method of ['launchWelcomeBanner', 'launchCommonPage', 'launchAntiAddiction']) {
        await assertAgrees([call(method), wait(15000)]);
    }
});

// The seconds are converted to 32 bits. The page opens when they are over, but never within 15 s.
test('a limit lasts its seconds, read as 32 bits, and has a page of its text', async () => {
    for (const seconds of [15, 14, '60', '', ...NUMBERS, ...OTHERS]) {
        await assertAgrees([limit(seconds, 'text', 14), wait(14999), wait(1), wait(45000), wait(15000), wait(15000)]);
    }
    for (const values of [[], [0], ...['', 5, ...OTHERS].map((text) => [0, text, 14, 'more'])]) {
        await assertAgrees([limit(...values), wait(15000)]);
    }
    device.clock.manual();
    game.launchAntiAddiction(device.createAbilityContext(), 60, 'Bed time', 14);
    const waited = await timeUp();
    assert.ok(waited >= 60000 && waited <= 75000, `after ${waited} ms`);
    assert.deepEqual(device.modals()[0].want, wantOf(6, { endText: 'Bed time' }));
});

test('the caller of a limit decides how answers are routed, and whether the game ends with it', async () => {
    for (const type of [14, 14.9, 2 ** 32 + 14, 2, 4, 9, 10, 13, 15, 0, 1, 6, 11, 16, 2 ** 16 + 14, -1, -14, NaN, '14',
        ...OTHERS]) {
        const begin = [limit(0, 'text', type), wait(15000)];
        await assertAgrees([...begin, RELEASED, answered(['release', 1]), RELEASED, wait(14999), wait(1)]);
        for (const given of [['receive', { resultCode: 0, playableTime: 1 }], ['result', 0], ['error', 5],
            ...[10, 1002000006, 1002000011].flatMap((code) => [['result', code], ['receive', { resultCode: code }]])]) {
            await assertAgrees([...begin, answered(given), RELEASED]);
        }
    }
});

test('a limit of a quick game ends with the event and a closed page, and the game goes on', async () => {
    const begin = [['system', true], listen('gameAddictionPrevented'), limit(0, 'text', 14)];
    await assertAgrees([...begin, wait(15000), answered(['receive', { resultCode: 0, playableTime: 1 }], ['result', 0],
        ['error', 5]), wait(15000), RELEASED, RELEASED]);
    await assertAgrees([...begin, window('hide'), wait(15000), wait(5000), wait(10000)]);
});
