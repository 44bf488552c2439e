'use strict';

// The world of the model: environments with what is on its way to them, time, and what was logged and reported. Nothing
// in it runs by itself.

const { Reader } = require('./reading');

class World extends Reader {
    constructor(now) {
        super();
        Object.assign(this, { now, births: 0, traceId: '', isSystem: false, gameEnd: null, logs: [], reports: [] });
        Object.assign(this, { envs: new Map(), modals: [], sleepers: [], listeners: new Map() });
        this.start('main');
    }

    // The contexts of each environment: two abilities, a UI extension, and an ability without a window.
    start(name) {
        const windows = [true, true, true, false].map((isShown, i) => ({ isShown, isOfAbility: i !== 2 }));
        this.envs.set(name, { isAlive: true, windows, queue: [], micro: [], heard: [] });
    }

    end(name) {
        const env = this.envs.get(name);
        Object.assign(env, { isAlive: false, queue: [], heard: [] });
        this.modals.filter(({ request }) => request.env === env).forEach((modal) => { modal.isOpen = false; });
        this.listeners.forEach((list, type) => this.listeners.set(type, list.filter((each) => each.env !== env)));
        this.envs.delete(name);
    }

    window(name, slot, change) {
        const { windows } = this.envs.get(name);
        windows[slot] = change === 'renew' ? { isShown: true, isOfAbility: true } : windows[slot];
        windows[slot].isShown = change !== 'hide';
    }

    system(isSystem) {
        this.isSystem = isSystem;
    }

    gc() {}

    /** Delivers everything that is on its way. Returns what each environment heard since the last time. */
    flush() {
        const heard = {};
        for (const [name, env] of this.envs) {
            while (env.micro.length + env.queue.length > 0) {
                (env.micro.shift() || env.queue.shift())();
            }
            heard[name] = env.heard.splice(0);
        }
        return heard;
    }

    sleep(ms, wake, exitAt = Infinity) {
        const birth = ++this.births;
        const lie = (span, then, exits = Infinity) =>
            this.sleepers.push({ at: this.now + span, birth, exitAt: exits, wake: () => then(again) });
        const again = (span, then) => lie(span, then, exitAt);
        lie(ms, wake, exitAt);
    }

    advance(ms) {
        const target = this.now + ms;
        const next = () => this.sleepers.sort((a, b) => a.at - b.at || a.birth - b.birth)[0];
        while (next()?.at <= target) {
            const { at, wake } = this.sleepers.shift();
            this.now = at;
            wake();
        }
        this.now = target;
    }

    /** The time at which a timer ends the game. */
    exitTime() { return Math.min(...this.sleepers.map(({ exitAt }) => exitAt)); }

    /** Ends the game, once: [reason, code]. */
    endGame(...why) {
        this.gameEnd ||= why;
    }

    log(message) {
        this.logs.push(message);
    }

    report(api, begin, code) {
        this.reports.push([api, begin, this.now, code]);
    }
}

module.exports = { World };
