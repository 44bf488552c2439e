'use strict';

// What answers do to requests. The sequences of the model try every answer on every request; these are literals.

const assert = require('node:assert/strict');
const { MESSAGES } = require('./model/tables');
const { answer, countLogs, ends, expectChild, start, test } = require('./support');

const OK = ['receive', { resultCode: 0, resultMessage: 'data' }];
const OF_EVENT = ['receive', { resultCode: 9, resultInfo: 'who' }];
const CHANGED = ['receive', { resultCode: 1002000015, resultInfo: 'who' }];
// `isKept`: whether the request is still alive, as a release then shows.
for (const { name, answers, state = ['pending'], isOpen = false, isKept = false } of [
    { name: 'getLocalPlayer', answers: [OK], state: ['resolved', 'data'], isOpen: true, isKept: true },
    { name: 'getLocalPlayer', answers: [OK, ['result', 0]], state: ['resolved', 'data'] },
    { name: 'verifyLocalPlayer', answers: [OF_EVENT], isOpen: true, isKept: true },
    { name: 'unionLogin', answers: [['result', 100015]],
        state: ['rejected', 401, 'Total size of icon resource is too large'] },
    { name: 'quickGameLogin', answers: [['result', 1002000006]],
        state: ['rejected', 1002000006, 'The user is under age or not real-name.'] },
    { name: 'prePurchase', answers: [['result', 0, { resultMessage: 'data' }]], state: ['resolved', 'data'] },
    { name: 'postPurchase', answers: [['result', 7]], state: ['rejected', 1002000001, 'System internal error.'] },
    { name: 'init', answers: [['error', 401]], state: ['resolved', undefined] },
    { name: 'init', answers: [CHANGED], state: ['rejected', 1002000015, MESSAGES[1002000015]] },
    { name: 'bindPlayer', answers: [['release', 1]], isKept: true },
    { name: 'bindPlayer', answers: [['error', 1002000012], ['error', 202]],
        state: ['rejected', 1002000012, 'The thirdOpenId or teamPlayerId has been bound.'] },
    { name: 'launchCommonPage', answers: [['receive', { resultCode: 5 }]] },
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
for (const [line, name, ...answers] of [
    ['OnResultForModal game exit', 'bindPlayer', ['result', 10]],
    ['game exit when init not agreed agreement.', 'init', ['result', 1002000011]],
    ['game exit when anti-addiction', 'getLocalPlayer', OK, ['receive', { resultCode: 1002000006 }]],
    ['OnReceive game exit', 'launchCommonPage', ['receive', { resultCode: 10 }]],
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
        assert.ok(stderr.includes(line), stderr.slice(-500));
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
