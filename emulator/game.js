'use strict';

const { spawn } = require('node:child_process');
const path = require('node:path');
const { killGame } = require('./agent/kill_game.js');
const { onLines } = require('./lines.js');

const AGENT = path.join(__dirname, 'agent', 'index.js');
const SILENCE_MS = 3000;  // after this time without an answer, the game hangs
const UNSETTLED = 13;  // Node's exit status if an await never settles

/** One run of the game in a process of its own, which leads its process group. */
class Game {
    #child;
    #onRecord;
    #pending = new Map();  // by the number of a command, what settles its promise
    #count = 0;
    #isStopped = false;
    #last = null;  // the record that says why the game ended

    /** Starts it. `onRecord` gets the records; `settings` are those of the agent. */
    constructor({ game, gameArguments }, settings, onRecord) {
        this.#onRecord = onRecord;
        this.#child = spawn(process.execPath, ['--require', AGENT, game, ...gameArguments], {
            detached: process.platform !== 'win32',  // there it would open a window
            windowsHide: true,
            stdio: ['ignore', 'pipe', 'pipe', 'pipe', 'pipe'],
            env: { ...process.env, GAME_EMULATOR: '1', GAMEAPI_EXIT_STATUS: '' },
        });
        const [, out, err, channel] = this.#child.stdio;
        this.#forward(out, process.stdout, 'out');
        this.#forward(err, process.stderr, 'err');
        onLines(channel, (message) => this.#handle(message));
        this.#child.stdio.at(-1).on('error', () => {});  // the pipe of the watchdog
        channel.write(`${JSON.stringify(settings)}\n`);
        this.pid = this.#child.pid;
        this.ended = new Promise((resolve) => {
            this.#child.on('error', (error) => resolve({ how: 'fails', reason: error.message, isUnstarted: true }));
            this.#child.on('exit', () => this.kill());  // the processes that it has left behind
            this.#child.on('close', (code, signal) => resolve(this.#endOf(code, signal)));
        });
        this.ended.then(() => this.#abandon());
    }

    #forward(from, to, stream) {
        from.setEncoding('utf8').on('data', (text) => {
            to.write(text);
            this.#onRecord({ kind: 'output', stream, text });
        });
    }

    #handle({ record, id, ...outcome }) {
        if (!record) {
            this.#pending.get(id)(outcome);
            this.#pending.delete(id);
            return;
        }
        if (record.kind === 'ended' || record.kind === 'failed') {
            this.#last = record;
        }
        this.#onRecord(record);
    }

    #endOf(status, signal) {
        const last = this.#last;
        if (last?.kind === 'ended') {
            return { how: 'module', code: last.reason === 'timer' ? undefined : last.code };
        }
        if (this.#isStopped) {
            return { how: 'runs' };
        }
        if (status === 0) {
            return { how: 'ends' };
        }
        const unsettled = status === UNSETTLED ? 'an await never settled' : null;
        const message = last && (/^\w*Error\b.*$/m.exec(last.text)?.[0] ?? last.text.split('\n')[0]);
        const reason = unsettled ?? message ?? (signal ? `signal ${signal}` : `exit status ${status}`);
        const isUnstarted = ['SyntaxError', 'MODULE_NOT_FOUND', 'ERR_MODULE_NOT_FOUND'].includes(last?.code);
        return { how: 'fails', reason, isUnstarted };
    }

    #abandon() {
        this.#pending.forEach((settle) => settle({ error: 'the game has ended' }));
        this.#pending.clear();
    }

    /** Sends the game's process a command. Rejects with what is wrong with it, or if the game hangs or ends. */
    command(command, value) {
        return new Promise((resolve, reject) => {
            const id = ++this.#count;
            const timer = setTimeout(() => reject(new Error('the game does not respond')), SILENCE_MS);
            this.#pending.set(id, ({ error, answer }) => {
                clearTimeout(timer);
                return error === undefined ? resolve(answer) : reject(new Error(error));
            });
            this.#child.stdio[3].write(`${JSON.stringify({ id, command, value })}\n`);
        });
    }

    /** Ends the game's processes at once. */
    async stop() {
        this.#isStopped = true;
        this.kill();
        return this.ended;
    }

    /** The same, without waiting. */
    kill() {
        killGame(this.pid);
    }
}

module.exports = { Game };
