'use strict';

// Sequences by the hundred, each batch in a process of its own: the threads that a sequence leaves waiting go with it,
// and a crash costs one batch and names its seed.

const { fork } = require('node:child_process');

const RUN = require.resolve('./run');
const BATCH = 200;

/** Plays `count` sequences from `seed` on. Resolves to {sequences, steps, problem}; problem is null if all was well. */
function playBatch(seed, count = BATCH) {
    const args = ['--seed', String(seed), '--count', String(count)];
    const child = fork(RUN, args, { execArgv: ['--expose-gc'], stdio: ['ignore', 'pipe', 'pipe', 'ipc'] });
    const played = { sequences: 0, steps: 0, problem: null };
    const said = [];
    let latest = seed;
    child.stdout.on('data', (text) => said.push(text));
    child.stderr.on('data', (text) => said.push(text));
    child.on('message', (progress) => {
        latest = progress.seed;
        played.sequences += progress.isDone ? 1 : 0;
        played.steps += progress.isDone ? progress.steps : 0;
    });
    return new Promise((resolve) => child.on('close', (code, signal) => {
        if (code !== 0 || played.sequences !== count) {
            played.problem = `seed ${latest}: ended by ${signal || `status ${code}`}\n${said.join('')}`;
        }
        resolve(played);
    }));
}

/** Plays batches, `lanes` at a time, while `isWanted(batch number)` and nothing went wrong. Resolves to their sum. */
async function playBatches(seed, lanes, isWanted) {
    const sum = { sequences: 0, steps: 0, problem: null };
    let next = 0;
    const runLane = async () => {
        while (!sum.problem && isWanted(next)) {
            const { sequences, steps, problem } = await playBatch(seed + next++ * BATCH);
            sum.sequences += sequences;
            sum.steps += steps;
            sum.problem = sum.problem || problem;
        }
    };
    await Promise.all(Array.from({ length: lanes }, runLane));
    return sum;
}

module.exports = { playBatches };
