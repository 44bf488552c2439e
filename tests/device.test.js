'use strict';

const assert = require('node:assert/strict');
const {
    advance, answer, attempt, device, ends, expectChild, game, nextMessage, raise, start, startWorker, test, turn,
} = require('./support');
const { loadAddon } = require('../lib/addon.js');

const { clock } = device;
const waiting = () => start('bindPlayer', device.createAbilityContext({ window: false }));

test('a parameter of another type is refused by its name', async () => {
    const cyclic = {};
    cyclic.self = cyclic;
    const request = start('getLocalPlayer');
    for (const value of [() => {}, Symbol('s'), 10n, [1], ['a', 1], { inner: () => {} }, cyclic]) {
        await assert.rejects(async () => request.modal.receive({ resultCode: 0, odd: value }), /odd|inner|self/);
        await assert.rejects(async () => request.modal.result(0, { odd: value }), /odd|inner|self/);
    }
    assert.deepEqual([request.state, ends()], [['pending'], []]);
});

test('the device refuses wrong arguments with one clear line, and goes on', async () => {
    for (const call of [
        () => device.createStageContext('ability'), () => device.createAbilityContext({ window: 'no' }),
        () => device.createAbilityContext({ modules: { entry: { mediaById: { 1: 'x' } } } }),
        () => device.hideWindow({}), () => device.onModal(5), () => device.answerOn('main'),
        () => device.setSystemApp('yes'), () => device.failNext('napi_no_such_call'),
        () => device.failNext('napi_typeof', { times: 0 }),
        () => device.nextModal(-1), () => device.nextModal('init', { timeout: 5 }),
        () => device.nextModal('syncTraceId'), () => start('init').modal.result('0'),
        () => start('init').modal.result(2 ** 31), () => start('init').modal.receive(5), () => clock.onAdvance(5),
        () => clock.real(0), () => clock.advance(-1), () => clock.advance(NaN),
        () => clock.real() ?? clock.advance(1),
    ]) {
        await assert.rejects(async () => call(), ({ message }) => /^[^\n]{10,}$/.test(message), `${call}`);
        const request = start('bindPlayer');
        await answer(request.modal, ['result', 0]);
        assert.deepEqual(request.state, ['resolved', undefined], `${call}`);
    }
});

test('manual time stands still but for advance, which stops at deadlines', async () => {
    const begin = clock.now();
    const first = waiting();
    await clock.advance(400);
    const second = waiting();
    await clock.advance(0);
    assert.deepEqual([clock.now(), clock.sleepers()], [begin + 400, 2]);
    await advance(4800);
    assert.deepEqual([first.state[0], second.state[0], clock.now()], ['rejected', 'pending', begin + 5200]);
    await advance(200.5);
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
    const outcomes = () => Array.from({ length: 5 }, () => Number(attempt(() => game.syncTraceId(''))[0] === 'threw'));
    for (const [options, expected] of [
        [undefined, [1, 0, 0, 0, 0]], [{ skip: 2 }, [0, 0, 1, 0, 0]], [{ skip: 1, times: 2 }, [0, 1, 1, 0, 0]],
    ]) {
        device.failNext('napi_get_cb_info', options);
        assert.deepEqual(outcomes(), expected);
    }
    device.failNext('napi_get_cb_info', { times: 9 });
    device.reset();
    assert.deepEqual(outcomes(), [0, 0, 0, 0, 0]);
});

test('what is optional in Node-API is optional through the device', () => {
    const addon = loadAddon('test_addon.node');
    const counts = [];
    const statuses = addon.call((...args) => counts.push(args.length));
    assert.deepEqual([addon.sum10(1, 2, 3), addon.sum20(), counts], [13, 20, [0]]);
    assert.equal(statuses, 1);  // napi_invalid_arg for the property that is not there, and napi_ok before
});

test('onModal gets every modal on its subscriber\'s thread until it is removed', async () => {
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

test('GAMEAPI_LOG selects what is printed; a wrong level is reported', async () => {
    const printed = (level) => expectChild(({ game }) => game.syncTraceId(5), { env: { GAMEAPI_LOG: level } });
    for (const [level, hasError, hasInfo] of [['', false, false], ['E', true, false], ['I', true, true]]) {
        const { stderr } = await printed(level);
        assert.deepEqual([stderr.includes('is not string'), stderr.includes('begin SyncTraceId')], [hasError, hasInfo]);
    }
    assert.match((await printed('loud')).stderr, /GAMEAPI_LOG is "loud"/);
});

test('reset brings back the device as it began, but keeps contexts', async () => {
    const heard = [];
    const context = device.createAbilityContext();
    const [asleep, open] = [waiting(), start('bindPlayer')];
    device.setSystemApp(true);
    for (const type of ['playerChanged', 'gameAddictionPrevented']) {
        game.on(type, (event) => heard.push(event));
    }
    device.answerOn('caller');
    device.onModal(() => assert.fail('called'));
    device.failNext('napi_get_cb_info');
    device.reset();
    assert.deepEqual([device.modals(), device.logs(), ends(), clock.sleepers()], [[], [], [], 0]);
    assert.deepEqual(attempt(() => game.off('gameAddictionPrevented'))[1], 202);
    raise('x');
    clock.manual();
    await advance(10000);
    assert.deepEqual([asleep.state, open.state, heard], [['pending'], ['pending'], []]);
    assert.ok(start('init', context).modal.isOpen);
});

test('a device that was reset holds no process, whatever was pending', () => expectChild(({ device, start }) => {
    device.clock.manual();
    start('init');
    start('bindPlayer', device.createAbilityContext({ window: false }));
    device.reset();
}));
