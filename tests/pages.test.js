'use strict';

const assert = require('node:assert/strict');
const {
    CALLS, answer, countLogs, device, ends, expectChild, game, outcomeOf, sleepers, test, timeUp, track, turn, wantOf,
} = require('./support');

const { clock } = device;
const NO_TEXT = 'GetStringUtf8 value param type is not string';

/** A limit on the time to play; its record has the context too. */
function limit(...args) {
    const context = device.createAbilityContext();
    return Object.assign(track(game.launchAntiAddiction(context, ...args)), { context });
}

for (const [name, key] of [['launchWelcomeBanner', 'greetingInfo'], ['launchCommonPage', 'pageInfo']]) {
    for (const [what, args, text, isText = true] of [
        ['a text', ['{"a": "\u9f99"}'], '{"a": "\u9f99"}'],
        ['a text and more', ['page', () => assert.fail('called'), 3], 'page'],
        ['an empty text', [''], ''],
        ['nothing', [], '', false],
        ['a number', [5], '', false],
        ['an object', [{ toString: () => 'x' }], '', false],
    ]) {
        test(`${name} with ${what} opens its page and stays pending`, async () => {
            const context = device.createAbilityContext();
            assert.deepEqual(await outcomeOf(() => game[name](context, ...args)), ['pending']);
            assert.deepEqual(device.modals().map(({ want }) => want), [wantOf(CALLS[name].type, { [key]: text })]);
            assert.deepEqual([countLogs(NO_TEXT), ends()], [isText ? 0 : 1, []]);
        });
    }
}

test('a launch without any argument is a promise that stays pending, and nothing else', async () => {
    for (const name of ['launchWelcomeBanner', 'launchCommonPage', 'launchAntiAddiction']) {
        assert.deepEqual(await outcomeOf(() => game[name]()), ['pending']);
    }
    assert.deepEqual([device.modals(), await sleepers(), ends(), countLogs('build context failed')], [[], 0, [], 3]);
});

// What is no 32-bit number of seconds becomes one; the page comes when they are over, but never within 15 s.
for (const [given, seconds] of [
    [60, 60], [15, 15], [14, 14], [1.9, 1], [0, 0], [-1, -1], [-0.5, 0], [2 ** 31, -(2 ** 31)], [2 ** 32 + 60, 60],
    [-(2 ** 31) - 1, 2 ** 31 - 1], [1e300, 0], [NaN, 0], [Infinity, 0], [-Infinity, 0], ['60', 0], ['', 0], [60n, 0],
    [true, 0], [null, 0], [undefined, 0], [[60], 0], [{ valueOf: () => 60 }, 0], [new Number(60), 0], [new Date(60), 0],
    [Symbol('60'), 0], [() => 60, 0],
]) {
    test(`launchAntiAddiction with the ${typeof given} ${String(given)} arms a limit of ${seconds} s`, async () => {
        const request = limit(given, 'Bed time', 14);
        assert.equal(countLogs(`LaunchAntiAddictionAbility playable time ${seconds} seconds`), 1);
        assert.deepEqual([await sleepers(), device.modals()], [1, []]);
        if (seconds > 3600) {
            await clock.advance(3600000);
            assert.deepEqual(device.modals(), []);
            return;
        }
        const [waited, least] = [await timeUp(), Math.max(seconds, 15) * 1000];
        assert.ok(waited >= least && waited <= (seconds < 15 ? 15000 : least + 15000), `after ${waited} ms`);
        assert.deepEqual(device.modals().map(({ want }) => want), [wantOf(6, { endText: 'Bed time' })]);
        assert.deepEqual([request.state, ends()], [['pending'], []]);
    });
}

// Its caller decides how the page's answers are routed: whether a release of code 0 closes it.
for (const [given, closes] of [
    [14, true], [14.9, true], [2 ** 32 + 14, true], [2, true], [9, true], [10, true], [13, true], [15, true],
    [0, false], [1, false], [6, false], [11, false], [16, false], [2 ** 16 + 14, false], [-1, false], [-14, false],
    [NaN, false], [Infinity, false], ['14', false], [14n, false], [true, false], [null, false], [undefined, false],
    [{}, false],
]) {
    const type = `${typeof given} ${String(given)}`;
    test(`a limit of request type ${type} has a page that code 0 ${closes ? 'closes' : 'leaves open'}`, async () => {
        limit(0, 'text', given);
        await timeUp();
        const [page] = device.modals();
        await answer(page, ['release', 0]);
        assert.equal(page.isOpen, !closes);
        await answer(page, ['release', 1]);
        assert.deepEqual([page.isOpen, countLogs('baseContext is null')], [false, 0]);
    });
}

test('a limit whose text is none shows an empty one', async () => {
    for (const args of [[], [0], [0, 5, 14], [0, null, 14, 'more']]) {
        device.reset();
        clock.manual();
        limit(...args);
        assert.equal(countLogs(NO_TEXT), 1);
        await timeUp();
        assert.deepEqual(device.modals()[0].want, wantOf(6, { endText: '' }));
    }
});

test('a limit of a quick game ends with the event and a closed page, and the game goes on', async () => {
    const heard = [];
    device.setSystemApp(true);
    game.on('gameAddictionPrevented', (info) => heard.push(info));
    const request = limit(0, 'text', 14);
    await timeUp();
    const [page] = device.modals();
    await answer(page, ['receive', { resultCode: 0, playableTime: 1 }], ['result', 0], ['error', 5]);
    assert.deepEqual([page.isOpen, await sleepers(), countLogs('baseContext is null')], [false, 1, 0]);
    await clock.advance(15000);
    await turn();
    assert.deepEqual([heard, request.state, clock.sleepers()], [['The user is under age.'], ['pending'], 0]);
    await answer(page, ['release', 0], ['release', 0]);
    assert.equal(countLogs('OnRelease baseContext is null'), 1);
    assert.deepEqual(ends(), [['on', 0]]);
});

test('a limit whose page finds no window for five seconds has nobody to answer', async () => {
    const request = limit(0, 'text', 14);
    device.hideWindow(request.context);
    await timeUp();
    assert.equal(await sleepers(), 2);
    await clock.advance(5000);
    await turn();
    assert.equal(countLogs('DelayStartUIExtensionAbility need not message back'), 1);
    assert.deepEqual([request.state, ends(), await sleepers()], [['pending'], [], 1]);
});

for (const type of [6, 2, '14']) {
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
