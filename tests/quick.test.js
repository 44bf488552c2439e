'use strict';

const assert = require('node:assert/strict');
const { advance, answer, device, ends, game, start, test, timeUp } = require('./support');

const LIMIT = ['receive', { resultCode: 0, resultMessage: 'data', playableTime: 1, endText: 'Bed time' }];

test('a quick game whose time is up gets one event', async () => {
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
