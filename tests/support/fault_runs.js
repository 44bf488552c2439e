'use strict';

// Runs scenarios in which calls of the module fail, and looks for what is wrong afterwards. Runs in a process of its
// own, which prints each point of failure before it tries it: after a crash the last line tells which one it was.

const fs = require('node:fs');

const support = require('./index.js');
const { SCENARIOS, Stage, endAllModals, leftovers, messages, playNext, prepare, runOut } = require('./scenarios.js');

const { device, once, startWorker, turn } = support;
const FOR_EVER = Number.MAX_SAFE_INTEGER;
const SYSTEM_ERROR = 1002000001;

// The calls whose failure may leave a request of either form without an end in JS.
const UNDELIVERED = [
    // The answer ends the request with a system error that is thrown into the environment.
    'napi_get_uv_event_loop', 'napi_open_handle_scope', 'new(nothrow)', 'uv_queue_work',
    // There is no modal, and so nobody to answer.
    'CreateModalUIExtension',
    // What was to be its error cannot be taken back once it was thrown.
    'napi_get_and_clear_last_exception',
];
const MAY_STAY_PENDING = {
    promise: [
        ...UNDELIVERED,
        // The promise cannot be settled, or not without a value.
        'napi_get_undefined', 'napi_reject_deferred', 'napi_resolve_deferred',
        // Nor can be thrown, in its place, that it was refused.
        'napi_throw_error',
    ],
    callback: [
        ...UNDELIVERED,
        // The callback cannot be kept, or not be called, or not without a receiver.
        'napi_call_function', 'napi_create_reference', 'napi_get_reference_value', 'napi_get_undefined', 'napi_typeof',
    ],
};

// The calls whose failure throws a system error into the environment: out of a delivery, where it is uncaught, or out
// of the answer that the extension gives on the JS thread. On another thread the error is refused.
const THROWS_IN_DELIVERY = ['napi_open_handle_scope'];
const THROWS_ANY_IN_DELIVERY = ['napi_get_and_clear_last_exception'];
const THROWS_IN_ANSWER = ['napi_get_uv_event_loop', 'uv_queue_work', 'new(nothrow)'];

// Its timer would end the process if the kind of request could not be read.
const LEFT_ASLEEP = 'a time limit of the game\'s own';

const uncaught = [];

const isSystemError = (error) => error instanceof Error && error.code === SYSTEM_ERROR;
const isLeftPending = ({ method, state }) => state === 'pending' && !method.startsWith('launch');
const describe = (value) => value instanceof Error ? `${value.code} ${value.message}` : String(value);

/** What is wrong with how the calls of a stage ended. */
function judgeOutcome({ requests, refusedAnswers }, { call, mode }) {
    const allowed = {
        uncaught: THROWS_IN_DELIVERY.includes(call),
        answer: mode === 'caller' && THROWS_IN_ANSWER.includes(call),
        // The thread of a start that waits for its window is no JS thread in any mode; and an environment whose end
        // could not be hooked is answered when it is gone.
        refusal: [...THROWS_IN_ANSWER, 'napi_add_env_cleanup_hook'].includes(call),
    };
    const refusals = messages().filter((line) => line.includes(' refused: '));
    return [
        ...requests.filter(isLeftPending).filter(({ form }) => !MAY_STAY_PENDING[form].includes(call))
            .map(({ method, form }) => `the ${form} of ${method} was never settled`),
        ...requests.filter(({ state, error }) => state === 'threw' && !(error instanceof Error))
            .map(({ method, error }) => `${method} threw ${describe(error)}`),
        ...uncaught.splice(0).filter((error) => !THROWS_ANY_IN_DELIVERY.includes(call) &&
            (!allowed.uncaught || !isSystemError(error))).map((error) => `uncaught: ${describe(error)}`),
        ...refusedAnswers.filter((error) => !allowed.answer || !isSystemError(error))
            .map((error) => `an answer threw ${describe(error)}`),
        ...(allowed.refusal ? [] : refusals),
    ];
}

/** What of an undisturbed request and an event does not work. */
async function judgeNextRequest() {
    const seen = (await playNext()).join();
    return [
        ...(seen === 'resolved,next' ? [] : [`the next request and event end as ${seen}`]),
        ...uncaught.splice(0).map((error) => `later uncaught: ${describe(error)}`),
    ];
}

/** What is left of requests and of more than `inert` listeners. A thread that is to sleep on keeps its request. */
function judgeLeftovers(inert = 0) {
    const { contexts, listeners } = leftovers();
    const sleeping = device.clock.sleepers();
    return [
        ...(contexts === sleeping ? [] : [`${contexts} requests are left, and ${sleeping} threads`]),
        ...(listeners <= inert ? [] : [`${listeners} listeners are left`]),
    ];
}

function begin({ mode, call, skip, times }) {
    prepare(mode);
    device.failNext(call, { skip, times });
}

/** Lets no call of that name fail any more; whether one has. */
function disarm(call) {
    device.failNext(call, { skip: FOR_EVER });
    return device.faults().find((each) => each.call === call).failed > 0;
}

/** Tries one point of failure: whether it was met, what is wrong, and the form of each request without an end. */
async function tryPoint(point) {
    begin(point);
    const stage = new Stage({ isOrderly: point.mode === 'ui' });
    await SCENARIOS[point.scenario](stage);
    const isMet = disarm(point.call);
    if (point.scenario !== LEFT_ASLEEP) {
        await runOut();
    }
    await endAllModals();
    const problems = judgeOutcome(stage, point);
    problems.push(...await judgeNextRequest(), ...judgeLeftovers());
    return { isMet, problems, pending: stage.requests.filter(isLeftPending).map(({ form }) => form) };
}

const loadInWorker = async (support) => {
    const { attempt, device, parentPort, turn } = support;
    const calls = [
        () => support.game,
        () => support.game.on('playerChanged', () => parentPort.postMessage('heard')),
        () => support.game.init(device.createAbilityContext()),
        () => support.game.onEventCallback({ resultCode: 1002000015 }),
    ];
    calls.forEach((call) => attempt(call));
    await turn();
    parentPort.postMessage('done');
};

/** What a Worker tells that loads the module, listens, and is torn down with a request of its own. */
async function playInWorker() {
    const told = [];
    const worker = startWorker(loadInWorker);
    worker.on('error', (error) => uncaught.push(error));
    worker.on('message', (message) => told.push(message));
    while (!told.includes('done')) {
        await once(worker, 'message');
    }
    await worker.terminate();
    return told;
}

/** As `tryPoint` for an environment that loads the module, ends, and is followed by another one. */
async function tryLoad(point) {
    begin(point);
    await playInWorker();
    const isMet = disarm(point.call);
    await endAllModals();
    // An environment whose end could not be hooked leaves its records behind; they only must not be touched any more.
    const isUnnoticed = point.call === 'napi_add_env_cleanup_hook';
    const { environments, listeners } = leftovers();
    const told = await playInWorker();
    await endAllModals();
    const problems = [
        ...judgeOutcome({ requests: [], refusedAnswers: [] }, point),
        ...(environments === 0 || isUnnoticed ? [] : [`${environments} environments are left`]),
        ...(told.join() === 'heard,done' ? [] : [`the next environment tells ${told}`]),
        ...await judgeNextRequest(), ...judgeLeftovers(isUnnoticed ? listeners : 0),
    ];
    return { isMet, problems, pending: [] };
}

const ATTEMPTS = { load: tryLoad };

const say = (kind, value) => fs.writeSync(1, `${kind} ${JSON.stringify(value)}\n`);

/** Tries one point and tells of it; whether a call failed there. */
async function tell(point) {
    say('point', point);
    const { isMet, problems, pending } = await (ATTEMPTS[point.scenario] || tryPoint)(point);
    problems.forEach((problem) => say('problem', problem));
    if (isMet) {
        say('met', { call: point.call, pending });
    }
    return isMet;
}

function listen() {
    process.on('uncaughtException', (error) => uncaught.push(error));
}

/**
 * Lets one call after the other fail that a scenario makes, of all names or those of `only`, until a run does not come
 * to it: alone, and with all later ones of its name.
 */
async function sweep(scenario, mode, only) {
    listen();
    await tell({ scenario, mode, call: 'napi_typeof', skip: FOR_EVER, times: 1 });
    const made = device.faults().filter((each) => each.made > 0).map(({ call }) => call);
    for (const call of made.filter((each) => !only || only.includes(each))) {
        for (const times of [1, FOR_EVER]) {
            for (let skip = 0; await tell({ scenario, mode, call, skip, times }); ++skip);
        }
    }
    say('end', null);
}

/** Tries the one point in this process, in which nothing of the module has run yet. */
async function tryFirst(point) {
    listen();
    await tell(point);
    say('end', null);
}

module.exports = { FOR_EVER, MAY_STAY_PENDING, sweep, tryFirst };
