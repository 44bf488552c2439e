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
    const scenario = withDefaults(readScenario(source));
    const file = typeof source === 'string' ? source : 'scenario';
    const { clock, name = file, timeLimit, expect } = scenario;
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

module.exports = { play };
