'use strict';

// What all requests and page launches share: what they send, their forms, and failing calls.

const assert = require('node:assert/strict');
const { inspect } = require('node:util');
const {
    PARAMETER_ERROR, SYSTEM_ERROR, answer, ask, attempt, countLogs, device, ends, game, start, test, track, turn,
    wantOf,
} = require('./support');
const { CALLS, METHODS, REQUESTS } = require('./support/requests');

const nameInLog = (name) => name[0].toUpperCase() + name.slice(1);

// Literals, which also check how the model reads records.
for (const [name, sent, ...args] of [
    ['init', {}],
    ['savePlayerRole', {
        tavikExtra: '{"gamePlayerId":"g","roleId":"r","roleName":"\\"\\\\/\\b\\f\\n\\r\\t\\u0001\x7f\u2028\u9f99",' +
            '"serverId":"","serverName":"S","teamPlayerId":"m","thirdOpenId":"t"}',
    }, {
        thirdOpenId: 't', teamPlayerId: 'm', serverName: 'S', roleName: '"\\/\b\f\n\r\t\x01\x7f\u2028\u9f99',
        roleId: 'r', gamePlayerId: 'g',
    }],
    ['prePurchase', { tavikExtra: '{"developerPayload":"d","productId":"p","productType":1,"reservedInfo":"r"}' },
        { reservedInfo: 'r', developerPayload: 'd', productType: 4294967297.9, productId: 'p' }],
    ['bindPlayer', { thirdOpenId: 'open-1', teamPlayerId: 'team-1' }, 'open-1', 'team-1'],
    ['verifyLocalPlayer', { thirdUserInfo: '{"ageRange":3,"isAdult":false,"isRealName":true,"thirdOpenId":"o"}' },
        { thirdOpenId: 'o', isRealName: true, isAdult: false, ageRange: 3 }],
    ['verifyLocalPlayer', { thirdUserInfo: '{"ageRange":0,"isAdult":false,"isRealName":false,"thirdOpenId":""}' },
        { isRealName: undefined, isAdult: undefined, ageRange: undefined }],
    ['unionLogin', { unionLoginParam: '{"showLoginDialog":false,"thirdAccountInfos":[]}' }, {}],
]) {
    test(`${name} sends ${inspect(args)}, the common parameters and no other`, async () => {
        game.syncTraceId('trace-7');
        for (const kind of ['createAbilityContext', 'createUIExtensionContext']) {
            const request = track(game[name](device[kind](), ...args));
            const modal = device.modals().at(-1);
            assert.deepEqual(modal.want, wantOf(CALLS[name].type, { ...sent, traceId: 'trace-7' }));
            await answer(modal, ['result', 0]);
            assert.deepEqual(request.state, ['resolved', undefined]);
        }
        assert.deepEqual(ends(), [[name, 0], [name, 0]]);
    });
}

test('every call logs its begin and its end', () => {
    for (const name of Object.keys(CALLS)) {
        start(name);
        const frame = ['begin ', 'begin Execute', 'end Execute', 'end '].map((text) => text + nameInLog(name));
        assert.deepEqual(frame.map(countLogs), [1, 1, 1, 1]);
    }
});

test('a request takes its numbers of arguments, and calls back later', async () => {
    assert.deepEqual(attempt(() => game.init()), ['threw', 0, 'Success']);
    assert.deepEqual(attempt(() => game.unionLogin({}, {}, {})), ['threw', ...PARAMETER_ERROR]);
    const calls = [];
    ask('prePurchase', {}, (...values) => calls.push(values));
    assert.deepEqual(calls, []);
    await answer(device.modals()[0], ['result', 0, { resultMessage: 'data' }]);
    assert.deepEqual(calls, [[undefined, 'data']]);
});

/** The outcome of a promise call with an unusable context or parameters. */
function failureOf(name) {
    if (!(name in REQUESTS)) {
        return ['pending'];
    }
    return REQUESTS[name].hidden ? ['threw', undefined, 'Invalid argument'] : ['rejected', ...PARAMETER_ERROR];
}

/** The outcome of a call: that of `attempt`, or the state of the returned promise. */
async function outcomeOf(call) {
    const outcome = attempt(call);
    const request = outcome[1] instanceof Promise ? track(outcome[1]) : { state: outcome };
    await turn();
    return request.state;
}

// Each failure affects one request, in the promise form unless a callback is given. The next request works.
for (const [name, { rest, callbackAt, failsAs = name, readsFirst }] of Object.entries(METHODS)) {
    test(`${name} survives failing platform calls`, async () => {
        const [refused, nothing] = [['threw', ...SYSTEM_ERROR], ['returned', undefined]];
        const failed = name in REQUESTS ? [[failsAs, 401]] : [];
        const callback = () => assert.fail('called');
        for (const { call, form = [], outcome = failureOf(name), events = failed } of [
            { call: 'napi_get_undefined', outcome: refused, events: [] },
            { call: 'napi_get_cb_info', outcome: refused, events: [] },
            { call: 'napi_create_promise', outcome: nothing },
            { call: 'napi_typeof' },
            { call: 'IsStageContext' },
            { call: 'GetStageModeContext' },
            ...(callbackAt ? [
                { call: 'napi_get_cb_info', form: [callback], outcome: refused, events: [] },
                { call: 'napi_typeof', form: [callback], outcome: nothing },
                { call: 'napi_create_reference', form: [callback], outcome: nothing },
            ] : []),
        ]) {
            device.reset();
            // The first one reads an argument.
            device.failNext(call, { skip: readsFirst && call === 'napi_typeof' ? 1 : 0 });
            const args = [device.createAbilityContext(), ...rest, ...form];
            assert.deepEqual(await outcomeOf(() => game[name](...args)), outcome, call);
            assert.deepEqual([ends(), device.modals()], [events, []], call);
            ask(name, ...rest);
            assert.equal(countLogs(`end ${nameInLog(name)}`), 1);
        }
    });
}
