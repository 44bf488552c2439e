'use strict';

// Runs the emulator as a user does, with games that a test writes to a temporary folder.

const { spawn } = require('node:child_process');
const { once } = require('node:events');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { LIMIT_MS, ROOT } = require('.');

const COMMAND = path.join(ROOT, 'emulator', 'index.js');

/** A temporary folder with these files, by name. It is removed when the process of the tests ends. */
function folderWith(files) {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'emulator-'));
    process.on('exit', () => fs.rmSync(folder, { recursive: true, force: true }));
    for (const [name, text] of Object.entries(files)) {
        fs.writeFileSync(path.join(folder, name), typeof text === 'string' ? text : JSON.stringify(text));
    }
    return folder;
}

function start(args, cwd) {
    const env = { ...process.env, GAMEAPI_EXIT_STATUS: '' };
    const child = spawn(process.execPath, [COMMAND, ...args], { cwd, env, timeout: LIMIT_MS, killSignal: 'SIGKILL' });
    child.text = { out: '', err: '' };
    child.stdout.setEncoding('utf8').on('data', (text) => { child.text.out += text; });
    child.stderr.setEncoding('utf8').on('data', (text) => { child.text.err += text; });
    return child;
}

/** Runs the emulator to its end. */
async function emulate(args, cwd = ROOT) {
    const child = start(args, cwd);
    const [status] = await once(child, 'close');
    return { status, ...child.text };
}

/** Resolves when `find` finds something in what the child prints to stdout; rejects if the child ends before. */
async function printed(child, find) {
    for (;;) {
        const found = find(child.text.out);
        if (found) {
            return found;
        }
        const ended = once(child, 'close').then(([status]) => { throw new Error(`status ${status}: ${child.text.err}`); });
        await Promise.race([once(child.stdout, 'data'), ended]);
    }
}

/** Starts the emulator with its page. Resolves with the process and the page's address. */
async function openEmulator(args, cwd = ROOT) {
    const child = start(args, cwd);
    const [address] = await printed(child, (text) => /^http:\/\/127\.0\.0\.1:\d+\/\w+\/$/m.exec(text));
    return { child, address };
}

/** Reads the stream of a page. `next(isIt)` resolves with the first record from now on that `isIt`. */
async function readRecords(address, headers = {}) {
    const abort = new AbortController();
    const response = await fetch(`${address}events`, { headers, signal: abort.signal });
    const records = [];
    let wake = () => {};
    (async () => {
        let text = '';
        for await (const chunk of response.body.pipeThrough(new TextDecoderStream())) {
            const events = (text + chunk).split('\n\n');
            text = events.pop();
            for (const event of events.filter((one) => !one.startsWith('event:'))) {
                const [, data] = /^data: (.*)$/m.exec(event) ?? [];
                records.push(...JSON.parse(data ?? '[]'));
            }
            wake();
        }
    })().catch(() => {});
    let seen = 0;
    const next = async (isIt) => {
        for (;;) {
            for (; seen < records.length; ++seen) {
                if (isIt(records[seen])) {
                    return records[seen++];
                }
            }
            await new Promise((resolve) => { wake = resolve; });
        }
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

module.exports = { emulate, folderWith, openEmulator, post, printed, readRecords };
