'use strict';

// Runs the emulator as a user does.

const { spawn } = require('node:child_process');
const { once } = require('node:events');
const { test } = require('node:test');
const { LIMIT_MS, ROOT, folderWith, runNode } = require('./files');

const COMMAND = `${ROOT}/emulator/index.js`;
const env = { GAMEAPI_EXIT_STATUS: '' };
const LOAD = 'const game = require(\'game-player-extension-module\'); const context = getContext();';
/** The source of a game that logs in, buys and binds, and prints what that comes to. In the end it does `more`. */
const sampleGame = (more = '') => `${LOAD}
    const print = (promise) => promise.then((data) => console.log('got', data), ({ code }) => console.log('met', code));
    game.on('playerChanged', ({ resultInfo }) => console.log(resultInfo));
    (async () => {
        await print(game.init(context));
        await print(game.getLocalPlayer(context));
        await print(game.prePurchase(context, { productId: 'sword' }));
        await print(game.bindPlayer(context, 'open-1', 'T-2002'));
        ${more}
    })();`;
const children = [];

/** A test that may leave emulators running: they end with it. */
function testEmulator(title, body) {
    test(title, { timeout: 2 * LIMIT_MS }, async () => {
        try {
            await body();
        } finally {
            children.splice(0).forEach((child) => child.kill());
        }
    });
}

/** Runs the emulator to its end. Resolves to { code, stdout, stderr }. */
const emulate = (args, cwd = ROOT) => runNode([COMMAND, ...args], { cwd, env });

/** Resolves when `find` finds something in what the child prints to stdout; rejects if the child ends before. */
async function printed(child, find) {
    for (;;) {
        const found = find(child.text.out);
        if (found) {
            return found;
        }
        const ended = once(child, 'close').then(([status]) => {
            throw new Error(`status ${status}: ${child.text.err}`);
        });
        await Promise.race([once(child.stdout, 'data'), ended]);
    }
}

/** Starts the emulator with its page on a game of this source. Resolves with its folder, process and address. */
async function openGame(source, ...args) {
    const folder = folderWith({ 'game.js': source });
    const options = { cwd: folder, env: { ...process.env, ...env }, timeout: LIMIT_MS, killSignal: 'SIGKILL' };
    const child = spawn(process.execPath, [COMMAND, ...args, 'game.js'], options);
    children.push(child);
    child.text = { out: '', err: '' };
    child.stdout.setEncoding('utf8').on('data', (text) => { child.text.out += text; });
    child.stderr.setEncoding('utf8').on('data', (text) => { child.text.err += text; });
    const [address] = await printed(child, (text) => /^http:\/\/127\.0\.0\.1:\d+\/\w+\/$/m.exec(text));
    return { folder, child, address };
}

/** The records in the stream of a page. */
async function* recordsOf(body) {
    let text = '';
    for await (const chunk of body.pipeThrough(new TextDecoderStream())) {
        const events = (text + chunk).split('\n\n');
        text = events.pop();
        for (const event of events.filter((one) => !one.startsWith('event:'))) {
            const [, data] = /^data: (.*)$/m.exec(event) ?? [];
            yield* JSON.parse(data ?? '[]');
        }
    }
}

/** Reads the stream of a page. `next(isIt)` resolves with the first record from now on that `isIt`. */
async function readRecords(address, headers = {}) {
    const abort = new AbortController();
    const response = await fetch(`${address}events`, { headers, signal: abort.signal });
    const stream = recordsOf(response.body);
    const records = [];
    const next = async (isIt) => {
        do {
            records.push((await stream.next()).value);
        } while (!isIt(records.at(-1)));
        return records.at(-1);
    };
    return { records, next, close: () => abort.abort() };
}

/** Sends a command as the page does. Resolves with the status and the answer. */
async function post(address, name, value = null, headers = {}) {
    const response = await fetch(address + name, {
        method: 'POST', headers: { 'Content-Type': 'application/json', ...headers }, body: JSON.stringify(value),
    });
    return [response.status, await response.json()];
}

module.exports = { LOAD, emulate, openGame, post, printed, readRecords, sampleGame, testEmulator };
