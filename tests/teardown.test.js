'use strict';

// Environments end at every step of every scenario, in every way, one after the other in one process. Their pending
// operations end with them, and the main thread and the next environment are not affected.

const assert = require('node:assert/strict');
const { countLogs, device, expectChild, nextMessage, startWorker, test } = require('./support');
const { SCENARIOS, leftovers, playInWorker, playNext, prepare, refusals, runOut } = require('./support/scenarios.js');

// Each step is tried with both.
const ORDERS = ['fifo', 'any'];
const STATUS = { 'terminate()': 1, 'process.exit()': 7, 'an uncaught exception': 1, 'its own end': 0 };

/** Ends a Worker in one of the ways of ENDS. Resolves to its exit status. */
async function endOf(worker, end) {
    worker.on('error', () => {});
    const exited = new Promise((resolve) => worker.once('exit', resolve));
    await Promise.race([exited, new Promise((resolve) => worker.once('message', resolve))]);
    if (end === 'terminate()') {
        await worker.terminate();
    } else if (end === 'its own end') {
        await runOut();
    }
    return exited;
}

/** Gives late answers to requests whose environment may be gone, and checks that nothing is left over. */
async function assertUnharmed() {
    for (const modal of device.modals()) {
        await modal.receive({ resultCode: 9 });
        await modal.receive({ resultCode: 0, resultMessage: 'late' });
        await modal.result(0);
    }
    await runOut();
    assert.equal(await playNext(), 'resolved,next');
    assert.deepEqual([leftovers(), device.clock.sleepers()], [{ requests: 0, listeners: 0, environments: 0 }, 0]);
    // The page at the end of a time limit replaces the request's modal, which then stays open.
    const replaced = countLogs('launched anti-addiction ability.');
    assert.deepEqual([device.modals().filter(({ isOpen }) => isOpen).slice(replaced), refusals()], [[], []]);
}

for (const [scenario, { length: steps }] of Object.entries(SCENARIOS)) {
    for (const [i, [end, status]] of Object.entries(STATUS).entries()) {
        test(`${scenario}: an environment that ends by ${end} at any step`, async () => {
            for (let step = 0; step < steps; ++step) {
                prepare(['ui', 'caller'][step % 2]);
                device.queueOrder(ORDERS[(step + i) % 2]);
                assert.equal(await endOf(playInWorker(scenario, step, end), end), status, `step ${step}`);
                await assertUnharmed();
            }
        });
    }

    test(`${scenario}: a process that ends in the middle, or at the last step`, async () => {
        for (const end of ['process.exit()', 'an uncaught exception']) {
            for (const step of [steps >> 1, steps - 1]) {
                const env = { GAMEAPI_TEST_QUEUE_ORDER: ORDERS[step % 2] };
                await expectChild(({ ROOT }, ...args) => {
                    const { playUntil, prepare } = require(`${ROOT}/tests/support/scenarios.js`);
                    prepare('caller');
                    return playUntil(() => {}, ...args);
                }, { args: [scenario, step, end], code: STATUS[end], env });
            }
        }
    });
}

test('answers that come while their environment ends find it whole or gone', async () => {
    for (let round = 0; round < 20; ++round) {
        prepare('ui');
        device.queueOrder(ORDERS[round % 2], round);
        const worker = startWorker(({ game, start, parentPort }) => {
            game.on('playerChanged', () => {});
            Array.from({ length: 10 }, () => start('getLocalPlayer'));
            parentPort.postMessage('there');
        });
        await nextMessage(worker);
        const given = device.modals().flatMap((modal) => [modal.receive({ resultCode: 1002000015 }), modal.result(0)]);
        await Promise.all([worker.terminate(), ...given]);
        await assertUnharmed();
    }
});
