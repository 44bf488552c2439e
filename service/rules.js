'use strict';

// Which rule answers a request, and which calls and Wants are as expected.

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

/** Whether a request is as `when` of a rule, or a step that awaits it, says. */
function matches({ method, requestType, want }, request) {
    return (method === undefined || listOf(method).includes(request.method)) &&
        (requestType === undefined || requestType === request.requestType) &&
        (want === undefined || contains(request.parameters, want));
}

function isTurn({ nth, every }, seen) {
    return (nth === undefined || listOf(nth).includes(seen)) && (every === undefined || seen % every === 0);
}

function isUsed({ rule, since, seen, used }, now, random) {
    const { when = {}, times = Infinity, from = 0, until = Infinity, chance = 1 } = rule;
    const age = now - since;
    return used < times && age >= from && age < until && isTurn(when, seen) && (chance === 1 || random() < chance);
}

/**
 * The first rule for the request; null if there is none. Each entry has a rule, the time `since` when it is there, and
 * how often it was `seen` and `used`. Every rule that matches counts the request, also those after the first.
 */
function ruleFor(request, entries, now, random) {
    const matching = entries.filter(({ rule: { when = {} } }) => matches(when, request));
    matching.forEach((entry) => { entry.seen += 1; });
    const entry = matching.find((one) => isUsed(one, now, random));
    if (!entry) {
        return null;
    }
    entry.used += 1;
    return entry.rule;
}

module.exports = { contains, matches, parse, ruleFor, seeded };
