'use strict';

const assert = require('node:assert/strict');
const { execFile } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { promisify } = require('node:util');
const { ROOT, expectChild } = require('./support');

const GAME = path.join(ROOT, 'examples', 'game.js');
const OPTIONS = { timeout: 60000, killSignal: 'SIGKILL' };

// Runs in its own process. Prints at its end how many methods the game has called.
function runGame({ device }, file) {
    const called = new Set();
    device.onRecord(({ kind, method }) => kind === 'call' && called.add(method));
    process.once('exit', () => console.log(called.size));
    require(file);
}

test('the sample game calls eighteen methods, and prints what its arrows say', async () => {
    const printed = Array.from(fs.readFileSync(GAME, 'utf8').matchAll(/; \/\/ -> (.*)$/gm), ([, text]) => text);
    const { stderr } = await expectChild(runGame, { args: [GAME], env: { GAMEAPI_LOG: '' }, out: [...printed, '18'] });
    assert.equal(stderr, '');
});

const skip = process.platform === 'win32' && 'its tools are those of this system';

test('the TypeScript game compiles strictly; its suite passes, and fails if the game ends', { skip }, async () => {
    const out = path.join(ROOT, 'out', 'examples', 'shop');
    fs.rmSync(out, { recursive: true, force: true });
    const run = (command, args, env) => promisify(execFile)(command, args,
        { ...OPTIONS, env: { ...process.env, NODE_TEST_CONTEXT: undefined, GAMEAPI_LOG: '', ...env } });
    const suite = path.join(out, 'game.test.js');
    const runSuite = (env) => run(process.execPath, ['--test', '--test-reporter=tap', suite], env);
    await run('tsc', ['-p', path.join(ROOT, 'examples', 'shop')], { LD_PRELOAD: '' });
    const { stdout, stderr } = await runSuite();
    assert.deepEqual([/^# pass 5$/m.test(stdout), /^# fail 0$/m.test(stdout), stderr], [true, true, '']);
    fs.writeFileSync(suite, fs.readFileSync(suite, 'utf8').replace(/\w+\.default\.onExit\(resolve\)/, 'void 0'));
    await assert.rejects(runSuite({ GAMEAPI_EXIT_STATUS: '1' }),
        ({ code, stdout: output }) => code === 1 && output.includes('the module ends the process'));
});
