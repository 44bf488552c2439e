'use strict';

const assert = require('node:assert/strict');
const { REQUESTS, answer, countLogs, device, ends, expectChild, game, start, test, turn } = require('./support');

const OK = { resultCode: 0, resultMessage: 'data' };
const OLD = { resultCode: 0, resultMessage: 'later' };
const CHANGED = { resultCode: 1002000015, resultInfo: 'who' };
const coded = (resultCode) => ({ resultCode, resultInfo: 'who', resultMessage: 'data' });
const resolved = (value) => ['resolved', value];
const rejected = (code) => ['rejected', code];
const PENDING = ['pending'];

/** Whether the request behind `modal` still lives; asks by a release, which must be its last answer. */
async function isKept(modal) {
    const before = countLogs('OnRelease baseContext is null');
    await answer(modal, ['release', 0]);
    return countLogs('OnRelease baseContext is null') === before;
}

/** What became of a request: its state without the text, whether its modal is open and whether it still lives. */
async function fate({ state, modal }) {
    return [state.slice(0, 2), modal.isOpen ? 'open' : 'closed', await isKept(modal) ? 'kept' : 'released'];
}

function heardEvents() {
    const heard = [];
    game.on('playerChanged', ({ resultInfo }) => heard.push(resultInfo));
    return heard;
}

// What ends the game process, and the line that is out by then.
for (const [name, kind, code, log] of [
    ['bindPlayer', 'result', 10, 'OnResultForModal game exit'],
    ['getLocalPlayer', 'receive', 10, 'OnReceive game exit'],
    ['init', 'result', 1002000011, 'game exit when init not agreed agreement.'],
    ['init', 'receive', 1002000011, 'game exit when init not agreed agreement.'],
    ['init', 'receive', 1002000006, 'game exit when anti-addiction'],
    ['getLocalPlayer', 'result', 1002000006, 'game exit when anti-addiction'],
    ['verifyLocalPlayer', 'receive', 1002000006, 'game exit when anti-addiction'],
]) {
    test(`${name} with ${kind} ${code} ends the process at once, with what was logged out`, async () => {
        const { stderr } = await expectChild(async ({ start }, name, kind, code) => {
            process.exitCode = 7;
            process.on('exit', () => console.log('exit listeners ran'));
            const request = start(name);
            await request.modal[kind](kind === 'receive' ? { resultCode: code } : code);
            console.log('went on', request.state);
        }, { args: [name, kind, code], env: { GAMEAPI_LOG: 'I' } });
        assert.ok(stderr.includes(log));
        assert.ok(stderr.includes(kind === 'receive' ? 'OnReceive game exit' : 'OnResultForModal game exit'));
    });
}

test('an answer that ends the process does so after its environment is gone', () => expectChild(
    async ({ device, startWorker, nextMessage, countLogs, answer }) => {
        const worker = startWorker(({ start, parentPort }) => {
            start('getLocalPlayer');
            parentPort.postMessage('started');
        });
        await nextMessage(worker);
        await worker.terminate();
        await answer(device.modals()[0], ['receive', { resultCode: 0 }], ['receive', { resultCode: 5 }]);
        console.log(countLogs('OnReceive invalid env'), device.analytics.events().length);
        await device.modals()[0].receive({ resultCode: 10 });
        console.log('went on');
    }, { out: ['2 0'] }));

// [request, answer, its state, its modal, its record, "playerChanged" events]
for (const [name, given, state, modal, record, events = []] of [
    ['init', ['result', 0], resolved(), 'closed', 'released'],
    ['init', ['result', 1002000003], resolved(), 'closed', 'released'],
    ['init', ['result', 1002000015], resolved(), 'closed', 'released'],
    ['init', ['receive', OK], resolved(), 'closed', 'released'],
    ['init', ['receive', coded(401)], resolved(), 'closed', 'released'],
    ['init', ['receive', CHANGED], rejected(1002000015), 'closed', 'released', ['who']],
    ['init', ['receive', {}], resolved(), 'closed', 'released'],
    ['init', ['result', 9, { resultInfo: 'who' }], PENDING, 'open', 'kept', ['who']],
    ['init', ['error', 10], resolved(), 'closed', 'released'],
    ['init', ['error', 1002000011], resolved(), 'closed', 'released'],
    ['getLocalPlayer', ['result', 0, { resultMessage: 'data' }], resolved(), 'closed', 'released'],
    ['getLocalPlayer', ['result', 1002000011], rejected(1002000011), 'closed', 'released'],
    ['getLocalPlayer', ['result', 9], PENDING, 'open', 'kept', ['']],
    ['getLocalPlayer', ['receive', OK], resolved('data'), 'open', 'kept'],
    ['getLocalPlayer', ['receive', coded(1002000011)], rejected(1002000011), 'closed', 'released'],
    ['getLocalPlayer', ['receive', CHANGED], rejected(1002000015), 'closed', 'released', ['who']],
    ['getLocalPlayer', ['receive', coded(9)], PENDING, 'open', 'kept', ['who']],
    ['getLocalPlayer', ['receive', {}], rejected(1002000001), 'closed', 'released'],
    ['getLocalPlayer', ['receive', { resultCode: '0' }], rejected(1002000001), 'closed', 'released'],
    ['getLocalPlayer', ['receive', { resultCode: 0.5 }], rejected(1002000001), 'closed', 'released'],
    ['getLocalPlayer', ['error', 9], rejected(1002000001), 'closed', 'released'],
    ['bindPlayer', ['result', 0, { resultMessage: 'data' }], resolved(), 'closed', 'released'],
    ['bindPlayer', ['result', 1002000012], rejected(1002000012), 'closed', 'released'],
    ['bindPlayer', ['result', 1002000015, { resultInfo: 'who' }], rejected(1002000015), 'closed', 'released'],
    ['bindPlayer', ['result', -1], rejected(1002000001), 'closed', 'released'],
    ['bindPlayer', ['receive', OK], resolved(), 'closed', 'released'],
    ['bindPlayer', ['receive', coded(1002000012)], rejected(1002000012), 'closed', 'released'],
    ['bindPlayer', ['receive', CHANGED], rejected(1002000015), 'closed', 'released', ['who']],
    ['bindPlayer', ['error', 10], rejected(1002000001), 'closed', 'released'],
    ['bindPlayer', ['error', 1002000006], rejected(1002000006), 'closed', 'released'],
    ['bindPlayer', ['error', 0, 'name', 'message'], resolved(), 'closed', 'released'],
    ['unbindPlayer', ['result', 1002000013], rejected(1002000013), 'closed', 'released'],
    ['unbindPlayer', ['receive', OK], resolved(), 'closed', 'released'],
    ['verifyLocalPlayer', ['result', 0], resolved(), 'closed', 'released'],
    ['verifyLocalPlayer', ['result', 202], rejected(202), 'closed', 'released'],
    ['verifyLocalPlayer', ['receive', OK], resolved(), 'open', 'kept'],
    ['verifyLocalPlayer', ['receive', coded(1002000009)], rejected(1002000009), 'closed', 'released'],
]) {
    test(`${name} with ${JSON.stringify(given)} is ${state[0]}, its modal ${modal}, its record ${record}`, async () => {
        const heard = heardEvents();
        const request = start(name);
        await answer(request.modal, given);
        assert.deepEqual(await fate(request), [state, modal, record]);
        assert.deepEqual(heard, events);
        const [outcome, code = 0] = state;
        assert.deepEqual(ends().slice(1), outcome === 'pending' ? [] : [[name, outcome === 'rejected' ? code : 0]]);
    });
}

test('a success that is received by a request without data is logged as not supported', async () => {
    for (const [name, count] of [['init', 1], ['bindPlayer', 2], ['unbindPlayer', 3], ['verifyLocalPlayer', 3]]) {
        await answer(start(name).modal, ['receive', OK]);
        assert.equal(countLogs('DealResponseForReceive API not supported'), count, name);
    }
});

// A second answer is never delivered: [request, first, second, the modal after it, the record after it]
for (const [name, first, second, modal, record] of [
    ['getLocalPlayer', ['receive', OK], ['receive', OLD], 'closed', 'kept'],
    ['getLocalPlayer', ['receive', OK], ['receive', CHANGED], 'closed', 'kept'],
    ['getLocalPlayer', ['receive', OK], ['receive', coded(9)], 'open', 'kept'],
    ['getLocalPlayer', ['receive', OK], ['receive', coded(401)], 'closed', 'released'],
    ['getLocalPlayer', ['receive', OK], ['result', 9], 'open', 'kept'],
    ['getLocalPlayer', ['receive', OK], ['result', 0], 'closed', 'released'],
    ['getLocalPlayer', ['receive', OK], ['result', 5], 'closed', 'released'],
    ['getLocalPlayer', ['receive', OK], ['error', 5], 'closed', 'released'],
    ['getLocalPlayer', ['receive', OK], ['release', 0], 'closed', 'released'],
    ['getLocalPlayer', ['receive', OK], ['release', -1], 'closed', 'released'],
    ['verifyLocalPlayer', ['receive', OK], ['receive', OLD], 'closed', 'kept'],
    ['verifyLocalPlayer', ['receive', OK], ['release', 3], 'closed', 'released'],
    ['getLocalPlayer', ['result', 0], ['receive', OLD], 'closed', 'released'],
    ['getLocalPlayer', ['error', 401], ['error', 202], 'closed', 'released'],
    ['bindPlayer', ['result', 1002000012], ['result', 0], 'closed', 'released'],
    ['bindPlayer', ['receive', OK], ['error', 401], 'closed', 'released'],
    ['init', ['result', 0], ['receive', CHANGED], 'closed', 'released'],
    ['init', ['error', 401], ['release', 1], 'closed', 'released'],
]) {
    const title = `${name} answered by ${JSON.stringify(first)}, then ${JSON.stringify(second)}`;
    test(`${title}, is settled by the first alone`, async () => {
        const request = start(name);
        await answer(request.modal, first);
        const { state } = request;
        assert.notEqual(state[0], 'pending');
        await answer(request.modal, second);
        assert.equal(request.state, state);
        assert.deepEqual((await fate(request)).slice(1), [modal, record]);
        assert.equal(ends().length, 1);
    });

    // The answering thread may be as fast as it likes: nothing of the first has reached JS when the second comes.
    for (const thread of ['ui', 'caller']) {
        test(`${title} at once on the ${thread} thread, ends the same way`, async () => {
            const model = start(name);
            await answer(model.modal, first);
            device.answerOn(thread);
            const request = start(name);
            await Promise.all([first, second].map(([kind, ...args]) => request.modal[kind](...args)));
            await turn();
            assert.deepEqual(request.state, model.state);
            assert.deepEqual((await fate(request)).slice(1), [modal, record]);
            assert.equal(ends().length, 2);
        });
    }
}

test('of two errors before anything reached JS only the first is told', async () => {
    device.answerOn('caller');
    const request = start('getLocalPlayer');
    await Promise.all([request.modal.error(1002000002), request.modal.error(1002000003), request.modal.error(401)]);
    await turn();
    assert.deepEqual(request.state.slice(0, 2), rejected(1002000002));
    assert.deepEqual(ends(), [['getLocalPlayer', 1002000002]]);
});

test('a code that is a game event leaves the request to a later answer', async () => {
    const request = start('bindPlayer');
    await answer(request.modal, ['result', 9], ['receive', coded(9)], ['result', 9]);
    assert.deepEqual(request.state, PENDING);
    await answer(request.modal, ['result', 0]);
    assert.deepEqual(await fate(request), [resolved(), 'closed', 'released']);
});

// A release never answers, and closes by the request's type and the release code.
for (const [name, closesAt0] of [
    ['init', false], ['getLocalPlayer', true], ['bindPlayer', false], ['unbindPlayer', false],
    ['verifyLocalPlayer', true],
]) {
    for (const code of [0, 1, -1]) {
        const closes = closesAt0 || code !== 0;
        const modal = closes ? 'closed' : 'open';
        test(`${name} released by ${code} before an answer stays pending, its modal ${modal}`, async () => {
            const request = start(name);
            await answer(request.modal, ['release', code], ['release', code]);
            assert.deepEqual([request.state, request.modal.isOpen, ends()], [PENDING, !closes, []]);
            assert.equal(countLogs('ModalUIExtension meet exception and close modal'), closes && !closesAt0 ? 2 : 0);
            assert.equal(countLogs('CloseModalUIExtension closed'), closes ? 1 : 0);
            await answer(request.modal, ['result', 0]);
            assert.deepEqual(await fate(request), [resolved(), 'closed', 'released']);
        });
    }
}

test('a modal that cannot be closed for want of a window is left, and its request settled', async () => {
    const request = start('bindPlayer');
    device.hideWindow(request.context);
    await answer(request.modal, ['result', 1002000012]);
    assert.deepEqual(request.state.slice(0, 2), rejected(1002000012));
    assert.equal(countLogs('CloseModalUIExtension closed'), 0);
});

test('requests of one context are routed apart', async () => {
    const context = device.createAbilityContext();
    const requests = Object.keys(REQUESTS).map((name) => start(name, context));
    await answer(requests[2].modal, ['error', 401]);
    await answer(requests[1].modal, ['receive', OK]);
    assert.deepEqual(requests.map(({ state }) => state[0]), ['pending', 'resolved', 'rejected', 'pending', 'pending']);
    assert.deepEqual(requests.map(({ modal }) => modal.isOpen), [true, true, false, true, true]);
});
