'use strict';

const assert = require('node:assert/strict');
const { answer, countLogs, device, ends, expectChild, game, start, test, testTexts, timeUp, turn, wantOf } =
    require('./support');

const { clock } = device;
const UNDER_AGE = 'The user is under age.';
const REJECTED = ['rejected', 1002000006, 'The user is under age or not real-name.'];
const limit = (playableTime, more = {}) => ['receive', { resultCode: 0, resultMessage: 'data', playableTime, ...more }];

/** What the listeners of "gameAddictionPrevented" hear. */
function listen() {
    const heard = [];
    device.setSystemApp(true);
    game.on('gameAddictionPrevented', (event) => heard.push(event));
    game.on('playerChanged', (event) => heard.push(['playerChanged', event]));
    return heard;
}

async function isReleased(modal) {
    const before = countLogs('baseContext is null');
    await answer(modal, ['release', 0]);
    return countLogs('baseContext is null') > before;
}

testTexts('quickGameLogin', 'quickGameLoginParam', [
    ['an object without an id as an empty one', {}, '{"gameAppId":""}'],
    ['an id that is a number as an empty one', { gameAppId: 123 }, '{"gameAppId":""}'],
    ['an id in any script', { gameAppId: '"\u9f99"\u{1f409}' }, '{"gameAppId":"\\"\u9f99\\"\u{1f409}"}'],
    ['an id cut at 4096 bytes', { gameAppId: `a${'\u9f99'.repeat(1667)}` },
        `{"gameAppId":"a${'\u9f99'.repeat(1365)}"}`],
]);

for (const [given, events] of [
    [['result', 1002000006], [UNDER_AGE]],
    [['receive', { resultCode: 1002000006 }], []],
    [['error', 1002000006], []],
]) {
    test(`${given[0]} 1002000006 rejects a quick login and raises ${events.length} events`, async () => {
        const heard = listen();
        const request = start('quickGameLogin');
        await answer(request.modal, given);
        assert.deepEqual([request.state, heard, request.modal.isOpen], [REJECTED, events, false]);
        assert.deepEqual(ends().at(-1), ['quickGameLogin', 1002000006]);
        assert.equal(await isReleased(request.modal), true);
    });
}

for (const isPageLate of [false, true]) {
    const window = isPageLate ? 'a window that comes back late' : 'its window';
    test(`when its time is up, a quick game in ${window} is told, its page closes, and it goes on`, async () => {
        const heard = listen();
        const request = start('quickGameLogin');
        await answer(request.modal, limit(2, { endText: 'Bed time' }), ['release', 0]);
        assert.deepEqual([request.state, request.modal.isOpen], [['resolved', 'data'], false]);
        device[isPageLate ? 'hideWindow' : 'showWindow'](request.context);
        const waited = await timeUp();
        assert.ok(waited >= 120000 && waited <= 135000, `after ${waited} ms`);
        await clock.advance(3000);
        device.showWindow(request.context);
        await clock.advance(1000);
        const page = device.modals()[1];
        assert.deepEqual([page.want, page.isOpen], [wantOf(6, { endText: 'Bed time' }), true]);
        await clock.advance(10999);
        await turn();
        assert.deepEqual([heard, page.isOpen], [[], true]);
        await clock.advance(1);
        await turn();
        assert.deepEqual([heard, page.isOpen, clock.sleepers()], [[UNDER_AGE], false, 0]);
        await answer(page, ['result', 0]);
        assert.equal(await isReleased(page), true);
        assert.deepEqual([request.state, ends().length], [['resolved', 'data'], 3]);
    });
}

test('an under-age result ends the limit of a quick game, whose time then runs out without a trace', async () => {
    const heard = listen();
    const request = start('quickGameLogin');
    await answer(request.modal, limit(1), ['release', 0], ['result', 1002000006]);
    assert.deepEqual([heard, request.state, request.modal.isOpen], [[UNDER_AGE], ['resolved', 'data'], false]);
    assert.deepEqual([await isReleased(request.modal), await isReleased(request.modal)], [false, true]);
    await timeUp();
    await clock.advance(15000);
    await turn();
    assert.deepEqual([heard, device.modals().length, clock.sleepers()], [[UNDER_AGE], 1, 0]);
});

test('a quick game whose environment is gone gets no page and no event, and the process goes on', () => expectChild(
    async ({ device, startWorker, nextMessage, countLogs, timeUp, roundTrip }) => {
        device.clock.manual();
        const worker = startWorker(async ({ start, answer, parentPort }) => {
            await answer(start('quickGameLogin').modal, ['receive', { resultCode: 0, playableTime: 1 }]);
            parentPort.postMessage('limited');
        });
        await nextMessage(worker);
        await worker.terminate();
        await timeUp();
        await device.clock.advance(15000);
        console.log(device.modals().length, countLogs('DoGameEvent invalid context or env'), await roundTrip());
    }, { out: ['1 1 0-1'] }));
