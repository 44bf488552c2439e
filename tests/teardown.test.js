'use strict';

// Environments end at every step of every scenario, in every way, one after the other in one process. Whatever was
// under way for them ends with them, and the main thread and the next environment are none the worse for it.

const assert = require('node:assert/strict');
const { after } = require('node:test');
const { device, nextMessage, startWorker, test } = require('./support');
const {
    SCENARIOS, Stage, endAllModals, leftovers, messages, playNext, prepare, runOut,
} = require('./support/scenarios.js');

// How a Worker ends from within, with the status that its end has.
const ENDS = {
    'terminate()': [1, () => { for (;;); }],
    'process.exit()': [7, () => process.exit(7)],
    'an uncaught exception': [1, () => {
        throw new Error('on purpose');
    }],
    // It does nothing any more, and ends when nothing holds it.
    'its own end': [0, () => new Promise(() => {})],
};
const MODES = ['ui', 'caller'];
const NOTHING = { contexts: 0, listeners: 0, environments: 0 };

let tornDown = 0;

const play = (scenario, step, leave) => startWorker(`async ({ ROOT, parentPort }) => {
    const { SCENARIOS, Stage } = require(ROOT + '/tests/support/scenarios.js');
    let left = ${step};
    const beforeStep = () => {
        if (left-- > 0) {
            return undefined;
        }
        parentPort.postMessage('there');
        return (${leave})();
    };
    await SCENARIOS[${JSON.stringify(scenario)}](new Stage({ beforeStep }));
}`);

async function countSteps(scenario) {
    let steps = 0;
    prepare('ui');
    await SCENARIOS[scenario](new Stage({ beforeStep: () => { ++steps; } }));
    await playNext();
    return steps;
}

/** Lets the Worker come to its end; its status. */
async function end(worker, how) {
    worker.on('error', () => {});
    const exited = new Promise((resolve) => worker.once('exit', resolve));
    await Promise.race([exited, new Promise((resolve) => worker.once('message', resolve))]);
    if (how === 'terminate()') {
        await worker.terminate();
    } else if (how === 'its own end') {
        await runOut();
        await endAllModals();
    }
    return exited;
}

/** What still comes for requests whose environment may be gone. */
async function answerLate() {
    for (const modal of device.modals()) {
        await modal.receive({ resultCode: 9 });
        await modal.receive({ resultCode: 0, resultMessage: 'late' });
        await modal.result(0);
    }
    await runOut();
    await endAllModals();
}

// Calls on an environment that is gone.
const refused = () => messages().filter((line) => line.includes(' refused: '));

// A page that opens when time is up takes the place of the request's modal, which nobody closes then.
function openTooLong() {
    const replaced = messages().filter((line) => line === 'launched anti-addiction ability.').length;
    return device.modals().filter(({ isOpen }) => isOpen).slice(replaced);
}

async function assertUnharmed() {
    await answerLate();
    assert.deepEqual(await playNext(), ['resolved', 'next']);
    assert.deepEqual([leftovers(), device.clock.sleepers()], [NOTHING, 0]);
    assert.deepEqual([openTooLong(), refused()], [[], []]);
}

for (const scenario of Object.keys(SCENARIOS)) {
    for (const [how, [status, leave]] of Object.entries(ENDS)) {
        test(`${scenario}: an environment that ends by ${how} at any step`, async () => {
            const steps = await countSteps(scenario);
            for (let step = 0; step < steps; ++step) {
                prepare(MODES[step % 2]);
                assert.equal(await end(play(scenario, step, leave), how), status, `step ${step}`);
                tornDown += 1;
                await assertUnharmed();
            }
        });
    }
}

test('answers that come while their environment ends find it whole or gone', async () => {
    for (let round = 0; round < 20; ++round) {
        prepare('ui');
        const worker = startWorker(({ game, start, parentPort }) => {
            game.on('playerChanged', () => {});
            for (let i = 0; i < 10; ++i) {
                start('getLocalPlayer');
            }
            parentPort.postMessage('there');
        });
        await nextMessage(worker);
        const given = device.modals().flatMap((modal) => [modal.receive({ resultCode: 1002000015 }), modal.result(0)]);
        await Promise.all([worker.terminate(), ...given]);
        tornDown += 1;
        await assertUnharmed();
    }
});

after(() => console.log(`${tornDown} environments torn down`));
