'use strict';

// What the tests of the module share. The module and the device load on first use, so that a child process or Worker
// can choose its own load order. A function that runs there stands in the call that starts it, or is marked as such. It
// gets this object, and must not use its enclosing scope.

const assert = require('node:assert/strict');
const { once } = require('node:events');
const path = require('node:path');
const { Worker, parentPort, threadId } = require('node:worker_threads');
const { LIMIT_MS, ROOT, runNode } = require('./files');
const { CALLS } = require('./requests');

const PARAMETER_ERROR = [401, 'Parameter error.'];
const SYSTEM_ERROR = [1002000001, 'System internal error.'];

// The module ends a process with status 0, which would count as success. An end that no test asks for gets status 1.
process.env.GAMEAPI_EXIT_STATUS ??= '1';

const loadGame = () => require(ROOT);
const loadDevice = () => require(path.join(ROOT, 'device'));

const setQueueOrder = () => loadDevice().queueOrder(process.env.GAMEAPI_TEST_QUEUE_ORDER || 'fifo');

/** Resets the device, with the manual clock, and with the order of queues that this process was started with. */
function reset() {
    loadDevice().reset();
    loadDevice().clock.manual();
    setQueueOrder();
}

/** The same, without listeners. */
function fresh() {
    const [game, device] = [loadGame(), loadDevice()];
    device.reset();
    device.setSystemApp(true);
    game.off('playerChanged');
    game.off('gameAddictionPrevented');
    game.syncTraceId('');
    reset();
}

/** Defines tests twice: with queues that are first in, first out, and with queues in any order. */
function inBothOrders(define) {
    for (const order of ['fifo', 'any']) {
        define((title, body) => test(`${title} (${order})`, () => {
            process.env.GAMEAPI_TEST_QUEUE_ORDER = order;
            reset();
            return body();
        }));
    }
}

/** A test on a fresh device, which is reset afterwards. */
function test(title, body) {
    return require('node:test').test(title, { timeout: 2 * LIMIT_MS }, async () => {
        fresh();
        try {
            await body();
        } finally {
            delete process.env.GAMEAPI_TEST_QUEUE_ORDER;
            loadDevice().reset();
        }
    });
}

/** Lets everything queued for this environment run. */
async function turn() {
    for (let i = 0; i < 3; ++i) {
        await new Promise(setImmediate);
    }
}

/** A record whose `state` follows `promise`: ['pending'], ['resolved', value] or ['rejected', code, message]. */
function track(promise) {
    const request = { state: ['pending'] };
    const settle = (...state) => Object.assign(request, { state });
    promise.then((value) => settle('resolved', value), ({ code, message }) => settle('rejected', code, message));
    return request;
}

/** How a call ended: ['threw', code, message] or ['returned', value]. */
function attempt(call) {
    try {
        return ['returned', call()];
    } catch ({ code, message }) {
        return ['threw', code, message];
    }
}

/** Calls a method with a new context. */
const ask = (method, ...args) => loadGame()[method](loadDevice().createAbilityContext(), ...args);

/** Raises playerChanged. */
const raise = (resultInfo) => loadGame().onEventCallback({ resultCode: 1002000015, resultInfo });

/** Makes a valid call of a request or a page launch. The result contains its modal, if one opened. */
function start(name, context = loadDevice().createAbilityContext()) {
    const before = loadDevice().modals().length;
    const request = track(loadGame()[name](context, ...CALLS[name].rest));
    return Object.assign(request, { context, modal: loadDevice().modals()[before] });
}

/** Gives the answers [kind, ...arguments] one after the other, and lets each reach JS. */
async function answer(modal, ...answers) {
    for (const [kind, ...args] of answers) {
        await modal[kind](...args);
        await turn();
    }
}

/** Advances the clock, and lets everything that this wakes reach JS. */
const advance = (ms) => loadDevice().clock.advance(ms).then(turn);

/** The analytics end events so far, as [API name, error code]. */
const ends = () => loadDevice().analytics.events().map(({ params }) => Object.fromEntries(params))
    .map(({ api_name: name, error_code: code }) => [name, code]);

const countLogs = (text) => loadDevice().logs().filter(({ message }) => message.includes(text)).length;

/** Advances the clock until a timer's time is up. Returns the milliseconds. */
async function timeUp() {
    const { clock } = loadDevice();
    const [begin, before] = [clock.now(), countLogs('seconds end')];
    while (countLogs('seconds end') === before && clock.now() < begin + 3600000) {
        await clock.advance(1000);
    }
    return clock.now() - begin;
}

/** The Want of a request of `type` with additional parameters. */
function wantOf(type, more = {}) {
    return {
        bundleName: 'com.lumora.tavik.velmor',
        abilityName: 'GamePlayerUIExtAbility',
        deviceId: '',
        parameters: { requestType: type, 'ability.want.params.uiExtensionType': 'sys/commonUI', traceId: '', ...more },
    };
}

let trips = 0;

/** Makes a request and has it answered. Returns its open ID, which no other request has. */
async function roundTrip() {
    const id = `${threadId}-${++trips}`;
    const promise = ask('bindPlayer', id, 'team');
    const modal = loadDevice().modals().find(({ want }) => want.parameters.thirdOpenId === id);
    await modal.result(0);
    await promise;
    return id;
}

const sourceOf = (body, args) => `(${body})(require(${JSON.stringify(__filename)}), ...${JSON.stringify(args)})`;

/** Runs `body(support, ...args)` in a Worker. */
const startWorker = (body, ...args) => new Worker(sourceOf(body, args), { eval: true });

const nextMessage = async (worker) => (await once(worker, 'message'))[0];

/** Runs `body(support, ...args)` in a child process with a time limit. */
const runInChild = (body, args = [], env = {}) =>
    runNode(['-e', sourceOf(body, args)], { env: { GAMEAPI_EXIT_STATUS: '', ...env } });

/** Like `runInChild`. The process must print exactly the lines `out` and exit with `code`. */
async function expectChild(body, { args = [], env = {}, code = 0, out = [] } = {}) {
    const result = await runInChild(body, args, env);
    const seen = { code: result.code, signal: result.signal, out: result.stdout.split('\n').slice(0, -1) };
    try {
        assert.deepEqual(seen, { code, signal: null, out });
    } catch (error) {
        error.message += `\nits stderr:\n${result.stderr.slice(-2000)}`;
        throw error;
    }
    return result;
}

module.exports = {
    get game() { return loadGame(); },
    get device() { return loadDevice(); },
    PARAMETER_ERROR, ROOT, SYSTEM_ERROR, advance, answer, ask, attempt, countLogs, ends, expectChild, inBothOrders,
    nextMessage, once, parentPort, raise, reset, roundTrip, runInChild, setQueueOrder, start, startWorker, test, timeUp,
    track, turn, wantOf,
};
