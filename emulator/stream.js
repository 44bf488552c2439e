'use strict';

const KEPT = 100000;
const MOST_FACTS = 500000;
const NO_FACTS = ['log', 'output', 'reported'];

/**
 * The records of everything that happens, in one order: each has a number `n`, from 1. The latest 100,000 are kept for
 * the page, and the facts of the current run, from which its outcome and a scenario are derived.
 */
class Stream {
    #records = [];
    #count = 0;
    #listeners = new Set();

    constructor() {
        this.facts = [];
    }

    /** Whether the run has more facts than can be kept. Then its outcome is not known. */
    get isFull() {
        return this.facts.length === MOST_FACTS;
    }

    add(record) {
        const numbered = { n: ++this.#count, ...record };
        if (record.kind === 'start') {
            this.facts = [];
        }
        if (!this.isFull && !NO_FACTS.includes(record.kind)) {
            this.facts.push(numbered);
        }
        this.#records.push(numbered);
        if (this.#records.length >= 2 * KEPT) {
            this.#records = this.#records.slice(-KEPT);
        }
        this.#listeners.forEach((listener) => listener(numbered));
    }

    /** The records after the one with number `n`: those that are kept, and the facts before them. */
    after(n) {
        const kept = this.#records.slice(-KEPT).filter((record) => record.n > n);
        const first = kept[0]?.n ?? Infinity;
        return [...this.facts.filter((fact) => fact.n > n && fact.n < first), ...kept];
    }

    /** Calls `listener` with every record from now on. Returns a function that stops it. */
    subscribe(listener) {
        this.#listeners.add(listener);
        return () => this.#listeners.delete(listener);
    }

    /** Drops the records for the page. */
    clear() {
        this.#records = [];
    }
}

module.exports = { Stream };
