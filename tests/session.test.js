'use strict';

const assert = require('node:assert/strict');
const {
    CALLS, PAGES, PARAMETER_ERROR, REQUESTS, answer, countLogs, device, ends, expectChild, game, start, test, track,
    turn, wantOf,
} = require('./support');

const { clock } = device;
const KINDS = ['createAbilityContext', 'createUIExtensionContext'];

function assertConfig({ config: { leading, trailing } }) {
    assert.deepEqual(leading, leading.map((_, i) => i === 0 || i === 2));
    assert.deepEqual(trailing, trailing.map((_, i) => i === 0 || i === 3));
    assert.ok(leading.length >= 3 && trailing.length >= 4);
}

async function advance(ms) {
    await clock.advance(ms);
    await turn();
}

test('a modal opens at once, blocked as configured, and ids are above 0 and never reused', () => {
    const ids = [];
    for (let i = 0; i < 2; ++i) {
        for (const name of Object.keys(CALLS)) {
            const { modal } = start(name);
            assert.equal(modal.isOpen, true);
            assertConfig(modal);
            ids.push(modal.id);
        }
        device.reset();
    }
    assert.ok(ids.every((id) => id > 0));
    assert.equal(new Set(ids).size, ids.length);
    assert.equal(clock.sleepers(), 0);
});

for (const kind of KINDS) {
    for (const rounds of [1, 3, 5]) {
        test(`a window of ${kind} that appears before second ${rounds} gets its modal then`, async () => {
            const context = device[kind]({ window: false });
            game.syncTraceId('of the call');
            const request = start('getLocalPlayer', context);
            game.syncTraceId('of a later call');
            assert.equal(countLogs('UIContent is nullptr and delay start UIExtensionAbility'), 1);
            await advance(rounds * 1000 - 1);
            device.showWindow(context);
            await turn();
            assert.deepEqual(device.modals(), []);
            await advance(1);
            const [modal, ...others] = device.modals();
            assert.deepEqual([modal.want, others], [wantOf(2, { traceId: 'of the call' }), []]);
            assertConfig(modal);
            assert.equal(clock.sleepers(), 0);
            await answer(modal, ['receive', { resultCode: 0, resultMessage: 'data' }]);
            assert.deepEqual(request.state, ['resolved', 'data']);
        });
    }
}

for (const name of Object.keys(CALLS)) {
    const isLaunch = name in PAGES;
    test(`${name} is ${isLaunch ? 'given up' : 'answered'}, but not analytics, with no window for 5 s`, async () => {
        const context = device.createAbilityContext({ window: false });
        const request = start(name, context);
        await advance(4999);
        assert.deepEqual([request.state, clock.sleepers()], [['pending'], 1]);
        await advance(1);
        const answered = CALLS[name].hidden ? ['resolved', undefined] : ['rejected', ...PARAMETER_ERROR];
        assert.deepEqual(request.state, isLaunch ? ['pending'] : answered);
        assert.equal(countLogs('After delay 5s, uiContent is still nullptr.'), 1);
        assert.equal(countLogs('DelayStartUIExtensionAbility need not message back'), isLaunch ? 1 : 0);
        device.showWindow(context);
        await advance(5000);
        assert.deepEqual([device.modals(), ends(), clock.sleepers()], [[], [], 0]);
    });
}

test('the callback form is answered in the same way when no window comes', async () => {
    for (const [name, { rest, callbackAt, hidden }] of Object.entries(REQUESTS)) {
        const calls = [];
        if (callbackAt) {
            game[name](device.createAbilityContext({ window: false }), ...rest, (...values) => calls.push(values));
            await advance(5000);
            const told = calls.map(([error, data]) => [error && [error.code, error.message], data]);
            assert.deepEqual(told, [[hidden ? undefined : PARAMETER_ERROR, undefined]], name);
        }
    }
});

test('a window that was hidden delays the start, and one that is shown again opens it', async () => {
    const context = device.createUIExtensionContext();
    device.hideWindow(context);
    start('init', context);
    assert.deepEqual(device.modals(), []);
    device.showWindow(context);
    await advance(1000);
    assert.equal(device.modals().length, 1);
});

test('a window whose content cannot be had once is asked again a second later', async () => {
    device.failNext('GetUIContent');
    start('init');
    assert.deepEqual(device.modals(), []);
    await advance(1000);
    assert.equal(device.modals().length, 1);
});

test('a modal that the window refuses leaves the request pending and holds nothing', async () => {
    device.failNext('CreateModalUIExtension');
    const request = start('bindPlayer');
    await turn();
    assert.deepEqual([device.modals(), request.state, ends()], [[], ['pending'], []]);
    assert.equal(countLogs('StartUIExtensionAbility create modal succeeded'), 1);
    await expectChild(({ device, start }) => {
        device.failNext('CreateModalUIExtension');
        start('bindPlayer');
    });
});

for (const [call, log] of [
    ['napi_get_uv_event_loop', 'DelayStartUIExtensionAbility invalid work or get loop failed'],
    ['uv_queue_work', 'DelayStartUIExtensionAbility uv_queue_work call failed'],
]) {
    test(`a timed-out start whose answer ${call} stops is given up without a crash`, async () => {
        const request = start('bindPlayer', device.createAbilityContext({ window: false }));
        await advance(4000);
        device.failNext(call);
        await advance(1000);
        assert.deepEqual([countLogs(log), countLogs('DoMessageBackException release context')], [1, 1]);
        assert.deepEqual([request.state, clock.sleepers()], [['pending'], 0]);
        const next = start('bindPlayer');
        await answer(next.modal, ['result', 0]);
        assert.deepEqual(next.state, ['resolved', undefined]);
    });
}

test('many waiting starts open in the order of their calls, each in its own window', async () => {
    const contexts = Array.from({ length: 8 }, () => device.createAbilityContext({ window: false }));
    const requests = contexts.map((context, i) => track(game.bindPlayer(context, `${i}`, 'team')));
    contexts.filter((_, i) => i % 2).forEach(device.showWindow);
    await advance(5000);
    assert.deepEqual(device.modals().map(({ want }) => want.parameters.thirdOpenId), ['1', '3', '5', '7']);
    await Promise.all(device.modals().map((modal) => modal.result(0)));
    await turn();
    assert.deepEqual(requests.map(({ state }) => state[0]), contexts.map((_, i) => i % 2 ? 'resolved' : 'rejected'));
});

test('a delayed start whose environment is gone stops at its next round', () => expectChild(
    async ({ device, startWorker, nextMessage, countLogs, roundTrip }) => {
        device.clock.manual();
        const worker = startWorker(({ device, start, parentPort }) => {
            start('bindPlayer', device.createAbilityContext({ window: false }));
            parentPort.postMessage('started');
        });
        await nextMessage(worker);
        await worker.terminate();
        await device.clock.advance(1000);
        console.log(device.clock.sleepers(), device.modals().length,
            countLogs('DelayStartUIExtensionAbility invalid env'), countLogs('After delay 5s'));
        await roundTrip();
    }, { out: ['0 0 1 1'] }));
