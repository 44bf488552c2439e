'use strict';

const assert = require('node:assert/strict');
const { SYSTEM_ERROR, answer, attempt, badContexts, countLogs, device, ends, game, test, track, turn, wantOf } =
    require('./support');

const NAPI_REFUSAL = ['threw', undefined, 'Invalid argument'];

for (const kind of ['createAbilityContext', 'createUIExtensionContext']) {
    test(`init with a context of ${kind} sends exactly the element and its three parameters`, async () => {
        game.syncTraceId('trace-7');
        const request = track(game.init(device[kind]()));
        assert.deepEqual(device.modals().map(({ want }) => want), [wantOf(1, { traceId: 'trace-7' })]);
        await answer(device.modals()[0], ['result', 0]);
        assert.deepEqual(request.state, ['resolved', undefined]);
        assert.deepEqual(ends(), [['init', 0]]);
    });
}

for (const [what, rest, isCallback] of [
    ['nothing more', [], false],
    ['a function', ['CALLBACK'], true],
    ['a function and a third value', ['CALLBACK', 1], false],
    ['a function third', [undefined, 'CALLBACK'], false],
    ['a number for a callback', [1], true],
    ['an explicit undefined for a callback', [undefined], true],
]) {
    test(`init with a context and ${what} takes the ${isCallback ? 'callback' : 'promise'} form`, async () => {
        const calls = [];
        const args = rest.map((value) => value === 'CALLBACK' ? (...values) => calls.push(values) : value);
        const returned = game.init(device.createAbilityContext(), ...args);
        assert.equal(returned instanceof Promise, !isCallback);
        assert.deepEqual(calls, []);
        await answer(device.modals()[0], ['result', 0]);
        const wantsCall = isCallback && rest[0] === 'CALLBACK';
        assert.deepEqual(calls, wantsCall ? [[undefined, undefined]] : []);
        assert.deepEqual(isCallback ? returned : await returned, undefined);
        assert.equal(countLogs('callback and deferred nullptr'), isCallback && !wantsCall ? 1 : 0);
        assert.deepEqual(ends(), [['init', 0]]);
        assert.equal(device.modals()[0].isOpen, false);
    });
}

test('init without an argument throws code 0 but reports 401', () => {
    assert.deepEqual(attempt(() => game.init()), ['threw', 0, 'Success']);
    assert.deepEqual(ends(), [['init', 401]]);
});

test('init with a bad context throws what NAPI says of the refused promise', () => {
    for (const [context, log] of badContexts()) {
        device.reset();
        assert.deepEqual(attempt(() => game.init(context)), NAPI_REFUSAL);
        assert.deepEqual(attempt(() => game.init(context, () => assert.fail('called'), 3)), NAPI_REFUSAL);
        assert.equal(countLogs(log), 2, log);
        assert.deepEqual(ends(), [['init', 401], ['init', 401]]);
        assert.deepEqual(device.modals(), []);
    }
});

test('init with a bad context and a callback calls it once, at once, with null and no value', async () => {
    for (const [context] of badContexts()) {
        const calls = [];
        assert.deepEqual(attempt(() => game.init(context, (...values) => calls.push(values))), ['returned', undefined]);
        assert.deepEqual(attempt(() => game.init(context, 'no function')), ['returned', undefined]);
        assert.deepEqual(calls, [[null, undefined]]);
        await turn();
        assert.equal(calls.length, 1);
    }
    assert.deepEqual(device.modals(), []);
});

const PROMISE_FORM = [];
const CALLBACK_FORM = [() => assert.fail('the callback was called')];
for (const [call, form, outcome, events] of [
    ['napi_get_undefined', PROMISE_FORM, ['threw', ...SYSTEM_ERROR], []],
    ['napi_get_cb_info', PROMISE_FORM, ['threw', ...SYSTEM_ERROR], []],
    ['napi_get_cb_info', CALLBACK_FORM, ['threw', ...SYSTEM_ERROR], []],
    ['napi_create_promise', PROMISE_FORM, ['returned', undefined], [['init', 401]]],
    ['napi_typeof', PROMISE_FORM, NAPI_REFUSAL, [['init', 401]]],
    ['IsStageContext', PROMISE_FORM, NAPI_REFUSAL, [['init', 401]]],
    ['GetStageModeContext', PROMISE_FORM, NAPI_REFUSAL, [['init', 401]]],
    ['napi_typeof', CALLBACK_FORM, ['returned', undefined], [['init', 401]]],
    ['napi_create_reference', CALLBACK_FORM, ['returned', undefined], [['init', 401]]],
]) {
    test(`init in the ${form.length ? 'callback' : 'promise'} form survives a failing ${call}`, async () => {
        device.failNext(call);
        assert.deepEqual(attempt(() => game.init(device.createAbilityContext(), ...form)), outcome);
        await turn();
        assert.deepEqual(ends(), events);
        assert.deepEqual(device.modals(), []);
        const next = track(game.init(device.createAbilityContext()));
        await answer(device.modals()[0], ['result', 0]);
        assert.deepEqual(next.state, ['resolved', undefined]);
    });
}
