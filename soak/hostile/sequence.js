'use strict';

// One sequence of steps, drawn from a seed while it is played.

const { Comparison } = require('./comparison');
const { Generator, seeded } = require('./generator');
const { codeOf, exitNotes } = require('./tables');

function deathNotes([kind, steps]) {
    if (kind === 'advance') {
        return ['launched anti-addiction ability.'];
    }
    const [, , callback, payload] = steps[0];
    return exitNotes(callback, codeOf(callback, payload));
}

class Sequence extends Comparison {
    constructor(seed, { steps = 0, isWatched = false } = {}) {
        const random = seeded(seed);
        const mode = random();
        // Only where every answer runs on this thread, and no Worker takes part, is the order of all logs settled.
        const isStrict = mode < 0.6;
        super({ isStrict, thread: isStrict || random() < 0.3 ? 'caller' : 'ui' });
        Object.assign(this, { random, isWatched, hasWorkers: mode > 0.9 });
        this.steps = steps || 10 + Math.floor(random() * 40);
    }

    async begin() {
        await super.begin();
        this.generator = new Generator(this.random, this.model, !this.isStrict, this.hasWorkers);
    }

    /** Null, or the first difference as {index, step, what, expected, actual}. `watch` sees each step before. */
    async run(watch) {
        await this.begin();
        const difference = await this.playDrawn(watch);
        await this.end();
        return difference;
    }

    /** As `run`, with one more step, which ends the process. `announce` gets what the log then tells of it. */
    async runToDeath(watch, announce) {
        await this.begin();
        return await this.playDrawn(watch) || this.die(watch, announce);
    }

    playDrawn(watch) {
        return this.playSteps(() => this.generator.next(), this.steps, { watch, isWatched: this.isWatched });
    }

    async die(watch, announce) {
        let step = null;
        while (!(step = this.generator.death())) {
            await this.play(this.generator.request('main', 'getLocalPlayer'), false);
        }
        watch(this.steps, step);
        announce(deathNotes(step));
        await this.apply(step);
        await this.end();
        return { index: this.steps, step, what: 'end of the process', expected: 'an end', actual: 'none' };
    }
}

module.exports = { Sequence };
