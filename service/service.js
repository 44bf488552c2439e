'use strict';

const { EventEmitter } = require('node:events');
const device = require('../device/index.js');
const { announce, ownAnswers } = require('./answers.js');
const { RuleBook } = require('./rules.js');
const { changeState, copyOf, newState } = require('./state.js');

const GIVE = {
    result: (modal, { result, parameters }) => modal.result(result, parameters),
    receive: (modal, { receive }) => modal.receive(receive),
    release: (modal, { release }) => modal.release(release),
    error: (modal, { error, name, message }) => modal.error(error, name, message),
};
const PAGES = ['launchWelcomeBanner', 'launchCommonPage', 'launchAntiAddiction'];

/** Gives one answer. That the device forgot the modal, or that the game has ended, is no fault of the service. */
async function give(modal, answer) {
    try {
        await GIVE[Object.keys(GIVE).find((kind) => Object.hasOwn(answer, kind))](modal, answer);
    } catch (problem) {
        if (problem instanceof TypeError) {
            throw problem;
        }
    }
}

/** Groups answers that follow each other at once: the next group begins with an answer that comes `after` a time. */
function groupsOf(answers) {
    return answers.reduce((groups, answer) => {
        if (groups.length === 0 || answer.after > 0) {
            groups.push([]);
        }
        groups.at(-1).push(answer);
        return groups;
    }, []);
}

class Service extends EventEmitter {
    #state;
    #book;
    #counts = new Map();  // of requests, by method
    #due = new Set();  // the answers that are due later
    #kept = null;  // while answers are kept back, functions that give those that are due
    #byHand;

    constructor({ state = {}, rules = [], seed = 1, byHand = () => false } = {}) {
        super();
        this.requests = [];
        this.#byHand = byHand;
        this.#state = changeState(newState(), state);
        this.#book = new RuleBook(rules, seed, device.clock.now());
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
        return this.#book.rules;
    }

    addRule(rule) {
        this.#book.add(rule, device.clock.now());
    }

    clearRules() {
        this.#book.clear();
    }

    /** Whether answers are due later. */
    get isBusy() {
        return this.#due.size > 0;
    }

    /** Whether a request waits for an answer by hand, as a rule or `byHand` says. */
    get isAwaiting() {
        return this.waiting().some(({ isAwaited }) => isAwaited);
    }

    /** Milliseconds until the next answer is due; infinite if there is none. */
    get nextDue() {
        return Math.min(Infinity, ...Array.from(this.#due, ({ due }) => due - device.clock.now()));
    }

    /** The requests that nobody will answer unless it is done by hand, oldest first. */
    waiting(method) {
        return this.requests.filter((request) => request.isWaiting && request.modal.isOpen &&
            (method === undefined || request.method === method));
    }

    /** Answers a request by hand: the oldest one that waits and is meant, else the latest one that is meant. */
    async answer({ modal: id, method, nth }, answers) {
        const isMeant = (request) => (id === undefined || request.modal.id === id) &&
            (method === undefined || request.method === method) && (nth === undefined || request.nth === nth);
        const request = this.waiting().find(isMeant) ?? this.requests.findLast(isMeant);
        if (!request) {
            throw new Error(`there is no open request of ${method ?? `modal ${id}`} to answer`);
        }
        request.isWaiting = false;
        return this.#plan(request, answers, 0);
    }

    /**
     * Signs another player in; '' signs out. A game that waits for an answer hears of it at once, others with their next
     * getLocalPlayer.
     */
    async switchPlayer(playerId) {
        this.state = { currentPlayer: playerId };
        const player = this.#state.players.find((one) => one.playerId === playerId);
        const open = this.requests.find(({ modal, method }) => modal.isOpen && !PAGES.includes(method));
        this.state = { announcesPlayer: !open };
        if (open) {
            await give(open.modal, announce(player));
        }
    }

    /** Keeps answers back that are due, until `resume`. The clock does not wait for them. */
    pause() {
        this.#kept ??= [];
    }

    resume() {
        const kept = this.#kept ?? [];
        this.#kept = null;
        kept.forEach((giveNow) => giveNow());
    }

    /** Stops answering. What is due later is not given. */
    close() {
        device.onModal(null);
        this.#due.forEach((entry) => entry.cancel());
        this.#due.clear();
    }

    #serve(modal) {
        const { method, want: { parameters } } = modal;
        const nth = (this.#counts.get(method) ?? 0) + 1;
        this.#counts.set(method, nth);
        const request = { modal, method, requestType: parameters.requestType, parameters, nth, isWaiting: true };
        this.requests = [...this.requests.filter((other) => other.modal.isOpen), request];
        const rule = this.#book.match(request, device.clock.now());
        this.emit('request', request, rule);
        this.#begin(request, rule);
    }

    // Pages stay open until they are closed by hand, but no game waits for that.
    #begin(request, rule) {
        const isPage = PAGES.includes(request.method);
        if (rule ? rule.wait : !isPage && this.#byHand(request)) {
            request.isAwaited = true;
            this.emit('waits', request);
        } else if (rule ? !rule.never : !isPage) {
            request.isWaiting = false;
            this.#plan(request, rule?.answer ?? [{ own: true }], rule?.delay ?? 0);
        }
    }

    // Resolves when all answers were given.
    #plan(request, answers, delay) {
        return groupsOf(answers).reduce((before, group, index) => before.then(() =>
            this.#at((group[0].after ?? 0) + (index === 0 ? delay : 0), () => this.#giveAll(request, group))),
        Promise.resolve());
    }

    async #giveAll({ modal, ...request }, group) {
        const answers = group.flatMap((answer) => (answer.own ? ownAnswers(request, this.#state) : [answer]));
        if (group.some(({ own }) => own)) {
            this.emit('state');
        }
        await Promise.all(answers.map((answer) => give(modal, answer)));
    }

    #at(ms, handler) {
        return new Promise((resolve, reject) => {
            const entry = { due: device.clock.now() + ms };
            const run = () => {
                if (this.#kept) {
                    this.#kept.push(() => this.#due.has(entry) && arm(0));
                    return undefined;
                }
                this.#due.delete(entry);
                return handler().then(resolve, reject);
            };
            const arm = (delay) => { entry.cancel = device.clock.after(delay, run); };
            this.#due.add(entry);
            arm(ms);
        });
    }
}

const createService = (options) => new Service(options);

module.exports = { Service, createService };
