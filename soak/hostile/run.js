'use strict';

// Plays sequences of hostile steps on the module, and compares it with the model.

const { inspect, parseArgs } = require('node:util');

const USAGE = `usage: node --expose-gc soak/hostile/run.js WHAT
  --seed N [--steps M]         play one sequence, step by step
  --seed N --count K           play K sequences, from that of seed N on
  --soak SECONDS [--seed N]    play as many as there is time for`;
const MAX_NUMBER = 0xffffffff;

const show = (value) =>
    inspect(value, { depth: 9, breakLength: 118, maxArrayLength: 1000, maxStringLength: 200 });

function complain(problem) {
    console.error(`${problem}\n${USAGE}`);
    process.exit(2);
}

function readOptions() {
    const text = { type: 'string' };
    const options = { seed: text, steps: text, count: text, soak: text };
    try {
        const { values } = parseArgs({ options });
        return Object.fromEntries(Object.entries(values).map(([name, value]) => [name, readNumber(name, value)]));
    } catch (error) {
        return complain(error.message);
    }
}

function readNumber(name, value) {
    const least = name === 'seed' ? 0 : 1;
    if (!/^\d+$/.test(value) || value < least || value > MAX_NUMBER) {
        throw new Error(`--${name} must be a whole number from ${least} on, not '${value}'`);
    }
    return Number(value);
}

function tell({ index, step, what, expected, actual }) {
    console.log(`The first difference, in ${what} after step ${index}, ${show(step)}:`);
    console.log(`expected ${show(expected)}`);
    console.log(`actual   ${show(actual)}`);
    process.exitCode = 1;
}

async function playOne({ seed, steps }) {
    const { Sequence } = require('./sequence');
    const sequence = new Sequence(seed, { steps, isWatched: true });
    const watch = (index, step) => console.log(index, show(step));
    process.exitCode = 1;  // until the end was reached
    const difference = await sequence.run(watch);
    process.exitCode = 0;
    if (difference) {
        tell(difference);
    } else {
        console.log(`${sequence.steps} steps, no difference`);
    }
}

async function playMany({ seed, count }) {
    const { Sequence } = require('./sequence');
    const report = process.send ? (progress) => process.send(progress) : () => {};
    for (let i = 0; i < count; ++i) {
        const sequence = new Sequence(seed + i);
        report({ seed: seed + i });
        const difference = await sequence.run();
        if (difference) {
            tell(difference);
            console.log(`again, step by step: node --expose-gc soak/hostile/run.js --seed ${seed + i}`);
            break;
        }
        report({ seed: seed + i, isDone: true, steps: sequence.steps });
    }
    console.log(`${count} sequences from seed ${seed} on, ${process.exitCode ? 'a difference' : 'no difference'}`);
    process.disconnect?.();
}

async function soak({ soak: seconds, seed = Date.now() % MAX_NUMBER }) {
    const end = Date.now() + seconds * 1000;
    const { sequences, steps, problem } = await require('./batches').playBatches(seed, 2, () => Date.now() < end);
    console.log(`${problem ? `${problem}\n` : ''}hostile answers: ${sequences} sequences from seed ${seed} on, ` +
        `${steps} steps, ${problem ? 'a difference' : 'no difference'}`);
    process.exitCode = problem ? 1 : 0;
}

const options = readOptions();
if (options.soak) {
    soak(options);
} else if (options.seed === undefined) {
    complain('--seed or --soak is missing');
} else if (options.count) {
    playMany(options);
} else {
    playOne(options);
}
