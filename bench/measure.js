'use strict';

// Compares the module with its floors, checks that both make the same calls, prints a table, and updates
// docs/performance.md and docs/performance.svg.
// usage: node bench/measure.js [--json FILE] [--only WORD] [--quick]   (after a build; bench/run does both)
// --only leaves out rows, and --quick measures too briefly: with either, the documents stay as they are.

const { execFileSync } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { json, only = '', quick: isQuick = false } = require('./options');
const { makeTable, writeDocuments } = require('./report');
const { BUILD, median, works } = require('./works');

// Only the module is to be measured, so the device prints no log lines and records no stacks.
Object.assign(process.env, { GAMEAPI_LOG: 'off', GAMEAPI_STACKS: 'off' });

const MS = isQuick ? 0 : 200;  // for each process
const PROCESSES = isQuick ? 1 : 5;

// The lists of cores to measure on: one core that this process may use, and two if it may use more.
function coreLists() {
    const status = fs.readFileSync('/proc/self/status', 'utf8');
    const [, first, separator, next] = /^Cpus_allowed_list:\s+(\d+)(?:([-,])(\d+))?/m.exec(status);
    const second = separator === '-' ? `${Number(first) + 1}` : next;
    return second && !isQuick ? [[first], [first, second]] : [[first]];
}

// Runs a command on these cores, and parses the JSON that it prints.
function runOn(cores, ...command) {
    const options = { encoding: 'utf8', timeout: 120000, stdio: ['ignore', 'pipe', 'inherit'] };
    const policy = ['chrt', '--batch', '0'];  // a thread that wakes does not preempt the one that wakes it
    return JSON.parse(execFileSync('taskset', ['--cpu-list', cores.join(), ...policy, ...command], options));
}

function runChild(work, job) {
    // Otherwise the C library keeps large blocks that were freed, and the peak of memory would contain them.
    const malloc = work.isMemory ? ['env', 'MALLOC_MMAP_THRESHOLD_=131072'] : [];
    const child = [process.execPath, '--expose-gc', path.join(__dirname, 'child.js')];
    return runOn(job.cores, ...malloc, ...child, JSON.stringify({ index: works.indexOf(work), ...job }));
}

function runNative({ work }, size, cores) {
    const { benchmarks } = runOn(cores, path.join(BUILD, 'native_bench'), `--benchmark_filter=^${work} .*/${size}(/|$)`,
        '--benchmark_format=json', '--benchmark_repetitions=9', '--benchmark_report_aggregates_only=true',
        '--benchmark_enable_random_interleaving=true', `--benchmark_min_time=${isQuick ? 0.001 : 0.02}`);
    const medians = benchmarks.filter(({ aggregate_name: name }) => name === 'median');
    return Object.fromEntries(medians.map(({ run_name: name, real_time: ns }) => (
        [name.includes(' module/') ? 'module' : 'floor', [ns / 1000]])));
}

function takeSample(work, size, cores) {
    if (!work.prepare) {
        return runNative(work, size, cores);
    }
    const take = (sides, ms) => runChild(work, { size, sides, ms, cores });
    return work.isMemory ? Object.assign(...work.sides.map((side) => take([side], 0))) : take(work.sides, MS);
}

// A floor that did other work than the module would be none.
function checkCalls(work, size, cores) {
    const difference = work.prepare && !work.isMemory ? runChild(work, { size, ms: 0, cores }) : null;
    if (difference) {
        throw new Error(`${work.work}: module and floor differ in their ${difference}; change bench/floors`);
    }
}

function makeRow({ work, of }, size, cores, { name, unit, goal }, valueOf) {
    const [module, floor] = [valueOf('module'), valueOf('floor')];
    return {
        work: name ? `${work}, ${name}` : work, size, module, floor, bare: valueOf('bare'), unit,
        ratio: valueOf('ratio') ?? module / floor, goal, cores: cores.length, of,
    };
}

// Uses several processes, because chance decides which core each thread of a process gets, for as long as it runs.
function measure(work, size) {
    const lists = work.isMemory ? coreLists().slice(-1) : coreLists();
    checkCalls(work, size, lists[0]);
    const results = lists.map((cores) => Array.from({ length: PROCESSES }, () => takeSample(work, size, cores)));
    return work.figures.flatMap((figure, i) => results.map((samples, j) => makeRow(work, size, lists[j], figure,
        (side) => (side in samples[0] ? median(samples.map((sample) => sample[side][i])) : null))));
}

function measureAll() {
    const wanted = works.filter(({ work }) => work.toLowerCase().includes(only.toLowerCase()));
    if (wanted.length === 0) {
        throw new Error(`no row has "${only}" in its name; there are ${works.map(({ work }) => work).join(', ')}`);
    }
    const sizesOf = ({ sizes }) => (isQuick ? sizes.slice(0, 1) : sizes);
    return wanted.flatMap((work) => sizesOf(work).flatMap((size) => measure(work, size)));
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
    const rows = measureAll();
    process.stdout.write(`${makeTable(rows)}\n`);
    if (json) {
        fs.writeFileSync(json, `${JSON.stringify(rows.map(({ of, ...row }) => row), null, 4)}\n`);
    }
    if (!only && !isQuick) {
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
