'use strict';

// Plays steps on the module and on the model, and compares both after each step.

const { isDeepStrictEqual, inspect } = require('node:util');
const { Worker } = require('node:worker_threads');
const { device, game, nextMessage, reset, wantOf } = require('../support');
const { Model } = require('./model');
const { Player } = require('./player');

const CONFIG = { leading: [true, false, true], trailing: [true, false, false, true] };
const main = new Player(game, device);
const idle = [];  // Workers that later sequences reuse

/** The player of a Worker, driven by messages. */
class RemotePlayer {
    constructor() {
        this.worker = new Worker(require.resolve('./player'), { workerData: { isPlayer: true } });
        this.worker.unref();
        for (const method of ['begin', 'setWindow', 'call', 'flush', 'leave']) {
            this[method] = (...args) => {
                this.worker.postMessage([method, ...args]);
                return nextMessage(this.worker);
            };
        }
    }

    async end() {
        await this.worker.terminate();
    }
}

/** The module with its games. It has a method for each kind of step, as the model has. */
class Reality {
    constructor(thread) {
        Object.assign(this, { thread, gameEnd: null, players: new Map([['main', main]]) });
        main.begin();
        game.syncTraceId('');
        reset();
        device.answerOn(thread);
        device.onExit(({ reason, code }) => { this.gameEnd = [reason, code]; });
    }

    async close() {
        device.reset();
        this.players.delete('main');
        for (const player of this.players.values()) {
            device.setSystemApp(true);
            await player.leave();
            idle.push(player);
        }
        device.reset();
    }

    step([kind, ...rest]) { return this[kind](...rest); }

    call(name, ...rest) { return this.players.get(name).call(...rest); }

    answers(steps) {
        this.given = device.modals();
        return Promise.all(steps.map((step) => this.step(step)));
    }

    answer(index, kind, ...payload) { return this.given[index][kind](...payload); }

    advance(ms) { return device.clock.advance(ms); }

    window(name, ...change) { return this.players.get(name).setWindow(...change); }

    system(isSystem) { device.setSystemApp(isSystem); }

    gc() { global.gc?.(); }

    async start(name) {
        const player = idle.pop() || new RemotePlayer();
        this.players.set(name, player);
        await player.begin();
    }

    async end(name) {
        const player = this.players.get(name);
        this.players.delete(name);
        await player.end();
    }

    async flush() {
        const heard = {};
        for (const [name, player] of this.players) {
            heard[name] = await player.flush();
        }
        return heard;
    }

    /** The warnings and errors that the module logged. */
    get logs() {
        return device.logs().filter(({ level, domain }) => 'WE'.includes(level) && domain === 0xd00470a)
            .map(({ message }) => message.replace(/^\[\([^)]*\)\]/, ''));
    }

    get reports() {
        return device.analytics.events().map(({ params }) => {
            const { api_name: api, begin_time: begin, end_time: end, error_code: code } = Object.fromEntries(params);
            return [api, begin, end, code];
        });
    }
}

// While the clock moves, a delivery may run before or after the next thread logs.
const LOGGED_ANY_TIME = 'SendMessageBackWork callback and deferred nullptr';
const settledOrder = (list) => [list.filter((line) => line !== LOGGED_ANY_TIME),
    list.filter((line) => line === LOGGED_ANY_TIME)];
const byText = (list) => list.map((item) => inspect(item, { depth: 9 })).sort();

class Comparison {
    /** `thread`: where answers run. `isStrict`: the order of all log lines is defined, as on one thread. */
    constructor({ thread = 'caller', isStrict = thread === 'caller' } = {}) {
        Object.assign(this, { isStrict, seen: 0, reality: new Reality(thread), model: new Model(device.clock.now()) });
    }

    /** Null, or the first difference after one of `count` steps. The end of the game ends them. */
    async playSteps(next, count, { watch = () => {}, isWatched = false } = {}) {
        let difference = null;
        for (let index = 0; index < count && !difference && !this.model.gameEnd; ++index) {
            const step = next(index);
            watch(index, step);
            difference = await this.play(step, isWatched || index === count - 1);
            difference &&= { index, step, ...difference };
        }
        await this.reality.close();
        return difference;
    }

    /** The same for a list of steps. */
    static run(steps, options) {
        return new Comparison(options).playSteps((index) => steps[index], steps.length);
    }

    async play(step, isWhole) {
        const { model, reality } = this;
        const expected = { outcome: model.step(step), heard: model.flush() };
        // The end of the game cannot be handled on the JS thread.
        device.answerOn(model.gameEnd ? 'ui' : reality.thread);
        return this.compare(expected, { outcome: await reality.step(step), heard: await reality.flush() }, isWhole);
    }

    compare(expected, actual, isWhole) {
        const { model, reality } = this;
        const modals = device.modals();
        const opened = model.modals.slice(this.seen).map(({ parameters: { requestType, ...more } }) =>
            [wantOf(requestType, more), CONFIG]);
        const pairs = {
            outcome: [expected.outcome, actual.outcome],
            heard: [expected.heard, actual.heard],
            'modals opened': [opened, modals.slice(this.seen).map(({ want, config }) => [want, config])],
            'open modals': [model.modals.map(({ isOpen }) => isOpen), modals.map(({ isOpen }) => isOpen)],
            'end of the game': [model.gameEnd, reality.gameEnd],
            'sleeping threads': [model.sleepers.length, device.clock.sleepers()],
        };
        this.seen = modals.length;
        if (isWhole || model.gameEnd) {
            const [order, logOrder] = this.isStrict ? [(list) => list, settledOrder] : [byText, byText];
            pairs['warnings and errors'] = [model, reality].map(({ logs }) => !model.isLogUnsettled && logOrder(logs));
            pairs.analytics = [model, reality].map(({ reports }) => order(reports));
        }
        const what = Object.keys(pairs).find((name) => !isDeepStrictEqual(...pairs[name]));
        return what ? { what, expected: pairs[what][0], actual: pairs[what][1] } : null;
    }
}

module.exports = { Comparison };
