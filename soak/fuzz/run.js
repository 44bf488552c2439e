'use strict';

// Gives drawn values to the module and the device, for a number of trials, a time, or one trial of a seed.

const { parseArgs } = require('node:util');

const USAGE = `usage: node soak/fuzz/run.js --seconds N [--seed S]  as many trials as there is time for
       node soak/fuzz/run.js --trials N [--seed S]   N trials, from that of seed S on`;

function readOptions() {
    const text = { type: 'string' };
    const { values } = parseArgs({ options: { seconds: text, trials: text, seed: text } });
    for (const [name, value] of Object.entries(values)) {
        if (!/^\d{1,9}$/.test(value)) {
            throw new Error(`--${name} must be a whole number of at most nine digits, not '${value}'`);
        }
    }
    if ((values.seconds === undefined) === (values.trials === undefined)) {
        throw new Error('one of --seconds and --trials must be given');
    }
    return { seconds: Infinity, trials: Infinity, seed: Date.now() % 1e9, ...values };
}

async function play({ seconds, trials, seed }) {
    const { Trial } = require('./trials');
    const end = Date.now() + seconds * 1000;
    process.on('unhandledRejection', () => {});  // of values that are rejected promises
    let played = 0;
    for (; played < trials && Date.now() < end; ++played) {
        process.exitCode = 1;  // if the process ends within the trial
        const difference = await new Trial(Number(seed) + played).run();
        process.exitCode = difference ? 1 : 0;
        if (difference) {
            console.log(`the trial of seed ${Number(seed) + played}: ${difference}`);
            break;
        }
    }
    const outcome = process.exitCode ? 'a difference' : 'no difference';
    console.log(`fuzzing: ${played} trials from seed ${seed} on, ${outcome}`);
    require('../../tests/support').device.reset();
}

try {
    play(readOptions()).catch((error) => {
        console.log('a trial failed:', error);
        process.exit(1);
    });
} catch (error) {
    console.error(`${error.message}\n${USAGE}`);
    process.exitCode = 2;
}
