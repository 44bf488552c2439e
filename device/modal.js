'use strict';

const { inspect } = require('util');
const { methodOf } = require('../lib/methods.js');
const binding = require('./binding.js');
const { complaints } = require('./answers.js');
const { readInt32, readParameters, readText } = require('./checks.js');

function deepFreeze(value) {
    if (typeof value === 'object' && value !== null) {
        Object.values(value).forEach(deepFreeze);
        Object.freeze(value);
    }
    return value;
}

// The methods are async so that a TypeError becomes a rejection. They still answer before they return.
class Modal {
    constructor({ id, want, config }) {
        this.id = id;
        this.method = methodOf(want.parameters.requestType);
        this.want = want;
        this.config = config;
        deepFreeze(this);
    }

    get isOpen() {
        return binding.isModalOpen(this.id);
    }

    get isAnswered() {
        return binding.isModalAnswered(this.id);
    }

    async result(code, parameters = {}) {
        const given = binding.answerResult(this.id, readInt32('code', code), readParameters(parameters));
        warn(this, 'result', code, parameters);
        return given;
    }

    async receive(parameters) {
        const given = binding.answerReceive(this.id, readParameters(parameters));
        warn(this, 'receive', parameters.resultCode, parameters);
        return given;
    }

    async release(code) {
        return binding.answerRelease(this.id, readInt32('code', code));
    }

    async error(code, name = '', message = '') {
        const parameters = { name: readText('name', name), message: readText('message', message) };
        return binding.answerError(this.id, readInt32('code', code), parameters);
    }

    [inspect.custom](depth, options) {
        const { id, method, isOpen, isAnswered, want, config } = this;
        return `Modal ${inspect({ id, method, isOpen, isAnswered, want, config }, options)}`;
    }
}

function warn(modal, kind, code, parameters) {
    for (const complaint of complaints(kind, modal.method, code, parameters)) {
        binding.say(`modal ${modal.id} (${modal.method}), ${kind}: ${complaint}`);
    }
}

// One object per modal. A reset begins a new generation, and may come from another environment.
const known = { generation: 0, modals: new Map() };

function modalOf(snapshot) {
    if (known.generation < snapshot.generation) {
        known.generation = snapshot.generation;
        known.modals.clear();
    }
    const modal = known.modals.get(snapshot.id) || new Modal(snapshot);
    known.modals.set(snapshot.id, modal);
    return modal;
}

function findModal(id) {
    const snapshot = known.modals.has(id) ? null : binding.modalSnapshot(id);
    return snapshot ? modalOf(snapshot) : known.modals.get(id);
}

const modals = () => binding.modalIds().map(findModal).filter(Boolean);

const forgetModals = () => known.modals.clear();

module.exports = { forgetModals, modalOf, modals };
