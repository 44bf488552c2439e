'use strict';

// One sequence of steps, drawn from a seed while it is played. The last step ends the game if possible.

const { seeded } = require('../../scripts/random');
const { device } = require('../support');
const { Comparison } = require('./comparison');
const { Generator } = require('./generator');

/**
 * Plays the sequence of a seed. Resolves to the number of its steps, and null or the first difference as {index, step,
 * what, expected, actual}. `watch(index, step)` sees each step before.
 */
async function playSequence(seed, watch) {
    const random = seeded(seed);
    const mode = random();
    // The order of all log lines is defined only if every answer runs on this thread, without Workers.
    const isStrict = mode < 0.6;
    const comparison = new Comparison({ isStrict, thread: isStrict || random() < 0.3 ? 'caller' : 'ui' });
    const steps = 10 + Math.floor(random() * 40);
    device.queueOrder(seed % 2 === 0 ? 'fifo' : 'any', seed);
    const generator = new Generator(random, comparison.model, !isStrict, mode > 0.9);
    const draw = (index) => (index === steps - 1 && generator.death()) || generator.next();
    const difference = await comparison.playSteps(draw, steps, { watch, isWatched: watch !== undefined });
    return { steps, difference };
}

module.exports = { playSequence };
