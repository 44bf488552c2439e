'use strict';

// Captured before a test runner replaces them.
const { setImmediate: turn, setTimeout: delay } = require('node:timers/promises');
const device = require('../device/index.js');
const { Player, begin } = require('./player.js');
const { callsIn, codesIn, failuresOf, isMetRunning } = require('./report.js');
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

/** How the play ends: by the module, by its time limit, with the game, or when one that is to run on has met all. */
async function endOf({ timeLimit, expect }, { player, records, signal }, game) {
    const ends = [
        new Promise((resolve) => device.onExit(({ code }) => resolve({ how: 'module', code }))),
        delay(timeLimit * 1000, { how: 'runs', seconds: timeLimit }, { signal }),
        runGame(game, player.context),
    ];
    const played = player.run();
    const runOn = async () => {
        await played;
        await player.until(() => isMetRunning(expect, records));
        return { how: 'runs' };
    };
    const end = await Promise.race([...ends, runOn()]);
    player.stop(end.how === 'ends' ? GRACE_MS : 0);
    await played.catch((problem) => end.how === 'ends' && Promise.reject(problem));  // else the end is the cause
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
    device.reset();
    if (scenario.clock === 'manual') {
        device.clock.manual();
    }
    const records = [];
    device.onRecord((record) => records.push(record));
    const context = device.createAbilityContext();
    const service = begin(scenario);
    const player = new Player(scenario, { service, context, file });
    const limit = new AbortController();
    try {
        const end = await endOf(scenario, { player, records, signal: limit.signal }, game);
        await turn();
        await turn();  // the device reports what has happened in the next turn of the loop
        return reportOf(scenario, { player, records, service }, end);
    } finally {
        limit.abort();
        service.close();
        device.reset();
    }
}

module.exports = { play };
