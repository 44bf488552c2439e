'use strict';

// Plays steps on the module and on the model, and compares both after each step.

const { isDeepStrictEqual, inspect } = require('node:util');
const { Worker } = require('node:worker_threads');
const { game, device, once, reset } = require('../support');
const { Model } = require('./model');
const { Player } = require('./player');

const main = new Player(game, device);
const idle = [];  // Workers that later sequences reuse

/** The player of a Worker, driven by messages. */
class RemotePlayer {
    constructor() {
        this.worker = new Worker(require.resolve('./player'), { workerData: { isPlayer: true } });
        this.worker.unref();
        for (const method of ['begin', 'setWindow', 'call', 'flush', 'leave']) {
            this[method] = (...args) => this.ask(method, args);
        }
    }

    async ask(method, args) {
        this.worker.postMessage([method, ...args]);
        return (await once(this.worker, 'message'))[0];
    }

    async end() {
        await this.worker.terminate();
    }
}

// While the clock moves, a delivery may run before or after the next thread logs.
const LOGGED_ANY_TIME = 'SendMessageBackWork callback and deferred nullptr';
const settledOrder = (list) => [list.filter((line) => line !== LOGGED_ANY_TIME),
    list.filter((line) => line === LOGGED_ANY_TIME)];
const byText = (list) => list.map((item) => inspect(item, { depth: 9 })).sort();
const trueAt = (flags) => flags.flatMap((flag, index) => (flag ? [index] : []));

function showWant({ want, config }) {
    return [want.bundleName, want.abilityName, want.deviceId, trueAt(config.leading), trueAt(config.trailing),
        want.parameters];
}
const modelWant = ({ parameters }) =>
    ['com.lumora.tavik.velmor', 'GamePlayerUIExtAbility', '', [0, 2], [0, 3], parameters];

function loggedByModule() {
    return device.logs().filter(({ level, domain }) => 'WE'.includes(level) && domain === 0xd00470a)
        .map(({ message }) => message.replace(/^\[\([^)]*\)\]/, ''));
}

function reported() {
    return device.analytics.events().map(({ params }) => {
        const { api_name: api, begin_time: begin, end_time: end, error_code: code } = Object.fromEntries(params);
        return [api, begin, end, code];
    });
}

class Comparison {
    /** `thread`: where answers run. `isStrict`: the order of all log lines is defined, as on one thread. */
    constructor({ thread = 'caller', isStrict = thread === 'caller' } = {}) {
        Object.assign(this, { thread, isStrict, seen: 0 });
        this.players = new Map([['main', main]]);
    }

    async begin() {
        main.begin();
        game.syncTraceId('');
        reset();
        device.answerOn(this.thread);
        this.gameEnd = null;
        device.onExit(({ reason, code }) => { this.gameEnd = [reason, code]; });
        this.model = new Model(device.clock.now());
        this.model.addEnv('main');
    }

    async end() {
        device.reset();
        for (const [name, player] of this.players) {
            if (name !== 'main') {
                device.setSystemApp(true);
                await player.leave();
                idle.push(player);
            }
        }
        device.reset();
    }

    /**
     * Null, or the first difference after one of `count` steps, as {index, step, what, expected, actual}. The
     * end of the game ends them.
     */
    async playSteps(next, count, { watch = () => {}, isWatched = false } = {}) {
        let difference = null;
        for (let index = 0; index < count && !difference && !this.model.gameEnd; ++index) {
            const step = next(index);
            watch(index, step);
            difference = await this.play(step, isWatched || index === count - 1);
            difference = difference && { index, step, ...difference };
        }
        return difference;
    }

    /** The same for a list of steps, with `begin` and `end`. */
    static async run(steps, options) {
        const comparison = new Comparison(options);
        await comparison.begin();
        const difference = await comparison.playSteps((index) => steps[index], steps.length);
        await comparison.end();
        return difference;
    }

    async play(step, isWhole) {
        const outcome = this.stepModel(step);
        const heard = this.model.flush();
        return this.compare({ outcome, heard }, await this.apply(step), isWhole);
    }

    stepModel([kind, ...rest]) {
        const { model } = this;
        switch (kind) {
            case 'call': return model.call(...rest);
            case 'answer': return void model.answer(model.modals[rest[0]], ...rest.slice(1));
            case 'answers': return rest[0].map((step) => this.stepModel(step));
            case 'advance': return void model.advance(rest[0]);
            case 'window': return void model.setWindow(...rest);
            case 'system': return void (model.isSystem = rest[0]);
            case 'start': return void model.addEnv(rest[0]);
            case 'end': return void model.endEnv(rest[0]);
            default: return undefined;
        }
    }

    async apply(step) {
        // The end of the game cannot be handled on the JS thread.
        device.answerOn(this.model.gameEnd ? 'ui' : this.thread);
        let outcome = this.step(step);
        outcome = step[0] === 'answers' ? await Promise.all(outcome) : await outcome;
        const heard = {};
        for (const [name, player] of this.players) {
            heard[name] = await player.flush();
        }
        return { outcome, heard };
    }

    step([kind, ...rest]) {
        const [first] = rest;
        switch (kind) {
            case 'call': return this.players.get(first).call(...rest.slice(1));
            case 'answer': return this.given[first][rest[1]](...rest.slice(2));
            case 'answers': return this.giveAnswers(first);
            case 'advance': return device.clock.advance(first);
            case 'window': return this.players.get(first).setWindow(...rest.slice(1));
            case 'system': return device.setSystemApp(first);
            case 'gc': return global.gc?.();
            case 'start': return this.startWorker(first);
            case 'end': return this.endWorker(first);
            default: throw new Error(`no such step: ${kind}`);
        }
    }

    giveAnswers(steps) {
        this.given = device.modals();
        return steps.map((step) => this.step(step));
    }

    async startWorker(name) {
        const player = idle.pop() || new RemotePlayer();
        this.players.set(name, player);
        await player.begin();
    }

    async endWorker(name) {
        const player = this.players.get(name);
        this.players.delete(name);
        await player.end();
    }

    compare(expected, actual, isWhole) {
        const { model } = this;
        const modals = device.modals();
        const pairs = {
            outcome: [expected.outcome, actual.outcome],
            heard: [expected.heard, actual.heard],
            'modals opened': [model.modals.slice(this.seen).map(modelWant), modals.slice(this.seen).map(showWant)],
            'open modals': [model.modals.map(({ isOpen }) => isOpen), modals.map(({ isOpen }) => isOpen)],
            'end of the game': [model.gameEnd, this.gameEnd],
            'sleeping threads': [model.sleepers.length, device.clock.sleepers()],
        };
        this.seen = modals.length;
        if (isWhole || model.gameEnd) {
            const [order, logOrder] = this.isStrict ? [(list) => list, settledOrder] : [byText, byText];
            pairs['warnings and errors'] = model.isLogUnsettled ? [] : [model.logs, loggedByModule()].map(logOrder);
            pairs.analytics = [model.ends, reported()].map(order);
        }
        const what = Object.keys(pairs).find((name) => !isDeepStrictEqual(...pairs[name]));
        return what ? { what, expected: pairs[what][0], actual: pairs[what][1] } : null;
    }
}

module.exports = { Comparison };
