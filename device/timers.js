'use strict';

// Timers of this environment on the device's clock.

const binding = require('./binding.js');

// Captured now, so that fake timers that a test installs later do not stop what runs in real time.
const { clearImmediate, clearTimeout, setImmediate, setTimeout } = require('timers');

const MAX_TIMEOUT_MS = 0x7fffffff;  // the limit of setTimeout

let rate = 1;  // of the clock; 0 if it is manual
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
    const left = next();
    if (left <= 0) {
        const soon = setImmediate(runAndArm);
        alarm = () => clearImmediate(soon);
    } else if (rate > 0 && left < Infinity) {
        const later = setTimeout(runAndArm, Math.min(Math.ceil(left / rate), MAX_TIMEOUT_MS));
        alarm = () => clearTimeout(later);
    }
}

function runAndArm() {
    alarm = null;
    run().finally(arm);
}

function after(ms, handler) {
    if (!(ms >= 0 && ms <= Number.MAX_SAFE_INTEGER)) {
        throw new TypeError('ms must be a number of milliseconds from 0');
    }
    if (typeof handler !== 'function') {
        throw new TypeError('handler must be a function');
    }
    const timer = { due: binding.clockNow() + ms, handler };
    waiting.add(timer);
    arm();
    return () => {
        waiting.delete(timer);
        arm();
    };
}

function real(newRate) {
    binding.clockReal(newRate);
    rate = newRate ?? 1;
    arm();
}

function manual() {
    binding.clockManual();
    rate = 0;
    arm();
}

function clear() {
    waiting.clear();
    rate = 1;
    arm();
}

module.exports = { after, areAny, begun, clear, manual, next, real, run };
