'use strict';

// Every call of the module fails once, alone and with all later ones of its name, in scenarios that together make all
// of them. Afterwards nothing is left behind, and the next request works as if nothing had been.

const assert = require('node:assert/strict');
const { test } = require('node:test');
const { attempt, device, game, runInChild } = require('./support');
const { FOR_EVER, MAY_STAY_PENDING } = require('./support/fault_runs.js');
const { SCENARIOS } = require('./support/scenarios.js');

// Made by an answer of the extension, on whichever thread that comes.
const ANSWER_CALLS = [
    'napi_get_uv_event_loop', 'uv_queue_work', 'new(nothrow)', 'CloseModalUIExtension', 'GetUIContent', 'Write',
];
// Where one call fails anyhow, those that make up for it.
const REMAINING_CALLS = {
    'errors that cannot be made': ['napi_get_and_clear_last_exception', 'napi_set_named_property', 'napi_throw_error'],
};
// Made once in each environment, or once in the process.
const LOAD_CALLS = ['napi_add_env_cleanup_hook', 'napi_define_properties', 'napi_create_reference'];
const FIRST_CALLS = ['AddProcessor', 'new(nothrow)', 'napi_add_env_cleanup_hook', 'napi_define_properties'];

test('faults() counts the calls since the first failNext, and those that failed', () => {
    const count = () => device.faults().find(({ call }) => call === 'napi_get_cb_info');
    game.syncTraceId('');
    device.failNext('napi_get_cb_info', { skip: 1 });
    const outcomes = [1, 2, 3].map(() => attempt(() => game.syncTraceId(''))[0]);
    assert.deepEqual(outcomes, ['returned', 'threw', 'returned']);
    assert.deepEqual(count(), { call: 'napi_get_cb_info', made: 3, failed: 1 });
    device.reset();
    assert.deepEqual(count(), { call: 'napi_get_cb_info', made: 0, failed: 0 });
});

let points = 0;
const failed = new Set();
const leftPending = { promise: new Set(), callback: new Set() };

/** Takes down what a child process tells of its points of failure. Returns the lines of what is wrong. */
function read({ code, signal, stdout, stderr }) {
    const problems = [];
    let point = 'before the first point';
    let hasEnded = false;
    for (const line of stdout.split('\n').filter(Boolean)) {
        const [, kind, value] = /^(\w+) (.*)$/.exec(line);
        if (kind === 'point') {
            point = value;
        } else if (kind === 'problem') {
            problems.push(`${point}: ${value}`);
        } else if (kind === 'end') {
            hasEnded = true;
        } else {
            const { call, pending } = JSON.parse(value);
            points += 1;
            failed.add(call);
            pending.forEach((form) => leftPending[form].add(call));
        }
    }
    // The module may end the process with status 0.
    if (code !== 0 || !hasEnded) {
        problems.push(`${point}: the process ended with ${signal || code}\n${stderr.slice(-2000)}`);
    }
    return problems;
}

function testSweep(title, ...args) {
    test(title, async () => {
        const problems = read(await runInChild(
            (_, ...rest) => require('./tests/support/fault_runs.js').sweep(...rest), args));
        assert.deepEqual(problems, []);
    });
}

for (const scenario of Object.keys(SCENARIOS)) {
    testSweep(`${scenario}: any failing call`, scenario, 'caller', REMAINING_CALLS[scenario] || null);
    testSweep(`${scenario}: any failing call of an answer on the UI thread`, scenario, 'ui', ANSWER_CALLS);
}
testSweep('an environment that is loaded and ends: any failing call', 'load', 'ui', LOAD_CALLS);

for (const call of FIRST_CALLS) {
    test(`a first start: failing calls of ${call}`, async () => {
        for (const times of [1, FOR_EVER]) {
            for (let skip = 0, before = -1; points > before; ++skip) {
                before = points;
                const point = { scenario: 'a first start', mode: 'caller', call, skip, times };
                assert.deepEqual(read(await runInChild(
                    (_, given) => require('./tests/support/fault_runs.js').tryFirst(given), [point])), []);
            }
        }
    });
}

test('every call that can fail did, and only what is known to end a request silently does', (t) => {
    const missed = device.faults().map(({ call }) => call).filter((call) => !failed.has(call));
    assert.deepEqual(missed, [], 'calls that no scenario makes');
    for (const [form, calls] of Object.entries(MAY_STAY_PENDING)) {
        const never = calls.filter((call) => !leftPending[form].has(call));
        assert.deepEqual(never, [], `calls that leave no ${form} pending`);
    }
    t.diagnostic(`${points} fault points`);
});
