'use strict';

const assert = require('node:assert/strict');
const { execFile } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { promisify } = require('node:util');

const ROOT = path.join(__dirname, '..');
const GAME = path.join(ROOT, 'examples', 'game.js');
const OPTIONS = { timeout: 60000, killSignal: 'SIGKILL' };
const WIDTH = 100;
const SHOWN = [
    [/ shows (.+) pixels/g,
        ['晓阳 with an icon of 16 × 16', '月光 with an icon of 24 × 24', '青叶 with an icon of 32 × 32']],
    [/"encodedIcon":"(.*?)"/g, [184, 172, 264].map((length) => `iVBORw0K…\u00a0${length}\u00a0characters`)],
];

test('the sample game plays all its scenes, calls every method, and prints what fits the screen', async () => {
    const { stdout } = await promisify(execFile)(process.execPath, [GAME], OPTIONS);
    const found = (pattern, text = stdout) => Array.from(text.matchAll(pattern), ([, part]) => part.replace('\\', ''));
    SHOWN.forEach(([pattern, texts]) => assert.deepEqual(found(pattern), texts));
    assert.deepEqual(found(/^ ?\d+ {2}(\S.*)$/gm), found(/^scene\('(.*)', \{$/gm, fs.readFileSync(GAME, 'utf8')));
    const called = new Set(found(/^ +game +→ (\w+)\(/gm));
    assert.deepEqual([...called].sort(), Object.getOwnPropertyNames(require(ROOT)).sort());
    assert.equal(found(/ (transId_\d+)$/gm).length, 21);
    const columns = (line) => line.replace(/[\p{Script=Han}，！]/gu, '..').length;
    assert.deepEqual(stdout.split('\n').filter((line) => columns(line) > WIDTH), []);
});

test('the TypeScript game compiles strictly; its suite passes, and fails if the game ends unexpected', async () => {
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
        ({ code, stdout: told }) => code === 1 && told.includes('the module ends the process'));
});
