'use strict';

const { clearTimeout, setTimeout } = require('node:timers');  // captured before a test runner replaces them
const { setImmediate: turn } = require('node:timers/promises');
const device = require('../device/index.js');
const { Player, begin } = require('./player.js');
const { callsIn, codesIn, failuresOf } = require('./report.js');
const { readScenario, withDefaults } = require('./scenario.js');

const GRACE_MS = 1000;  // for requests of a game whose function has returned; in real time

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

/** How a game ended while its steps were played. It still runs if `isMet` comes true first, after the steps. */
async function endOf(ended, player, isMet) {
    const played = player.run();
    const runs = played.then(() => player.until(isMet)).then(() => ({ how: 'runs' }));
    const end = await Promise.race([ended, runs]);
    player.stop(end.how === 'ends' ? GRACE_MS : 0);
    await played.catch((problem) => {
        if (end.how === 'ends') {
            throw problem;  // otherwise the end of the game is the cause
        }
    });
    return end;
}

/** The report of a run. Throws a ScenarioFailure if something was not as expected. */
function reportOf({ name, expect }, { player, records, service }, end) {
    const report = { calls: callsIn(records), codes: codesIn(records), end, state: service.state, records };
    const failures = failuresOf(expect, records, end, player.doing);
    if (failures.length > 0) {
        throw new ScenarioFailure(name, failures, report, end.error);
    }
    return report;
}

/**
 * Plays `source`, a scenario or its file, with a game: a function that gets a context and may return a promise. Begins
 * with a reset of the device and ends with one. Resolves with a report; rejects with a ScenarioFailure that names each
 * expectation that was not met.
 */
async function play(source, game) {
    const file = typeof source === 'string' ? source : 'scenario';
    const scenario = { name: file, ...withDefaults(readScenario(source)) };
    const { clock, timeLimit, expect } = scenario;
    device.reset();
    if (clock === 'manual') {
        device.clock.manual();
    }
    const records = [];
    device.onRecord((record) => records.push(record));
    const context = device.createAbilityContext();
    const service = begin(scenario);
    const player = new Player(scenario, { service, context, file });
    const isEnded = new Promise((resolve) => device.onExit(({ code }) => resolve({ how: 'module', code })));
    let timer;
    const isLate = new Promise((resolve) => {
        timer = setTimeout(() => resolve({ how: 'runs', seconds: timeLimit }), timeLimit * 1000);
    });
    try {
        const isMet = () => expect?.end === 'runs' && failuresOf(expect, records, { how: 'runs' }).length === 0;
        const end = await endOf(Promise.race([isEnded, runGame(game, context), isLate]), player, isMet);
        await turn();
        await turn();  // the device tells of what has happened in the next turn of the loop
        return reportOf(scenario, { player, records, service }, end);
    } finally {
        clearTimeout(timer);
        service.close();
        device.reset();
    }
}

module.exports = { play };
