'use strict';

const fs = require('fs');
const path = require('path');

const build = process.env.GAMEAPI_BUILD || 'release';
const addon = path.join(__dirname, '..', 'out', build, 'device.node');
if (!fs.existsSync(addon)) {
    throw new Error(`The stand-in device is not built: out/${build}/device.node is missing. Run ./build, which makes it.`);
}
const binding = require(addon);

const MAX_TIMEOUT_MS = 0x7fffffff;  // of setTimeout

function deepFreeze(value) {
    if (typeof value === 'object' && value !== null) {
        Object.values(value).forEach(deepFreeze);
        Object.freeze(value);
    }
    return value;
}

// The methods are async so that a TypeError of the binding rejects; they still answer before they return.
class Modal {
    constructor({ id, want, config }) {
        this.id = id;
        this.want = want;
        this.config = config;
        deepFreeze(this);
    }

    get isOpen() {
        return binding.isModalOpen(this.id);
    }

    async result(code, parameters = {}) {
        return binding.answerResult(this.id, code, parameters);
    }

    async receive(parameters) {
        return binding.answerReceive(this.id, parameters);
    }

    async release(code) {
        return binding.answerRelease(this.id, code);
    }

    async error(code, name = '', message = '') {
        return binding.answerError(this.id, code, name, message);
    }
}

// One object per modal. A new generation begins with a reset, which may come from another environment.
const known = { generation: 0, modals: new Map() };

function modalOf(record) {
    if (known.generation < record.generation) {
        known.generation = record.generation;
        known.modals.clear();
    }
    const modal = known.modals.get(record.id) || new Modal(record);
    known.modals.set(record.id, modal);
    return modal;
}

function findModal(id) {
    const record = known.modals.has(id) ? null : binding.modalRecord(id);
    return record ? modalOf(record) : known.modals.get(id);
}

function modals() {
    return binding.modalIds().map(findModal).filter(Boolean);
}

async function nextModal(timeoutMs = 5000) {
    if (typeof timeoutMs !== 'number' || !(timeoutMs >= 0 && timeoutMs <= MAX_TIMEOUT_MS)) {
        throw new TypeError(`timeoutMs must be a number of milliseconds from 0 to ${MAX_TIMEOUT_MS}`);
    }
    return new Promise((resolve, reject) => {
        const ticket = binding.awaitModal((record) => {
            clearTimeout(timer);
            resolve(modalOf(record));
        });
        const timer = setTimeout(() => {
            if (binding.cancelWait(ticket)) {
                reject(new Error(`no modal was opened within ${timeoutMs} ms`));
            }
        }, timeoutMs);
    });
}

function onModal(handler) {
    const isFunction = typeof handler === 'function';
    binding.onModal(isFunction ? (record) => { handler(modalOf(record)); } : handler);
}

function reset() {
    binding.reset();
    known.modals.clear();
}

module.exports = {
    createAbilityContext: binding.createAbilityContext,
    createUIExtensionContext: binding.createUIExtensionContext,
    createStageContext: binding.createStageContext,
    showWindow: binding.showWindow,
    hideWindow: binding.hideWindow,
    modals,
    nextModal,
    onModal,
    answerAll: binding.answerAll,
    answerOn: binding.answerOn,
    clock: {
        real: binding.clockReal,
        manual: binding.clockManual,
        now: binding.clockNow,
        async advance(ms) {
            return binding.clockAdvance(ms);
        },
        sleepers: binding.clockSleepers
    },
    setSystemApp: binding.setSystemApp,
    logs: binding.logs,
    analytics: {
        processors: binding.analyticsProcessors,
        events: binding.analyticsEvents
    },
    failNext: binding.failNext,
    faults: binding.faults,
    reset
};
