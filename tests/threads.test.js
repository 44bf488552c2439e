'use strict';

const assert = require('node:assert/strict');
const { countLogs, device, nextMessage, once, startWorker, test } = require('./support');

const ROUNDS = 12;
const QUICK_GAME_LOGIN = 14;

/** All that an environment does at once, `rounds` times; posts what came of it. */
async function play({ game, device, parentPort }, name, rounds) {
    const heard = [];
    const hear = ({ resultInfo }) => heard.push(resultInfo);
    let settled = 0;
    for (let round = 0; round < rounds; ++round) {
        const late = device.createUIExtensionContext({ window: false });
        const context = device.createAbilityContext();
        game.on('playerChanged', hear);
        game.on('gameAddictionPrevented', () => {});
        game.syncTraceId(`${name} ${round}`);
        // Before the requests: time is fast here, and they may all be answered before the next line.
        game.onEventCallback({ resultCode: 1002000015, resultInfo: `${name} ${round}` });
        const requests = [
            game.bindPlayer(late, 'open', 'team'),
            game.getLocalPlayer(context),
            game.quickGameLogin(context, { gameAppId: 'app' }),
            new Promise((resolve) => game.init(context, resolve)),
        ];
        device.showWindow(late);
        settled += (await Promise.allSettled(requests)).length;
        game.reportEventOperation(name, 0, 0);
        game.off('playerChanged', hear);
        game.off('gameAddictionPrevented');
    }
    parentPort.postMessage([settled, heard.filter((info) => info !== 'changed')]);
}

/** Answers a modal on the UI thread in every way at once; a quick game gets a timer. */
function answerAll(modal) {
    const playableTime = modal.want.parameters.requestType === QUICK_GAME_LOGIN ? 1 : 0;
    modal.receive({ resultCode: 9, resultInfo: 'changed' });
    modal.receive({ resultCode: 0, resultMessage: '{}', playableTime });
    modal.result(0);
    modal.error(401);
    modal.release(1);
}

test('Workers, the UI thread, timers and late starts at work at once disturb each other in nothing', async () => {
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
    assert.deepEqual(await outcomes, names.map((name) =>
        [4 * ROUNDS, Array.from({ length: ROUNDS }, (_, round) => `${name} ${round}`)]));
    await Promise.all(exits);
});

test('a quick game whose time is up before its Worker took the result still gets it, and its record goes', async () => {
    const worker = startWorker(({ game, device, parentPort }) => {
        parentPort.once('message', async (gate) => {
            const login = game.quickGameLogin(device.createAbilityContext(), { gameAppId: 'app' });
            Atomics.wait(gate, 0, 0);
            parentPort.postMessage(await login);
            parentPort.unref();
        });
    });
    const exit = once(worker, 'exit');
    const gate = new Int32Array(new SharedArrayBuffer(4));
    worker.postMessage(gate);
    const modal = await device.nextModal();
    await modal.receive({ resultCode: 0, resultMessage: 'mine', playableTime: 1 });
    await device.clock.advance(100000);
    assert.equal(countLogs('DoMessageBackSuccess'), 0);
    Atomics.store(gate, 0, 1);
    Atomics.notify(gate, 0);
    assert.equal(await nextMessage(worker), 'mine');
    await exit;
    assert.deepEqual([device.modals().at(-1).isOpen, countLogs('DoMessageBackSuccess release context')], [false, 1]);
});
