#!/usr/bin/env node
'use strict';

const { isMetRunning } = require('../service/report.js');
const { withDefaults } = require('../service/scenario.js');
const { readOptions } = require('./options.js');
const { failuresOfRun, reportOutcome } = require('./outcome.js');
const { serve } = require('./server.js');
const { Runs } = require('./runs.js');

const ENDS = { ends: 'has ended', fails: 'has failed', runs: 'was stopped', module: 'was ended by the module' };
const POLL_MS = 20;
const STATUS = { failed: 1, unusable: 2 };

const say = (text) => process.stderr.write(`game emulator: ${text}\n`);

/** Ends the process on a signal, after the game's processes. */
function handleSignals(runs) {
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
    const isMet = () => isMetRunning(expect, stream.facts) && stream.facts.some(({ kind }) => kind === 'played');
    const poll = setInterval(() => isMet() && runs.stop(), POLL_MS);
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
    reportOutcome({ name, failures, seconds: (performance.now() - begun) / 1000, junit });
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
    runs.stream.subscribe(({ kind, how, reason }) => {
        if (kind === 'end') {
            say(`the game ${ENDS[how]}${reason ? ` (${reason})` : ''}; its page stays until Ctrl+C`);
        }
    });
    await runs.start();
}

async function main() {
    const options = readOptions(process.argv.slice(2));
    if (options.help) {
        process.stdout.write(options.help);
        return;
    }
    const runs = new Runs(options);
    handleSignals(runs);
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
