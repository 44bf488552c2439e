'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { Game } = require('./game.js');
const { scenarioOf } = require('./recording.js');
const { Stream } = require('./stream.js');

const MAX_FOLDERS = 500;
const CHANGE_MS = 100;  // several changes within this time are one

/** The runs of a game, one after the other, and the stream of all that happens in them. */
class Runs {
    #game = null;
    #end = null;  // of the run; null while it goes on
    #restart = null;

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
        const run = new Game(this.options, this.settings, (record) => run === this.#game && this.stream.add(record));
        this.#game = run;
        this.#end = null;
        this.stream.add({ kind: 'start', game: path.basename(game), gameArguments, pid: run.pid, time: 0 });
        const end = await run.ended;
        if (run === this.#game) {
            this.#end = end;
            this.stream.add({ kind: 'end', ...end });
            this.#save();
        }
        return end;
    }

    /** Several calls at once are one. */
    restart() {
        this.#restart ??= this.#game.stop().then(() => {
            this.#restart = null;
            void this.start();
        });
        return this.#restart;
    }

    stop() {
        return this.#game.stop();
    }

    /** Ends the game's processes without waiting, and saves the run that they were in. */
    close() {
        if (this.#game && !this.#end) {
            this.#end = { how: 'runs' };
            this.#game.kill();
            this.#save();
        }
    }

    /** What the game's process answers to a command. Clock and hand are kept for the next process. */
    async command(command, value) {
        const answer = await this.#game.command(command, value);
        if (command === 'clock' || command === 'hand') {
            this.settings[command] = value;
        }
        return answer;
    }

    /** The run so far as a scenario: JSON text. */
    scenario() {
        if (this.stream.isFull) {
            throw new Error('the run is too long to be saved as a scenario: restart it');
        }
        const scenario = scenarioOf(this.stream.facts, this.options.scenario, this.#end ?? { how: 'runs' });
        return `${JSON.stringify(scenario, null, 4)}\n`;
    }

    #save() {
        if (this.options.record && !this.stream.isFull && this.stream.facts.some(({ kind }) => kind === 'ready')) {
            fs.writeFileSync(this.options.record, this.scenario());
        }
    }

    /** Restarts the game when a file of its folder changes. Follows no packages and no hidden folders. */
    watch() {
        let timer = null;
        const onChange = () => {
            clearTimeout(timer);
            timer = setTimeout(() => this.restart(), CHANGE_MS);
        };
        foldersIn(path.dirname(this.options.game)).forEach((folder) => fs.watch(folder, onChange));
    }
}

/** A folder and those in it, at most `MAX_FOLDERS`. */
function foldersIn(top) {
    const folders = [top];
    for (let i = 0; i < folders.length && folders.length < MAX_FOLDERS; ++i) {
        const inner = fs.readdirSync(folders[i], { withFileTypes: true })
            .filter((entry) => entry.isDirectory() && entry.name !== 'node_modules' && !entry.name.startsWith('.'));
        folders.push(...inner.map(({ name }) => path.join(folders[i], name)));
    }
    return folders.slice(0, MAX_FOLDERS);
}

module.exports = { Runs };
