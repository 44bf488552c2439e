'use strict';

// Listeners, their events, and the methods that make no request.

const assert = require('node:assert/strict');
const { SYSTEM_ERROR, attempt, countLogs, device, ends, game, inBothOrders, raise, test, turn } = require('./support');

const CHANGED = 'playerChanged';
const PREVENTED = 'gameAddictionPrevented';

test('on and off refuse types that there are not, and callers that may not', () => {
    assert.deepEqual(attempt(() => game.on('other', () => {})), ['threw', 401, 'Parameter error.']);
    assert.deepEqual(attempt(() => game.off(PREVENTED)),
        ['threw', 202, 'Permission denied, non-system app called system api.']);
    assert.deepEqual(ends(), [['on', 401], ['off', 202]]);
});

test('a listener gets one argument, on the receiver of "on", and later', async () => {
    const calls = [];
    const receiver = {};
    game.on.call(receiver, CHANGED, function (...args) {
        calls.push([this === receiver, args]);
    });
    raise('x');
    assert.deepEqual(calls, []);
    await turn();
    assert.deepEqual(calls, [[true, [{ event: 0, resultInfo: 'x' }]]]);
});

test('methods without a request throw if their arguments cannot be read', () => {
    for (const method of ['on', 'off', 'syncTraceId', 'onEventCallback', 'reportEventOperation']) {
        for (const failing of ['napi_get_cb_info', 'napi_get_undefined']) {
            device.failNext(failing);
            assert.deepEqual(attempt(() => game[method](CHANGED, () => {})), ['threw', ...SYSTEM_ERROR]);
        }
    }
    assert.deepEqual(ends(), []);
});

for (const [failing, log] of Object.entries({
    napi_get_uv_event_loop: 'OnEventCallback work is nullptr or get loop failed',
    uv_queue_work: 'OnEventCallback uv_queue_work call failed',
    napi_open_handle_scope: 'DoGameEventWork scope is nullptr',
    napi_get_reference_value: 'DoGameEventWork enter',
})) {
    inBothOrders((test) => test(`a failing ${failing} costs its listener the event and no other one`, async () => {
        const heard = [];
        ['1', '2', '3'].forEach((name) => game.on(CHANGED, ({ resultInfo }) => heard.push(name + resultInfo)));
        device.failNext(failing);
        for (const resultInfo of ['x', 'y']) {
            raise(resultInfo);
            await turn();
        }
        assert.deepEqual(heard, ['2x', '3x', '1y', '2y', '3y']);
        assert.ok(countLogs(log) >= 1);
    }));
}
