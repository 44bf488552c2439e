'use strict';

// Measures one benchmark at one size, in its own process, and prints the medians of each side as JSON. Or compares what
// the module and its floor ask of the device, and prints null or the difference.
// usage: node --expose-gc bench/child.js JOB
// JOB is JSON: the `index` of the benchmark in works.js; its `size`; the `sides`, which take turns, or none to compare
// module and floor; the time to spend, in `ms`, where 0 is one brief round; and the `cores` that this process is bound
// to, one or two.

const { execFileSync } = require('child_process');
const { isDeepStrictEqual } = require('util');
const { load, median, works } = require('./works');

const MIN_ROUNDS = 9;
const NEVER = Number.MAX_SAFE_INTEGER;

// Times and IDs of transactions are never the same.
const isComparable = ([key]) => !/^trans_id$|_time$/.test(key);
const withoutLine = ({ level, message }) => level + message.replace(/^(\[\(~?\w+):\d+/, '$1');

// What `run` asks of the device.
async function record({ binding, device }, run) {
    binding.reset();  // leaves the listeners, unlike the device's
    device.failNext('napi_typeof', { skip: NEVER });  // calls are counted while one may fail
    await run();
    return {
        calls: device.faults().filter(({ made }) => made > 0).map(({ call, made }) => `${made} ${call}`),
        'log lines': device.logs().map(withoutLine).sort(),  // of several threads
        Wants: device.modals().map(({ want }) => want),
        'analytics events': device.analytics.events().map(({ params }) => params.filter(isComparable)),
    };
}

async function compare(parts, once) {
    const [module, floor] = [() => once(parts.module), () => once(parts.floor)];
    await module();  // what is done once in a process is no part of the work
    await floor();
    const [expected, actual] = [await record(parts, module), await record(parts, floor)];
    const what = Object.keys(expected).find((key) => !isDeepStrictEqual(expected[key], actual[key]));
    const [ofModule, ofFloor] = [expected, actual].map((side) => JSON.stringify(side[what]));
    return what ? `${what}: ${ofModule} of the module, ${ofFloor} of the floor` : null;
}

// Given two cores, binds the JS thread to one and all other threads to the other. Otherwise it is up to chance whether
// two threads that wake each other share a core for the life of the process, which changes the figures severalfold.
function spreadThreads([first, second]) {
    const bind = (core, ...which) => execFileSync('taskset', [...which, '--cpu-list', '--pid', core, process.pid]);
    if (second !== undefined) {
        bind(second, '--all-tasks');
        bind(first);
    }
}

// Compares rounds that ran next to each other, as the speed of the machine changes.
const ratiosOf = ({ module, floor }) => module.map((figures, round) => (
    figures.map((figure, i) => figure / floor[round][i])));

const mediansOf = (samples) => Object.fromEntries(Object.entries(samples).map(([side, rounds]) => (
    [side, rounds[0].map((_, i) => median(rounds.map((figures) => figures[i])))])));

// Runs many short rounds, so that the median ignores those that other work on the machine slowed down. The first round
// only warms up and starts the threads, unless it is the only one.
async function measure(run, { sides, ms, cores }) {
    const samples = Object.fromEntries(sides.map((side) => [side, []]));
    const round = async (order) => {
        for (const side of order) {
            samples[side].push(await run(side));
        }
    };
    await round(sides);
    if (ms > 0) {
        sides.forEach((side) => samples[side].pop());
        spreadThreads(cores);
        for (let i = 0, end = performance.now() + ms; i < MIN_ROUNDS || performance.now() < end; ++i) {
            await round(i % 2 ? [...sides].reverse() : sides);
        }
    }
    return mediansOf(sides.length > 1 ? { ...samples, ratio: ratiosOf(samples) } : samples);
}

async function main({ index, size, ...job }) {
    const parts = load();
    const { run, once } = works[index].prepare(parts, size, job.ms === 0);
    const result = job.sides ? await measure((side) => run(parts[side]), job) : await compare(parts, once);
    process.stdout.write(JSON.stringify(result), () => process.exit());
}

main(JSON.parse(process.argv[2]));
