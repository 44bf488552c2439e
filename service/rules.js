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

function parsed(text) {
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
    const value = typeof actual === 'string' ? parsed(actual) : actual;
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

    /** The first rule for the request; null if there is none. `now` is the device's time in milliseconds. */
    match(request, now) {
        return this.#entries.find((entry) => this.#matches(entry, request, now))?.rule ?? null;
    }

    // Every rule up to the first that matches counts the request.
    #matches(entry, request, now) {
        const { rule: { when = {}, times = Infinity, from = 0, until = Infinity, chance = 1 }, since } = entry;
        const age = now - since;
        if (entry.used >= times || age < from || age >= until || !isMeant(when, request)) {
            return false;
        }
        entry.seen += 1;
        if (!isTurn(when, entry.seen) || (chance < 1 && this.#random() >= chance)) {
            return false;
        }
        entry.used += 1;
        return true;
    }
}

module.exports = { RuleBook, contains, isMeant };
