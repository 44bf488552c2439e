'use strict';

// The time limit that an answer sets: its timer, its page and the end of the game.

const assert = require('node:assert/strict');
const { RELEASED, answered, assertAgreesOnBoth, callOf, wait, window } = require('./model/oracle');
const { answer, device, expectChild, game, start, test, timeUp, wantOf } = require('./support');

const login = (playableTime, more = {}) => ['receive', { resultCode: 0, resultMessage: 'data', playableTime, ...more }];
const MINUTE = 60000;
const LIMITED = answered(login(1));
const OPENED = wait(MINUTE + 15000);

for (const [what, ...steps] of [
    ['outlives every answer and release', LIMITED, ...[['result', 0], ['release', 0], ['error', 401], ['error', 5],
        ['result', 5], ['release', 1]].map((each) => answered(each)), OPENED, RELEASED],
    ['has its page wait for a window that is away', LIMITED, window('hide'), OPENED, wait(3000), window('show'),
        wait(1000), wait(15000)],
    ['has no answer to give again when its page finds no window', LIMITED, window('hide'), OPENED, wait(5000),
        wait(10000)],
]) {
    test(`a time to play ${what}`, async () => {
        for (const name of ['getLocalPlayer', 'verifyLocalPlayer', 'quickGameLogin']) {
            await assertAgreesOnBoth([callOf(name), ...steps]);
        }
    });
}

test('the page has its text, the trace of that moment and its own modal', async () => {
    const request = start('getLocalPlayer');
    await answer(request.modal, login(1, { endText: 'Time is up' }));
    game.syncTraceId('late');
    const waited = await timeUp();
    assert.ok(waited >= MINUTE && waited <= MINUTE + 15000, `after ${waited} ms`);
    const [, page] = device.modals();
    assert.deepEqual(page.want, wantOf(6, { endText: 'Time is up', traceId: 'late' }));
    assert.deepEqual([page.config, page.isOpen, page.id === request.modal.id], [request.modal.config, true, false]);
});

test('a timer without its environment opens no page, and ends the process', async () => {
    const { stderr } = await expectChild(async ({ device, startWorker, nextMessage, countLogs, timeUp }) => {
        process.exitCode = 7;
        device.clock.manual();
        const worker = startWorker(async ({ start, answer, parentPort }) => {
            await answer(start('getLocalPlayer').modal, ['receive', { resultCode: 0, playableTime: 1 }]);
            parentPort.postMessage('limited');
        });
        await nextMessage(worker);
        await worker.terminate();
        await timeUp();
        console.log(device.modals().length, countLogs('StartUIExtensionAbility invalid env'));
        await device.clock.advance(15000);
        console.log('went on');
    }, { out: ['1 1'], env: { GAMEAPI_LOG: 'I' } });
    assert.ok(stderr.includes('launched anti-addiction ability.'));
});
