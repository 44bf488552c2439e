'use strict';

// Which rule answers a request, and which records or Wants an expectation means.

/** Random numbers from 0 to 1 that depend on the seed alone (Mulberry32). */
function seeded(seed) {
    let state = seed | 0;
    return () => {
        state = (state + 0x6d2b79f5) | 0;
        let mixed = Math.imul(state ^ (state >>> 15), state | 1);
        mixed ^= mixed + Math.imul(mixed ^ (mixed >>> 7), mixed | 61);
        return ((mixed ^ (mixed >>> 14)) >>> 0) / 4294967296;
    };
}

/** The value of a JSON string; undefined if it is none. */
function parse(text) {
    try {
        return JSON.parse(text);
    } catch {
        return undefined;
    }
}

const isObject = (value) => typeof value === 'object' && value !== null;

/**
 * Whether `actual` has everything that `expected` has. An object needs the expected keys and may have others. A string
 * that should be an object or an array is read as JSON.
 */
function contains(actual, expected) {
    if (!isObject(expected)) {
        return Object.is(actual, expected);
    }
    const value = typeof actual === 'string' ? parse(actual) : actual;
    return isObject(value) && Array.isArray(value) === Array.isArray(expected) &&
        Object.entries(expected).every(([key, part]) => Object.hasOwn(value, key) && contains(value[key], part));
}

const listOf = (value) => (Array.isArray(value) ? value : [value]);

function isMeant({ method, requestType, want }, request) {
    return (method === undefined || listOf(method).includes(request.method)) &&
        (requestType === undefined || requestType === request.requestType) &&
        (want === undefined || contains(request.parameters, want));
}

function isTurn({ nth, every }, seen) {
    return (nth === undefined || listOf(nth).includes(seen)) && (every === undefined || seen % every === 0);
}

/** Rules in their order, with how often each was met and used. */
class RuleBook {
    #entries = [];
    #random;

    constructor(rules, seed, now) {
        this.#random = seeded(seed);
        rules.forEach((rule) => this.add(rule, now));
    }

    /** The rules, first to last. */
    get rules() {
        return this.#entries.map(({ rule }) => rule);
    }

    add(rule, now) {
        this.#entries.push({ rule, since: now, seen: 0, used: 0 });
    }

    clear() {
        this.#entries = [];
    }

    /**
     * The first rule for the request; null if there is none. Every rule that means the request counts it, also those after
     * the first. `now` is the device's time in milliseconds.
     */
    match(request, now) {
        const meant = this.#entries.filter(({ rule }) => isMeant(rule.when ?? {}, request));
        meant.forEach((entry) => { entry.seen += 1; });
        const entry = meant.find((one) => this.#isUsed(one, now));
        if (!entry) {
            return null;
        }
        entry.used += 1;
        return entry.rule;
    }

    #isUsed({ rule: { when = {}, times = Infinity, from = 0, until = Infinity, chance = 1 }, since, seen, used }, now) {
        const age = now - since;
        return used < times && age >= from && age < until && isTurn(when, seen) && (chance === 1 || this.#random() < chance);
    }
}

module.exports = { RuleBook, contains, isMeant, parse };
