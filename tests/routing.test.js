'use strict';

// What each answer does to each request: predicted by the model, and checked by some literals.

const assert = require('node:assert/strict');
const { MESSAGES } = require('./model/tables');
const { CALLS, answer, countLogs, device, ends, expectChild, start, test } = require('./support');
const { assertAgrees, assertAnswersAgree, callOf, stepOf } = require('./support/oracle');

const CODES = [...Object.keys(MESSAGES).map(Number), -2147483648, -1, 9, 10, 203, 100015, 1002000000, 1002000018,
    2147483647];
const OK = ['receive', { resultCode: 0, resultMessage: 'data' }];
const OF_EVENT = ['receive', { resultCode: 9, resultInfo: 'who' }];
const CHANGED = ['receive', { resultCode: 1002000015, resultInfo: 'who' }];
/** Answers of every kind, with all codes, and with values that are no codes. */
const SINGLE = [
    ...CODES.flatMap((code) => [
        ['result', code, { resultMessage: 'data', resultInfo: 'who' }], ['error', code, 'name', 'own text'],
        ['receive', { resultCode: code, resultMessage: 'data', resultInfo: 'who' }]
    ]),
    ...[undefined, '0', 0.5, true, -0, ['0'], { a: 0 }].map((resultCode) => ['receive', { resultCode }]),
    ...['', 5, -7, 2.5, true, [], ['a', ''], { a: { b: 1 } }, undefined]
        .map((resultMessage) => ['receive', { resultCode: 0, resultMessage }]),
    ['release', 0], ['release', 1], ['release', -1],
];
/** A selection, for all pairs. */
const PAIRED = [OK, OF_EVENT, CHANGED, ['receive', { resultCode: 401 }], ['result', 0], ['result', 9], ['result', 5],
    ['result', 1002000006], ['result', 1002000015], ['error', 0], ['error', 5],
    ['error', 1002000015], ['result', 10], ['release', 0], ['release', -1]];

for (const [name, { callbackAt }] of Object.entries(CALLS)) {
    test(`${name} handles every answer as the model predicts`, async () => {
        for (const given of SINGLE) {
            await assertAnswersAgree(name, [given]);
            await assertAnswersAgree(name, [given], { thread: 'ui', callback: callbackAt && 'callback' });
        }
    });

    test(`${name} is settled by the first of two answers, whether the second finds that delivered or not`, async () => {
        for (const pair of PAIRED.flatMap((first) => PAIRED.map((second) => [first, second]))) {
            await assertAnswersAgree(name, pair);
            await assertAnswersAgree(name, pair, { isAtOnce: true });
        }
    });
}

// The state of the request, whether its modal is open, and whether it is still alive, as a release then shows.
for (const [name, answers, state, isOpen, isKept] of [
    ['getLocalPlayer', [OK], ['resolved', 'data'], true, true],
    ['getLocalPlayer', [OK, OK], ['resolved', 'data'], false, true],
    ['getLocalPlayer', [OK, ['result', 0]], ['resolved', 'data'], false, false],
    ['verifyLocalPlayer', [OF_EVENT], ['pending'], true, true],
    ['unionLogin', [['result', 100015]], ['rejected', 401, 'Total size of icon resource is too large'], false, false],
    ['quickGameLogin', [['result', 1002000006]], ['rejected', 1002000006, MESSAGES[1002000006]], false, false],
    ['prePurchase', [['result', 0, { resultMessage: 'data' }]], ['resolved', 'data'], false, false],
    ['postPurchase', [['result', 7]], ['rejected', 1002000001, 'System internal error.'], false, false],
    ['init', [['error', 401]], ['resolved', undefined], false, false],
    ['init', [CHANGED], ['rejected', 1002000015, MESSAGES[1002000015]], false, false],
    ['bindPlayer', [['release', 1]], ['pending'], false, true],
    ['bindPlayer', [['error', 1002000012], ['error', 202]],
        ['rejected', 1002000012, 'The thirdOpenId or teamPlayerId has been bound.'], false, false],
    ['launchCommonPage', [['receive', { resultCode: 5 }]], ['pending'], false, false],
]) {
    test(`${name} answered by ${JSON.stringify(answers)} is ${state[0]}`, async () => {
        const request = start(name);
        await answer(request.modal, ...answers);
        assert.deepEqual([request.state, request.modal.isOpen], [state, isOpen]);
        assert.equal(ends().length, state[0] === 'pending' ? 0 : 1);
        const before = countLogs('baseContext is null');
        await answer(request.modal, ['release', 0]);
        assert.equal(countLogs('baseContext is null') === before, isKept);
    });
}

// Answers that end the process, and a line that is printed before.
for (const [name, answers, log] of [
    ['bindPlayer', [['result', 10]], 'OnResultForModal game exit'],
    ['init', [['result', 1002000011]], 'game exit when init not agreed agreement.'],
    ['getLocalPlayer', [OK, ['receive', { resultCode: 1002000006 }]], 'game exit when anti-addiction'],
    ['launchCommonPage', [['receive', { resultCode: 10 }]], 'OnReceive game exit'],
]) {
    test(`${name} ends the process by the last of ${JSON.stringify(answers)}, with what was logged out`, async () => {
        const { stderr } = await expectChild(({ device, start }, name, answers) => {
            process.exitCode = 7;
            process.on('exit', () => console.log('exit listeners ran'));
            device.answerOn('caller');
            const { modal } = start(name);
            answers.forEach(([kind, ...args]) => modal[kind](...args));
            console.log('went on');
        }, { args: [name, answers], env: { GAMEAPI_LOG: 'I' } });
        assert.ok(stderr.includes(log), stderr.slice(-500));
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

test('a modal that cannot be closed for want of a window is left, and its request settled', async () => {
    for (const name of Object.keys(CALLS)) {
        await assertAgrees([callOf(name), ['window', 'main', 0, 'hide'], stepOf([['result', 1002000012]]),
            ['window', 'main', 0, 'show'], stepOf([['error', 5], ['release', 1]])]);
    }
});
