'use strict';

// Knows which keys the module reads in an answer, to warn about the others: a typo would look like a success.

const { REQUESTS } = require('../lib/methods.js');

const INT = 'a 32-bit integer';
const STRING = 'a string';
const KEYS = { resultCode: INT, resultInfo: STRING, resultMessage: STRING, playableTime: INT, endText: STRING };

/** The keys that the module reads in an answer with this code to a request of this method. */
function keysRead(kind, method, code) {
    const isReceived = kind === 'receive';
    return [
        ...(isReceived ? ['resultCode'] : []),
        ...(code === 9 || (isReceived && code === 1002000015) ? ['resultInfo'] : []),
        ...(code === 0 ? REQUESTS[method]?.[kind] ?? [] : []),
    ];
}

/** The edit distance: how many characters to insert, delete or replace to turn `from` into `to`. */
function distance(from, to) {
    let row = Array.from({ length: to.length + 1 }, (_, i) => i);
    for (let i = 1; i <= from.length; ++i) {
        const next = [i];
        for (let j = 1; j <= to.length; ++j) {
            next[j] = Math.min(row[j] + 1, next[j - 1] + 1, row[j - 1] + (from[i - 1] === to[j - 1] ? 0 : 1));
        }
        row = next;
    }
    return row[to.length];
}

/** The one of `names` that `name` probably misspells; undefined if there is none. */
function nearest(name, names) {
    const isNear = (other) => distance(name.toLowerCase(), other.toLowerCase()) <= 2;
    return names.find(isNear);
}

const isInt32 = (value) => Number.isInteger(value) && value === (value | 0);
const isOfType = (value, type) => (type === STRING ? typeof value === 'string' : isInt32(value));

function describe(value) {
    return typeof value === 'object' ? (Array.isArray(value) ? 'an array' : 'an object') : JSON.stringify(value);
}

function complaintOf(key, value, kind, read, code) {
    if (!Object.hasOwn(KEYS, key)) {
        const near = nearest(key, Object.keys(KEYS));
        return near ? `${key}: do you mean ${near}?` : `${key}: the module does not read this key`;
    }
    if (!isOfType(value, KEYS[key])) {
        return `${key}: ${KEYS[key]} is read, not ${describe(value)}`;
    }
    if (read.includes(key)) {
        return null;
    }
    if (key === 'resultCode') {
        return 'resultCode: the code of a result is its first argument';
    }
    return `${key}: ignored ${code === undefined ? 'without a resultCode' : `by this method with code ${code}`}`;
}

/** Warnings about the parameters that the module will not use as expected, one line each. Calls no getter. */
function complaints(kind, method, code, parameters) {
    const read = keysRead(kind, method, code);
    return Object.entries(Object.getOwnPropertyDescriptors(parameters))
        .filter(([, { enumerable, value }]) => enumerable && value !== undefined)
        .map(([key, { value }]) => complaintOf(key, value, kind, read, code))
        .filter(Boolean);
}

module.exports = { complaints, nearest };
