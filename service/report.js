'use strict';

// What a run came to, from its records: the calls with their outcomes, and which expectations were not met.

const { contains } = require('./rules.js');

const wantOf = ({ 'ability.want.params.uiExtensionType': type, ...parameters }) => parameters;

/**
 * The calls of the module's methods in order. Each has the parameters of its Want in `want`, if one was sent, and the
 * `code` that the game got: 0 for success, undefined if there was none yet.
 */
function callsIn(records) {
    const calls = new Map();
    for (const { kind, call, time, ...record } of records) {
        if (kind === 'call') {
            calls.set(call, { call, method: record.method, begun: time });
        } else if (kind === 'opened' && calls.has(call)) {
            calls.get(call).want ??= wantOf(record.parameters);
        } else if (kind === 'settled' && calls.has(call)) {
            Object.assign(calls.get(call), { code: record.code, how: record.how, ended: time });
        }
    }
    return [...calls.values()];
}

/** By method, the codes that the game met, in the order of their first time. */
function codesIn(records) {
    const codes = {};
    for (const { method, code } of callsIn(records)) {
        if (code !== undefined && !(codes[method] ??= []).includes(code)) {
            codes[method].push(code);
        }
    }
    return codes;
}

const isCall = (expected, call) => expected.method === call.method &&
    (expected.want === undefined || contains(call.want, expected.want)) &&
    (expected.code === undefined || expected.code === (call.code ?? 'pending'));

function describe({ method, want, code }) {
    return method + (want ? ` with ${JSON.stringify(want)}` : '') + (code === undefined ? '' : ` that gets ${code}`);
}

/** What came closest: the calls of the same method. */
function describeOthers({ method }, calls) {
    const others = calls.filter((call) => call.method === method);
    const texts = others.slice(0, 3).map(({ want, code }) => `${want ? JSON.stringify(want) : 'no Want'} that got ${code ?? 'pending'}`);
    return others.length > 0 ? `; its calls were: ${texts.join(', ')}` : `; ${method} was not called`;
}

// Each expected call comes after the one before it. With `times`, all calls are counted instead.
function missingCalls(expected, calls) {
    const failures = [];
    let from = 0;
    for (const one of expected) {
        if (one.times !== undefined) {
            const count = calls.filter((call) => isCall(one, call)).length;
            if (count !== one.times) {
                failures.push(`expected ${one.times} calls of ${describe(one)}, not ${count}`);
            }
            continue;
        }
        const found = calls.findIndex((call, index) => index >= from && isCall(one, call));
        if (found < 0) {
            failures.push(`expected a call of ${describe(one)}${from > 0 ? ` after the call of ${calls[from - 1].method}` : ''}` +
                describeOthers(one, calls));
        } else {
            from = found + 1;
        }
    }
    return failures;
}

function missingCodes(expected, met) {
    return Object.entries(expected).flatMap(([method, codes]) => codes
        .filter((code) => !met[method]?.includes(code))
        .map((code) => `expected ${method} to meet ${code}; it met ${met[method]?.join(', ') ?? 'no code'}`));
}

const describeEnd = ({ how, code, reason, seconds }) => ({
    ends: 'it ended by itself',
    runs: `it still ran${seconds ? ` after ${seconds} s` : ''}`,
    fails: `it failed: ${reason}`,
    module: `the module ended it: ${code === undefined ? 'the time to play was over' : `an answer with code ${code}`}`,
})[how];

const describeExpectedEnd = (expected) => ({
    ends: 'the game should end by itself',
    runs: 'the game should still run',
    fails: 'the game should fail',
    module: 'the module should end the game',
})[expected] ?? `the module should end the game with ${expected.module}`;

function wrongEnd(expected, end) {
    const [how, code] = typeof expected === 'string' ? [expected] : ['module', expected.module];
    const isMet = end.how === how && (code === undefined || code === (end.code ?? 'timer'));
    return isMet ? [] : [`${describeExpectedEnd(expected)}, but ${describeEnd(end)}`];
}

const describeStuck = (doing) => `${doing}${doing.includes(' waits ') ? ', which the game did not make' : ' was not done'}`;

/**
 * What a run did not meet of `expect`: one line each. `end` is how the game ended: { how, code?, reason?, seconds? }, and
 * `doing` the step that was not done, if there is one.
 */
function failuresOf({ calls = [], codes = {}, end: expectedEnd = 'ends' } = {}, records, end, doing = '') {
    return [
        ...(doing ? [describeStuck(doing)] : []),
        ...missingCalls(calls, callsIn(records)),
        ...missingCodes(codes, codesIn(records)),
        ...wrongEnd(expectedEnd, end)
    ];
}

module.exports = { callsIn, codesIn, failuresOf };
