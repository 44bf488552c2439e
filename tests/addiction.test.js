'use strict';

const assert = require('node:assert/strict');
const { answer, countLogs, device, ends, expectChild, game, sleepers, start, test, timeUp, turn, wantOf } =
    require('./support');

const { clock } = device;
const login = (playableTime, more = {}) => ['receive', { resultCode: 0, resultMessage: 'data', playableTime, ...more }];
const MINUTE = 60000;

/** A request that was answered with a limit, its timer asleep. */
async function limited(name, playableTime, more) {
    const request = start(name);
    await answer(request.modal, login(playableTime, more));
    return request;
}

for (const [name, kind, parameters, timers] of [
    ['getLocalPlayer', 'receive', { playableTime: 1 }, 1],
    ['getLocalPlayer', 'receive', { playableTime: 1000000 }, 1],
    ['verifyLocalPlayer', 'receive', { playableTime: 1 }, 1],
    ['quickGameLogin', 'receive', { playableTime: 1 }, 1],
    ['getLocalPlayer', 'receive', {}, 0],
    ['getLocalPlayer', 'receive', { playableTime: 0 }, 0],
    ['getLocalPlayer', 'receive', { playableTime: -5 }, 0],
    ['getLocalPlayer', 'receive', { playableTime: '1' }, 0],
    ['getLocalPlayer', 'receive', { playableTime: 1.5 }, 0],
    ['getLocalPlayer', 'receive', { resultCode: 401, playableTime: 1 }, 0],
    ['getLocalPlayer', 'receive', { resultCode: 9, playableTime: 1 }, 0],
    ['getLocalPlayer', 'result', { playableTime: 1 }, 0],
    ['bindPlayer', 'receive', { playableTime: 1 }, 0],
    ['init', 'receive', { playableTime: 1 }, 0],
    ['prePurchase', 'receive', { playableTime: 1 }, 0],
    ['unionLogin', 'receive', { playableTime: 1 }, 0],
    ['launchWelcomeBanner', 'receive', { playableTime: 1 }, 0],
]) {
    const given = `${kind} of ${JSON.stringify(parameters)}`;
    test(`${name} with a ${given} starts ${timers ? 'a' : 'no'} timer`, async () => {
        const { modal } = start(name);
        const args = kind === 'receive' ? [{ resultCode: 0, ...parameters }] : [0, parameters];
        await answer(modal, [kind, ...args]);
        assert.equal(await sleepers(), timers);
    });
}

test('the page opens when the time is up, with its text, the trace of that moment and a modal of its own', async () => {
    const request = await limited('getLocalPlayer', 1, { endText: 'Time is up' });
    assert.deepEqual([request.state, ends()], [['resolved', 'data'], [['getLocalPlayer', 0]]]);
    game.syncTraceId('late');
    const waited = await timeUp();
    assert.ok(waited >= MINUTE && waited <= MINUTE + 15000, `after ${waited} ms`);
    assert.equal(device.modals().length, 2);
    const page = device.modals()[1];
    assert.deepEqual(page.want, wantOf(6, { endText: 'Time is up', traceId: 'late' }));
    assert.deepEqual([page.config, page.isOpen], [request.modal.config, true]);
    assert.notEqual(page.id, request.modal.id);
    assert.equal(await sleepers(), 1);
});

test('a page without a text says so by an empty one', async () => {
    await limited('verifyLocalPlayer', 1);
    await timeUp();
    assert.deepEqual(device.modals()[1].want, wantOf(6, { endText: '' }));
});

test('one request has one timer, and another request another', async () => {
    const request = await limited('getLocalPlayer', 2);
    await answer(request.modal, login(1), login(1));
    assert.equal(await sleepers(), 1);
    await clock.advance(MINUTE + 15000);
    assert.equal(countLogs('seconds end'), 0);
    await limited('verifyLocalPlayer', 5);
    assert.equal(await sleepers(), 2);
});

for (const [when, thread] of [['after it reached JS', 'ui'], ['before it reached JS', 'caller']]) {
    test(`no release and no later answer, ${when}, ends a request whose timer runs`, async () => {
        const request = start('getLocalPlayer');
        const more = [login(1), ['result', 0], ['release', 0], ['error', 401], ['error', 5], ['result', 5]];
        device.answerOn(thread);
        const first = answer(request.modal, login(1));
        await (thread === 'ui' ? first : Promise.all(more.map(([kind, ...args]) => request.modal[kind](...args))));
        await answer(request.modal, ...more);
        assert.deepEqual([request.modal.isOpen, request.state], [false, ['resolved', 'data']]);
        assert.equal(countLogs('baseContext is null'), 0);
        assert.ok(countLogs('OnError message has been back') >= 1);
        assert.ok(countLogs('ResetContext anti-addiction keep context') >= 1);
        await timeUp();
        assert.equal(device.modals().length, 2);
        await answer(device.modals()[1], ['release', 0]);
        assert.deepEqual([device.modals()[1].isOpen, countLogs('baseContext is null')], [false, 0]);
    });
}

test('the page waits for a window that is away when the time is up', async () => {
    const request = await limited('getLocalPlayer', 1);
    device.hideWindow(request.context);
    await timeUp();
    assert.deepEqual([device.modals().length, await sleepers()], [1, 2]);
    device.showWindow(request.context);
    await clock.advance(1000);
    assert.deepEqual(device.modals()[1].want, wantOf(6, { endText: '' }));
});

test('an answer that was given already is not given again when the page finds no window', async () => {
    const request = await limited('getLocalPlayer', 1);
    device.hideWindow(request.context);
    await timeUp();
    assert.equal(await sleepers(), 2);
    await clock.advance(5000);
    await turn();
    assert.equal(countLogs('DelayStartUIExtensionAbility need not message back'), 1);
    assert.deepEqual([request.state, await sleepers()], [['resolved', 'data'], 1]);
});

for (const name of ['getLocalPlayer', 'verifyLocalPlayer']) {
    test(`${name} lets the process end with status 0 fifteen seconds after the page opened`, () => expectChild(
        async ({ device, start, answer }, name) => {
            process.exitCode = 7;
            process.on('exit', () => console.log('exit listeners ran'));
            device.clock.manual();
            const { modal } = start(name);
            await answer(modal, ['receive', { resultCode: 0, playableTime: 1 }]);
            while (device.modals().length < 2) {
                await device.clock.advance(1000);
            }
            console.log('page');
            await device.clock.advance(14999);
            console.log('alive');
            await device.clock.advance(1);
            console.log('went on');
        }, { args: [name], out: ['page', 'alive'] }));
}

test('a timer whose environment is gone opens no page and still ends the process', async () => {
    const { stderr } = await expectChild(async ({ device, startWorker, nextMessage, countLogs }) => {
        process.exitCode = 7;
        device.clock.manual();
        const worker = startWorker(async ({ start, answer, parentPort }) => {
            const { modal } = start('getLocalPlayer');
            await answer(modal, ['receive', { resultCode: 0, playableTime: 1 }]);
            parentPort.postMessage('limited');
        });
        await nextMessage(worker);
        await worker.terminate();
        while (countLogs('seconds end') === 0) {
            await device.clock.advance(1000);
        }
        console.log(device.modals().length, countLogs('StartUIExtensionAbility invalid env'));
        await device.clock.advance(15000);
        console.log('went on');
    }, { out: ['1 1'], env: { GAMEAPI_LOG: 'I' } });
    assert.ok(stderr.includes('launched anti-addiction ability.'));
});
