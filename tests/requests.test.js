'use strict';

// What all requests and page launches have in common: what goes out, forms, and calls that go nowhere.

const assert = require('node:assert/strict');
const {
    CALLS, PAGES, PARAMETER_ERROR, REQUESTS, SYSTEM_ERROR, answer, assertCalledWithFailure, attempt, badContexts,
    countLogs, device, ends, failureOf, game, outcomeOf, start, test, turn, wantOf,
} = require('./support');

const IDS = { thirdOpenId: 'open-1', teamPlayerId: 'team-1' };
const methodOf = (name) => name[0].toUpperCase() + name.slice(1);
const uncalled = () => assert.fail('called');

for (const [name, parameters] of Object.entries({
    init: {},
    getLocalPlayer: {},
    savePlayerRole: {
        tavikExtra: '{"gamePlayerId":"","roleId":"role-1","roleName":"","serverId":"","serverName":"",' +
            '"teamPlayerId":"","thirdOpenId":""}',
    },
    prePurchase: { tavikExtra: '{"developerPayload":"","productId":"product-1","productType":0,"reservedInfo":""}' },
    postPurchase: { tavikExtra: '{"purchaseData":"data-1"}' },
    bindPlayer: IDS,
    unbindPlayer: IDS,
    verifyLocalPlayer: { thirdUserInfo: '{"thirdOpenId":"open-1"}' },
    unionLogin: { unionLoginParam: '{"showLoginDialog":false,"thirdAccountInfos":[]}' },
    quickGameLogin: { quickGameLoginParam: '{"gameAppId":"app-1"}' },
    launchWelcomeBanner: { greetingInfo: 'hello' },
    launchCommonPage: { pageInfo: 'page' },
})) {
    test(`${name} sends its own parameters with the common ones and no other`, async () => {
        game.syncTraceId('trace-7');
        for (const kind of ['createAbilityContext', 'createUIExtensionContext']) {
            const request = start(name, device[kind]());
            assert.deepEqual(request.modal.want, wantOf(CALLS[name].type, { ...parameters, traceId: 'trace-7' }));
            await answer(request.modal, ['result', 0]);
            assert.deepEqual(request.state, name in PAGES ? ['pending'] : ['resolved', undefined]);
        }
        assert.deepEqual(ends(), name in PAGES ? [] : [[name, 0], [name, 0]]);
        const frame = ['begin ', 'begin Execute', 'end Execute', 'end '].map((text) => text + methodOf(name));
        assert.deepEqual(frame.map(countLogs), [2, 2, 2, 2]);
    });
}

for (const [name, { rest, callbackAt, hidden }] of Object.entries(REQUESTS)) {
    const wanted = rest.length + 1;
    const counts = [0, 1, 2, 3, 4, 5].filter((count) => callbackAt ? count < wanted : count !== wanted);
    const error = hidden ? [0, 'Success'] : PARAMETER_ERROR;
    test(`${name} throws ${error[0]} for ${counts.join(', ')} arguments, and never calls a function among them`, () => {
        for (const count of counts) {
            const args = [device.createAbilityContext(), ...rest, uncalled, uncalled, uncalled, uncalled];
            assert.deepEqual(attempt(() => game[name](...args.slice(0, count))), ['threw', ...error], `${count}`);
        }
        assert.deepEqual(ends(), counts.map(() => [name, 401]));
        assert.deepEqual(device.modals(), []);
    });
}

const CALLBACK_REQUESTS = Object.entries(REQUESTS).filter(([, { callbackAt }]) => callbackAt);

for (const [name, { rest }] of CALLBACK_REQUESTS) {
    for (const [what, more, isCallback] of [
        ['nothing more', [], false],
        ['a function', ['CALLBACK'], true],
        ['a function and a third value', ['CALLBACK', 1], false],
        ['a value and a function', [undefined, 'CALLBACK'], false],
        ['a number for a callback', [1], true],
        ['an explicit undefined for a callback', [undefined], true],
    ]) {
        const form = isCallback ? 'callback' : 'promise';
        test(`${name} with good arguments and ${what} takes the ${form} form`, async () => {
            const calls = [];
            const args = more.map((value) => value === 'CALLBACK' ? (...values) => calls.push(values) : value);
            const returned = game[name](device.createAbilityContext(), ...rest, ...args);
            assert.equal(returned instanceof Promise, !isCallback);
            assert.deepEqual(calls, []);
            await answer(device.modals()[0], ['result', 0, { resultMessage: 'data' }]);
            const data = name === 'prePurchase' ? 'data' : undefined;
            const wantsCall = isCallback && more[0] === 'CALLBACK';
            assert.deepEqual(calls, wantsCall ? [[undefined, data]] : []);
            assert.deepEqual(await returned, isCallback ? undefined : data);
            assert.equal(countLogs('callback and deferred nullptr'), isCallback && !wantsCall ? 1 : 0);
            assert.deepEqual([ends(), device.modals()[0].isOpen], [[[name, 0]], false]);
        });
    }

    test(`${name} with a bad context calls its callback once, at once, if that is a function`, async () => {
        for (const [context] of badContexts()) {
            const calls = [];
            const call = (callback) => attempt(() => game[name](context, ...rest, callback));
            assert.deepEqual(call((...values) => calls.push(values)), ['returned', undefined]);
            assert.deepEqual(call('no function'), ['returned', undefined]);
            assertCalledWithFailure(name, calls);
            await turn();
            assert.equal(calls.length, 1);
        }
        assert.deepEqual(ends(), Array(2 * badContexts().length).fill([name, 401]));
        assert.deepEqual(device.modals(), []);
    });
}

const LIMIT = { launchAntiAddiction: { rest: [60, 'text', 6] } };
for (const [name, { rest, callbackAt, failsAs = name }] of Object.entries({ ...CALLS, ...LIMIT })) {
    const failed = name in REQUESTS ? [[failsAs, 401]] : [];
    const isLogged = name in REQUESTS ? 0 : 1;

    test(`${name} with a bad context is ${failureOf(name)[0]}`, async () => {
        for (const [context, log] of badContexts()) {
            device.reset();
            assert.deepEqual(await outcomeOf(() => game[name](context, ...rest)), failureOf(name), log);
            assert.deepEqual([countLogs(log), countLogs('build context failed')], [1, isLogged], log);
            assert.deepEqual([ends(), device.modals()], [failed, []]);
        }
    });

    test(`${name} survives failing platform calls`, async () => {
        const [refused, nothing] = [['threw', ...SYSTEM_ERROR], ['returned', undefined]];
        const rows = [
            ['napi_get_undefined', [], refused, []],
            ['napi_get_cb_info', [], refused, []],
            ['napi_create_promise', [], nothing, failed],
            ['napi_typeof', [], failureOf(name), failed],
            ['IsStageContext', [], failureOf(name), failed],
            ['GetStageModeContext', [], failureOf(name), failed],
        ];
        const callbackRows = [
            ['napi_get_cb_info', [uncalled], refused, []],
            ['napi_typeof', [uncalled], nothing, failed],
            ['napi_create_reference', [uncalled], nothing, failed],
        ];
        for (const [call, form, outcome, events] of [...rows, ...(callbackAt ? callbackRows : [])]) {
            device.reset();
            device.failNext(call);
            const args = [device.createAbilityContext(), ...rest, ...form];
            assert.deepEqual(await outcomeOf(() => game[name](...args)), outcome, call);
            assert.deepEqual([ends(), device.modals()], [events, []], call);
            game[name](device.createAbilityContext(), ...rest);
            assert.equal(countLogs(`end ${methodOf(name)}`), 1);
        }
    });
}
