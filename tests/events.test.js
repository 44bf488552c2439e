'use strict';

const assert = require('node:assert/strict');
const {
    PARAMETER_ERROR, SYSTEM_ERROR, answer, attempt, countLogs, device, ends, expectChild, game, start, test, turn,
} = require('./support');

const CHANGED = 'playerChanged';
const PREVENTED = 'gameAddictionPrevented';
const DENIED = [202, 'Permission denied, non-system app called system api.'];
const BAD = PARAMETER_ERROR;
const FINE = null;
const listener = () => {};

const raise = (resultInfo) => game.onEventCallback({ resultCode: 1002000015, resultInfo });

/** Listeners that note their name and what they hear. */
function recorder() {
    const heard = [];
    return { heard, note: (name) => (event) => heard.push(`${name}:${event.resultInfo}`) };
}

for (const [method, args, error, isSystemApp = false] of [
    ['on', [CHANGED, listener], FINE],
    ['on', [CHANGED, class {}], FINE],
    ['on', [], BAD],
    ['on', [CHANGED], BAD],
    ['on', [CHANGED, listener, 1], BAD],
    ['on', [CHANGED, 5], BAD],
    ['on', [CHANGED, {}], BAD],
    ['on', [CHANGED, undefined], BAD],
    ['on', ['', listener], BAD],
    ['on', ['playerchanged', listener], BAD],
    ['on', [`${CHANGED} `, listener], BAD],
    ['on', [{ toString: () => CHANGED }, listener], BAD],
    ['on', [PREVENTED, 5], BAD],
    ['on', [PREVENTED, listener], DENIED],
    ['on', [PREVENTED, listener], FINE, true],
    ['off', [CHANGED], FINE],
    ['off', [CHANGED, listener], FINE],
    ['off', [], BAD],
    ['off', ['other'], BAD],
    ['off', [5, listener], BAD],
    ['off', [CHANGED, 'x'], BAD],
    ['off', [CHANGED, undefined], BAD],
    ['off', [CHANGED, null], BAD],
    ['off', [CHANGED, listener, 1], BAD],
    ['off', [PREVENTED, listener, 1], BAD],
    ['off', [PREVENTED], DENIED],
    ['off', [PREVENTED, 5], DENIED],
    ['off', [PREVENTED, 5], BAD, true],
    ['off', [PREVENTED, listener], FINE, true],
]) {
    const given = args.map((value) => typeof value === 'string' ? `'${value}'` : typeof value).join(', ');
    const who = isSystemApp ? ' of a system application' : '';
    test(`${method}(${given})${who} ${error ? `throws ${error[0]}` : 'succeeds'} and tells analytics`, () => {
        device.setSystemApp(isSystemApp);
        const expected = error ? ['threw', ...error] : ['returned', undefined];
        assert.deepEqual(attempt(() => game[method](...args)), expected);
        assert.deepEqual(ends(), [[method, error ? error[0] : 0]]);
    });
}

test('every method without a request throws 1002000001, and tells no one, if its arguments cannot be read', () => {
    for (const method of ['on', 'off', 'syncTraceId', 'onEventCallback', 'reportEventOperation']) {
        for (const call of ['napi_get_cb_info', 'napi_get_undefined']) {
            device.failNext(call);
            assert.deepEqual(attempt(() => game[method](CHANGED, listener)), ['threw', ...SYSTEM_ERROR]);
        }
    }
    assert.deepEqual(ends(), []);
});

test('listeners hear an event later, in the order of their registration, each once', async () => {
    const { heard, note } = recorder();
    const [first, second, third] = ['1', '2', '3'].map(note);
    for (const each of [first, second, first, third, second]) {
        game.on(CHANGED, each);
    }
    game.off(CHANGED, second);
    game.on(CHANGED, second);
    raise('x');
    raise('y');
    assert.deepEqual(heard, []);
    await turn();
    assert.deepEqual(heard, ['1:x', '3:x', '2:x', '1:y', '3:y', '2:y']);
});

test('a listener is called with one argument on what "on" was called on first', async () => {
    const calls = [];
    const note = function (...args) {
        calls.push([this, args]);
    };
    const receiver = { name: 'receiver' };
    game.on.call(receiver, CHANGED, note);
    game.on.call({ name: 'of the duplicate' }, CHANGED, note);
    raise('x');
    await turn();
    assert.deepEqual(calls, [[receiver, [{ event: 0, resultInfo: 'x' }]]]);
    assert.equal(calls[0][0], receiver);
    game.off(CHANGED, note);
    game.on(CHANGED, note);
    raise('y');
    await turn();
    assert.equal(calls[1][0], game);
});

test('off removes one listener, or all of its type, and minds nothing that is not there', async () => {
    const { heard, note } = recorder();
    const listeners = ['1', '2', '3'].map(note);
    game.off(CHANGED);
    assert.equal(countLogs('UnRegisterGameEventCallback eventType playerChanged not existed'), 1);
    listeners.forEach((each) => game.on(CHANGED, each));
    game.off(CHANGED, listeners[1]);
    game.off(CHANGED, listeners[1]);
    assert.equal(countLogs('playerChanged callback not existed'), 1);
    raise('x');
    await turn();
    game.off(CHANGED);
    raise('y');
    await turn();
    assert.deepEqual(heard, ['1:x', '3:x']);
    assert.equal(countLogs('OnEventCallback eventType playerChanged not existed'), 1);
});

test('one type is registered and removed apart from the other', async () => {
    const { heard, note } = recorder();
    const both = note('both');
    device.setSystemApp(true);
    game.on(CHANGED, both);
    game.on(PREVENTED, both);
    game.off(PREVENTED);
    raise('x');
    await turn();
    assert.deepEqual(heard, ['both:x']);
});

test('a listener that was removed, or added, after an event was raised does not hear it', async () => {
    const { heard, note } = recorder();
    const [removed, replaced, kept, added] = ['removed', 'replaced', 'kept', 'added'].map(note);
    [removed, replaced, kept].forEach((each) => game.on(CHANGED, each));
    raise('x');
    game.off(CHANGED, removed);
    game.off(CHANGED, replaced);
    [replaced, added].forEach((each) => game.on(CHANGED, each));
    await turn();
    assert.deepEqual(heard, ['kept:x']);
    raise('y');
    game.off(CHANGED);
    await turn();
    assert.deepEqual(heard, ['kept:x']);
});

test('what a listener removes or adds while it runs takes effect at once', async () => {
    const { heard, note } = recorder();
    const [next, added] = ['next', 'added'].map(note);
    game.on(CHANGED, function self() {
        heard.push('self');
        [self, next].forEach((each) => game.off(CHANGED, each));
        game.on(CHANGED, added);
    });
    game.on(CHANGED, next);
    raise('x');
    await turn();
    assert.deepEqual(heard, ['self']);
    raise('y');
    await turn();
    assert.deepEqual(heard, ['self', 'added:y']);
});

for (const [what, given, info] of [
    ['a result of code 9', ['result', 9, { resultInfo: 'who' }], 'who'],
    ['a result of code 9 without info', ['result', 9], ''],
    ['a receive of code 9', ['receive', { resultCode: 9, resultInfo: 'who' }], 'who'],
    ['a receive of code 9 with info of another type', ['receive', { resultCode: 9, resultInfo: 5 }], ''],
    ['a receive of code 1002000015', ['receive', { resultCode: 1002000015, resultInfo: 'who' }], 'who'],
]) {
    test(`${what} raises "playerChanged" with its info`, async () => {
        const heard = [];
        game.on(CHANGED, (event) => heard.push(event));
        await answer(start('bindPlayer').modal, given);
        assert.deepEqual(heard, [{ event: 0, resultInfo: info }]);
    });
}

for (const [what, args, expected] of [
    ['the code of a changed player', [{ resultCode: 1002000015, resultInfo: 'who' }], ['who']],
    ['further arguments', [{ resultCode: 1002000015, resultInfo: 'who' }, 1, 2], ['who']],
    ['no info', [{ resultCode: 1002000015 }], ['']],
    ['info of another type', [{ resultCode: 1002000015, resultInfo: 7 }], ['']],
    ['a function that carries the code', [Object.assign(() => {}, { resultCode: 1002000015 })], ['']],
    ['another code', [{ resultCode: 9, resultInfo: 'who' }], []],
    ['code 0', [{ resultCode: 0 }], []],
    ['the code as text', [{ resultCode: '1002000015' }], []],
    ['an empty object', [{}], []],
    ['nothing', [], []],
    ['null', [null], []],
    ['a number', [1002000015], []],
]) {
    test(`onEventCallback with ${what} raises ${expected.length} events and tells analytics nothing`, async () => {
        const heard = [];
        game.on(CHANGED, ({ resultInfo }) => heard.push(resultInfo));
        assert.equal(game.onEventCallback(...args), undefined);
        await turn();
        assert.deepEqual([heard, ends()], [expected, [['on', 0]]]);
    });
}

for (const [call, log] of [
    ['napi_get_uv_event_loop', 'OnEventCallback work is nullptr or get loop failed'],
    ['uv_queue_work', 'OnEventCallback uv_queue_work call failed'],
    ['napi_open_handle_scope', 'DoGameEventWork scope is nullptr'],
    ['napi_get_reference_value', 'DoGameEventWork enter'],
]) {
    test(`a failing ${call} costs its listener the event and no other one`, async () => {
        const { heard, note } = recorder();
        ['1', '2', '3'].forEach((name) => game.on(CHANGED, note(name)));
        device.failNext(call);
        raise('x');
        await turn();
        assert.deepEqual(heard, ['2:x', '3:x']);
        assert.ok(countLogs(log) >= 1);
        raise('y');
        await turn();
        assert.equal(heard.length, 5);
    });
}

test('what a listener throws is an uncaught exception, and the other listeners are still called', () => expectChild(
    async ({ game, turn }) => {
        process.on('uncaughtException', (error) => console.log('uncaught', error.message));
        for (const name of ['one', 'two']) {
            game.on('playerChanged', ({ resultInfo }) => {
                console.log(name, resultInfo);
                throw new Error(name);
            });
        }
        game.onEventCallback({ resultCode: 1002000015, resultInfo: 'x' });
        await turn();
    }, { out: ['one x', 'uncaught one', 'two x', 'uncaught two'] }));

test('syncTraceId stores texts, and an empty one for everything else', () => {
    for (const [args, expected] of [
        [['first'], 'first'], [['second', 'ignored'], 'second'], [[''], ''], [['third'], 'third'], [[123], ''],
        [['fourth'], 'fourth'], [[], ''], [['\u6f22\u{1f600}'], '\u6f22\u{1f600}'], [[null], ''], [[{}], ''],
    ]) {
        assert.equal(game.syncTraceId(...args), undefined);
        assert.equal(start('init').modal.want.parameters.traceId, expected);
    }
    assert.deepEqual(ends(), []);
});
