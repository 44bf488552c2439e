'use strict';

// Runs sequences in batches, each in its own process. Threads that a sequence leaves waiting end with it, and a crash
// costs one batch and names its seed.

const { firstGroups, runNode } = require('../support/files');

const BATCH = 200;

/** Plays `count` sequences from `seed` on. Resolves to {sequences, steps, problem}; problem is null if all was well. */
async function playBatch(seed, count = BATCH) {
    const args = ['--expose-gc', require.resolve('./run'), '--seed', `${seed}`, '--count', `${count}`];
    const { code, signal, stdout, stderr } = await runNode(args, { timeout: 0 });
    const done = firstGroups(stdout, /^seed \d+: (\d+) steps$/gm).map(Number);
    const problem = `seed ${seed + done.length}: ended by ${signal || `status ${code}`}\n${stdout}${stderr}`;
    const steps = done.reduce((sum, each) => sum + each, 0);
    return { sequences: done.length, steps, problem: code !== 0 || done.length < count ? problem : null };
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
            sum.problem ||= problem;
        }
    };
    await Promise.all(Array.from({ length: lanes }, runLane));
    return sum;
}

module.exports = { playBatches };
