'use strict';

// What a side of a work asks of the device, so that the module and its floor can be compared: how often it makes each
// call, its log lines without their line numbers, the Wants it opens, and its analytics events.

const { isDeepStrictEqual } = require('node:util');

const NEVER = Number.MAX_SAFE_INTEGER;

// Times and IDs of transactions are never the same.
const isComparable = ([key]) => !/^trans_id$|_time$/.test(key);

/** What `run` asks of the device. */
async function record(device, run) {
    const before = { logs: device.logs().length, modals: device.modals().length, events: device.analytics.events().length };
    device.failNext('napi_typeof', { skip: NEVER });  // calls are counted while one may fail
    const made = new Map(device.faults().map((fault) => [fault.call, fault.made]));
    await run();
    const calls = device.faults().map((fault) => [fault.call, fault.made - made.get(fault.call)]);
    return {
        calls: Object.fromEntries(calls.filter(([, count]) => count > 0)),
        'log lines': device.logs().slice(before.logs)
            .map(({ level, message }) => level + message.replace(/^(\[\(~?\w+):\d+/, '$1')).sort(),  // of several threads
        Wants: device.modals().slice(before.modals).map(({ want }) => want),
        'analytics events': device.analytics.events().slice(before.events).map(({ params }) => params.filter(isComparable)),
    };
}

/** Null, or in which respect the two sides of a work differ, and how. */
async function difference(device, { module, floor }) {
    await module();  // what is done once in a process is no part of the work
    await floor();
    const [expected, actual] = [await record(device, module), await record(device, floor)];
    const what = Object.keys(expected).find((key) => !isDeepStrictEqual(expected[key], actual[key]));
    return what ? `${what}: ${JSON.stringify(expected[what])} of the module, ${JSON.stringify(actual[what])} of the floor` : null;
}

module.exports = { difference };
