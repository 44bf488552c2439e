'use strict';

// What the device tells testers of a game without being asked.

const assert = require('node:assert/strict');
const { inspect } = require('node:util');
const { ErrorCode, RequestType, isBusinessError } = require('../lib/errors.js');
const { answer, device, expectChild, game, nextMessage, start, startWorker, test, turn } = require('./support');

/** What the device says in a child process that runs `body`. */
async function saidBy(body, options = {}) {
    const { stderr } = await expectChild(body, { ...options, env: { GAMEAPI_LOG: '', ...options.env } });
    return stderr.split('\n').filter((line) => line.startsWith('game device: ')).map((line) => line.slice(13));
}

test('a modal without an answer is reported once, when it stays silent or its environment ends; pages are not', async () => {
    const said = await saidBy(async ({ start, answer, game, device }) => {
        start('launchCommonPage');
        await answer(start('getLocalPlayer').modal, ['receive', { resultCode: 0 }]);
        await answer(start('bindPlayer').modal, ['release', 1]);
        start('prePurchase');
        require('./device/binding.js').reportSilentModals(-1);
        require('./device/binding.js').reportSilentModals(-1);
        console.log('told');
        game.init(device.createAbilityContext());
    }, { out: ['told'] });
    assert.deepEqual(said, ['modal 4 (prePurchase) has no answer', 'modal 5 (init) has no answer']);
});

const GOOD = { resultCode: 0, resultMessage: '{}' };
for (const [what, method, answers, expected] of [
    ['answers that the module reads', 'getLocalPlayer', [['receive', { ...GOOD, playableTime: 5, endText: 'x' }], ['release', 0]], []],
    ['a misspelt key', 'getLocalPlayer', [['receive', { resultcode: 0 }]], ['resultcode: do you mean resultCode?']],
    ['an unknown key', 'prePurchase', [['result', 0, { orderId: '1' }]], ['orderId: the module does not read this key']],
    ['a type that is not taken', 'prePurchase', [['receive', { resultCode: '0', resultMessage: { a: 1 } }]],
        ['resultCode: a 32-bit integer is read, not "0"', 'resultMessage: a string is read, not an object']],
    ['data that this method ignores', 'bindPlayer', [['receive', GOOD]], ['resultMessage: ignored by this method with code 0']],
    ['data that a result does not bring', 'getLocalPlayer', [['result', 0, GOOD]],
        ['resultCode: the code of a result is its first argument', 'resultMessage: ignored by this method with code 0']],
    ['data without a code', 'unionLogin', [['receive', { resultMessage: '{}' }]], ['resultMessage: ignored without a resultCode']],
    ['an answer to a request that has ended', 'init', [['result', 0], ['receive', { resultCode: 0 }], ['error', 5], ['release', 0]],
        ['answer 0 reaches nobody', 'answer 5 reaches nobody']],
]) {
    test(`the device warns of ${what}${expected.length === 0 ? ' not' : ''}`, async () => {
        const body = async ({ start, answer }, name, list) => answer(start(name).modal, ...list);
        const said = await saidBy(body, { args: [method, answers] });
        assert.equal(said.length, expected.length, said.join('\n'));
        said.forEach((line, i) => assert.ok(line.includes(`modal 1 (${method})`) && line.includes(expected[i]), line));
        assert.deepEqual(await saidBy(body, { args: [method, answers], env: { GAMEAPI_LOG: 'off' } }), []);
    });
}

test('nextModal gives what still waits for an answer, of the method that is asked for', async () => {
    const [closed, answered, first, buy, page] =
        ['bindPlayer', 'getLocalPlayer', 'init', 'prePurchase', 'launchWelcomeBanner'].map((name) => start(name).modal);
    await answer(closed, ['release', 1]);
    await answer(answered, ['receive', { resultCode: 0 }]);
    const own = ({ start, parentPort }) => parentPort.postMessage(start('savePlayerRole').modal.id);
    const worker = startWorker(own);
    const exit = new Promise((resolve) => { worker.once('exit', resolve); });
    const ended = await nextMessage(worker);
    await exit;
    const bind = device.nextModal({ requestType: RequestType.BIND_PLAYER });
    assert.equal(await device.nextModal('prePurchase'), buy);
    assert.equal(await device.nextModal(), first);
    assert.equal(await device.nextModal({}, { timeoutMs: 50 }), page);
    await assert.rejects(device.nextModal(5), { message: /no modal was opened within 5 ms; waiting .*modal \d+ \(init\)/ });
    const later = start('bindPlayer').modal;
    assert.equal(await bind, later);
    assert.deepEqual([answered.isAnswered, answered.isOpen, closed.isAnswered, first.isAnswered], [true, true, false, false]);
    assert.equal(device.modals().find(({ id }) => id === ended).isOpen, false);
});

test('the error for a misspelt method suggests the right one', async () => {
    await assert.rejects(device.nextModal('prePurchse'), { name: 'TypeError', message: /do you mean 'prePurchase'\?/ });
});

test('the stack of a rejection shows where its request was made', async () => {
    async function bindFromHere() { return game.bindPlayer(device.createAbilityContext(), 'open', 'team'); }
    const [bound, refused] = [bindFromHere(), game.bindPlayer({}, 'open', 'team')].map((made) => made.catch((error) => error));
    await answer(device.modals()[0], ['result', ErrorCode.ALREADY_BOUND]);
    for (const error of [await bound, await refused]) {
        assert.match(error.stack, new RegExp(`^Error: ${error.message}\n    at bindPlayer \\(.*unasked.test.js:\\d+:\\d+\\)`));
        assert.ok(isBusinessError(error));
    }
    assert.match((await bound).stack, /\n {4}at (async )?bindFromHere \(/);
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
    await answer(device.modals()[0], ['result', ErrorCode.ALREADY_BOUND]);
    await answer(device.modals().at(-1), ['result', ErrorCode.ALREADY_BOUND]);
    assert.deepEqual(await Promise.all(bound), [false, true]);
});

test('reset ends the listeners of the environment that resets, and keeps contexts', async () => {
    const heard = [];
    const context = device.createAbilityContext();
    for (const type of ['playerChanged', 'gameAddictionPrevented']) {
        device.setSystemApp(true);
        game.on(type, (event) => heard.push(event));
    }
    device.failNext('napi_get_cb_info');
    device.reset();
    assert.deepEqual([device.logs(), device.analytics.events()], [[], []]);
    game.onEventCallback({ resultCode: ErrorCode.PLAYER_INVALID, resultInfo: 'x' });
    await turn();
    const { modal, state } = start('init', context);
    assert.deepEqual([heard, state, modal.isOpen], [[], ['pending'], true]);
});

test('advance takes the timers of the game along, step by step', async () => {
    const steps = [];
    device.clock.onAdvance(async (ms) => {
        await turn();
        steps.push([ms, device.modals().length]);
    });
    const context = device.createAbilityContext({ window: false });
    void game.init(context);
    await Promise.all([device.clock.advance(500), device.clock.advance(700)]);
    device.showWindow(context);
    await device.clock.advance(1000);
    assert.deepEqual(steps.map(([ms, opened]) => [Math.round(ms), opened]), [[500, 0], [500, 0], [200, 0], [800, 1], [200, 1]]);
    device.clock.onAdvance(null);
    await device.clock.advance(1000);
    assert.equal(steps.length, 5);
});

test('inspecting a modal or the device shows the useful fields', () => {
    const { modal } = start('prePurchase');
    assert.match(inspect(modal), /^Modal {\s+id: \d+,\s+method: 'prePurchase',\s+isOpen: true,\s+isAnswered: false/);
    assert.match(inspect(device), /^device {\s+modals: \[\s+Modal/);
});
