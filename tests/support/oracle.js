'use strict';

// The model as the oracle of what the module does: suites play lists of steps through both.

const assert = require('node:assert/strict');
const { inspect } = require('node:util');
const { Comparison } = require('../model/comparison');
const { codeOf, isDeadly } = require('../model/tables');
const { CALLS } = require('./requests');

/** The step of a valid call, with a callback of this name if there is one. */
const callOf = (name, callback, ctx = 0) => ['call', 'main', 'c1', name, [{ ctx },
    ...CALLS[name].rest.map((value) => ({ value })), ...(callback ? [{ fn: 'plain', as: callback }] : [])], 0];

/** The step of answers to the first modal or another, without waiting in between. */
const stepOf = (answers, modal = 0) => ['answers', answers.map((answer) => ['answer', modal, ...answer])];

const isMade = (arg) => typeof arg === 'object' && arg !== null && ['fn', 'ctx', 'value'].some((key) => Object.hasOwn(arg, key));
/**
 * The step of a call with these values. Functions are {fn, as}, contexts {ctx}, and a value that must not be inspected
 * is {value}. `receiver` is an index of the player's receivers.
 */
const call = (method, args, receiver = 0) =>
    ['call', 'main', `${method}!`, method, args.map((arg) => (isMade(arg) ? arg : { value: arg })), receiver];
const listen = call('on', ['playerChanged', { fn: 'plain', as: 'listener' }]);

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

/** The same for a request and its answers, one by one or without waiting (`isAtOnce`), and a final release. */
async function assertAnswersAgree(name, answers, { isAtOnce = false, thread = 'caller', callback } = {}) {
    const given = isAtOnce && !mayEndGame(name, answers) ? [stepOf(answers)] : answers.map((answer) => stepOf([answer]));
    await assertAgrees([listen, callOf(name, callback), ...given, stepOf([['release', 0]])], { thread });
}

module.exports = { assertAgrees, assertAnswersAgree, call, callOf, stepOf };
