'use strict';

// Tests that need several threads: many working simultaneously, and races that no sequence of steps can produce.

const assert = require('node:assert/strict');
const { ask, countLogs, device, expectChild, game, nextMessage, once, startWorker, test } = require('./support');

const ROUNDS = 12;

/**
 * Runs in a Worker. Does everything that an environment can do, `rounds` times. Posts the environment's own events that
 * it heard.
 */
async function play({ game, device, parentPort, raise }, name, rounds) {
    const heard = [];
    const listener = ({ resultInfo }) => heard.push(resultInfo);
    for (let round = 0; round < rounds; ++round) {
        const late = device.createUIExtensionContext({ window: false });
        const context = device.createAbilityContext();
        game.on('playerChanged', listener);
        game.on('gameAddictionPrevented', () => {});
        game.syncTraceId(`${name} ${round}`);
        // Before the requests: time runs fast here, and all of them may be answered before the next line.
        raise(`${name} ${round}`);
        const requests = [
            game.bindPlayer(late, 'open', 'team'), game.getLocalPlayer(context),
            game.quickGameLogin(context, { gameAppId: 'app' }), new Promise((resolve) => game.init(context, resolve)),
        ];
        device.showWindow(late);
        await Promise.allSettled(requests);
        game.reportEventOperation(name, 0, 0);
        game.off('playerChanged', listener);
        game.off('gameAddictionPrevented');
    }
    parentPort.postMessage(heard.filter((info) => info !== 'changed'));
}

/** Answers a modal on the UI thread in every way. A quick game gets a timer. */
function answerAll(modal) {
    const playableTime = modal.want.parameters.requestType === 14 ? 1 : 0;
    modal.receive({ resultCode: 9, resultInfo: 'changed' });
    modal.receive({ resultCode: 0, resultMessage: '{}', playableTime });
    modal.result(0);
    modal.error(401);
    modal.release(1);
}

test('Workers, the UI thread, timers and late starts keep apart', async () => {
    const heard = [];
    game.on('playerChanged', (event) => heard.push(event));
    device.setSystemApp(true);
    device.clock.real(20000);
    device.onModal(answerAll);
    const names = ['a', 'b', 'c', 'd'];
    const workers = names.map((name) => startWorker(play, name, ROUNDS));
    const exits = workers.map((worker) => once(worker, 'exit'));
    const outcomes = Promise.all(workers.map(nextMessage));
    for (let i = 0; i < 2 * ROUNDS; ++i) {
        const mayfly = startWorker(play, `mayfly ${i}`, ROUNDS);
        await once(mayfly, 'online');
        await new Promise((resolve) => setTimeout(resolve, 4 * i));
        await mayfly.terminate();
    }
    const own = (name) => Array.from({ length: ROUNDS }, (_, round) => `${name} ${round}`);
    assert.deepEqual(await outcomes, names.map(own));
    await Promise.all(exits);
    assert.deepEqual([heard, countLogs(' refused: ')], [[], 0]);
});

test('a quick game whose time is up before JS took a Worker\'s answer still gets it, and its record goes', async () => {
    device.answerOn('caller');
    const login = ask('quickGameLogin', { gameAppId: 'app' });
    const gate = new Int32Array(new SharedArrayBuffer(4));
    startWorker(({ device, parentPort }) => parentPort.once('message', async (gate) => {
        await device.modals()[0].receive({ resultCode: 0, resultMessage: 'mine', playableTime: 1 });
        await device.clock.advance(100000);
        Atomics.store(gate, 0, 1);
        Atomics.notify(gate, 0);
    })).postMessage(gate);
    Atomics.wait(gate, 0, 0);
    assert.equal(countLogs('DoMessageBackSuccess'), 0);
    assert.equal(await login, 'mine');
    assert.deepEqual([device.modals().at(-1).isOpen, countLogs('DoMessageBackSuccess release context')], [false, 1]);
});

test('first calls at the same moment make once what a process has once', () => expectChild(
    async ({ device, nextMessage, once, startWorker }) => {
        const gate = new Int32Array(new SharedArrayBuffer(4));
        const workers = Array.from({ length: 4 }, () => startWorker((support) => {
            support.parentPort.once('message', (gate) => {
                support.parentPort.postMessage('ready');
                Atomics.wait(gate, 0, 0);
                const { ask, game } = support;
                game.reportEventOperation('first', 0, 0);
                for (let i = 0; i < 200; ++i) {
                    game.syncTraceId('trace'.repeat(1 + i % 9));
                    void (i % 20 || ask('init'));
                }
            });
        }));
        const exits = workers.map((worker) => once(worker, 'exit'));
        await Promise.all(workers.map((worker) => worker.postMessage(gate) || nextMessage(worker)));
        Atomics.store(gate, 0, 1);
        Atomics.notify(gate, 0);
        await Promise.all(exits);
        const traces = device.modals().map(({ want }) => want.parameters.traceId);
        console.log(device.analytics.processors().length, traces.filter((trace) => /^(trace)+$/.test(trace)).length);
    }, { out: ['1 40'] }));

test('answers that come while the first one is delivered change nothing', () => expectChild(
    async ({ device, start, turn }) => {
        process.on('uncaughtException', () => {});
        for (const skip of [1e9, 0]) {
            device.reset();
            device.clock.manual();
            device.failNext('napi_open_handle_scope', { skip, times: 1e9 });
            const requests = Array.from({ length: 60 }, () => start('getLocalPlayer'));
            await Promise.all(requests.flatMap(({ modal }) => [0, 0, 1, 1, 1, 1].map((playableTime) =>
                modal.receive({ resultCode: 0, playableTime }))));
            await turn();
            console.log(requests.filter(({ state }) => state[0] === 'resolved').length, device.clock.sleepers() <= 60);
        }
    }, { out: ['60 true', '0 true'] }));
