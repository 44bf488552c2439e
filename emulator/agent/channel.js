'use strict';

const fs = require('node:fs');
const net = require('node:net');
const { StringDecoder } = require('node:string_decoder');
const { onLines } = require('../lines.js');

// Captured now, so that fake timers of the game do not stop it.
const { setImmediate, setTimeout } = require('node:timers');

const MAX_WAITING_BYTES = 64 << 20;
const RETRY_MS = 5;

/** Reads a line from a pipe that still blocks. Returns it, and what came after it. */
function readLine(fd) {
    const decoder = new StringDecoder('utf8');
    const buffer = Buffer.alloc(64 << 10);
    let text = '';
    while (!text.includes('\n')) {
        text += decoder.write(buffer.subarray(0, fs.readSync(fd, buffer)));
    }
    const end = text.indexOf('\n');
    return [text.slice(0, end), text.slice(end + 1)];
}

/**
 * The pipe to the emulator: one JSON value per line in both directions. It does not keep the game's process alive,
 * unless it is held. If the emulator cannot follow, lines of the log are left out and counted.
 */
class Channel {
    #fd;
    #socket;  // reads, and makes the pipe non-blocking
    #lines = [];
    #rest = Buffer.alloc(0);  // of a batch, what the pipe has not taken yet
    #bytes = 0;
    #isPlanned = false;
    #leftOut = 0;

    /** Waits for the first message, which is then `first`. Every later one goes to `onMessage`. */
    constructor(fd, onMessage) {
        this.#fd = fd;
        const [line, rest] = readLine(fd);
        this.first = JSON.parse(line);
        this.#socket = new net.Socket({ fd }).unref();
        onLines(this.#socket, onMessage, rest);
    }

    send(message) {
        if (this.#bytes > MAX_WAITING_BYTES && message.record?.kind === 'log') {
            this.#leftOut += 1;
            return;
        }
        if (this.#leftOut > 0) {
            const count = this.#leftOut;
            this.#leftOut = 0;
            this.send({ record: { kind: 'left out', count } });
        }
        const line = `${JSON.stringify(message)}\n`;
        this.#lines.push(line);
        this.#bytes += line.length;
        this.#plan(setImmediate);
    }

    /** Keeps the process alive, or no longer does. */
    hold(isHeld) {
        this.#socket[isHeld ? 'ref' : 'unref']();
    }

    /** Writes all that waits before it returns. Call it when the process ends. */
    flush() {
        while (this.#write()) {
            // The emulator reads: the pipe takes more soon.
        }
    }

    #plan(later, ms) {
        if (!this.#isPlanned) {
            this.#isPlanned = true;
            later(() => {
                this.#isPlanned = false;
                if (this.#write()) {
                    this.#plan(setTimeout, RETRY_MS);
                }
            }, ms);
        }
    }

    /** Writes what the pipe takes. Returns whether something is left. */
    #write() {
        if (this.#rest.length === 0) {
            this.#rest = Buffer.from(this.#lines.splice(0).join(''));
            this.#bytes = this.#rest.length;
        }
        try {
            while (this.#rest.length > 0) {
                this.#rest = this.#rest.subarray(fs.writeSync(this.#fd, this.#rest));
            }
        } catch (error) {
            return error.code === 'EAGAIN';
        }
        return this.#lines.length > 0;
    }
}

module.exports = { Channel };
