'use strict';

// The project's files, temporary folders and commands.

const { execFile } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');

const ROOT = path.join(__dirname, '..', '..');
// Real time, for operations that must end. They take longer under sanitizers.
const LIMIT_MS = 15000 * (Number(process.env.GAMEAPI_TEST_PATIENCE) || 1);

const read = (file) => fs.readFileSync(path.join(ROOT, file), 'utf8');
const isThere = (...names) => fs.existsSync(path.join(ROOT, ...names));
const firstGroups = (text, pattern) => Array.from(text.matchAll(pattern), ([, group]) => group);

/** The files below a folder of the project that match the pattern, as paths from the root. */
function filesIn(folder, pattern) {
    return fs.readdirSync(path.join(ROOT, folder), { withFileTypes: true }).flatMap((entry) => {
        const name = path.join(folder, entry.name);
        return entry.isDirectory() ? filesIn(name, pattern) : name.match(pattern) ? [name] : [];
    });
}

const folders = [];
process.on('exit', () => folders.forEach((folder) => fs.rmSync(folder, { recursive: true, force: true })));

/** A temporary folder with these files, by name. It is removed when the process of the tests ends. */
function folderWith(files) {
    const folder = fs.realpathSync(fs.mkdtempSync(path.join(os.tmpdir(), 'game-test-')));
    folders.push(folder);
    for (const [name, content] of Object.entries(files)) {
        const file = path.join(folder, name);
        fs.mkdirSync(path.dirname(file), { recursive: true });
        fs.writeFileSync(file, typeof content === 'string' ? content : JSON.stringify(content), { mode: 0o755 });
    }
    return folder;
}

/** Runs a command to its end, with a time limit. Resolves to { code, signal, stdout, stderr }. */
function run(command, args, { env, ...options } = {}) {
    const how = { cwd: ROOT, timeout: LIMIT_MS, killSignal: 'SIGKILL', maxBuffer: Infinity, ...options };
    return new Promise((resolve) => {
        execFile(command, args, { ...how, env: { ...process.env, ...env } }, (error, stdout, stderr) => {
            const { code, signal } = error || { code: 0, signal: null };
            resolve({ code, signal, stdout, stderr });
        });
    });
}

const runNode = (...args) => run(process.execPath, ...args);

module.exports = { LIMIT_MS, ROOT, filesIn, firstGroups, folderWith, isThere, read, run, runNode };
