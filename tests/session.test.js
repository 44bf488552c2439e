'use strict';

const assert = require('node:assert/strict');
const { PARAMETER_ERROR, advance, answer, device, ends, game, start, test, track, turn, wantOf } = require('./support');
const { CALLS } = require('./support/requests');

test('a modal opens immediately, and ids are above 0 and never reused', () => {
    const ids = [1, 2].flatMap(() => {
        device.reset();
        return Object.keys(CALLS).map((name) => start(name).modal).map(({ isOpen, id }) => isOpen && id);
    });
    assert.ok(ids.every((id) => id > 0));
    assert.equal(new Set(ids).size, ids.length);
});

test('a window that appears in time gets its modal, with the call\'s trace', async () => {
    const context = device.createUIExtensionContext({ window: false });
    game.syncTraceId('of the call');
    const request = start('getLocalPlayer', context);
    game.syncTraceId('of a later call');
    await advance(2999);
    device.showWindow(context);
    assert.deepEqual(device.modals(), []);
    await advance(1);
    const [modal] = device.modals();
    assert.deepEqual(modal.want, wantOf(2, { traceId: 'of the call' }));
    assert.deepEqual(modal.config, { leading: [true, false, true], trailing: [true, false, false, true] });
    await answer(modal, ['receive', { resultCode: 0, resultMessage: 'data' }]);
    assert.deepEqual([request.state, device.clock.sleepers()], [['resolved', 'data'], 0]);
});

test('a request whose window never comes fails, unseen by analytics', async () => {
    device.clock.manual();
    const request = start('bindPlayer', device.createAbilityContext({ window: false }));
    await advance(5000);
    assert.deepEqual([request.state, ends()], [['rejected', ...PARAMETER_ERROR], []]);
});

test('a window without content is asked again a second later', async () => {
    device.failNext('GetUIContent');
    start('init');
    assert.deepEqual(device.modals(), []);
    await advance(1000);
    assert.equal(device.modals().length, 1);
});

test('many waiting starts open in their order, each in its own window', async () => {
    const contexts = Array.from({ length: 8 }, () => device.createAbilityContext({ window: false }));
    const requests = contexts.map((context, i) => track(game.bindPlayer(context, `${i}`, 'team')));
    contexts.filter((_, i) => i % 2).forEach(device.showWindow);
    await advance(5000);
    assert.deepEqual(device.modals().map(({ want }) => want.parameters.thirdOpenId), ['1', '3', '5', '7']);
    await Promise.all(device.modals().map((modal) => modal.result(0)));
    await turn();
    assert.deepEqual(requests.map(({ state }) => state[0]), contexts.map((_, i) => i % 2 ? 'resolved' : 'rejected'));
});
