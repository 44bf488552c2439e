'use strict';

// Launches without an answer: pages, and a time limit that the game sets itself.

const assert = require('node:assert/strict');
const { device, ends, expectChild, game, test, timeUp, track, wantOf } = require('./support');
const { assertAgrees, stepOf } = require('./support/oracle');

const call = (method, ...values) => ['call', 'main', 'c1', method, [{ ctx: 0 }, ...values.map((value) => ({ value }))], 0];
const limit = (...values) => call('launchAntiAddiction', ...values);
const wait = (ms) => ['advance', ms];
const released = (code) => stepOf([['release', code]]);
/** Values that are neither strings nor numbers. */
const OTHERS = [undefined, null, true, 60n, {}, [60], Symbol('60'), () => 60, new Number(60), new Date(60),
    { valueOf: () => 60, toString: () => 'x' }];

test('a launch sends its string, reads any other value as empty, and takes any number of arguments', async () => {
    for (const method of ['launchWelcomeBanner', 'launchCommonPage']) {
        for (const values of [['{"a": "\u9f99"}'], ['page', () => assert.fail('called'), 3], [''], [], [5],
            ...OTHERS.map((value) => [value])]) {
            await assertAgrees([call(method, ...values), released(0)]);
        }
    }
    const launched = track(game.launchCommonPage(device.createAbilityContext(), 'page'));
    assert.deepEqual(device.modals().at(-1).want, wantOf(15, { pageInfo: 'page' }));
    assert.deepEqual([launched.state, ends()], [['pending'], []]);
});

test('a launch without any argument is a promise that stays pending, and nothing else', async () => {
    for (const method of ['launchWelcomeBanner', 'launchCommonPage', 'launchAntiAddiction']) {
        await assertAgrees([['call', 'main', 'c1', method, [], 0], wait(15000)]);
    }
});

// The seconds are converted to 32 bits. The page opens when they are over, but never within 15 s.
test('a limit lasts its seconds, read as 32 bits, and has a page of its text', async () => {
    for (const seconds of [60, 15, 14, 1.9, 0, -1, -0.5, 2 ** 31, 2 ** 32 + 60, -(2 ** 31) - 1, 1e300, NaN, Infinity,
        -Infinity, '60', '', ...OTHERS]) {
        await assertAgrees([limit(seconds, 'Bed time', 14), wait(14999), wait(1), wait(45000), wait(15000), wait(15000)]);
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

test('the caller of a limit decides how the answers of its page are routed', async () => {
    const types = [14, 14.9, 2 ** 32 + 14, 2, 4, 9, 10, 13, 15, 0, 1, 6, 11, 16, 2 ** 16 + 14, -1, -14, NaN, '14', ...OTHERS];
    for (const type of types) {
        const begin = [limit(0, 'text', type), wait(15000)];
        await assertAgrees([...begin, released(0), released(1), released(0)]);
        for (const given of [['receive', { resultCode: 0, playableTime: 1 }], ['result', 0], ['error', 5],
            ...[10, 1002000006, 1002000011].flatMap((code) => [['result', code], ['receive', { resultCode: code }]])]) {
            await assertAgrees([...begin, stepOf([given]), released(0)]);
        }
    }
});

test('a limit of a quick game ends with the event and a closed page, and the game goes on', async () => {
    const listen = ['call', 'main', 'l', 'on', [{ value: 'gameAddictionPrevented' }, { fn: 'plain', as: 'l' }], 0];
    const begin = [['system', true], listen, limit(0, 'text', 14)];
    await assertAgrees([...begin, wait(15000), stepOf([['receive', { resultCode: 0, playableTime: 1 }], ['result', 0],
        ['error', 5]]), wait(15000), released(0), released(0)]);
    await assertAgrees([...begin, ['window', 'main', 0, 'hide'], wait(15000), wait(5000), wait(10000)]);
});

for (const type of [6, '14']) {
    test(`a limit of request type ${typeof type} ${type} ends the game 15 s after its page opened`, () => expectChild(
        async ({ game, device, timeUp }, type) => {
            process.exitCode = 7;
            device.clock.manual();
            game.launchAntiAddiction(device.createAbilityContext(), 20, 'text', type);
            await timeUp();
            console.log(device.modals().length);
            await device.clock.advance(14999);
            console.log('alive');
            await device.clock.advance(1);
            console.log('went on');
        }, { args: [type], out: ['1', 'alive'] }));
}
