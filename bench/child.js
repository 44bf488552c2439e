'use strict';

// Measures one benchmark at one size, in its own process, and prints the medians of each side.
// usage: node --expose-gc bench/child.js WORK SIZE MS SIDE CORES
// WORK is the index of the benchmark in works.js. SIDE is 'module', 'floor', 'bare', or 'all', which take turns; 'calls'
// compares the calls of module and floor instead. MS is the time to spend; 0 runs one brief round. CORES lists the one or
// two cores that this process is bound to.

const { execFileSync } = require('child_process');
const fs = require('fs');
const { difference } = require('./calls');
const works = require('./works');

const MIN_ROUNDS = 9;

const median = (values) => values.sort((a, b) => a - b)[values.length >> 1];

// Given two cores, binds the JS thread to one and all other threads to the other. Otherwise it is up to chance whether
// two threads that wake each other share a core for the life of the process, which changes the figures severalfold.
function spreadThreads([first, second]) {
    for (const thread of second === undefined ? [] : fs.readdirSync('/proc/self/task')) {
        const core = Number(thread) === process.pid ? first : second;
        execFileSync('taskset', ['--cpu-list', '--pid', core, thread], { stdio: ['ignore', 'ignore', 'inherit'] });
    }
}

// Compares rounds that ran next to each other, as the speed of the machine changes.
const ratiosOf = ({ module, floor }) => module.map((figures, round) => (
    figures.map((figure, i) => figure / floor[round][i])));

const mediansOf = (samples) => Object.fromEntries(Object.entries(samples).map(([name, rounds]) => (
    [name, rounds[0].map((_, i) => median(rounds.map((figures) => figures[i])))])));

// Runs many short rounds, so that the median ignores those that other work on the machine slowed down. The first round
// only warms up and starts the threads, unless it is the only one.
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
    return mediansOf(samples.module && samples.floor ? { ...samples, ratio: ratiosOf(samples) } : samples);
}

async function main([work, size, ms, side, cores]) {
    const { once, ...sides } = works[work].prepare(Number(size), ms === '0');
    const result = side === 'calls' ? await difference(require('../device'), once) :
        await measure(sides, side === 'all' ? Object.keys(sides) : [side], Number(ms), cores.split(','));
    process.stdout.write(JSON.stringify(result), () => process.exit());
}

main(process.argv.slice(2));
