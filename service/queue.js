'use strict';

const device = require('../device/index.js');

/**
 * The answers that wait for their time on the device's clock. While the queue is paused, those that are due wait on;
 * the clock does not wait for them.
 */
class AnswerQueue {
    #entries = new Set();
    #overdue = null;  // while it is paused: the entries that are due, first to last

    /** Milliseconds until the next answer is due; infinite if there is none. */
    get nextDue() {
        return Math.min(Infinity, ...Array.from(this.#entries, ({ due }) => due - device.clock.now()));
    }

    /** Calls the async function `give` in `ms` milliseconds, and settles as it does. The clock waits for it. */
    add(ms, give) {
        return new Promise((resolve, reject) => {
            const entry = { due: device.clock.now() + ms, run: () => give().then(resolve, reject) };
            this.#entries.add(entry);
            this.#schedule(entry, ms);
        });
    }

    pause() {
        this.#overdue ??= [];
    }

    resume() {
        const overdue = this.#overdue ?? [];
        this.#overdue = null;
        overdue.forEach((entry) => this.#schedule(entry, 0));
    }

    /** Drops all answers. Their promises stay pending. */
    clear() {
        this.#entries.forEach((entry) => entry.cancel());
        this.#entries.clear();
        this.#overdue?.splice(0);
    }

    #schedule(entry, ms) {
        entry.cancel = device.clock.after(ms, () => {
            if (this.#overdue) {
                this.#overdue.push(entry);
                return undefined;
            }
            this.#entries.delete(entry);
            return entry.run();
        });
    }
}

module.exports = { AnswerQueue };
