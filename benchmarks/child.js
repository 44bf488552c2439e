'use strict';

// Measures one work at one size, in a process of its own, and prints the medians of its sides.
// usage: node --expose-gc benchmarks/child.js WORK SIZE MS SIDE
// WORK is its place in works.js. SIDE is 'both', taken in turns, or the one side to measure. MS is the time to spend;
// with 0 there is one brief round.

const works = require('./works');

const MIN_ROUNDS = 9;

const median = (values) => values.sort((a, b) => a - b)[values.length >> 1];

// Many short rounds: a median then leaves out those that something else on the machine stretched. The first one only
// warms up.
async function measure(sides, names, ms) {
    const samples = Object.fromEntries(names.map((name) => [name, []]));
    const end = performance.now() + ms;
    for (let round = 0; round <= (ms > 0 ? MIN_ROUNDS : 0) || performance.now() < end; ++round) {
        for (const name of round % 2 ? names : [...names].reverse()) {
            const figures = await sides[name]();
            samples[name].push(...(round > 0 || ms === 0 ? [figures] : []));
        }
    }
    return Object.fromEntries(names.map((name) => [name,
        samples[name][0].map((_, i) => median(samples[name].map((figures) => figures[i])))]));
}

async function main([work, size, ms, side]) {
    const sides = works[work].prepare(Number(size), ms === '0');
    const figures = await measure(sides, side === 'both' ? ['module', 'floor'] : [side], Number(ms));
    process.stdout.write(JSON.stringify(figures), () => process.exit());
}

main(process.argv.slice(2));
