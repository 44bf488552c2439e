'use strict';

const assert = require('node:assert/strict');
const { CALLS, PAGES, REQUESTS, answer, countLogs, device, ends, expectChild, game, start, test, turn } =
    require('./support');

const ALL = Object.keys(CALLS);
const LAUNCHES = Object.keys(PAGES);
// Their page stays open after a success that was received.
const STAYING = ['getLocalPlayer', 'verifyLocalPlayer', 'unionLogin', 'quickGameLogin'];
const WITH_DATA = {
    result: ['prePurchase'],
    receive: ['getLocalPlayer', 'prePurchase', 'unionLogin', 'quickGameLogin'],
};

const OK = { resultCode: 0, resultMessage: 'data' };
const OLD = { resultCode: 0, resultMessage: 'later' };
const CHANGED = { resultCode: 1002000015, resultInfo: 'who' };
const coded = (resultCode) => ({ resultCode, resultInfo: 'who', resultMessage: 'data' });
const EVENT = null;

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

/** Whether a code ends the game process. */
const isEnding = (name, kind, code) => kind !== 'error' && (code === 10 ||
    (code === 1002000011 && name === 'init') || (code === 1002000006 && name !== 'quickGameLogin'));

// What ends the game process, and the line that is out by then.
for (const [name, kind, code, log] of [
    ['bindPlayer', 'result', 10, 'OnResultForModal game exit'],
    ['getLocalPlayer', 'receive', 10, 'OnReceive game exit'],
    ['quickGameLogin', 'result', 10, 'OnResultForModal game exit'],
    ['launchCommonPage', 'receive', 10, 'OnReceive game exit'],
    ['init', 'result', 1002000011, 'game exit when init not agreed agreement.'],
    ['init', 'receive', 1002000011, 'game exit when init not agreed agreement.'],
    ...ALL.filter((name) => name !== 'quickGameLogin').map((name, i) =>
        [name, ['result', 'receive'][i % 2], 1002000006, 'game exit when anti-addiction']),
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

for (const [name, first, second] of [
    ['bindPlayer', ['result', 0], ['result', 10]],
    ['bindPlayer', ['error', 5], ['receive', { resultCode: 10 }]],
    ['getLocalPlayer', ['result', 0], ['result', 1002000006]],
    ['init', ['receive', { resultCode: 0 }], ['receive', { resultCode: 1002000011 }]],
]) {
    const title = `${name} answered by ${JSON.stringify(first)}`;
    test(`${title} ends the process by ${JSON.stringify(second)} while the first is on its way`, () => expectChild(
        ({ device, start }, name, ...answers) => {
            device.answerOn('caller');
            const { modal } = start(name);
            answers.forEach(([kind, ...args]) => modal[kind](...args));
            console.log('went on');
        }, { args: [name, first, second] }));
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

/** What an answer that tells `code` must make of a request, as `fate` tells it, and the code for analytics. */
function fateOf(name, [kind, given], code) {
    const stays = kind === 'receive' && code === 0 && STAYING.includes(name);
    const modal = stays ? ['open', 'kept'] : ['closed', 'released'];
    if (code === EVENT) {
        return [['pending'], 'open', 'kept'];
    }
    if (name in PAGES) {
        return [['pending'], ...modal];
    }
    const isHidden = REQUESTS[name].hidden && given.resultCode !== 1002000015;
    if (code !== 0 && !isHidden) {
        return [['rejected', code], ...modal, code];
    }
    const hasData = code === 0 && kind !== 'error' && WITH_DATA[kind].includes(name);
    return [['resolved', hasData ? 'data' : undefined], ...modal, 0];
}

// What an answer tells a request, and the "playerChanged" events that it raises; another code for unionLogin alone.
for (const [given, code, events = [], ofUnionLogin = code] of [
    [['result', 0, { resultMessage: 'data' }], 0],
    [['result', 1002000012], 1002000012],
    [['result', 202], 202],
    [['result', -1], 1002000001],
    [['result', 9, { resultInfo: 'who' }], EVENT, ['who']],
    [['result', 1002000006], 1002000006],
    [['result', 1002000011], 1002000011],
    [['result', 1002000015, { resultInfo: 'who' }], 1002000015],
    [['result', 100015], 1002000001, [], 401],
    [['receive', OK], 0],
    [['receive', coded(1002000009)], 1002000009],
    [['receive', coded(401)], 401],
    [['receive', coded(7)], 1002000001],
    [['receive', coded(9)], EVENT, ['who']],
    [['receive', coded(1002000006)], 1002000006],
    [['receive', coded(1002000011)], 1002000011],
    [['receive', CHANGED], 1002000015, ['who']],
    [['receive', coded(100015)], 1002000001, [], 401],
    [['receive', {}], 1002000001],
    [['receive', { resultCode: '0' }], 1002000001],
    [['receive', { resultCode: 0.5 }], 1002000001],
    [['error', 0, 'name', 'message'], 0],
    [['error', 1002000003], 1002000003],
    [['error', 9], 1002000001],
    [['error', 10], 1002000001],
    [['error', 1002000006], 1002000006],
    [['error', 1002000011], 1002000011],
    [['error', 1002000015], 1002000015],
    [['error', 100015], 1002000001, [], 401],
]) {
    const [kind, first] = given;
    const names = ALL.filter((name) => !isEnding(name, kind, kind === 'receive' ? first.resultCode : first));
    for (const name of names) {
        const [state, modal, record, ...told] = fateOf(name, given, name === 'unionLogin' ? ofUnionLogin : code);
        const title = `${name} with ${JSON.stringify(given)} is ${state[0]}`;
        test(`${title}, its modal ${modal}, its record ${record}`, async () => {
            const heard = heardEvents();
            const request = start(name);
            await answer(request.modal, given);
            assert.deepEqual(await fate(request), [state, modal, record]);
            assert.deepEqual(heard, events);
            assert.deepEqual(ends().slice(1), told.map((each) => [name, each]));
        });
    }
}

test('a success that is received by a request without data is logged as not supported', async () => {
    for (const name of ALL) {
        const before = countLogs('DealResponseForReceive API not supported');
        await answer(start(name).modal, ['receive', OK]);
        const isSupported = [...STAYING, 'prePurchase'].includes(name);
        assert.equal(countLogs('DealResponseForReceive API not supported') - before, isSupported ? 0 : 1, name);
    }
});

// A second answer is never delivered: [requests, first, second, the modal after it, the record after it]
for (const [name, first, second, modal, record] of [
    [STAYING, ['receive', OK], ['receive', OLD], 'closed', 'kept'],
    [STAYING, ['receive', OK], ['receive', CHANGED], 'closed', 'kept'],
    [STAYING, ['receive', OK], ['receive', coded(9)], 'open', 'kept'],
    [STAYING, ['receive', OK], ['receive', coded(401)], 'closed', 'released'],
    [STAYING, ['receive', OK], ['result', 9], 'open', 'kept'],
    [['getLocalPlayer', 'verifyLocalPlayer'], ['receive', OK], ['result', 0], 'closed', 'released'],
    [['unionLogin', 'quickGameLogin'], ['receive', OK], ['result', 0], 'closed', 'kept'],
    [STAYING, ['receive', OK], ['result', 5], 'closed', 'released'],
    [STAYING, ['receive', OK], ['error', 5], 'closed', 'released'],
    [STAYING, ['receive', OK], ['release', 0], 'closed', 'released'],
    [STAYING, ['receive', OK], ['release', -1], 'closed', 'released'],
    [['quickGameLogin'], ['receive', coded(1002000006)], ['result', 1002000006], 'closed', 'released'],
    [['getLocalPlayer', 'quickGameLogin'], ['result', 0], ['receive', OLD], 'closed', 'released'],
    [['getLocalPlayer', 'prePurchase'], ['error', 401], ['error', 202], 'closed', 'released'],
    [['bindPlayer', 'postPurchase'], ['result', 1002000012], ['result', 0], 'closed', 'released'],
    [['bindPlayer', 'prePurchase'], ['receive', OK], ['error', 401], 'closed', 'released'],
    [['init', 'savePlayerRole'], ['result', 0], ['receive', CHANGED], 'closed', 'released'],
    [['init', 'savePlayerRole'], ['error', 401], ['release', 1], 'closed', 'released'],
    [LAUNCHES, ['receive', coded(401)], ['error', 5], 'closed', 'released'],
].flatMap(([names, ...row]) => names.map((name) => [name, ...row]))) {
    const title = `${name} answered by ${JSON.stringify(first)}, then ${JSON.stringify(second)}`;
    test(`${title}, is settled by the first alone`, async () => {
        const request = start(name);
        await answer(request.modal, first);
        const { state } = request;
        assert.equal(state[0] === 'pending', name in PAGES);
        await answer(request.modal, second);
        assert.equal(request.state, state);
        assert.deepEqual((await fate(request)).slice(1), [modal, record]);
        assert.equal(ends().length, name in PAGES ? 0 : 1);
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
            assert.equal(ends().length, name in PAGES ? 0 : 2);
        });
    }
}

test('of two errors before anything reached JS only the first is told', async () => {
    device.answerOn('caller');
    const request = start('getLocalPlayer');
    await Promise.all([request.modal.error(1002000002), request.modal.error(1002000003), request.modal.error(401)]);
    await turn();
    assert.deepEqual(request.state.slice(0, 2), ['rejected', 1002000002]);
    assert.deepEqual(ends(), [['getLocalPlayer', 1002000002]]);
});

test('a code that is a game event leaves the request to a later answer', async () => {
    const request = start('bindPlayer');
    await answer(request.modal, ['result', 9], ['receive', coded(9)], ['result', 9]);
    assert.deepEqual(request.state, ['pending']);
    await answer(request.modal, ['result', 0]);
    assert.deepEqual(await fate(request), [['resolved', undefined], 'closed', 'released']);
});

// A release never answers, and closes by the request's type and the release code.
for (const name of ALL) {
    for (const code of [0, 1, -1]) {
        const closesAt0 = STAYING.includes(name) || name in PAGES;
        const closes = closesAt0 || code !== 0;
        test(`${name} released by ${code} stays pending, its modal ${closes ? 'closed' : 'open'}`, async () => {
            const request = start(name);
            await answer(request.modal, ['release', code], ['release', code]);
            assert.deepEqual([request.state, request.modal.isOpen, ends()], [['pending'], !closes, []]);
            assert.equal(countLogs('ModalUIExtension meet exception and close modal'), closes && !closesAt0 ? 2 : 0);
            assert.equal(countLogs('CloseModalUIExtension closed'), closes ? 1 : 0);
            await answer(request.modal, ['result', 0]);
            const state = name in PAGES ? ['pending'] : ['resolved', undefined];
            assert.deepEqual(await fate(request), [state, 'closed', 'released']);
        });
    }
}

test('a modal that cannot be closed for want of a window is left, and its request settled', async () => {
    const request = start('bindPlayer');
    device.hideWindow(request.context);
    await answer(request.modal, ['result', 1002000012]);
    assert.deepEqual(request.state.slice(0, 2), ['rejected', 1002000012]);
    assert.equal(countLogs('CloseModalUIExtension closed'), 0);
});

test('requests of one context are routed apart', async () => {
    const context = device.createAbilityContext();
    const requests = ALL.map((name) => start(name, context));
    const answers = { getLocalPlayer: ['receive', OK], bindPlayer: ['error', 401], launchCommonPage: ['release', 0] };
    for (const [name, given] of Object.entries(answers)) {
        await answer(requests[ALL.indexOf(name)].modal, given);
    }
    const states = { getLocalPlayer: 'resolved', bindPlayer: 'rejected' };
    assert.deepEqual(requests.map(({ state }) => state[0]), ALL.map((name) => states[name] || 'pending'));
    const closed = ['bindPlayer', 'launchCommonPage'];
    assert.deepEqual(requests.map(({ modal }) => modal.isOpen), ALL.map((name) => !closed.includes(name)));
});
