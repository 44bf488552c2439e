'use strict';

const assert = require('node:assert/strict');
const { advance, answer, device, game, start, test, wantOf } = require('./support');
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

test('a window without content is asked again a second later', async () => {
    device.failNext('GetUIContent');
    start('init');
    assert.deepEqual(device.modals(), []);
    await advance(1000);
    assert.equal(device.modals().length, 1);
});
