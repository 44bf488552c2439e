'use strict';

// The end of the game as seen by tests of a game: what is printed, who can handle it, and what works afterwards.

const assert = require('node:assert/strict');
const { ask, device, expectChild, nextMessage, start, startWorker, test, timeUp } = require('./support');

// Run in a child process.
const END_BY = {
    'an answer': async ({ device, start }) => {
        start('savePlayerRole');
        start('getLocalPlayer');
        await device.modals()[1].result(1002000006);
    },
    'a timer': async ({ ask, device }) => {
        device.clock.manual();
        ask('launchAntiAddiction', 60, 'text', 14 + 1);
        await device.clock.advance(200000);
    },
    'a timer of a login': async ({ device, start, answer }) => {
        device.clock.manual();
        await answer(start('verifyLocalPlayer').modal, ['receive', { resultCode: 0, playableTime: 1 }]);
        await device.clock.advance(200000);
    },
    'an answer on the JS thread, though handled': ({ device, start }) => {
        device.answerOn('caller');
        device.onExit(() => console.log('handled'));
        start('init').modal.result(10);
    },
};

for (const { by, env, code = 0, says } of [
    { by: 'an answer', says: 'status 0: modal 2 (getLocalPlayer) answered 1002000006' },
    { by: 'a timer', says: 'status 0: the time to play that launchAntiAddiction began is over' },
    { by: 'a timer of a login', says: 'status 0: the time to play that verifyLocalPlayer began' },
    { by: 'an answer', env: { GAMEAPI_EXIT_STATUS: '3' }, code: 3, says: 'status 3: modal 2 (getLocalPlayer)' },
    { by: 'an answer', env: { GAMEAPI_LOG: 'off' } },
    { by: 'an answer on the JS thread, though handled', code: 70, says: 'status 70, as onExit cannot help' },
]) {
    test(`a game that ${by} ends says ${says || 'nothing in silence'}`, async () => {
        const { stderr } = await expectChild(END_BY[by], { code, env: { GAMEAPI_LOG: '', ...env } });
        const lines = stderr.split('\n').filter((line) => line.startsWith('game device: the module ends the process'));
        assert.deepEqual(lines.map((line) => line.includes(says)), says ? [true] : [], stderr);
    });
}

test('a handled end is reported once; every answer is refused until a reset', async () => {
    const ends = [];
    for (const [method, code] of [['init', 1002000011], ['bindPlayer', 10], ['getLocalPlayer', 1002000006]]) {
        device.reset();
        device.onExit((end) => ends.push(end));
        const [last, other] = [start(method), start('unbindPlayer')];
        const answers = [last.modal.result(code), other.modal.result(0), last.modal.receive({ resultCode: 10 })];
        const outcomes = await Promise.allSettled(answers);
        assert.deepEqual(outcomes.map(({ reason }) => /the game has ended/.test(reason?.message)), [false, true, true]);
        const { requestType } = last.modal.want.parameters;
        assert.deepEqual(ends.splice(0), [{ reason: 'answer', requestType, code }]);
        device.reset();
        const next = start('init');
        await next.modal.result(0);
        assert.deepEqual([next.state, other.state], [['resolved', undefined], ['pending']]);
    }
});

test('a handled end by a timer reaches each handler on its thread', async () => {
    const ends = [];
    device.onExit((end) => ends.push(end));
    const worker = startWorker(({ device, parentPort }) => {
        device.onExit((end) => parentPort.postMessage(end));
        parentPort.once('message', () => {});
        parentPort.postMessage('ready');
    });
    await nextMessage(worker);
    ask('launchAntiAddiction', 20, 'text', 12);
    ask('launchAntiAddiction', 30, 'text', 6);
    const reported = nextMessage(worker);
    await timeUp();
    await device.clock.advance(100000);
    const end = { reason: 'timer', requestType: 12, code: undefined };
    assert.deepEqual([ends, await reported, device.clock.sleepers()], [[end], end, 0]);
    await worker.terminate();
});

test('a reset takes the handler back', () => expectChild(async ({ device, start }) => {
    device.onExit(() => console.log('handled'));
    device.reset();
    await start('init').modal.result(10);
    console.log('went on');
}));
