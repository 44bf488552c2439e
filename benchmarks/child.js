'use strict';

// Measures one work at one size, in a process of its own, and prints for each list of cores the medians of both sides.
// usage: node --expose-gc benchmarks/child.js WORK SIZE MS SIDE CORES...
// WORK is its place in works.js. SIDE is 'both', taken in turns, or the one side to measure. MS is the time to spend on
// each list of cores; with 0 there is one brief round.

const { execFileSync } = require('child_process');
const works = require('./works');

const MIN_ROUNDS = 9;

const median = (values) => values.sort((a, b) => a - b)[values.length >> 1];

// The whole process, with the threads that it has by now, runs on these cores from here on.
function moveTo(cores) {
    execFileSync('taskset', ['--all-tasks', '--cpu-list', '--pid', cores, `${process.pid}`], { stdio: 'ignore' });
}

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

async function main([work, size, ms, side, ...coreLists]) {
    const sides = works[work].prepare(Number(size), ms === '0');
    const names = side === 'both' ? ['module', 'floor'] : [side];
    const results = [];
    for (const cores of coreLists) {
        moveTo(cores);
        results.push(await measure(sides, names, Number(ms)));
    }
    process.stdout.write(JSON.stringify(results), () => process.exit());
}

main(process.argv.slice(2));
