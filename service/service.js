'use strict';

const { EventEmitter } = require('node:events');
const device = require('../device/index.js');
const { announce, ownAnswers } = require('./answers.js');
const { AnswerQueue } = require('./queue.js');
const { ruleFor, seeded } = require('./rules.js');
const { changeState, copyOf, newState } = require('./state.js');

// The kinds of answers, with the keys that each has besides.
const KINDS = { result: ['parameters'], receive: [], release: [], error: ['name', 'message'] };
const PAGES = ['launchWelcomeBanner', 'launchCommonPage', 'launchAntiAddiction'];

/** Gives one answer. That the device forgot the modal, or that the game has ended, is no fault of the service. */
async function give(modal, answer) {
    const kind = Object.keys(KINDS).find((one) => Object.hasOwn(answer, one));
    await modal[kind](answer[kind], ...KINDS[kind].map((key) => answer[key])).catch((problem) => {
        if (problem instanceof TypeError) {
            throw problem;
        }
    });
}

/** Groups answers that come together: each group but the first begins with an answer that comes `after` a time. */
function groupsOf(answers) {
    const begins = [...answers.keys()].filter((index) => index === 0 || answers[index].after > 0);
    return begins.map((begin, nth) => answers.slice(begin, begins[nth + 1]));
}

class Service extends EventEmitter {
    #state;
    #entries = [];  // of rules, as `ruleFor` needs them
    #random;
    #counts = new Map();  // of requests, by method
    #byHand;

    constructor({ state = {}, rules = [], seed = 1, byHand = () => false } = {}) {
        super();
        this.requests = [];
        this.queue = new AnswerQueue();
        this.#byHand = byHand;
        this.#state = changeState(newState(), state);
        this.#random = seeded(seed);
        rules.forEach((rule) => this.addRule(rule));
        device.onModal((modal) => this.#serve(modal));
    }

    /** A copy of the state. */
    get state() {
        return copyOf(this.#state);
    }

    set state(changes) {
        this.#state = changeState(this.#state, changes);
        this.emit('state');
    }

    get rules() {
        return this.#entries.map(({ rule }) => rule);
    }

    addRule(rule) {
        this.#entries.push({ rule, since: device.clock.now(), seen: 0, used: 0 });
    }

    clearRules() {
        this.#entries = [];
    }

    /** Whether answers are due later. */
    get isBusy() {
        return this.queue.nextDue < Infinity;
    }

    /** Whether a request waits for an answer by hand, as a rule or `byHand` says. */
    get isAwaiting() {
        return this.waiting().some(({ isAwaited }) => isAwaited);
    }

    /** Milliseconds until the next answer is due; infinite if there is none. */
    get nextDue() {
        return this.queue.nextDue;
    }

    /** The requests that nobody will answer unless it is done by hand, oldest first. */
    waiting(method) {
        return this.requests.filter((request) => request.isWaiting && request.modal.isOpen &&
            (method === undefined || request.method === method));
    }

    /** Answers a request by hand: of those that match, the oldest one that waits, else the latest one. */
    async answer({ modal: id, method, nth }, answers) {
        const matches = (request) => (id === undefined || request.modal.id === id) &&
            (method === undefined || request.method === method) && (nth === undefined || request.nth === nth);
        const request = this.waiting().find(matches) ?? this.requests.findLast(matches);
        if (!request) {
            throw new Error(`there is no open request of ${method ?? `modal ${id}`} to answer`);
        }
        return this.#giveInTurn(request, answers);
    }

    /** Signs another player in, or out with ''. A game that waits for an answer learns it at once, others at login. */
    async switchPlayer(playerId) {
        this.state = { currentPlayer: playerId };
        const player = this.#state.players.find((one) => one.playerId === playerId);
        const open = this.requests.find(({ modal, method }) => modal.isOpen && !PAGES.includes(method));
        this.state = { announcesPlayer: !open };
        if (open) {
            await give(open.modal, announce(player));
        }
    }

    /** Stops answering. What is due later is not given. */
    close() {
        device.onModal(null);
        this.queue.clear();
    }

    #serve(modal) {
        const { method, want: { parameters } } = modal;
        const nth = (this.#counts.get(method) ?? 0) + 1;
        this.#counts.set(method, nth);
        const request = { modal, method, requestType: parameters.requestType, parameters, nth, isWaiting: true };
        this.requests = [...this.requests.filter((other) => other.modal.isOpen), request];
        const rule = ruleFor(request, this.#entries, device.clock.now(), this.#random);
        this.emit('request', request, rule);
        this.#follow(rule ?? this.#defaultRule(request), request);
    }

    // No game waits for a page: it stays open until it is closed by hand.
    #defaultRule(request) {
        return PAGES.includes(request.method) ? { never: true } : { wait: this.#byHand(request) };
    }

    #follow({ wait, never, answer = [{ own: true }], delay }, request) {
        if (wait) {
            request.isAwaited = true;
            this.emit('waits', request);
        } else if (!never) {
            void this.#giveInTurn(request, answer, delay);
        }
    }

    /** Gives answers, each group at its time after the one before. Resolves when all were given. */
    async #giveInTurn(request, answers, delay = 0) {
        request.isWaiting = false;
        for (const [index, group] of groupsOf(answers).entries()) {
            const ms = (index === 0 ? delay : 0) + (group[0].after ?? 0);
            await this.queue.add(ms, () => this.#giveTogether(request, group));
        }
    }

    async #giveTogether(request, group) {
        const answers = group.flatMap((answer) => (answer.own ? ownAnswers(request, this.#state) : [answer]));
        if (group.some(({ own }) => own)) {
            this.emit('state');
        }
        await Promise.all(answers.map((answer) => give(request.modal, answer)));
    }
}

const createService = (options) => new Service(options);

module.exports = { createService };
