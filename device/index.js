'use strict';

const { inspect } = require('util');
const { nearest } = require('./answers.js');
const binding = require('./binding.js');
const {
    isFirst, readCount, readFlag, readHandler, readInt32, readNumber, readObject, readText,
} = require('./checks.js');
const contexts = require('./contexts.js');
const timers = require('./timers.js');
const { REQUESTS, methodOf } = require('../lib/methods.js');
const { forgetModals, modalOf, modals } = require('./modal.js');

// Captured now, so that fake timers that a test installs later do not stop what runs in real time.
const { clearTimeout, setInterval, setTimeout } = require('timers');
const { setImmediate: turn } = require('timers/promises');

const MAX_TIMEOUT_MS = 0x7fffffff;  // the limit of setTimeout
const TIMEOUT_MS = 5000;
const SILENCE_MS = 5000;  // after this time, an open modal without an answer is reported
const LONGEST_ADVANCE_MS = 1e11;  // three years; a 64-bit count of nanoseconds holds 292
const LISTENED = ['playerChanged', 'gameAddictionPrevented'];

binding.nameRequests(Object.entries(REQUESTS).map(([method, { type, isPage = false }]) => ({ type, method, isPage })));
setInterval(() => {
    binding.reportSilentModals(SILENCE_MS);
}, 1000).unref();

/** The request type that a filter of nextModal asks for; 0 means any. */
function readFilter(filter) {
    if (filter === undefined || filter === null) {
        return 0;
    }
    if (typeof filter === 'string') {
        if (!Object.hasOwn(REQUESTS, filter)) {
            const near = nearest(filter, Object.keys(REQUESTS));
            throw new TypeError(`filter must be a method that opens a modal, not '${filter}'` +
                (near ? `: do you mean '${near}'?` : ''));
        }
        return REQUESTS[filter].type;
    }
    if (typeof filter !== 'object') {
        throw new TypeError('filter must be the name of a method, { requestType } or a number of milliseconds');
    }
    return readObject('filter', filter, { requestType: readInt32 }).requestType ?? 0;
}

const readTimeout = (name, value) => readNumber(name, value, 0, MAX_TIMEOUT_MS);

function describeWaiting() {
    const waiting = modals().filter(({ isOpen, isAnswered }) => isOpen && !isAnswered)
        .map(({ id, method }) => `modal ${id} (${method})`);
    return waiting.length > 0 ? `; waiting for an answer: ${waiting.join(', ')}` : '';
}

// Who waits in this environment for a modal. The device reports every opening while there is one.
const waiters = new Set();

function serveWaiters() {
    for (const waiter of waiters) {
        const snapshot = binding.takeModal(waiter.requestType);
        if (snapshot) {
            waiters.delete(waiter);
            waiter.take(modalOf(snapshot));
        }
    }
    binding.onOpening(waiters.size > 0 ? serveWaiters : null);
}

async function nextModal(filter, options = {}) {
    const isLimit = typeof filter === 'number';
    const requestType = isLimit ? 0 : readFilter(filter);
    const { timeoutMs = TIMEOUT_MS } = isLimit ? { timeoutMs: readTimeout('timeoutMs', filter) }
        : readObject('options', options, { timeoutMs: readTimeout });
    const of = requestType === 0 ? '' : ` of ${methodOf(requestType)}`;
    const late = new Error(`no modal${of} was opened within ${timeoutMs} ms`);  // created here for its stack
    return new Promise((resolve, reject) => {
        const timer = setTimeout(() => {
            waiters.delete(waiter);
            serveWaiters();
            late.message += describeWaiting();
            reject(late);
        }, timeoutMs);
        const take = (modal) => {
            clearTimeout(timer);
            resolve(modal);
        };
        const waiter = { requestType, take };
        waiters.add(waiter);
        binding.onOpening(serveWaiters);  // first: a modal may open right after serveWaiters has found none
        serveWaiters();
    });
}

let isAnswering = false;  // there is a handler for modals

function onModal(handler) {
    isAnswering = readHandler(handler) !== null;
    binding.onModal(handler && ((snapshot) => handler(modalOf(snapshot))));
}

function onRecord(handler) {
    binding.onRecord(readHandler(handler));
}

function onExit(handler) {
    binding.onExit(readHandler(handler) && (({ isTimer, requestType, code }) => {
        handler({ reason: isTimer ? 'timer' : 'answer', requestType, code: isTimer ? undefined : code });
    }));
}

let follower = null;
let lastAdvance = Promise.resolve();

function onAdvance(handler) {
    follower = readHandler(handler);
}

// Runs what is due now. The game may then make requests: two turns of the loop bring them to the handlers here, which
// may set timers that are due at once.
async function runTimers() {
    for (let before = -1; before !== timers.begun();) {
        before = timers.begun();
        await turn();
        await turn();
        await timers.run();
    }
}

// Stops whenever a thread of the module or a timer of this environment is due, so that the module and JS take turns.
async function advanceInSteps(ms) {
    await runTimers();
    for (let left = ms; left > 0;) {
        const step = Math.min(left, Math.max(Math.min(binding.clockNext(), timers.next()), 0));
        await binding.clockAdvance(step);
        left -= step;
        if (step > 0 && follower) {
            await follower(step);
        }
        await runTimers();
    }
}

async function advance(ms) {
    readNumber('ms', ms, 0, LONGEST_ADVANCE_MS);
    const isStepped = follower || isAnswering || timers.areAny();
    if (!isStepped || ms === 0) {
        return binding.clockAdvance(ms);
    }
    const run = () => advanceInSteps(ms);
    lastAdvance = lastAdvance.then(run, run);
    return lastAdvance;
}

function failNext(call, options = {}) {
    const countFrom = (least) => (name, value) => readCount(name, value, least);
    const { skip = 0, times = 1 } = readObject('options', options, { skip: countFrom(0), times: countFrom(1) });
    if (!binding.failNext(readText('call', call), skip, times)) {
        throw new Error(`'${call}' cannot be made to fail: the module makes no such call`);
    }
}

// The module has no reset: its listeners are removed as a game would do it, once no call is made to fail.
function reset() {
    binding.reset();
    const game = binding.moduleExports();
    if (game) {
        binding.setSystemApp(true);
        LISTENED.forEach((type) => game.off(type));
        binding.reset();
    }
    follower = null;
    isAnswering = false;
    timers.clear();
    forgetModals();
}

const device = {
    ...contexts,
    modals,
    nextModal,
    onModal,
    onExit,
    onRecord,
    answerOn: (thread) => binding.answerOn(isFirst('thread', thread, 'caller', 'ui')),
    queueOrder: (order, seed = 1) =>
        binding.queueOrder(isFirst('order', order, 'any', 'fifo'), readCount('seed', seed, 0)),
    strings: (like) => binding.strings(isFirst('like', like, 'platform', 'node')),
    clock: {
        real: timers.real,
        manual: timers.manual,
        rate: binding.clockRate,
        now: binding.clockNow,
        next: () => Math.min(binding.clockNext(), timers.next()),
        after: timers.after,
        advance,
        onAdvance,
        sleepers: binding.clockSleepers,
    },
    setSystemApp: (isSystem) => binding.setSystemApp(readFlag('isSystem', isSystem)),
    logs: binding.logs,
    analytics: {
        processors: binding.analyticsProcessors,
        events: binding.analyticsEvents,
    },
    failNext,
    faults: binding.faults,
    reset,
};

Object.defineProperty(device, inspect.custom, {
    value: (depth, options) => `device ${inspect({
        modals: modals(),
        clock: { now: binding.clockNow(), sleepers: binding.clockSleepers() },
        logs: binding.logs().slice(-3).map(({ level, message }) => `${level} ${message}`),
        events: binding.analyticsEvents().length,
        functions: Object.keys(device).join(' '),
    }, { ...options, depth: 1 })}`,
});

module.exports = device;
