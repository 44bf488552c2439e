'use strict';

const assert = require('node:assert/strict');
const { RELEASED, answered, assertAgreesOnBoth, callOf, listen, wait, window } = require('./model/oracle');
const { advance, answer, device, ends, game, start, test, timeUp } = require('./support');

const LIMIT = ['receive', { resultCode: 0, resultMessage: 'data', playableTime: 1, endText: 'Bed time' }];
const LIMITED = answered(LIMIT);
const BEGIN = [['system', true], listen('gameAddictionPrevented'), listen('playerChanged'), callOf('quickGameLogin')];

for (const [what, ...steps] of [
    ['gets the event although its window comes back late', LIMITED, RELEASED, window('hide'), wait(75000), wait(3000),
        window('show'), wait(1000), wait(11000), RELEASED],
    ['ends its limit by an under-age result, and the time then runs out without a trace', LIMITED, RELEASED,
        answered(['result', 1002000006]), RELEASED, RELEASED, wait(75000), wait(15000)],
]) {
    test(`a quick game ${what}`, () => assertAgreesOnBoth([...BEGIN, ...steps]));
}

test('a quick game whose time is up hears of it once', async () => {
    const heard = [];
    device.setSystemApp(true);
    game.on('gameAddictionPrevented', (event) => heard.push(event));
    const request = start('quickGameLogin');
    await answer(request.modal, LIMIT);
    await timeUp();
    await advance(15000);
    assert.deepEqual([heard, request.state, device.modals()[1].isOpen, ends()],
        [['The user is under age.'], ['resolved', 'data'], false, [['on', 0], ['quickGameLogin', 0]]]);
});
