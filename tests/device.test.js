'use strict';

const assert = require('node:assert/strict');
const {
    answer, attempt, device, ends, expectChild, game, nextMessage, sleepers, start,
    startWorker, test, turn,
} = require('./support');

const { clock } = device;
const waiting = () => start('bindPlayer', device.createAbilityContext({ window: false }));

test('parameters of every type come back as they went', async () => {
    const nested = { whole: 1, text: '\u00e9\u{1f600}', half: 0.5, list: ['a', ''], deeper: { no: false, none: {} } };
    for (const value of [
        0, -1, 2147483647, -2147483648, 2147483648, 1.5, -0.25, 1e300, true, false, '', 'a', [], ['a', 'b'], {}, nested,
    ]) {
        const request = start('getLocalPlayer');
        await answer(request.modal, ['receive', { resultCode: 0, resultMessage: value }]);
        assert.deepEqual(request.state, ['resolved', value]);
    }
});

test('a parameter of no such type is refused by its name, and the module hears nothing', async () => {
    const cyclic = {};
    cyclic.self = cyclic;
    const request = start('getLocalPlayer');
    for (const value of [() => {}, Symbol('s'), 10n, [1], ['a', 1], { inner: () => {} }, cyclic]) {
        await assert.rejects(async () => request.modal.receive({ resultCode: 0, odd: value }), /odd|inner|self/);
        await assert.rejects(async () => request.modal.result(0, { odd: value }), /odd|inner|self/);
    }
    assert.deepEqual([request.state, ends()], [['pending'], []]);
});

for (const [what, call] of [
    ['a stage context of an unknown kind', () => device.createStageContext('ability')],
    ['a window that is no boolean', () => device.createAbilityContext({ window: 'no' })],
    ['options that are no object', () => device.createUIExtensionContext(5)],
    ['modules that are no object', () => device.createAbilityContext({ modules: 5 })],
    ['media that are no bytes', () => device.createAbilityContext({ modules: { entry: { mediaById: { 1: 'x' } } } })],
    ['showing the window of nothing', () => device.showWindow()],
    ['hiding the window of no context', () => device.hideWindow({})],
    ['a modal handler that is no function', () => device.onModal(5)],
    ['an exit handler that is no function', () => device.onExit('exit')],
    ['a follower of the clock that is no function', () => clock.onAdvance(5)],
    ['an unknown thread', () => device.answerOn('main')],
    ['a rate of 0', () => clock.real(0)],
    ['a rate that is no number', () => clock.real('fast')],
    ['going back in time', () => clock.advance(-1)],
    ['going to no time', () => clock.advance(NaN)],
    ['moving the real clock', () => {
        clock.real();
        return clock.advance(1);
    }],
    ['a system application of no boolean', () => device.setSystemApp('yes')],
    ['a failure of an unknown call', () => device.failNext('napi_no_such_call')],
    ['a failure after a negative count', () => device.failNext('napi_typeof', { skip: -1 })],
    ['a failure of no times', () => device.failNext('napi_typeof', { times: 0 })],
    ['a wait of a negative time', () => device.nextModal(-1)],
    ['a wait with an unknown option', () => device.nextModal('init', { timeout: 5 })],
    ['a wait for a method that opens no modal', () => device.nextModal('syncTraceId')],
    ['a result code that is no number', () => start('init').modal.result('0')],
    ['a result code beyond 32 bits', () => start('init').modal.result(2 ** 31)],
    ['parameters that are no object', () => start('init').modal.receive(5)],
    ['a release without a code', () => start('init').modal.release()],
    ['an error whose name is no text', () => start('init').modal.error(1, 5)],
]) {
    test(`the device refuses ${what} with one clear line`, async () => {
        await assert.rejects(async () => call(), ({ message }) => /^[^\n]{10,}$/.test(message));
        const request = start('bindPlayer');
        await answer(request.modal, ['result', 0]);
        assert.deepEqual(request.state, ['resolved', undefined]);
    });
}

test('what is optional in Node-API is optional in calls that go through the device', () => {
    const addon = require('../lib/addon.js').loadAddon('test_addon.node');
    const counts = [];
    const status = addon.call((...args) => counts.push(args.length));
    assert.deepEqual([addon.sum10(1, 2, 3), addon.sum20(), addon.data, status, counts], [13, 20, 20, 0, [0]]);
    assert.equal(addon.define(), 1);  // napi_ok for no properties, napi_invalid_arg for one that is not there
});

test('manual time stands still but for advance, which stops at every deadline on its way', async () => {
    const begin = clock.now();
    const first = waiting();
    await clock.advance(400);
    const second = waiting();
    assert.deepEqual([clock.now(), await sleepers()], [begin + 400, 2]);
    await clock.advance(4800);
    await turn();
    assert.deepEqual([first.state[0], second.state[0], clock.now()], ['rejected', 'pending', begin + 5200]);
    await clock.advance(200.5);
    await turn();
    assert.deepEqual([second.state[0], clock.sleepers()], ['rejected', 0]);
});

test('real time runs at its rate, and on from where manual time stopped', async () => {
    await clock.advance(3600000);
    const stopped = clock.now();
    clock.real(100000);
    const request = waiting();
    while (request.state[0] === 'pending') {
        await turn();
    }
    assert.ok(clock.now() >= stopped + 5000);
    assert.equal(clock.rate(), 100000);
    clock.manual();
    assert.equal(clock.rate(), 0);
});

test('failNext lets "skip" calls pass and "times" fail, and reset forgets it', () => {
    const outcomes = () => Array.from({ length: 5 }, () => attempt(() => game.syncTraceId(''))[0] === 'threw');
    for (const [options, expected] of [
        [undefined, [true, false, false, false, false]],
        [{ skip: 2 }, [false, false, true, false, false]],
        [{ skip: 1, times: 2 }, [false, true, true, false, false]],
    ]) {
        device.failNext('napi_get_cb_info', options);
        assert.deepEqual(outcomes(), expected);
    }
    device.failNext('napi_get_cb_info', { times: 9 });
    device.reset();
    assert.deepEqual(outcomes(), [false, false, false, false, false]);
});

test('nextModal gives every modal once, oldest first, waits for the next, and gives up in time', async () => {
    const [first, second] = [start('init').modal, start('bindPlayer').modal];
    assert.deepEqual([(await device.nextModal()).id, (await device.nextModal(50)).id], [first.id, second.id]);
    const waiters = [device.nextModal(), device.nextModal()];
    await assert.rejects(device.nextModal(5), /modal/);
    const later = [start('init').modal, start('init').modal];
    assert.deepEqual((await Promise.all(waiters)).map(({ id }) => id), later.map(({ id }) => id));
});

test('onModal hears of every modal on its subscriber\'s thread until it is taken back', async () => {
    const heard = [];
    device.onModal((modal) => heard.push(modal.want.parameters.requestType));
    const worker = startWorker(({ device, start, parentPort }) => {
        const own = [];
        device.onModal(({ id }) => own.push(id));
        const { modal } = start('getLocalPlayer');
        setImmediate(async () => {
            await modal.result(0);
            parentPort.postMessage(own.includes(modal.id));
        });
    });
    assert.equal(await nextMessage(worker), true);
    start('bindPlayer');
    await turn();
    device.onModal(null);
    start('init');
    await turn();
    assert.deepEqual(heard, [2, 7]);
});

test('log lines carry level, domain, tag and a text that starts with its function', () => {
    game.syncTraceId(5);
    const lines = device.logs();
    assert.ok(lines.every(({ domain, tag }) => domain === 0xD00470A && tag === 'GAMEAPISDK'));
    assert.ok(lines.every(({ message }) => /^\[\(\w+:\d+\)\]/.test(message)));
    const { level } = lines.find(({ message }) => message.includes('value param type is not string'));
    assert.equal(level, 'E');
});

test('only lines at or above the GAMEAPI_LOG level are printed, and a wrong level is reported', async () => {
    const body = ({ game }) => game.syncTraceId(5);
    for (const [level, hasError, hasInfo] of [['', false, false], ['E', true, false], ['I', true, true]]) {
        const { stderr } = await expectChild(body, { env: { GAMEAPI_LOG: level } });
        assert.deepEqual([stderr.includes('is not string'), stderr.includes('begin SyncTraceId')], [hasError, hasInfo]);
    }
    assert.match((await expectChild(body, { env: { GAMEAPI_LOG: 'loud' } })).stderr, /GAMEAPI_LOG is "loud"/);
});

test('reset brings back the device as it began, and what slept never wakes', async () => {
    const [asleep, open] = [waiting(), start('bindPlayer')];
    device.setSystemApp(true);
    device.answerOn('caller');
    device.onModal(() => assert.fail('called'));
    device.reset();
    assert.deepEqual([device.modals(), device.logs(), ends(), clock.sleepers()], [[], [], [], 0]);
    assert.deepEqual(attempt(() => game.off('gameAddictionPrevented'))[1], 202);
    clock.manual();
    await clock.advance(10000);
    await turn();
    assert.deepEqual([asleep.state, open.state], [['pending'], ['pending']]);
});

test('a device that was reset holds no process, whatever was pending', () => expectChild(({ device, start }) => {
    device.clock.manual();
    start('init');
    start('bindPlayer', device.createAbilityContext({ window: false }));
    device.reset();
}));
