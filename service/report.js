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

const describeMade = ({ want, code = 'pending' }) => `${JSON.stringify(want) ?? 'no Want'} that got ${code}`;

/** What came closest: the calls of the same method. */
function describeOthers({ method }, calls) {
    const others = calls.filter((call) => call.method === method).slice(0, 3).map(describeMade);
    return others.length > 0 ? `its calls were: ${others.join(', ')}` : `${method} was not called`;
}

function wrongCount(expected, calls) {
    const count = calls.filter((call) => isCall(expected, call)).length;
    return count === expected.times ? [] : [`expected ${expected.times} calls of ${describe(expected)}, not ${count}`];
}

// Each expected call comes after the one before it. With `times`, all calls are counted instead.
function missingCalls(expected, calls) {
    let from = 0;
    return expected.flatMap((one) => {
        if (one.times !== undefined) {
            return wrongCount(one, calls);
        }
        const found = calls.findIndex((call, index) => index >= from && isCall(one, call));
        if (found < 0) {
            const place = from > 0 ? ` after the call of ${calls[from - 1].method}` : '';
            return [`expected a call of ${describe(one)}${place}; ${describeOthers(one, calls)}`];
        }
        from = found + 1;
        return [];
    });
}

function missingCodes(expected, met) {
    return Object.entries(expected).flatMap(([method, codes]) => codes
        .filter((code) => !met[method]?.includes(code))
        .map((code) => `expected ${method} to meet ${code}; it met ${met[method]?.join(', ') ?? 'no code'}`));
}

const causeOf = (code) => (code === undefined ? 'the time to play was over' : `an answer with code ${code}`);

/** For each way to end, what was expected, and what happened instead. */
const ENDS = {
    ends: ['the game should end by itself', () => 'it ended by itself'],
    runs: ['the game should still run', ({ seconds }) => `it still ran${seconds ? ` after ${seconds} s` : ''}`],
    fails: ['the game should fail', ({ reason }) => `it failed: ${reason}`],
    module: ['the module should end the game', ({ code }) => `the module ended it: ${causeOf(code)}`],
};

function wrongEnd(expected, end) {
    const [how, code] = typeof expected === 'string' ? [expected] : ['module', expected.module];
    if (end.how === how && (code === undefined || code === (end.code ?? 'timer'))) {
        return [];
    }
    const [should] = ENDS[how];
    const [, describeEnd] = ENDS[end.how];
    return [`${should}${code === undefined ? '' : ` with ${code}`}, but ${describeEnd(end)}`];
}

const describeStuck = (doing) =>
    doing + (doing.includes(' waits ') ? ', which the game did not make' : ' was not done');

/**
 * What a run did not meet of `expect`: one line each. `end` is how the game ended, { how, code?, reason?, seconds? },
 * and `doing` the step that was not done, if there is one.
 */
function failuresOf({ calls = [], codes = {}, end: expectedEnd = 'ends' } = {}, records, end, doing = '') {
    return [
        ...(doing ? [describeStuck(doing)] : []),
        ...missingCalls(calls, callsIn(records)),
        ...missingCodes(codes, codesIn(records)),
        ...wrongEnd(expectedEnd, end),
    ];
}

/** Whether a game that is to run on has met all that is expected. */
const isMetRunning = (expect, records) =>
    expect?.end === 'runs' && failuresOf(expect, records, { how: 'runs' }).length === 0;

module.exports = { callsIn, codesIn, failuresOf, isMetRunning };
