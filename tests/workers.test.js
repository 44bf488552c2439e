'use strict';

const assert = require('node:assert/strict');
const { answer, countLogs, device, expectChild, game, nextMessage, once, start, startWorker, test, turn } =
    require('./support');

// What an environment can be in the middle of when it ends; each runs in it, on the manual clock.
const UNFINISHED = {
    'a modal open': ({ start }) => start('bindPlayer'),
    'a callback waiting': ({ game, device }) => game.init(device.createAbilityContext(), () => console.log('called')),
    'deliveries queued': ({ device, start, game }) => {
        device.answerOn('caller');
        game.on('playerChanged', () => console.log('heard'));
        for (let i = 0; i < 20; ++i) {
            start('getLocalPlayer').modal.receive({ resultCode: i % 2 ? 0 : 1002000015 });
        }
    },
    'a delayed start asleep': ({ device, start }) => start('init', device.createAbilityContext({ window: false })),
    'a timer asleep': async ({ start, answer }) => {
        const { modal } = start('getLocalPlayer');
        await answer(modal, ['receive', { resultCode: 0, playableTime: 1000 }]);
    },
};
const ENDS = {
    'process.exit()': () => process.exit(3),
    'an uncaught exception': () => {
        throw new Error('on purpose');
    },
};

for (const [state, begin] of Object.entries(UNFINISHED)) {
    for (const [end, leave] of [['terminate()', () => { for (;;); }], ...Object.entries(ENDS)]) {
        test(`a Worker with ${state} that ends by ${end} harms and leaves nothing`, () => expectChild(
            `async ({ device, startWorker, nextMessage, once, answer, roundTrip, countLogs }) => {
                device.clock.manual();
                const worker = startWorker(async (support) => {
                    await (${begin})(support);
                    support.parentPort.postMessage('begun');
                    (${leave})();
                });
                worker.on('error', () => {});
                const exited = new Promise((resolve) => worker.once('exit', resolve));
                if (${end === 'terminate()'}) {
                    await nextMessage(worker);
                    await worker.terminate();
                }
                await exited;
                device.answerOn('ui');
                for (const modal of device.modals()) {
                    await answer(modal, ['receive', { resultCode: 9 }], ['result', 0], ['error', 401], ['release', 1]);
                }
                await device.clock.advance(5000);
                console.log(countLogs('DeleteEnvInfo delete env success'), countLogs('refused'), await roundTrip());
            }`, { out: ['1 0 0-1'] }));
    }

    for (const [end, leave, code, out] of [
        ['process.exit()', ENDS['process.exit()'], 3, []],
        ['an uncaught exception', ENDS['an uncaught exception'], 1, []],
        ['its last line', () => {}, 0, { 'deliveries queued': Array(10).fill('heard') }[state] || []],
    ]) {
        // A pending request would rightly keep a process from ending with its last line.
        const ending = end === 'its last line' && /open|waiting|start/.test(state) ? 'support.device.reset();' : '';
        test(`a process with ${state} ends cleanly by ${end}`, () => expectChild(`async (support) => {
            support.device.clock.manual();
            await (${begin})(support);
            ${ending}
            (${leave})();
        }`, { code, out }));
    }
}

test('a new Worker does not get the answer of one that has ended, nor the new one\'s stays out', () => expectChild(
    async ({ device, startWorker, nextMessage, answer }) => {
        const open = async () => {
            const worker = startWorker(async ({ game, device, parentPort }) => {
                parentPort.on('message', () => {});
                parentPort.postMessage('begun');
                parentPort.postMessage(await game.getLocalPlayer(device.createAbilityContext()));
                parentPort.unref();
            });
            await nextMessage(worker);
            return { worker, modal: await device.nextModal() };
        };
        for (let i = 0; i < 5; ++i) {
            const old = await open();
            await old.worker.terminate();
            const young = await open();
            const told = nextMessage(young.worker);
            await answer(old.modal, ['receive', { resultCode: 0, resultMessage: 'old' }]);
            await answer(young.modal, ['receive', { resultCode: 0, resultMessage: 'young' }]);
            console.log(await told);
        }
    }, { out: Array(5).fill('young') }));

test('each of several Workers hears its own events alone and gets its own answers', async () => {
    const heard = [];
    const note = ({ resultInfo }) => heard.push(resultInfo);
    game.on('playerChanged', note);
    const play = async ({ game, roundTrip, turn, parentPort }, i) => {
        const heard = new Set();
        game.on('playerChanged', ({ resultInfo }) => heard.add(resultInfo));
        for (let round = 0; round < 20; ++round) {
            game.onEventCallback({ resultCode: 1002000015, resultInfo: `of ${i}` });
            await roundTrip();
        }
        await turn();
        game.off('playerChanged');
        parentPort.postMessage([...heard]);
    };
    const workers = Array.from({ length: 4 }, (_, i) => startWorker(play, i));
    const exits = workers.map((worker) => once(worker, 'exit'));
    assert.deepEqual(await Promise.all(workers.map(nextMessage)), [['of 0'], ['of 1'], ['of 2'], ['of 3']]);
    await Promise.all(exits);
    assert.deepEqual([heard, countLogs('refused')], [[], 0]);
    game.onEventCallback({ resultCode: 1002000015, resultInfo: 'of the main thread' });
    await turn();
    assert.deepEqual(heard, ['of the main thread']);
});

test('a Worker\'s listeners go with it, and the trace identifier that it set stays for all', async () => {
    const worker = startWorker(({ game }) => {
        game.on('playerChanged', () => {});
        game.syncTraceId('of the Worker');
    });
    await once(worker, 'exit');
    assert.equal(countLogs('CleanupEventCallback delete playerChanged finished'), 1);
    game.onEventCallback({ resultCode: 1002000015 });
    assert.equal(countLogs('OnEventCallback eventType playerChanged not existed'), 0);
    assert.equal(countLogs('OnEventCallback uv_queue_work success'), 1);
    game.off('playerChanged');
    game.onEventCallback({ resultCode: 1002000015 });
    assert.equal(countLogs('OnEventCallback eventType playerChanged not existed'), 1);
    const request = start('init');
    assert.equal(request.modal.want.parameters.traceId, 'of the Worker');
    await answer(request.modal, ['result', 0]);
});

test('an answer that one environment gives settles the request of another', async () => {
    const request = start('getLocalPlayer');
    const worker = startWorker(async ({ device }, id) => {
        const modal = device.modals().find((each) => each.id === id);
        await modal.receive({ resultCode: 0, resultMessage: `for ${modal.want.parameters.requestType}` });
    }, request.modal.id);
    await once(worker, 'exit');
    await turn();
    assert.deepEqual(request.state, ['resolved', 'for 2']);
    assert.equal(device.modals()[0].isOpen, true);
});
