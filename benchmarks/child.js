'use strict';

// Measures one work at one size, in a process of its own, and prints the medians of its sides.
// usage: node --expose-gc benchmarks/child.js WORK SIZE MS SIDE CORES
// WORK is its place in works.js. SIDE is 'all', taken in turns, or the one side to measure; 'calls' tells instead whether
// module and floor make the same calls. MS is the time to spend; with 0 there is one brief round. CORES are the one or two
// that this process is bound to.

const { execFileSync } = require('child_process');
const fs = require('fs');
const { difference } = require('./calls');
const works = require('./works');

const MIN_ROUNDS = 9;

const median = (values) => values.sort((a, b) => a - b)[values.length >> 1];

// Of two cores the JS thread gets one, and all others get the other. Left alone, two threads that wake each other may
// share a core for the life of a process, or not: chance would decide between figures several times apart.
function spreadThreads([first, second]) {
    for (const thread of second === undefined ? [] : fs.readdirSync('/proc/self/task')) {
        const core = Number(thread) === process.pid ? first : second;
        execFileSync('taskset', ['--cpu-list', '--pid', core, thread], { stdio: ['ignore', 'ignore', 'inherit'] });
    }
}

// Many short rounds: a median then leaves out those that something else on the machine stretched. The first one only
// warms up, and starts the threads.
async function measure(sides, names, ms, cores) {
    const samples = Object.fromEntries(names.map((name) => [name, []]));
    let end = performance.now() + ms;
    for (let round = 0; round <= (ms > 0 ? MIN_ROUNDS : 0) || performance.now() < end; ++round) {
        for (const name of round % 2 ? names : [...names].reverse()) {
            const figures = await sides[name]();
            samples[name].push(...(round > 0 || ms === 0 ? [figures] : []));
        }
        if (round === 0 && ms > 0) {
            spreadThreads(cores);
            end = performance.now() + ms;
        }
    }
    return Object.fromEntries(names.map((name) => [name,
        samples[name][0].map((_, i) => median(samples[name].map((figures) => figures[i])))]));
}

async function main([work, size, ms, side, cores]) {
    const { once, ...sides } = works[work].prepare(Number(size), ms === '0');
    const result = side === 'calls' ? await difference(require('../device'), once) :
        await measure(sides, side === 'all' ? Object.keys(sides) : [side], Number(ms), cores.split(','));
    process.stdout.write(JSON.stringify(result), () => process.exit());
}

main(process.argv.slice(2));
