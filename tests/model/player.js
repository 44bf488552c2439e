'use strict';

// A game in one JS environment. It makes calls and records what reaches it. A Worker that runs this file is another
// game, which its owner controls by messages.

const { parentPort, workerData } = require('node:worker_threads');
const { turn } = require('../support');
const { MODULES } = require('./tables');

const describe = (value) => (value instanceof Error ? ['error', value.code, value.message] : value);

class Player {
    constructor(game, device) {
        this.game = game;
        this.device = device;
        this.heard = [];
        this.receivers = [game, {}, {}];
        process.on('uncaughtException', (error) => this.heard.push(['uncaught', error.message]));
    }

    /** Starts over with new contexts and functions. */
    begin() {
        const { createAbilityContext, createStageContext, createUIExtensionContext } = this.device;
        this.heard = [];
        this.functions = new Map();
        this.contexts = [createAbilityContext({ modules: MODULES }), createAbilityContext({ modules: MODULES }),
            createUIExtensionContext({ modules: MODULES }), createAbilityContext({ modules: MODULES, window: false })];
        this.badContexts = [undefined, null, {}, 'context', createStageContext('empty'), createStageContext('other')];
    }

    /** Removes all listeners. The game must be a system application. */
    leave() {
        this.game.off('playerChanged');
        this.game.off('gameAddictionPrevented');
    }

    setWindow(slot, change) {
        if (change === 'renew') {
            this.contexts[slot] = this.device.createAbilityContext({ modules: MODULES });
        } else {
            this.device[`${change}Window`](this.contexts[slot]);
        }
    }

    /** How the call ended. What arrives later is recorded under `id`. */
    call(id, method, args, receiver = 0) {
        try {
            const value = Reflect.apply(this.game[method], this.receivers[receiver], args.map((arg) => this.make(arg)));
            if (!(value instanceof Promise)) {
                return ['returned', value];
            }
            value.then((data) => this.heard.push(['resolved', id, data]),
                (error) => this.heard.push(['rejected', id, describe(error)]));
            return ['returned', 'promise'];
        } catch (error) {
            return ['threw', error.code, error.message];
        }
    }

    make(arg) {
        if (arg.ctx !== undefined) {
            return this.contexts[arg.ctx];
        }
        return 'bad' in arg ? this.badContexts[arg.bad] : arg.fn ? this.makeFunction(arg) : arg.value;
    }

    makeFunction({ fn, as }) {
        const player = this;
        const made = this.functions.get(as) || function (...args) {
            const receiver = player.receivers.indexOf(this);
            player.heard.push(['called', as, receiver < 0 ? 'none' : receiver, ...args.map(describe)]);
            player.act(fn, as);
        };
        this.functions.set(as, made);
        return made;
    }

    act(fn, as) {
        if (fn === 'throws') {
            throw new Error('on purpose');
        } else if (fn === 'off') {
            this.call(as, 'off', [{ value: 'playerChanged' }]);
        } else if (fn === 'call') {
            this.call(`${as}!`, 'bindPlayer', [{ ctx: 0 }, { value: 'again' }, { value: '' }]);
        }
    }

    /** Everything that reached this game since the last time, once nothing more is on its way. */
    async flush() {
        await turn();
        return this.heard.splice(0);
    }
}

if (workerData?.isPlayer) {
    const { game, device } = require('../support');
    const player = new Player(game, device);
    parentPort.on('message', async ([method, ...args]) => parentPort.postMessage(await player[method](...args)));
}

module.exports = { Player };
