'use strict';

const KEPT = 100000;

/**
 * The records of everything that happens, in one order: each has a number `n`, from 1. The latest 100,000 are kept for
 * the page. The facts of the current run, from which its outcome and a scenario are derived, are all kept.
 */
class Stream {
    #records = [];
    #count = 0;
    #listeners = new Set();

    constructor() {
        this.facts = [];
    }

    add(record) {
        const numbered = { n: ++this.#count, ...record };
        if (record.kind === 'start') {
            this.facts = [];
        }
        if (record.kind !== 'log' && record.kind !== 'output' && record.kind !== 'reported') {
            this.facts.push(numbered);
        }
        this.#records.push(numbered);
        if (this.#records.length >= 2 * KEPT) {
            this.#records = this.#records.slice(-KEPT);
        }
        this.#listeners.forEach((listener) => listener(numbered));
    }

    /** The kept records after the one with number `n`. */
    after(n) {
        const first = this.#count - Math.min(this.#records.length, KEPT);
        return this.#records.slice(this.#records.length - (this.#count - Math.max(first, n)));
    }

    /** Calls `listener` with every record from now on. Returns a function that stops it. */
    listen(listener) {
        this.#listeners.add(listener);
        return () => this.#listeners.delete(listener);
    }

    /** Drops the records for the page. */
    clear() {
        this.#records = [];
    }
}

module.exports = { KEPT, Stream };
