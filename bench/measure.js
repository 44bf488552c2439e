'use strict';

// Compares the module with its floors, checks that both make the same calls, prints a table, and updates
// docs/performance.md and docs/performance.svg.
// usage: node bench/measure.js [--json FILE] [--only WORD] [--quick]   (after a build; bench/run does both)
// --only leaves out rows, and --quick measures too briefly: with either, the documents stay as they are.

const { execFileSync } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { json, only = '', quick = false } = require('./options');
const { makeTable, writeDocuments } = require('./report');
const works = require('./works');

// Only the module is to be measured, so the device prints no log lines and records no stacks.
Object.assign(process.env, { GAMEAPI_LOG: 'off', GAMEAPI_STACKS: 'off' });

const BUILD = path.join(__dirname, '..', 'out', process.env.GAMEAPI_BUILD || 'release');
const MS = 200;  // for each process
const PROCESSES = 5;
const LIMIT_MS = 120000;
const NATIVE = {
    Base64Encode: { goal: 1, of: 'bytes' },
    IsValidEnv: { goal: 1.1, of: 'environments' },
    'log line': { goal: 1.1, of: 'bytes of text' }
};

const median = (values) => values.sort((a, b) => a - b)[values.length >> 1];

// The lists of cores to measure on: one core that this process may use, and two cores if it may use more.
function coreLists() {
    const [, list] = /^Cpus_allowed_list:\s+(\S+)/m.exec(fs.readFileSync('/proc/self/status', 'utf8'));
    const cores = list.split(',').flatMap((range) => {
        const [first, last = first] = range.split('-').map(Number);
        return Array.from({ length: last - first + 1 }, (_, i) => first + i);
    });
    return cores.length > 1 ? [`${cores[0]}`, `${cores[0]},${cores[1]}`] : [`${cores[0]}`];
}

// Runs a command on these cores, and parses the JSON that it prints.
function runOn(cores, ...command) {
    const options = { encoding: 'utf8', timeout: LIMIT_MS, maxBuffer: 1 << 26, stdio: ['ignore', 'pipe', 'inherit'] };
    const policy = ['chrt', '--batch', '0'];  // a thread that wakes does not preempt the one that wakes it
    return JSON.parse(execFileSync('taskset', ['--cpu-list', cores, ...policy, ...command], options));
}

function runChild(work, size, ms, side, cores) {
    // Otherwise the C library keeps large blocks that were freed, and the peak of memory would contain them.
    const malloc = work.isMemory ? ['env', 'MALLOC_MMAP_THRESHOLD_=131072'] : [];
    const child = path.join(__dirname, 'child.js');
    return runOn(cores, ...malloc, process.execPath, '--expose-gc', child, works.indexOf(work), size, ms, side, cores);
}

const makeRow = (work, size, cores, { module, floor, bare = null, ratio = module / floor }, { unit, goal }, of) => (
    { work, size, module, floor, bare, unit, ratio, goal, cores: cores.split(',').length, of });

const nameOf = ({ work }, { name }) => (name ? `${work}, ${name}` : work);

// To measure time, the sides take turns in one process. To measure memory, each has its own process, because a
// process may keep memory that was freed.
function takeSample(work, size, ms, cores) {
    const take = (side) => runChild(work, size, work.isMemory ? 0 : ms, side, cores);
    return work.isMemory ? Object.assign({}, ...work.isMemory.map(take)) : take('all');
}

// A floor that did other work than the module would be none.
function checkCalls(work, size, cores) {
    const difference = work.isMemory ? null : runChild(work, size, 0, 'calls', cores);
    if (difference) {
        throw new Error(`${work.work}: module and floor differ in their ${difference}; change bench/floors`);
    }
}

// Uses several processes, because chance decides which core each thread of a process gets, for as long as it runs.
function measure(work, size, lists, isQuick) {
    checkCalls(work, size, lists[0]);
    const results = (work.isMemory ? lists.slice(-1) : lists).map((cores) => [cores, Array.from(
        { length: isQuick ? 1 : PROCESSES }, () => takeSample(work, size, isQuick ? 0 : MS, cores))]);
    return work.figures.flatMap((figure, i) => results.map(([cores, samples]) => {
        const sides = Object.keys(samples[0]).map((side) => [side, median(samples.map((sample) => sample[side][i]))]);
        return makeRow(nameOf(work, figure), size, cores, Object.fromEntries(sides), figure, work.of);
    }));
}

function measureNative(names, lists, isQuick) {
    const care = isQuick ? ['--benchmark_min_time=0.001']
        : ['--benchmark_min_time=0.02', '--benchmark_repetitions=9', '--benchmark_enable_random_interleaving=true'];
    const run = (cores) => runOn(cores, path.join(BUILD, 'native_bench'), '--benchmark_format=json',
        `--benchmark_filter=^(${names.join('|')}) `, ...care).benchmarks;
    return lists.flatMap((cores) => {
        const benchmarks = Array.from({ length: isQuick ? 1 : PROCESSES }, () => run(cores)).flat();
        const groups = new Map();
        for (const { run_name: runName, run_type: type, real_time: ns } of benchmarks) {
            const [, work, side, size] = /^(.*) (module|floor|bare)\/(\d+)/.exec(runName);
            const group = groups.get(`${work}/${size}`) || { work, size: Number(size), module: [], floor: [], bare: [] };
            groups.set(`${work}/${size}`, group);
            group[side].push(...(type === 'iteration' ? [ns / 1000] : []));
        }
        return [...groups.values()].map(({ work, size, module, floor, bare }) => makeRow(work, size, cores,
            { module: median(module), floor: median(floor), bare: median(bare) }, { unit: 'us', ...NATIVE[work] },
            NATIVE[work].of));
    }).sort((a, b) => names.indexOf(a.work) - names.indexOf(b.work) || a.size - b.size || a.cores - b.cores);
}

function measureAll(only, isQuick) {
    const isWanted = (name) => name.toLowerCase().includes(only.toLowerCase());
    const lists = isQuick ? coreLists().slice(0, 1) : coreLists();
    const jobs = works.filter(({ work }) => isWanted(work)).flatMap((work) => (
        (isQuick ? work.sizes.slice(0, 1) : work.sizes).map((size) => () => measure(work, size, lists, isQuick))));
    const natives = Object.keys(NATIVE).filter(isWanted);
    if (natives.length > 0) {
        jobs.push(() => measureNative(natives, lists, isQuick));
    }
    if (jobs.length === 0) {
        const names = [...works.map(({ work }) => work), ...Object.keys(NATIVE)].join(', ');
        throw new Error(`no row has "${only}" in its name; there are ${names}`);
    }
    return jobs.flatMap((job) => job());
}

// Called before the measurements, which take minutes.
function checkWritable(file) {
    try {
        fs.closeSync(fs.openSync(file, 'a'));
    } catch (error) {
        throw new Error(`${file} cannot be written (${error.code}): give --json a file that can be`);
    }
}

function main() {
    if (json) {
        checkWritable(json);
    }
    const rows = measureAll(only, quick);
    process.stdout.write(`${makeTable(rows)}\n`);
    if (json) {
        fs.writeFileSync(json, `${JSON.stringify(rows.map(({ of, ...row }) => row), null, 4)}\n`);
    }
    if (!only && !quick) {
        const [node] = process.versions.node.split('.');
        writeDocuments(rows, `${os.cpus().length} cores of ${os.arch()} with Node ${node}`);
    }
}

try {
    main();
} catch (error) {
    process.stderr.write(`bench: ${error.message.split('\n')[0]}\n`);
    process.exitCode = 1;
}
