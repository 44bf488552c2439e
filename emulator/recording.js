'use strict';

// Turns the records of a run into a scenario that comes to the same.

const { callsIn } = require('../service/report.js');
const { newState } = require('../service/state.js');

const SCHEMA = 'node_modules/game-player-extension-module/service/scenario.schema.json';  // beside the game
const LATE_MS = 500;  // a modal that opens this long after its call was opened by a thread that waited

/** The keys of a state that differ from those of a new service. */
function changedState(state) {
    const usual = newState();
    return Object.fromEntries(Object.entries(state)
        .filter(([key, value]) => JSON.stringify(value) !== JSON.stringify(usual[key])));
}

/** By modal: its method, which request of that method it is, when it opened, and whether time opened it. */
function requestsIn(records) {
    const requests = new Map();
    const counts = {};
    const callTimes = new Map();
    for (const { kind, call, modal, method, time } of records) {
        if (kind === 'call') {
            callTimes.set(call, time);
        } else if (kind === 'opened') {
            counts[method] = (counts[method] ?? 0) + 1;
            const isLate = time - (callTimes.get(call) ?? 0) >= LATE_MS;
            requests.set(modal, { method, nth: counts[method], opened: time, isLate });
        }
    }
    return requests;
}

/** A rule for each request that waited for an answer by hand, so that it waits again. */
function rulesOf(records, requests) {
    return records.filter(({ kind }) => kind === 'waits').map(({ modal }) => {
        const { method, nth } = requests.get(modal);
        return { when: { method, nth }, wait: true };
    });
}

/** What was done by hand, as a step; null for commands that have no place in a scenario. */
function stepOf({ command, value }, requests) {
    if (command === 'answer') {
        const { method, nth } = requests.get(value.modal);
        return { answer: { method, nth, with: value.with } };
    }
    return command === 'step' ? value : null;
}

/** What was done, each after the requests that came before it, and the time that passed in between. */
function stepsOf(records, requests) {
    const steps = [];
    let now = records[0].time;
    const add = (step, time) => {
        steps.push(step);
        now = Math.max(now, time);
    };
    const advanceTo = (time) => time > now && add({ advance: time - now }, time);
    for (const record of records) {
        const { kind, modal, method, reason, time } = record;
        const step = kind === 'did' && stepOf(record, requests);
        if (kind === 'opened' && !requests.get(modal).isLate) {
            add({ await: { method } }, time);
        } else if (kind === 'opened' || (kind === 'ended' && reason === 'timer')) {
            advanceTo(time);
        } else if (step) {
            advanceTo(time - (step.advance ?? 0));
            add(step, time);
        }
    }
    return steps.slice(0, steps.findLastIndex((step) => !step.await) + 1);
}

/** The calls of the game with what they came to; calls that open no modal have no outcome. */
function expectedCalls(records) {
    return callsIn(records).map(({ method, want, code }) =>
        ({ method, ...(want || code !== undefined ? { code: code ?? 'pending' } : {}) }));
}

const expectedEnd = ({ how, code }) => (how === 'module' ? { module: code ?? 'timer' } : how);

/** The scenario of a run. `played` is the scenario that was played in it, if there was one. */
function scenarioOf(records, played, end) {
    const ready = records.find(({ kind }) => kind === 'ready');
    if (!ready) {
        throw new Error('the game has not started yet, so there is nothing to save');
    }
    const requests = requestsIn(records);
    return {
        $schema: SCHEMA,
        version: 1,
        name: played?.name ?? 'recorded',
        ...(played?.seed !== undefined && { seed: played.seed }),
        ...(played?.systemApp !== undefined && { systemApp: played.systemApp }),
        state: changedState(ready.state),
        rules: [...rulesOf(records, requests), ...ready.rules],
        steps: stepsOf(records.slice(records.indexOf(ready)), requests),
        expect: { calls: expectedCalls(records), end: expectedEnd(end) },
    };
}

module.exports = { scenarioOf };
