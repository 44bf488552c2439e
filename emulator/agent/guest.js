'use strict';

const device = require('../../device/index.js');
const { ErrorCode } = require('../../lib/errors.js');
const { REQUESTS } = require('../../lib/methods.js');
const { Player, begin } = require('../../service/player.js');
const { checkAnswers, checkStep } = require('../../service/scenario.js');
const { Channel } = require('./channel.js');

const { setImmediate } = require('node:timers');  // captured before the game may replace it

/** The device, the service and the player of a scenario in the game's process, driven by the emulator. */
class Guest {
    #channel;
    #isHoldPlanned = false;
    #hand;  // the methods whose requests wait for an answer by hand; null: all of them

    constructor(fd) {
        this.#channel = new Channel(fd, (message) => this.#handle(message));
        const { scenario, clock, hand } = this.#channel.first;
        const played = scenario ?? { version: 1 };
        device.onRecord((record) => this.#report(record));
        device.onExit((end) => this.#end(end));
        this.context = device.createAbilityContext();
        this.service = begin(played, { byHand: ({ method }) => this.#hand === null || this.#hand.includes(method) });
        this.player = new Player(played, this);
        this.setClock(clock);
        this.setHand(hand);
        this.#subscribe();
        this.#play(Boolean(scenario));
    }

    #subscribe() {
        const { service } = this;
        service.on('request', ({ modal }, rule) => rule && this.#report({ kind: 'rule', modal: modal.id, rule }));
        service.on('waits', ({ modal }) => this.#report({ kind: 'waits', modal: modal.id }));
        service.on('state', () => this.#report({ kind: 'state', state: service.state }));
        this.#report({
            kind: 'ready', state: service.state, rules: service.rules, codes: ErrorCode,
            methods: Object.keys(REQUESTS), faults: device.faults().map(({ call }) => call),
        });
        this.#channel.flush();  // the game may hang from its first line on
        process.on('uncaughtExceptionMonitor', (error) => this.#report({
            kind: 'failed', code: error?.code ?? error?.name, text: String(error?.stack ?? error),
        }));
        process.on('exit', () => this.#channel.flush());
    }

    // Without a scenario, a person moves the manual clock.
    async #play(isScenario) {
        this.player.onWait = (doing) => this.#report({ kind: 'step', doing });
        this.player.onDone = (value) => value.await || this.#report({ kind: 'did', command: 'step', value });
        await this.player.run();
        this.#report({ kind: 'played' });
        await (isScenario && this.player.until(() => false));
    }

    #report(record) {
        this.#channel.send({ record: { time: device.clock.now(), ...record } });
        if (!this.#isHoldPlanned) {
            this.#isHoldPlanned = true;
            setImmediate(() => this.#hold());
        }
    }

    // What is due later may still come, and what waits for a hand may be answered.
    #hold() {
        this.#isHoldPlanned = false;
        this.#channel.hold(this.service.isBusy || this.service.isAwaiting);
    }

    async #handle({ id, command, value }) {
        try {
            const answer = await COMMANDS[command](this, value);
            if (command !== 'status' && command !== 'step') {
                this.#report({ kind: 'did', command, value });
            }
            this.#channel.send({ id, answer });
        } catch (error) {
            this.#channel.send({ id, error: error.message });
        }
    }

    status() {
        const next = device.clock.next();  // Infinity becomes null, as JSON has none
        return { rate: device.clock.rate(), now: device.clock.now(), next, hand: this.#hand };
    }

    setClock({ rate }) {
        if (rate > 0) {
            device.clock.real(rate);
        } else {
            device.clock.manual();
        }
        this.player.isManual = !(rate > 0);
    }

    setHand(methods) {
        if (methods !== null && !Array.isArray(methods)) {
            throw new TypeError('the hand is a list of methods, or null for all of them');
        }
        this.#hand = methods;
    }

    // The game's JS stands still from now on, as if the module had ended the process.
    #end({ reason, requestType, code }) {
        this.#report({ kind: 'ended', reason, requestType, code });
        this.#channel.flush();
        process.kill(process.pid, 'SIGKILL');
    }
}

/** The commands of the emulator. */
const COMMANDS = {
    status: (guest) => guest.status(),
    answer: ({ player }, { modal, with: answers }) => player.answer({ modal, with: checkAnswers(answers) }),
    step: ({ player }, step) => player.perform(checkStep(step)),
    clock: (guest, clock) => guest.setClock(clock),
    hand: (guest, methods) => guest.setHand(methods),
};

/** Makes this process the one of the game. */
function enter(fd) {
    const { context } = new Guest(fd);
    globalThis.getContext ??= () => context;
}

module.exports = { enter };
