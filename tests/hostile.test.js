'use strict';

const assert = require('node:assert/strict');
const { spawnSync } = require('node:child_process');
const path = require('node:path');
const { test } = require('node:test');
const { ROOT, runInChild } = require('./support');
const { playBatches } = require('./model/batches');

const RUN = path.join(ROOT, 'tests', 'model', 'run.js');
const FIRST_SEED = 1;
const BATCHES = 10;

test('two thousand sequences of calls, answers and ends show what the model shows', { timeout: 300000 }, async (t) => {
    const { sequences, steps, problem } = await playBatches(FIRST_SEED, 2, (batch) => batch < BATCHES);
    assert.equal(problem, null);
    assert.ok(steps > 10 * sequences);
    t.diagnostic(`${sequences} sequences, ${steps} steps`);
});

test('a module that does otherwise is noticed, and the seed shows it again', async () => {
    const { stdout } = await runInChild(async ({ game, ROOT }) => {
        const bindPlayer = (context, openId, ...rest) => game.bindPlayer(context, `${openId}`, ...rest);
        require.cache[require.resolve(ROOT)].exports = Object.create(game, { bindPlayer: { value: bindPlayer } });
        const { Sequence } = require(`${ROOT}/tests/model/sequence`);
        const find = async (seed) => await new Sequence(seed).run() || (seed < 300 ? find(seed + 1) : null);
        const { what } = await find(1);
        console.log(what);
        process.exit();
    });
    assert.match(stdout, /^(modals opened|warnings and errors|outcome)\n$/);
});

test('a wrong argument is reported in one line, with the usage', () => {
    for (const [args, complaint] of [
        [[], '--seed or --soak is missing'],
        [['--seed', 'x'], "--seed must be a whole number from 0 on, not 'x'"],
        [['--soak', '0'], "--soak must be a whole number from 1 on, not '0'"],
        [['--nothing'], "Unknown option '--nothing'"],
    ]) {
        const { status, stderr } = spawnSync(process.execPath, [RUN, ...args], { encoding: 'utf8' });
        assert.equal(status, 2);
        assert.ok(stderr.startsWith(complaint) && stderr.includes('\nusage: '), stderr);
    }
});
