'use strict';

const assert = require('node:assert/strict');
const { answer, device, ends, game, start, test, timeUp, turn } = require('./support');
const { assertAgrees, callOf, stepOf } = require('./support/oracle');

const UNDER_AGE = 'The user is under age.';
const limit = ['receive', { resultCode: 0, resultMessage: 'data', playableTime: 1, endText: 'Bed time' }];
const release = stepOf([['release', 0]]);
const wait = (ms) => ['advance', ms];
const BEGIN = [['system', true],
    ...['gameAddictionPrevented', 'playerChanged'].map((type) =>
        ['call', 'main', type, 'on', [{ value: type }, { fn: 'plain', as: type }], 0]), callOf('quickGameLogin')];

for (const [what, steps] of [
    ['hears of an under-age result, and of no other under-age answer', [stepOf([['receive', { resultCode: 1002000006 }],
        ['error', 1002000006], ['result', 1002000006]])]],
    ['is told when its time is up; its page closes, and it goes on', [stepOf([limit]), release, wait(60000), wait(15000),
        wait(14999), wait(1), stepOf([['result', 0]]), release]],
    ['gets the event although its window comes back late', [stepOf([limit]), release, ['window', 'main', 0, 'hide'], wait(75000),
        wait(3000), ['window', 'main', 0, 'show'], wait(1000), wait(11000), release]],
    ['gets the event although its page finds no window', [stepOf([limit]), ['window', 'main', 0, 'hide'], wait(75000),
        wait(5000), wait(10000)]],
    ['ends its limit by an under-age result, and the time then runs out without a trace',
        [stepOf([limit]), release, stepOf([['result', 1002000006]]), release, release, wait(75000), wait(15000)]],
]) {
    test(`a quick game ${what}`, async () => {
        await assertAgrees([...BEGIN, ...steps]);
        await assertAgrees([...BEGIN, ...steps], { thread: 'ui' });
    });
}

test('a quick game whose time is up hears of it once, and its login stays as it was', async () => {
    const heard = [];
    device.setSystemApp(true);
    game.on('gameAddictionPrevented', (event) => heard.push(event));
    const request = start('quickGameLogin');
    await answer(request.modal, limit);
    await timeUp();
    await device.clock.advance(15000);
    await turn();
    assert.deepEqual([heard, request.state, device.modals()[1].isOpen], [[UNDER_AGE], ['resolved', 'data'], false]);
    assert.deepEqual(ends(), [['on', 0], ['quickGameLogin', 0]]);
});
