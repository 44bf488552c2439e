'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { Game } = require('./game.js');
const { record } = require('./recording.js');
const { Stream } = require('./stream.js');

const CHANGE_MS = 100;  // several changes within this time are one

/** The game with its restarts, and the stream of all that happens in it. */
class Session {
    #game = null;
    #end = { how: 'runs' };
    #watchers = [];

    constructor(options) {
        this.options = options;
        this.stream = new Stream();
        this.settings = {
            scenario: options.scenario ?? null,
            clock: { rate: options.rate },
            hand: options.headless || options.scenario ? [] : null,
        };
    }

    /** Starts the game. Resolves with how it ended, when it has. */
    async start() {
        const { game, gameArguments } = this.options;
        const run = new Game(this.options, this.settings, (told) => run === this.#game && this.stream.add(told));
        this.#game = run;
        this.#end = { how: 'runs' };
        this.stream.add({ kind: 'start', game: path.basename(game), gameArguments, pid: run.pid, time: 0 });
        const end = await run.ended;
        if (run === this.#game) {
            this.#end = end;
            this.stream.add({ kind: 'end', ...end });
            this.#save();
        }
        return end;
    }

    async restart() {
        await this.#game.stop();
        void this.start();
    }

    stop() {
        return this.#game.stop();
    }

    kill() {
        this.#game?.kill();
    }

    /** What the game's process answers; of a new process also the clock and the hand are these. */
    async command(command, value) {
        const answer = await this.#game.command(command, value);
        if (command === 'clock' || command === 'hand') {
            this.settings[command] = value;
        }
        return answer;
    }

    /** The run so far as a scenario. */
    scenario() {
        return record(this.stream.facts, this.options.scenario, this.#end);
    }

    #save() {
        if (this.options.record) {
            fs.writeFileSync(this.options.record, `${JSON.stringify(this.scenario(), null, 4)}\n`);
        }
    }

    /** Restarts the game when a file of its folder changes. Follows no packages and no hidden folders. */
    watch() {
        let timer = null;
        const onChange = () => {
            clearTimeout(timer);
            timer = setTimeout(() => this.restart(), CHANGE_MS);
        };
        for (const folder of foldersIn(path.dirname(this.options.game))) {
            this.#watchers.push(fs.watch(folder, onChange));
        }
    }

    unwatch() {
        this.#watchers.splice(0).forEach((watcher) => watcher.close());
    }
}

function foldersIn(folder) {
    const inner = fs.readdirSync(folder, { withFileTypes: true })
        .filter((entry) => entry.isDirectory() && entry.name !== 'node_modules' && !entry.name.startsWith('.'));
    return [folder, ...inner.flatMap(({ name }) => foldersIn(path.join(folder, name)))];
}

module.exports = { Session };
