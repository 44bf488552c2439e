'use strict';

// Timers of this environment on the device's clock.

const binding = require('./binding.js');
const { check, readNumber } = require('./checks.js');

// Captured now, so that fake timers that a test installs later do not stop what runs in real time.
const { clearImmediate, clearTimeout, setImmediate, setTimeout } = require('timers');

const SLOWEST_RATE = 1e-6;
const FASTEST_RATE = 1e6;
const CHECK_MS = 1000;  // of real time: another environment may have changed the rate of the clock

let alarm = null;  // what runs the due timers in real time
let line = Promise.resolve();  // settled when no handler runs
let count = 0;  // of the handlers that have begun
const waiting = new Set();

const areAny = () => waiting.size > 0;

/** The timer that is due first; of those due at once, the oldest. */
function first() {
    return [...waiting].reduce((best, timer) => (best && best.due <= timer.due ? best : timer), null);
}

/** Milliseconds until the next timer is due; infinite if there is none. */
const next = () => (areAny() ? first().due - binding.clockNow() : Infinity);

async function runDue() {
    while (next() <= 0) {
        const timer = first();
        waiting.delete(timer);
        count += 1;
        await timer.handler();
    }
}

/** How many timers have begun to run, ever. */
const begun = () => count;

/** Runs the timers that are due, one after another, and waits for the promises that they return. */
function run() {
    const done = line.then(runDue);
    line = done.catch(() => {});
    return done;
}

// A timer that is due runs soon, even if the clock is manual.
function arm() {
    alarm?.();
    alarm = null;
    const [left, rate] = [next(), binding.clockRate()];
    if (left <= 0) {
        const soon = setImmediate(runAndArm);
        alarm = () => clearImmediate(soon);
    } else if (rate > 0 && left < Infinity) {
        const later = setTimeout(runAndArm, Math.min(Math.ceil(left / rate), CHECK_MS));
        alarm = () => clearTimeout(later);
    }
}

function runAndArm() {
    alarm = null;
    run().finally(arm);
}

function after(ms, handler) {
    readNumber('ms', ms, 0, Number.MAX_SAFE_INTEGER);
    check(typeof handler === 'function', 'handler', 'a function', handler);
    const timer = { due: binding.clockNow() + ms, handler };
    waiting.add(timer);
    arm();
    return () => {
        waiting.delete(timer);
        arm();
    };
}

function real(rate = 1) {
    binding.setClockRate(readNumber('rate', rate, SLOWEST_RATE, FASTEST_RATE));
    arm();
}

function manual() {
    binding.setClockRate(0);
    arm();
}

function clear() {
    waiting.clear();
    arm();
}

module.exports = { after, areAny, begun, clear, manual, next, real, run };
