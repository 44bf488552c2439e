'use strict';

// Runs the scenes of the sample. Shows what the game calls and receives, and stops at the first scene that goes wrong.

const util = require('node:util');
const device = require('../device');
const extension = require('./extension');
const screen = require('./screen');

const LIMIT_MS = 30000;
const scenes = [];
const unsettled = new Map(); // by promise: the method that returned it
let current = null;

/** Returns a function that gives the time since now: the device's if its clock has moved, otherwise the real time. */
function stopwatch() {
    const [deviceBegin, realBegin] = [device.clock.now(), performance.now()];
    return () => {
        const passed = device.clock.now() - deviceBegin;
        return passed ? `${screen.duration(passed)} on the device` : screen.duration(performance.now() - realBegin);
    };
}

/** Wraps `callback` so that each call shows its arguments, followed by `time()`. */
function showing(callback, time) {
    return function show(...args) {
        const text = screen.describeCall(callback.name || 'callback', args);
        screen.received(text, time(), args[0] instanceof Error ? 'red' : '');
        return callback.apply(this, args);
    };
}

// By listener: its wrapper, so that "off" gets the same function as "on".
const listeners = new WeakMap();

function showingListener(listener) {
    if (!listeners.has(listener)) {
        listeners.set(listener, showing(listener, () => ''));
    }
    return listeners.get(listener);
}

function follow(name, promise, onResolved, onRejected) {
    const settle = (show) => (value) => {
        show(value);
        if (!unsettled.delete(promise)) {
            fail(`${name} settled after its scene`);
        }
    };
    unsettled.set(promise, name);
    promise.then(settle(onResolved), settle(onRejected));
}

function call(module, name, args) {
    screen.line('game', `→ ${screen.describeCall(name, args)}`);
    const time = stopwatch();
    const shown = name === 'on' || name === 'off' ? showingListener : (callback) => showing(callback, time);
    const given = args.map((value) => (typeof value === 'function' ? shown(value) : value));
    const show = (verb, style) => (value) => screen.received(`${verb} ${screen.describe(value)}`, time(), style);
    try {
        const result = module[name](...given);
        if (result instanceof Promise) {
            follow(name, result, show('resolves with'), show('rejects with', 'red'));
        }
        return result;
    } catch (error) {
        show('throws', 'red')(error);
        throw error;
    }
}

/** Wraps the module's methods so that they show their calls and the results. */
function watch(module) {
    const methods = Object.getOwnPropertyNames(module);
    return Object.fromEntries(methods.map((name) => [name, (...args) => call(module, name, args)]));
}

/** Advances the device's clock by `ms` without waiting. Before and after that, lets all due answers arrive. */
async function pass(ms) {
    await extension.rest();
    screen.line('clock', `${screen.duration(ms)} pass`);
    await device.clock.advance(ms);
    await extension.rest();
}

/**
 * Adds a scene. `play` is the game's code. It must return or resolve with a value equal to `comesTo`, which defaults
 * to undefined. The methods in `pending`, and no others, must leave a promise unsettled. `about` describes the scene
 * for the reader.
 */
function scene(title, { about, play, comesTo, pending = [] }) {
    scenes.push({ title, about, play, comesTo, pending });
}

/** Prints in one line what went wrong and where, and ends the process with status 1. */
function fail(reason) {
    const [line] = reason.split('\n');
    process.stderr.write(`The sample failed${current ? ` in "${current.title}"` : ''}: ${line}\n`);
    process.exit(1);
}

/** Prepares the process: only `pass` moves the time, the extension serves, and an uncaught error ends the process. */
function open() {
    process.on('uncaughtException', (error) => fail(screen.describe(error)));
    device.clock.manual();
    extension.open();
}

function expect(what, found, expected) {
    if (!util.isDeepStrictEqual(found, expected)) {
        fail(`${what} ${screen.describe(found)} instead of ${screen.describe(expected)}`);
    }
}

/** Shows the unsettled promises and stops tracking them. Returns the names of their methods. */
function takeUnsettled() {
    const methods = [...unsettled.values()];
    unsettled.clear();
    methods.forEach((name) => screen.line('game', `… the promise of ${name} stays pending`));
    return methods;
}

async function playScene({ title, about, play, comesTo, pending }, number) {
    screen.title(number, title, about);
    const limit = setTimeout(fail, LIMIT_MS, `it is not over after ${LIMIT_MS / 1000} s`).unref();
    const outcome = await play();
    await extension.rest();
    clearTimeout(limit);
    expect('it came to', outcome, comesTo);
    expect('it left pending', takeUnsettled(), pending);
    if (device.modals().some(({ isOpen }) => isOpen)) {
        fail('it left a modal open');
    }
    screen.print();
}

/** Plays all scenes in order. */
async function perform() {
    process.on('exit', (status) => {
        if (current && status === 0) {
            fail('it is not over, and nothing is left to wait for');
        }
    });
    for (const [i, next] of scenes.entries()) {
        current = next;
        await playScene(next, i + 1);
    }
    current = null;
}

module.exports = { fail, open, pass, perform, scene, watch };
