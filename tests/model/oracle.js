'use strict';

// The model as the oracle of what the module does: suites play lists of steps through both.

const assert = require('node:assert/strict');
const { inspect } = require('node:util');
const { CALLS } = require('../support/requests');
const { Comparison } = require('./comparison');
const { codeOf, isDeadly } = require('./tables');

/** The contexts of an ability, of a UI extension, which has no resources, and of an ability without a window. */
const [CTX, OF_UI_EXTENSION, LATE] = [0, 2, 3].map((ctx) => ({ ctx }));

const isMade = (arg) => typeof arg === 'object' && arg !== null &&
    ['fn', 'ctx', 'bad', 'value'].some((key) => Object.hasOwn(arg, key));

/**
 * The step of a call with these values. Functions are {fn, as}, contexts {ctx} or {bad}, and a value that must not be
 * inspected is {value}. `receiver` is an index of the player's receivers.
 */
const call = (method, args = [], receiver = 0) =>
    ['call', 'main', `${method}!`, method, args.map((arg) => (isMade(arg) ? arg : { value: arg })), receiver];

const functionOf = (name, fn = 'plain') => ({ fn, as: name });
const listen = (type) => call('on', [type, functionOf(type)]);

/** The step of a valid call, with a callback if there is a name for it. */
const callOf = (name, callback, context = CTX) =>
    call(name, [context, ...CALLS[name].rest, ...(callback ? [functionOf(callback)] : [])]);

/** The step of answers to the first modal, without waiting in between. */
const answered = (...answers) => ['answers', answers.map((answer) => ['answer', 0, ...answer])];
const RELEASED = answered(['release', 0]);

const wait = (ms) => ['advance', ms];
const window = (change, { ctx } = CTX) => ['window', 'main', ctx, change];

/** Whether an answer may end the game. What others find that do not wait for it is then undefined. */
const mayEndGame = (name, answers) =>
    answers.some(([kind, payload]) => isDeadly(kind, codeOf(kind, payload), CALLS[name].type));

// On the UI thread, a delivery may run during the next answer, so the outcome is defined only one by one.
const oneByOne = ([kind, steps, ...rest]) =>
    (kind === 'answers' ? steps.map((step) => [kind, [step]]) : [[kind, steps, ...rest]]);

/**
 * Plays the steps on the module and on the model, and fails at the first difference. On the UI thread, each answer
 * waits for the one before.
 */
async function assertAgrees(steps, options = {}) {
    const played = options.thread === 'ui' ? steps.flatMap(oneByOne) : steps;
    const difference = await Comparison.run(played, options);
    assert.equal(difference, null, `${inspect(steps, { depth: 9 })} differs: ${inspect(difference, { depth: 9 })}`);
}

/** The same with answers on either thread. */
async function assertAgreesOnBoth(steps) {
    await assertAgrees(steps);
    await assertAgrees(steps, { thread: 'ui' });
}

/** The same for a request and its answers, one by one or without waiting (`isAtOnce`), and a final release. */
async function assertAnswersAgree(name, answers, { isAtOnce = false, thread, callback } = {}) {
    const given = isAtOnce && !mayEndGame(name, answers) ? [answered(...answers)] : answers.map((one) => answered(one));
    await assertAgrees([listen('playerChanged'), callOf(name, callback), ...given, RELEASED], { thread });
}

module.exports = {
    CTX, LATE, OF_UI_EXTENSION, RELEASED, answered, assertAgrees, assertAgreesOnBoth, assertAnswersAgree, call, callOf,
    functionOf, listen, wait, window,
};
