'use strict';

// The time limit that an answer sets: its timer, its page and the end of the game.

const assert = require('node:assert/strict');
const { answer, device, expectChild, game, start, test, timeUp, wantOf } = require('./support');

const login = (playableTime, more = {}) => ['receive', { resultCode: 0, resultMessage: 'data', playableTime, ...more }];
const MINUTE = 60000;

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
