'use strict';

const assert = require('node:assert/strict');
const { test } = require('node:test');
const { playBatches } = require('./model/batches');
const { runInChild } = require('./support');

const FIRST_SEED = 1;
const BATCHES = 10;

test('two thousand sequences show what the model shows', { timeout: 300000 }, async (t) => {
    const { sequences, steps, problem } = await playBatches(FIRST_SEED, 2, (batch) => batch < BATCHES);
    assert.equal(problem, null);
    assert.ok(steps > 10 * sequences);
    t.diagnostic(`${sequences} sequences, ${steps} steps`);
});

test('a module that does otherwise is noticed, and the seed shows it again', async () => {
    const { stdout } = await runInChild(async ({ game, ROOT }) => {
        const bindPlayer = (context, openId, ...rest) => game.bindPlayer(context, `${openId}`, ...rest);
        require.cache[require.resolve(ROOT)].exports = Object.create(game, { bindPlayer: { value: bindPlayer } });
        const { playSequence } = require(`${ROOT}/tests/model/sequence`);
        const find = async (seed) => (await playSequence(seed)).difference || (seed < 300 ? find(seed + 1) : null);
        const { what } = await find(1);
        console.log(what);
        process.exit();
    });
    assert.match(stdout, /^(modals opened|warnings and errors|outcome)\n$/);
});
