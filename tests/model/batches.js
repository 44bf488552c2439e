'use strict';

// Runs sequences in batches, each in its own process. Threads that a sequence leaves waiting end with it, and a crash
// costs one batch and names its seed.

const { execFile } = require('node:child_process');

const RUN = require.resolve('./run');
const BATCH = 200;

/** Plays `count` sequences from `seed` on. Resolves to {sequences, steps, problem}; problem is null if all was well. */
function playBatch(seed, count = BATCH) {
    const args = ['--expose-gc', RUN, '--seed', String(seed), '--count', String(count)];
    return new Promise((resolve) => execFile(process.execPath, args, { maxBuffer: Infinity }, (error, stdout, stderr) => {
        const done = Array.from(stdout.matchAll(/^seed \d+: (\d+) steps$/gm), ([, steps]) => Number(steps));
        const problem = `seed ${seed + done.length}: ended by ${error?.signal || `status ${error?.code || 0}`}\n${stdout}${stderr}`;
        const steps = done.reduce((sum, each) => sum + each, 0);
        resolve({ sequences: done.length, steps, problem: error || done.length < count ? problem : null });
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
