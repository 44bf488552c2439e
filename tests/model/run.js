'use strict';

// Plays random sequences of steps on the module, and compares it with the model.

const { inspect, parseArgs } = require('node:util');

const USAGE = `usage: node --expose-gc tests/model/run.js WHAT
  --seed N                     play one sequence, step by step
  --seed N --count K           play K sequences, from that of seed N on
  --soak SECONDS [--seed N]    play as many as there is time for`;
const MAX_NUMBER = 0xffffffff;

const show = (value) =>
    inspect(value, { depth: 9, breakLength: 118, maxArrayLength: 1000, maxStringLength: 200 });

function readOptions() {
    const text = { type: 'string' };
    try {
        const { values } = parseArgs({ options: { seed: text, count: text, soak: text } });
        if (!values.seed && !values.soak) {
            throw new Error('--seed or --soak is missing');
        }
        return Object.fromEntries(Object.entries(values).map(([name, value]) => [name, readNumber(name, value)]));
    } catch (error) {
        console.error(`${error.message}\n${USAGE}`);
        return process.exit(2);
    }
}

function readNumber(name, value) {
    const least = name === 'seed' ? 0 : 1;
    if (!/^\d+$/.test(value) || value < least || value > MAX_NUMBER) {
        throw new Error(`--${name} must be a whole number from ${least} on, not '${value}'`);
    }
    return Number(value);
}

async function playAll({ seed, count }) {
    process.exitCode = 1;  // in case the process ends early
    const { playSequence } = require('./sequence');
    const watch = count ? undefined : (index, step) => console.log(index, show(step));
    for (const end = seed + (count || 1); seed < end; ++seed) {
        const { steps, difference } = await playSequence(seed, watch);
        if (difference) {
            const { index, step, what, expected, actual } = difference;
            console.log(`The first difference, in ${what} after step ${index}, ${show(step)}:`);
            console.log(`expected ${show(expected)}\nactual   ${show(actual)}`);
            console.log(`again, step by step: node --expose-gc tests/model/run.js --seed ${seed}`);
            return;
        }
        console.log(`seed ${seed}: ${steps} steps`);
    }
    process.exitCode = 0;
}

async function soak({ soak: seconds, seed = Date.now() % MAX_NUMBER }) {
    const end = Date.now() + seconds * 1000;
    const { sequences, steps, problem } = await require('./batches').playBatches(seed, 2, () => Date.now() < end);
    console.log(`${problem ? `${problem}\n` : ''}hostile answers: ${sequences} sequences from seed ${seed} on, ` +
        `${steps} steps, ${problem ? 'a difference' : 'no difference'}`);
    process.exitCode = problem ? 1 : 0;
}

const options = readOptions();
void (options.soak ? soak(options) : playAll(options));
