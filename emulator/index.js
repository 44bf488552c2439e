#!/usr/bin/env node
'use strict';

const { failuresOf } = require('../service/report.js');
const { ScenarioError, withDefaults } = require('../service/scenario.js');
const { UsageError, readOptions } = require('./options.js');
const { failuresOfRun, tellOutcome } = require('./outcome.js');
const { serve } = require('./server.js');
const { Runs } = require('./runs.js');

const ENDS = { ends: 'has ended', fails: 'has failed', runs: 'was stopped', module: 'was ended by the module' };
const POLL_MS = 20;
const STATUS = { failed: 1, unusable: 2 };

const say = (text) => process.stderr.write(`game emulator: ${text}\n`);

/** Leaves when the process is told to, after the game's processes. */
function obeySignals(runs) {
    for (const [signal, status] of [['SIGINT', 130], ['SIGTERM', 143], ['SIGHUP', 129]]) {
        process.on(signal, () => {
            runs.close();
            process.exit(status);
        });
    }
    process.on('exit', () => runs.close());
}

/** Stops a game that is to run on as soon as it has met what is expected; any game when its time is over. */
function watchOver(runs, { expect, timeLimit }) {
    const { stream } = runs;
    const timer = setTimeout(() => runs.stop(), timeLimit * 1000);
    const isMet = () => stream.facts.some(({ kind }) => kind === 'played') &&
        failuresOf(expect, stream.facts, { how: 'runs' }).length === 0;
    const poll = setInterval(() => expect?.end === 'runs' && isMet() && runs.stop(), POLL_MS);
    return () => {
        clearTimeout(timer);
        clearInterval(poll);
    };
}

async function playHeadless(runs, { scenario: given, file, junit }) {
    const scenario = withDefaults(given);
    const begun = performance.now();
    const done = watchOver(runs, scenario);
    const end = await runs.start();
    done();
    const name = scenario.name ?? file ?? 'the game';
    const failures = failuresOfRun(scenario, runs.stream, { ...end, seconds: scenario.timeLimit });
    tellOutcome({ name, failures, seconds: (performance.now() - begun) / 1000, junit });
    if (end.isUnstarted && !runs.stream.facts.some(({ kind }) => kind === 'call')) {
        say(`the game could not start: ${end.reason}`);
        return STATUS.unusable;
    }
    return failures.length > 0 ? STATUS.failed : 0;
}

async function playWithPage(runs, options) {
    process.stdout.write(`${await serve(runs, options)}\n`);
    if (options.watch) {
        runs.watch();
    }
    runs.stream.listen(({ kind, how, reason }) => {
        if (kind === 'end') {
            say(`the game ${ENDS[how]}${reason ? ` (${reason})` : ''}; its page stays until Ctrl+C`);
        }
    });
    await runs.start();
}

async function main() {
    let options;
    try {
        options = readOptions(process.argv.slice(2));
    } catch (error) {
        if (!(error instanceof UsageError || error instanceof ScenarioError)) {
            throw error;
        }
        say(error.message);
        process.exit(STATUS.unusable);
    }
    if (options.help) {
        process.stdout.write(options.help);
        return;
    }
    const runs = new Runs(options);
    obeySignals(runs);
    if (options.headless) {
        process.exitCode = await playHeadless(runs, options);
    } else {
        await playWithPage(runs, options);
    }
}

main().catch((error) => {
    say(error.message);
    process.exit(STATUS.unusable);
});
