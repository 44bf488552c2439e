'use strict';

// What the device reports to testers of a game without being asked.

const assert = require('node:assert/strict');
const { once } = require('node:events');
const { inspect } = require('node:util');
const { ErrorCode, RequestType, isBusinessError } = require('../lib/errors.js');
const { answer, device, expectChild, game, nextMessage, start, startWorker, test, turn } = require('./support');

/** What the device says in a child process that runs `body`. */
async function saidBy(body, options = {}) {
    const { stderr } = await expectChild(body, { ...options, env: { GAMEAPI_LOG: '', ...options.env } });
    return stderr.split('\n').filter((line) => line.startsWith('game device: ')).map((line) => line.slice(13));
}

test('a modal without an answer is reported once, pages are not', async () => {
    const said = await saidBy(async ({ start, answer, ask }) => {
        const { reportSilentModals } = require('./device/binding.js');
        start('launchCommonPage');
        await answer(start('getLocalPlayer').modal, ['receive', { resultCode: 0 }]);
        await answer(start('bindPlayer').modal, ['release', 1]);
        start('prePurchase');
        reportSilentModals(-1);
        reportSilentModals(-1);
        console.log('reported');
        ask('init');
    }, { out: ['reported'] });
    assert.deepEqual(said, ['modal 4 (prePurchase) has no answer', 'modal 5 (init) has no answer']);
});

const GOOD = { resultCode: 0, resultMessage: '{}' };
const IGNORED = 'resultMessage: ignored by this method with code 0';
for (const { of, method = 'getLocalPlayer', answers, warnings = [] } of [
    { of: 'nothing that is read', answers: [['receive', { ...GOOD, playableTime: 5, endText: 'x' }], ['release', 0]] },
    { of: 'a misspelt key', answers: [['receive', { resultcode: 0 }]],
        warnings: ['resultcode: do you mean resultCode?'] },
    { of: 'an unknown key', method: 'prePurchase', answers: [['result', 0, { orderId: '1' }]],
        warnings: ['orderId: the module does not read this key'] },
    { of: 'a wrong type', method: 'prePurchase', answers: [['receive', { resultCode: '0', resultMessage: { a: 1 } }]],
        warnings: ['resultCode: a 32-bit integer is read, not "0"', 'resultMessage: a string is read, not an object'] },
    { of: 'data that this method ignores', method: 'bindPlayer', answers: [['receive', GOOD]], warnings: [IGNORED] },
    { of: 'data without a code', method: 'unionLogin', answers: [['receive', { resultMessage: '{}' }]],
        warnings: ['resultMessage: ignored without a resultCode'] },
    { of: 'answers after the end', method: 'init',
        answers: [['result', 0], ['receive', { resultCode: 0 }], ['error', 5], ['release', 0]],
        warnings: ['answer 0 reaches nobody', 'answer 5 reaches nobody'] },
]) {
    test(`the device warns of ${of}`, async () => {
        // Runs in a child process.
        const body = async ({ start, answer }, name, list) => answer(start(name).modal, ...list);
        const said = await saidBy(body, { args: [method, answers] });
        assert.equal(said.length, warnings.length, said.join('\n'));
        assert.ok(said.every((line, i) => line.startsWith(`modal 1 (${method})`) && line.includes(warnings[i])), said);
        assert.deepEqual(await saidBy(body, { args: [method, answers], env: { GAMEAPI_LOG: 'off' } }), []);
    });
}

test('nextModal gives what still waits, each once, of the wanted method', async () => {
    const [closed, answered, first, buy, page] =
        ['bindPlayer', 'getLocalPlayer', 'init', 'prePurchase', 'launchWelcomeBanner'].map((name) => start(name).modal);
    await answer(closed, ['release', 1]);
    await answer(answered, ['receive', { resultCode: 0 }]);
    const worker = startWorker(({ start, parentPort }) => parentPort.postMessage(start('savePlayerRole').modal.id));
    const exit = once(worker, 'exit');
    const ended = await nextMessage(worker);
    await exit;
    const bind = device.nextModal({ requestType: RequestType.BIND_PLAYER });
    assert.equal(await device.nextModal('prePurchase'), buy);
    assert.equal(await device.nextModal(), first);
    assert.equal(await device.nextModal({}, { timeoutMs: 50 }), page);
    const waiters = [device.nextModal(), device.nextModal()];
    await assert.rejects(device.nextModal(5),
        { message: /no modal was opened within 5 ms; waiting .*modal \d+ \(init\)/ });
    const later = ['bindPlayer', 'init', 'init'].map((name) => start(name).modal);
    (await Promise.all([bind, ...waiters])).forEach((modal, i) => assert.equal(modal, later[i]));
    assert.deepEqual([answered, closed, first].map(({ isAnswered }) => isAnswered), [true, false, false]);
    assert.deepEqual([answered.isOpen, device.modals().find(({ id }) => id === ended).isOpen], [true, false]);
    await assert.rejects(device.nextModal('prePurchse'), { name: 'TypeError', message: /do you mean 'prePurchase'\?/ });
});

test('the stack of a rejection shows where its request was made', async () => {
    async function bindFromHere() { return game.bindPlayer(device.createAbilityContext(), 'open', 'team'); }
    const made = [bindFromHere(), game.bindPlayer({}, 'open', 'team')];
    const caught = made.map((promise) => promise.catch((error) => error));
    await answer(device.modals()[0], ['result', ErrorCode.ALREADY_BOUND]);
    for (const error of await Promise.all(caught)) {
        const [title, place] = error.stack.split('\n    at ');
        assert.equal(title, `Error: ${error.message}`);
        assert.match(place, /^bindPlayer \(.*unasked\.test\.js:\d+:\d+\)$/);
        assert.ok(isBusinessError(error));
    }
    assert.match((await caught[0]).stack, /\n {4}at (async )?bindFromHere \(/);
    await expectChild(async ({ game }) => {
        const error = await game.bindPlayer({}, 'o', 't').catch((reason) => reason);
        console.log(error.stack.includes('bindPlayer'), error.code);
    }, { env: { GAMEAPI_STACKS: 'off' }, out: ['false 401'] });
});

test('of the requests that never settle, only the latest places are kept', async () => {
    const context = device.createAbilityContext();
    const bind = () => game.bindPlayer(context, 'open', 'team').catch(({ stack }) => stack.includes('at bindPlayer'));
    const bound = [bind()];
    for (let i = 0; i < 4096; ++i) {
        void game.launchCommonPage(context, 'page');
    }
    bound.push(bind());
    for (const modal of [device.modals().at(0), device.modals().at(-1)]) {
        await answer(modal, ['result', ErrorCode.ALREADY_BOUND]);
    }
    assert.deepEqual(await Promise.all(bound), [false, true]);
});

test('advance takes the timers of the game along, step by step', async () => {
    const steps = [];
    device.clock.onAdvance(async (ms) => {
        await turn();
        steps.push([Math.round(ms), device.modals().length]);
    });
    const context = device.createAbilityContext({ window: false });
    void game.init(context);
    await Promise.all([device.clock.advance(500), device.clock.advance(700)]);
    device.showWindow(context);
    await device.clock.advance(1000);
    device.clock.onAdvance(null);
    await device.clock.advance(1000);
    assert.deepEqual(steps, [[500, 0], [500, 0], [200, 0], [800, 1], [200, 1]]);
});

test('inspecting a modal or the device shows the useful fields', () => {
    const { modal } = start('prePurchase');
    assert.match(inspect(modal), /^Modal {\s+id: \d+,\s+method: 'prePurchase',\s+isOpen: true,\s+isAnswered: false/);
    assert.match(inspect(device), /^device {\s+modals: \[\s+Modal/);
});
