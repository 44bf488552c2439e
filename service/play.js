'use strict';

const timers = require('node:timers');
const { setImmediate: turn } = require('node:timers/promises');
const device = require('../device/index.js');
const { callsIn, codesIn, failuresOf } = require('./report.js');
const { isMeant } = require('./rules.js');
const { readScenario } = require('./scenario.js');
const { createService } = require('./service.js');

const { clearTimeout, setTimeout } = timers;  // captured before a test runner replaces them
const LIMIT_S = 30;
const GRACE_MS = 1000;  // for requests of a game whose function has returned; in real time

/**
 * Plays the steps of a scenario on a service and the window of a context. With the manual clock, the time also jumps to
 * the next answer that is due while a step waits for the game.
 */
class Player {
    #steps;
    #requests = [];  // not awaited yet
    #deadline = Infinity;
    #wake = () => {};  // ends a wait for the game
    #awaited = null;  // the request that a step waits for
    #held = null;  // a promise while no answer is given
    #letGo = () => {};

    constructor({ steps = [], clock = 'manual' }, { service, context }) {
        this.#steps = steps;
        this.isManual = clock === 'manual';
        this.service = service;
        this.context = context;
        this.doing = '';
        this.onWait = () => {};  // called with what a step waits for, and with '' when that has come
        this.onDone = () => {};  // called with each action that was done
        service.gate = () => this.#held;
        service.on('request', (request) => this.#note(request));
    }

    #note(request) {
        this.#requests.push(request);
        if (this.#awaited && isMeant(this.#awaited, request)) {
            this.#hold();
        }
        this.#wake();
    }

    // While steps act, no answer is given: what follows an `await` comes before the answer to that request.
    #hold() {
        this.#held ??= new Promise((resolve) => {
            this.#letGo = () => {
                this.#held = null;
                resolve();
            };
        });
    }

    /** Resolves when all steps are done and no answer is due, or when it was stopped. `doing` then says where. */
    async run() {
        for (const [index, step] of this.#steps.entries()) {
            this.doing = `steps[${index}]`;
            this.#hold();
            if (!await this.perform(step)) {
                return;
            }
        }
        if (await this.until(() => !this.service.isBusy)) {
            this.doing = '';
        }
    }

    /** Does one step. False if it was stopped first. */
    async perform({ note, ...step }) {
        for (const [name, value] of Object.entries(step)) {
            if (!await ACTIONS[name].call(this, value)) {
                return false;
            }
            this.onDone({ [name]: value });
        }
        return true;
    }

    /** Stops at the first step that still waits for the game `ms` milliseconds from now, in real time. */
    stop(ms) {
        this.#deadline = Math.min(this.#deadline, performance.now() + ms);
    }

    /**
     * Lets the game go on until something is so, and with the manual clock gives the answers that are due later. False
     * if it was stopped first. Does not keep the process alive.
     */
    async until(isSo) {
        this.#letGo();
        for (await turn(); !isSo(); await turn()) {
            if (performance.now() >= this.#deadline) {
                return false;
            }
            if (this.isManual && this.service.isBusy) {
                await device.clock.advance(Math.max(this.service.nextDue, 0));
            } else {
                await new Promise((resolve) => {
                    this.#wake = resolve;
                    setTimeout(resolve, 1).unref();
                });
            }
        }
        return true;
    }

    async awaitRequest(expected) {
        this.doing += ` waits for a request of ${expected.method}`;
        this.onWait(this.doing);
        const find = () => this.#requests.findIndex((request) => isMeant(expected, request));
        this.#awaited = expected;
        const isMade = find() >= 0 || await this.until(() => find() >= 0);
        this.#awaited = null;
        this.onWait(isMade ? '' : this.doing);
        this.#requests.splice(0, isMade ? find() + 1 : 0);
        return isMade;
    }

    async pass(ms) {
        this.#letGo();
        if (this.isManual) {
            await device.clock.advance(ms);
        } else {
            await new Promise((resolve) => device.clock.after(ms, resolve));
        }
    }
}

// Each returns whether the scenario goes on.
const ACTIONS = {
    await(expected) {
        return this.awaitRequest(expected);
    },
    async advance(ms) {
        await this.pass(ms);
        return true;
    },
    async player(playerId) {
        await this.service.switchPlayer(playerId);
        return true;
    },
    state(changes) {
        this.service.state = changes;
        return true;
    },
    rule(rule) {
        this.service.addRule(rule);
        return true;
    },
    clearRules() {
        this.service.clearRules();
        return true;
    },
    // The answers may be due later: only whether there is a request to answer is awaited.
    async answer({ with: answers, ...which }) {
        await Promise.race([this.service.answer(which, answers), turn()]);
        return true;
    },
    window(state) {
        (state === 'shown' ? device.showWindow : device.hideWindow)(this.context);
        return true;
    },
    systemApp(isSystem) {
        device.setSystemApp(isSystem);
        return true;
    },
    fail({ call, ...options }) {
        device.failNext(call, options);
        return true;
    },
};

/** Makes the device and a new service as the scenario begins. */
function begin({ clock = 'manual', systemApp = false, state, rules, seed }, options) {
    if (clock === 'manual') {
        device.clock.manual();
    }
    device.setSystemApp(systemApp);
    return createService({ state, rules, seed, ...options });
}

/** Runs the game; resolves with how it ended, and keeps what it threw in `error`. */
async function runGame(game, context) {
    try {
        await game(context);
        return { how: 'ends' };
    } catch (error) {
        return { how: 'fails', reason: `${error?.message ?? error}`, error };
    }
}

class ScenarioFailure extends Error {
    constructor(name, failures, report, cause) {
        super([`${name}: ${failures.length} failed`, ...failures].join('\n  '), cause ? { cause } : undefined);
        this.name = 'ScenarioFailure';
        this.report = report;
        this.failures = failures;
    }
}

/** How a game ended while its steps were played. One that is to run is done when `isMet` after the steps. */
async function endOf(ended, player, isMet) {
    const played = player.run();
    const runs = played.then(() => player.until(isMet)).then(() => ({ how: 'runs' }));
    const end = await Promise.race([ended, runs]);
    player.stop(end.how === 'ends' ? GRACE_MS : 0);
    await played;
    return end;
}

/**
 * Plays `source`, a scenario or its file, with a game: a function that gets a context and may return a promise. Begins
 * with a reset of the device and ends with one. Resolves with a report; rejects with a ScenarioFailure that names each
 * expectation that was not met.
 */
async function play(source, game) {
    const scenario = readScenario(source);
    const { name = typeof source === 'string' ? source : 'scenario', timeLimit = LIMIT_S, expect } = scenario;
    device.reset();
    const records = [];
    device.onRecord((record) => records.push(record));
    const context = device.createAbilityContext();
    const service = begin(scenario);
    const player = new Player(scenario, { service, context });
    const isEnded = new Promise((resolve) => device.onExit(({ code }) => resolve({ how: 'module', code })));
    let timer;
    const isLate = new Promise((resolve) => {
        timer = setTimeout(() => resolve({ how: 'runs', seconds: timeLimit }), timeLimit * 1000);
    });
    try {
        const ended = Promise.race([isEnded, runGame(game, context), isLate]);
        const isMet = () => expect?.end === 'runs' && failuresOf(expect, records, { how: 'runs' }).length === 0;
        const end = await endOf(ended, player, isMet);
        await turn();
        await turn();  // the device tells of what has happened in the next turn of the loop
        const report = { calls: callsIn(records), codes: codesIn(records), end, state: service.state, records };
        const stuck = player.doing ? [`${player.doing}, which the game did not make`] : [];
        const failures = [...stuck, ...failuresOf(expect, records, end)];
        if (failures.length > 0) {
            throw new ScenarioFailure(name, failures, report, end.error);
        }
        return report;
    } finally {
        clearTimeout(timer);
        service.close();
        device.reset();
    }
}

module.exports = { LIMIT_S, Player, begin, play };
