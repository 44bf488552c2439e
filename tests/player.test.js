'use strict';

const assert = require('node:assert/strict');
const {
    PARAMETER_ERROR, REQUESTS, SYSTEM_ERROR, answer, attempt, badContexts, device, ends, game, start, test, track, turn,
    wantOf,
} = require('./support');

const { init, ...PLAYER_REQUESTS } = REQUESTS;
const IDS = { thirdOpenId: 'open-1', teamPlayerId: 'team-1' };

for (const [name, parameters] of [
    ['getLocalPlayer', {}],
    ['bindPlayer', IDS],
    ['unbindPlayer', IDS],
    ['verifyLocalPlayer', { thirdUserInfo: '{"thirdOpenId":"open-1"}' }],
]) {
    test(`${name} sends its own parameters with the common ones and no other`, async () => {
        for (const kind of ['createAbilityContext', 'createUIExtensionContext']) {
            const request = start(name, device[kind]());
            assert.deepEqual(request.modal.want, wantOf(REQUESTS[name].type, parameters));
            await answer(request.modal, ['result', 0]);
            assert.deepEqual(request.state, ['resolved', undefined]);
        }
        assert.deepEqual(ends(), [[name, 0], [name, 0]]);
    });
}

for (const [name, counts] of [
    ['getLocalPlayer', [0]], ['bindPlayer', [0, 1, 2, 4, 5]], ['unbindPlayer', [0, 1, 2, 4, 5]],
    ['verifyLocalPlayer', [0, 1, 3, 4]],
]) {
    test(`${name} throws 401 for ${counts.join(', ')} arguments, and never calls a function among them`, () => {
        const uncalled = () => assert.fail('called');
        for (const count of counts) {
            const args = [device.createAbilityContext(), ...REQUESTS[name].rest, uncalled, uncalled].slice(0, count);
            assert.deepEqual(attempt(() => game[name](...args)), ['threw', ...PARAMETER_ERROR], `${count} arguments`);
        }
        assert.deepEqual(ends(), counts.map(() => [name, 401]));
        assert.deepEqual(device.modals(), []);
    });
}

for (const [name, { rest }] of Object.entries(PLAYER_REQUESTS)) {
    test(`${name} rejects with 401 whatever is no context`, async () => {
        const contexts = badContexts().map(([context]) => context);
        const requests = contexts.map((context) => track(game[name](context, ...rest)));
        assert.deepEqual(ends(), contexts.map(() => [name, 401]));
        await turn();
        assert.deepEqual(requests.map(({ state }) => state), contexts.map(() => ['rejected', ...PARAMETER_ERROR]));
        assert.deepEqual(device.modals(), []);
    });

    test(`${name} survives failing platform calls`, async () => {
        const rejected = ['rejected', ...PARAMETER_ERROR];
        for (const [call, expected, events] of [
            ['napi_get_undefined', ['threw', ...SYSTEM_ERROR], []],
            ['napi_get_cb_info', ['threw', ...SYSTEM_ERROR], []],
            ['napi_create_promise', ['returned', undefined], [[name, 401]]],
            ['napi_typeof', rejected, [[name, 401]]],
            ['IsStageContext', rejected, [[name, 401]]],
            ['GetStageModeContext', rejected, [[name, 401]]],
        ]) {
            device.reset();
            device.failNext(call);
            const outcome = attempt(() => game[name](device.createAbilityContext(), ...rest));
            const request = outcome[1] instanceof Promise ? track(outcome[1]) : { state: outcome };
            await turn();
            assert.deepEqual([request.state, ends(), device.modals()], [expected, events, []], call);
        }
    });
}

test('getLocalPlayer with a context and a function calls back once, later', async () => {
    const calls = [];
    assert.equal(game.getLocalPlayer(device.createAbilityContext(), (...values) => calls.push(values)), undefined);
    await answer(device.modals()[0], ['receive', { resultCode: 0, resultMessage: 'player' }], ['result', 0]);
    assert.deepEqual(calls, [[undefined, 'player']]);
});

test('getLocalPlayer calls back at once with the error and null if the context is bad', async () => {
    for (const [context] of badContexts()) {
        const calls = [];
        assert.equal(game.getLocalPlayer(context, (...values) => calls.push(values)), undefined);
        await turn();
        assert.deepEqual(calls.map(([error, data]) => [error.code, error.message, data]), [[...PARAMETER_ERROR, null]]);
    }
});

test('getLocalPlayer with more than two arguments gives a promise and calls no function', async () => {
    const uncalled = () => assert.fail('called');
    const request = track(game.getLocalPlayer(device.createAbilityContext(), uncalled, uncalled));
    await answer(device.modals()[0], ['error', 401]);
    assert.deepEqual(request.state, ['rejected', ...PARAMETER_ERROR]);
});

test('bindPlayer and unbindPlayer send values that are no strings as empty ones', () => {
    const uncalled = () => assert.fail('called');
    for (const name of ['bindPlayer', 'unbindPlayer']) {
        assert.ok(game[name](device.createAbilityContext(), 5, uncalled) instanceof Promise);
        assert.deepEqual(device.modals().at(-1).want,
            wantOf(REQUESTS[name].type, { thirdOpenId: '', teamPlayerId: '' }));
    }
});

for (const [what, info, text] of [
    ['an empty object', {}, '{"thirdOpenId":""}'],
    ['an array', [], '{"thirdOpenId":""}'],
    ['all fields, in key order', { thirdOpenId: 'o', isRealName: true, isAdult: false, ageRange: 3 },
        '{"ageRange":3,"isAdult":false,"isRealName":true,"thirdOpenId":"o"}'],
    ['fields of wrong types as present', { thirdOpenId: 5, isRealName: 1, isAdult: 'true', ageRange: '3' },
        '{"ageRange":0,"isAdult":false,"isRealName":false,"thirdOpenId":""}'],
    ['undefined fields as present', { isRealName: undefined, isAdult: undefined, ageRange: undefined },
        '{"ageRange":0,"isAdult":false,"isRealName":false,"thirdOpenId":""}'],
    ['inherited fields', Object.create({ thirdOpenId: 'o', isAdult: true }), '{"isAdult":true,"thirdOpenId":"o"}'],
    ['fields beyond the known ones as nothing', { thirdOpenId: 'o', name: 'n' }, '{"thirdOpenId":"o"}'],
    ['quotes and non-ASCII text', { thirdOpenId: 'a"\\\n\u00e9\u6f22\u{1f600}' },
        '{"thirdOpenId":"a\\"\\\\\\n\u00e9\u6f22\u{1f600}"}'],
]) {
    test(`verifyLocalPlayer sends ${what}`, () => {
        game.verifyLocalPlayer(device.createAbilityContext(), info);
        assert.deepEqual(device.modals()[0].want, wantOf(9, { thirdUserInfo: text }));
    });
}

test('verifyLocalPlayer rejects with 401 a second argument that is no object', async () => {
    const values = [undefined, null, 0, 'x', true, Symbol('s'), 1n, () => {}];
    const requests = values.map((value) => track(game.verifyLocalPlayer(device.createAbilityContext(), value)));
    await turn();
    assert.deepEqual(requests.map(({ state }) => state), values.map(() => ['rejected', ...PARAMETER_ERROR]));
    assert.deepEqual(ends(), values.map(() => ['verifyLocalPlayer', 401]));
    assert.deepEqual(device.modals(), []);
});
