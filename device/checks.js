'use strict';

// Reads the arguments of the device's functions. What is wrong throws an error that names it and says what it may be.

const MAX_DEPTH = 32;  // of objects in parameters
const LONGEST = 40;  // of a string that an error shows
const PARAMETER = 'a number, boolean, string, array of strings or plain object';
const KINDS = { boolean: 'a boolean', symbol: 'a symbol', function: 'a function', bigint: 'a BigInt' };

/** Whether a value is an object literal of any realm: it has no prototype, or its prototype has none. */
function isPlain(value) {
    if (typeof value !== 'object' || value === null) {
        return false;
    }
    const prototype = Object.getPrototypeOf(value);
    return prototype === null || Object.getPrototypeOf(prototype) === null;
}

function describe(value) {
    if (typeof value === 'string') {
        return value.length <= LONGEST ? `'${value}'` : 'a string';
    }
    if (typeof value === 'object' && value !== null) {
        return Array.isArray(value) ? 'an array' : isPlain(value) ? 'an object' : 'an object of a class';
    }
    return KINDS[typeof value] ?? String(value);
}

const complaint = (name, expected, value) => `${name} must be ${expected}, not ${describe(value)}`;

function check(isRight, name, expected, value) {
    if (!isRight) {
        throw new TypeError(complaint(name, expected, value));
    }
    return value;
}

const readText = (name, value) => check(typeof value === 'string', name, 'a string', value);
const readFlag = (name, value) => check(typeof value === 'boolean', name, 'true or false', value);
const readInt32 = (name, value) =>
    check(typeof value === 'number' && value === (value | 0), name, 'a 32-bit integer', value);
const readCount = (name, value, least) =>
    check(Number.isSafeInteger(value) && value >= least, name, `an integer of at least ${least}`, value);
const readHandler = (value) =>
    check(value === null || typeof value === 'function', 'handler', 'a function or null', value);

/** Whether the value is the first of two words. */
const isFirst = (name, value, first, second) =>
    check([first, second].includes(value), name, `'${first}' or '${second}'`, value) === first;

function readNumber(name, value, least, most) {
    const expected = `a number from ${least} to ${most}`;
    check(typeof value === 'number', name, expected, value);
    if (!(value >= least && value <= most)) {
        throw new RangeError(complaint(name, expected, value));
    }
    return value;
}

/** The own properties of a plain object that are not undefined. */
function entriesOf(name, value) {
    check(isPlain(value), name, 'a plain object', value);
    return Object.entries(value).filter(([, one]) => one !== undefined);
}

/** A plain object with no other keys than those of `readers`, each read by its own. */
function readObject(name, value, readers) {
    return Object.fromEntries(entriesOf(name, value).map(([key, one]) => {
        if (!Object.hasOwn(readers, key)) {
            throw new TypeError(`${name} has no '${key}': possible are ${Object.keys(readers).join(', ')}`);
        }
        return [key, readers[key](`${name}.${key}`, one)];
    }));
}

function readParameter(name, value, depth) {
    if (Array.isArray(value)) {
        return Array.from(value, (one, i) => readText(`${name}[${i}]`, one));
    }
    if (typeof value === 'object' && depth === MAX_DEPTH) {
        throw new TypeError(
            `${name} is nested more than ${MAX_DEPTH} objects deep: an object must not contain itself`);
    }
    if (['number', 'boolean', 'string'].includes(typeof value)) {
        return value;
    }
    return readParameters(check(isPlain(value), name, PARAMETER, value), name, depth + 1);
}

/** A copy of an answer's parameters, with the types that the platform has. */
function readParameters(value, name = 'parameters', depth = 0) {
    return Object.fromEntries(
        entriesOf(name, value).map(([key, one]) => [key, readParameter(`${name}.${key}`, one, depth)]));
}

module.exports = {
    check, entriesOf, isFirst, readCount, readFlag, readHandler, readInt32, readNumber, readObject, readParameters,
    readText,
};
