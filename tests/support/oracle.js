'use strict';

// The model of the module as the one that tells what answers do: suites play lists of answers through it.

const assert = require('node:assert/strict');
const { inspect } = require('node:util');
const { Comparison } = require('../../soak/hostile/comparison');
const { codeOf, isDeadly } = require('../../soak/hostile/tables');
const { CALLS } = require('./requests');

/** The step of a good call; `callback` is given if it names one. */
const callOf = (name, callback, ctx = 0) => ['call', 'main', 'c1', name, [{ ctx },
    ...CALLS[name].rest.map((value) => ({ value })), ...(callback ? [{ fn: 'plain', as: callback }] : [])], 0];

/** The step of answers given at once to the modal opened first, or to another. */
const stepOf = (answers, modal = 0) => ['answers', answers.map((answer) => ['answer', modal, ...answer])];

const isMade = (arg) => typeof arg === 'object' && arg !== null && ['fn', 'ctx', 'value'].some((key) => Object.hasOwn(arg, key));
/**
 * The step of a call with these values, among them functions as {fn, as} and contexts as {ctx}; {value} is one that must
 * not be looked into. `receiver` is the place of one among the player's.
 */
const call = (method, args, receiver = 0) =>
    ['call', 'main', `${method}!`, method, args.map((arg) => (isMade(arg) ? arg : { value: arg })), receiver];
const listen = call('on', ['playerChanged', { fn: 'plain', as: 'listener' }]);

/** Whether one of the answers may end the game: what others find that are given at once is not settled. */
const mayEndGame = (name, answers) =>
    answers.some(([kind, payload]) => isDeadly(kind, codeOf(kind, payload), CALLS[name].type));

// On the UI thread a delivery may run beside the next answer: what that finds is settled only one by one.
const oneByOne = ([kind, steps, ...rest]) =>
    (kind === 'answers' ? steps.map((step) => [kind, [step]]) : [[kind, steps, ...rest]]);

/**
 * Plays the steps on the module and on the model, and fails at the first difference. With answers on the UI thread none
 * are given at once.
 */
async function assertAgrees(steps, options = {}) {
    const played = options.thread === 'ui' ? steps.flatMap(oneByOne) : steps;
    const difference = await Comparison.run(played, options);
    assert.equal(difference, null, `${inspect(steps, { depth: 9 })} differs: ${inspect(difference, { depth: 9 })}`);
}

/** The same for a request and answers to it, one after the other or all of them at once; then a release asks for it. */
async function assertAnswersAgree(name, answers, { isAtOnce = false, thread = 'caller', callback } = {}) {
    const given = isAtOnce && !mayEndGame(name, answers) ? [stepOf(answers)] : answers.map((answer) => stepOf([answer]));
    await assertAgrees([listen, callOf(name, callback), ...given, stepOf([['release', 0]])], { thread });
}

module.exports = { assertAgrees, assertAnswersAgree, call, callOf, stepOf };
