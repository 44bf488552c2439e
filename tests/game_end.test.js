'use strict';

// The end of the game as seen by tests of a game: what is printed, who can handle it, and what works afterwards.

const assert = require('node:assert/strict');
const { device, expectChild, game, nextMessage, start, startWorker, test, timeUp } = require('./support');

const endBy = {
    answer: async ({ device, start }) => {
        start('savePlayerRole');
        start('getLocalPlayer');
        await device.modals()[1].result(1002000006);
    },
    timer: async ({ device, game }) => {
        device.clock.manual();
        game.launchAntiAddiction(device.createAbilityContext(), 60, 'text', 14 + 1);
        await device.clock.advance(200000);
    },
    'timer of a login': async ({ device, start, answer }) => {
        device.clock.manual();
        await answer(start('verifyLocalPlayer').modal, ['receive', { resultCode: 0, playableTime: 1 }]);
        await device.clock.advance(200000);
    },
};
const HANDLED = `(support) => {
    support.device.answerOn('caller');
    support.device.onExit(() => console.log('told'));
    support.start('init').modal.result(10);
}`;

for (const [what, body, env, code, said] of [
    ['an answer', endBy.answer, {}, 0, 'status 0: modal 2 (getLocalPlayer) answered 1002000006'],
    ['a timer', endBy.timer, {}, 0, 'status 0: the time to play that launchAntiAddiction began is over'],
    ['a timer of a login', endBy['timer of a login'], {}, 0, 'status 0: the time to play that verifyLocalPlayer began'],
    ['an answer, with a status', endBy.answer, { GAMEAPI_EXIT_STATUS: '3' }, 3, 'status 3: modal 2 (getLocalPlayer)'],
    ['an answer in silence', endBy.answer, { GAMEAPI_LOG: 'off' }, 0, null],
    ['an answer on the JS thread, though handled', HANDLED, {}, 70, 'status 70, as onExit cannot help'],
]) {
    test(`a game that ${what} ends says so, and why`, async () => {
        const { stderr } = await expectChild(body, { code, env: { GAMEAPI_LOG: '', ...env } });
        const lines = stderr.split('\n').filter((line) => line.startsWith('game device: the module ends the process'));
        assert.deepEqual(lines.map((line) => line.includes(said)), said ? [true] : [], stderr);
    });
}

test('a handled end lets the process go on: it is told once, and every answer is refused until a reset', async () => {
    const ends = [];
    for (const [method, code] of [['init', 1002000011], ['bindPlayer', 10], ['getLocalPlayer', 1002000006]]) {
        device.reset();
        device.onExit((end) => ends.push(end));
        const [last, other] = [start(method), start('unbindPlayer')];
        const answers = [last.modal.result(code), other.modal.result(0), last.modal.receive({ resultCode: 10 })];
        const outcomes = await Promise.allSettled(answers);
        assert.deepEqual(outcomes.map(({ reason }) => /the game has ended/.test(reason?.message)), [false, true, true]);
        assert.deepEqual(ends.splice(0), [{ reason: 'answer', requestType: last.modal.want.parameters.requestType, code }]);
        device.reset();
        const next = start('init');
        await next.modal.result(0);
        assert.deepEqual([next.state, other.state], [['resolved', undefined], ['pending']]);
    }
});

test('a handled end by a timer is told on the thread of each handler, and the clock runs on', async () => {
    const ends = [];
    device.onExit((end) => ends.push(end));
    const worker = startWorker(({ device, parentPort }) => {
        device.onExit((end) => parentPort.postMessage(end));
        parentPort.once('message', () => {});
        parentPort.postMessage('ready');
    });
    await nextMessage(worker);
    game.launchAntiAddiction(device.createAbilityContext(), 20, 'text', 12);
    game.launchAntiAddiction(device.createAbilityContext(), 30, 'text', 6);
    const told = nextMessage(worker);
    await timeUp();
    await device.clock.advance(100000);
    const end = { reason: 'timer', requestType: 12, code: undefined };
    assert.deepEqual([ends, await told, device.clock.sleepers()], [[end], end, 0]);
    await worker.terminate();
});

test('a reset takes the handler back', () => expectChild(async ({ device, start }) => {
    device.onExit(() => console.log('told'));
    device.reset();
    await start('init').modal.result(10);
    console.log('went on');
}));
