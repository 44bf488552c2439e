'use strict';

// One sequence of steps, drawn from a seed while it is played. The last step ends the game if possible.

const { device } = require('../support');
const { Comparison } = require('./comparison');
const { Generator, seeded } = require('./generator');

class Sequence extends Comparison {
    constructor(seed, { steps = 0, isWatched = false } = {}) {
        const random = seeded(seed);
        const mode = random();
        // The order of all log lines is defined only if every answer runs on this thread, without Workers.
        const isStrict = mode < 0.6;
        super({ isStrict, thread: isStrict || random() < 0.3 ? 'caller' : 'ui' });
        Object.assign(this, { seed, random, isWatched, hasWorkers: mode > 0.9 });
        this.steps = steps || 10 + Math.floor(random() * 40);
    }

    async begin() {
        await super.begin();
        device.queueOrder(this.seed % 2 === 0 ? 'fifo' : 'any', this.seed);
        this.generator = new Generator(this.random, this.model, !this.isStrict, this.hasWorkers);
    }

    /** Null, or the first difference as {index, step, what, expected, actual}. `watch` sees each step before. */
    async run(watch) {
        await this.begin();
        const draw = (index) => (index === this.steps - 1 && this.generator.death()) || this.generator.next();
        const difference = await this.playSteps(draw, this.steps, { watch, isWatched: this.isWatched });
        await this.end();
        return difference;
    }
}

module.exports = { Sequence };
