'use strict';

// What all tests share. The module and the device load on first use, so that a child process or Worker can choose its
// own load order.

const assert = require('node:assert/strict');
const { execFile } = require('node:child_process');
const { once } = require('node:events');
const path = require('node:path');
const { Worker, parentPort, threadId } = require('node:worker_threads');
const { CALLS, METHODS, PAGES, REQUESTS, rulesOf } = require('./requests.js');

const ROOT = path.join(__dirname, '..', '..');
// Real time, for operations that must end. They take longer under sanitizers.
const LIMIT_MS = 15000 * (Number(process.env.GAMEAPI_TEST_PATIENCE) || 1);
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
        await new Promise((resolve) => setImmediate(resolve));
    }
}

/** A record whose `state` follows `promise`: ['pending'], ['resolved', value] or ['rejected', code, message]. */
function track(promise) {
    const request = { state: ['pending'] };
    promise.then((value) => {
        request.state = ['resolved', value];
    }, (error) => {
        request.state = ['rejected', error.code, error.message];
    });
    return request;
}

/** How a call ended: ['threw', code, message] or ['returned', value]. */
function attempt(call) {
    try {
        return ['returned', call()];
    } catch (error) {
        return ['threw', error.code, error.message];
    }
}

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

/** The analytics end events so far, as [API name, error code]. */
function ends() {
    return loadDevice().analytics.events().map(({ params }) => {
        const fields = Object.fromEntries(params);
        return [fields.api_name, fields.error_code];
    });
}

const countLogs = (text) => loadDevice().logs().filter(({ message }) => message.includes(text)).length;

/** How many threads of the module are asleep, once none of them runs. */
async function sleepers() {
    await loadDevice().clock.advance(0);
    return loadDevice().clock.sleepers();
}

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
    const promise = loadGame().bindPlayer(loadDevice().createAbilityContext(), id, 'team');
    const modal = loadDevice().modals().find(({ want }) => want.parameters.thirdOpenId === id);
    await modal.result(0);
    await promise;
    return id;
}

const sourceOf = (body, args) => `(${body})(require(${JSON.stringify(__filename)}), ...${JSON.stringify(args)})`;

/** Runs `body(support, ...args)` in a Worker. `body` must not use its enclosing scope. */
function startWorker(body, ...args) { return new Worker(sourceOf(body, args), { eval: true }); }

const nextMessage = async (worker) => (await once(worker, 'message'))[0];

/** Starts Workers that all run `body(support)` at `open()`. Resolves when they are ready, `exits` when they end. */
async function gather(count, body) {
    const gate = new Int32Array(new SharedArrayBuffer(4));
    const workers = Array.from({ length: count }, () => startWorker(`(support) => {
        support.parentPort.once('message', (gate) => {
            support.parentPort.postMessage('ready');
            Atomics.wait(gate, 0, 0);
            (${body})(support);
        });
    }`));
    const exits = Promise.all(workers.map((worker) => once(worker, 'exit')));
    await Promise.all(workers.map((worker) => worker.postMessage(gate) || nextMessage(worker)));
    return { open: () => Atomics.store(gate, 0, 1) && Atomics.notify(gate, 0), exits };
}

/** Runs `body(support, ...args)` in a child process with a time limit. */
function runInChild(body, args = [], env = {}) {
    const options = { cwd: ROOT, env: { ...process.env, GAMEAPI_EXIT_STATUS: '', ...env }, timeout: LIMIT_MS, killSignal: 'SIGKILL' };
    return new Promise((resolve) => {
        execFile(process.execPath, ['-e', sourceOf(body, args)], options, (error, stdout, stderr) => {
            const { code, signal } = error || { code: 0, signal: null };
            resolve({ code, signal, stdout, stderr });
        });
    });
}

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
    CALLS, LIMIT_MS, METHODS, PAGES, PARAMETER_ERROR, REQUESTS, ROOT, SYSTEM_ERROR,
    answer, attempt, countLogs, ends, expectChild, gather, inBothOrders, nextMessage, once, parentPort, reset, roundTrip,
    rulesOf, runInChild, setQueueOrder, sleepers, start, startWorker, test, timeUp, track, turn, wantOf,
};
