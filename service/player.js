'use strict';

// Captured before a test runner replaces them.
const { setImmediate: turn, setTimeout: delay } = require('node:timers/promises');
const device = require('../device/index.js');
const { matches } = require('./rules.js');
const { ScenarioError } = require('./scenario.js');
const { createService } = require('./service.js');

/**
 * Plays the steps of a scenario on a service and the window of a context. With the manual clock, the time also jumps to
 * the next answer that is due while a step waits for the game.
 */
class Player {
    #steps;
    #file;
    #requests = [];  // not awaited yet
    #deadline = Infinity;
    #wake = () => {};  // ends a wait for the game
    #isAwaited = () => false;  // whether a step waits for a request

    constructor({ steps = [], clock }, { service, context, file = '' }) {
        this.#steps = steps;
        this.#file = file;
        this.isManual = clock === 'manual';
        this.service = service;
        this.context = context;
        this.doing = '';
        this.onWait = () => {};  // called with what a step waits for, and with '' when that has come
        this.onDone = () => {};  // called with each action that was done
        service.on('request', (request) => this.#add(request));
    }

    #add(request) {
        this.#requests.push(request);
        if (this.#isAwaited(request)) {
            this.service.queue.pause();
        }
        this.#wake();
    }

    /**
     * Resolves when all steps are done and no answer is due, or when it was stopped; `doing` is then the step that was
     * not done. Rejects with a ScenarioError if a step cannot be done. While steps act, no answer is given: what
     * follows an `await` comes before the answer to that request.
     */
    async run() {
        for (const [index, step] of this.#steps.entries()) {
            this.doing = `steps[${index}]`;
            this.service.queue.pause();
            const isDone = await this.perform(step).catch(({ message }) => {
                throw new ScenarioError(this.#file, `steps[${index}]`, message);
            });
            if (!isDone) {
                return;
            }
        }
        this.doing = '';
        await this.until(() => !this.service.isBusy);
    }

    /** Does one step. False if it was stopped first. */
    async perform({ note, ...step }) {
        for (const [name, value] of Object.entries(step)) {
            if (await ACTIONS[name](this, value) === false) {
                return false;
            }
            this.onDone({ [name]: value });
        }
        return true;
    }

    /** Stops at the first step that still waits for the game `ms` milliseconds from now, in real time. */
    stop(ms) {
        this.#deadline = performance.now() + ms;
    }

    /**
     * Lets the game go on until something is so, and with the manual clock gives the answers that are due later. False
     * if it was stopped first. Does not keep the process alive.
     */
    async until(isSo) {
        this.service.queue.resume();
        for (await turn(); !isSo(); await turn()) {
            if (performance.now() >= this.#deadline) {
                return false;
            }
            if (this.isManual && this.service.isBusy) {
                await device.clock.advance(Math.max(this.service.nextDue, 0));
            } else {
                const request = new Promise((resolve) => { this.#wake = resolve; });
                await Promise.race([request, delay(1, null, { ref: false })]);
            }
        }
        return true;
    }

    async awaitRequest(expected) {
        this.doing += ` waits for a request of ${expected.method}`;
        this.onWait(this.doing);
        this.#isAwaited = (request) => matches(expected, request);
        const find = () => this.#requests.findIndex(this.#isAwaited);
        const isMade = find() >= 0 || await this.until(() => find() >= 0);
        this.onWait(isMade ? '' : this.doing);
        this.#requests.splice(0, isMade ? find() + 1 : 0);
        this.#isAwaited = () => false;
        return isMade;
    }

    /** Answers by hand. Rejects if there is no such request; else resolves before the first answer is given. */
    answer({ with: answers, ...which }) {
        return Promise.race([turn(), this.service.answer(which, answers)]);
    }

    async pass(ms) {
        if (this.isManual) {
            this.service.queue.resume();
            await device.clock.advance(ms);
            return true;
        }
        const end = device.clock.now() + ms;
        const cancel = device.clock.after(ms, () => {});  // keeps the process alive
        const isOver = await this.until(() => device.clock.now() >= end);
        cancel();
        return isOver;
    }
}

// What each step does. One that returns false was stopped.
const ACTIONS = {
    await: (player, expected) => player.awaitRequest(expected),
    advance: (player, ms) => player.pass(ms),
    player: ({ service }, playerId) => service.switchPlayer(playerId),
    state: ({ service }, changes) => { service.state = changes; },
    rule: ({ service }, rule) => service.addRule(rule),
    clearRules: ({ service }) => service.clearRules(),
    answer: (player, answer) => player.answer(answer),
    window: ({ context }, state) => (state === 'shown' ? device.showWindow : device.hideWindow)(context),
    systemApp: (player, isSystem) => device.setSystemApp(isSystem),
    fail: (player, { call, ...options }) => device.failNext(call, options),
};

/** Makes the device and a new service as the scenario begins. */
function begin({ systemApp = false, state, rules, seed }, options) {
    device.setSystemApp(systemApp);
    return createService({ state, rules, seed, ...options });
}

module.exports = { Player, begin };
