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
const SCENES = [
    'The game starts', 'A window that is late', 'Not for every game', 'Ten minutes of a quick game', 'Who is playing',
    'Is it really Lin', 'Two accounts become one', 'Once is enough', 'Two accounts again', 'A hero with a name',
    'A purchase', 'One of many accounts', 'A welcome, and a page', 'Out of reach', 'Someone else takes over',
    'The old listener retires', 'A mistake in the game', 'A timing of the game\'s own', 'A limit of the game\'s own',
    'Time is up', 'What analytics got',
];

const played = promisify(execFile)(process.execPath, [GAME], OPTIONS);

async function found(pattern) {
    return Array.from((await played).stdout.matchAll(pattern), ([, text]) => text);
}

test('the sample game plays all its scenes, calls every method of the module and ends with status 0', async () => {
    assert.deepEqual(await found(/^ ?\d+ {2}(\S.*)$/gm), SCENES);
    const methods = new Set(await found(/^ +game +→ (\w+)\(/gm));
    assert.deepEqual([...methods].sort(), Object.getOwnPropertyNames(require(ROOT)).sort());
    assert.equal((await found(/ (transId_\d+)$/gm)).length, 21);
});

test('the sample game shows the icons that were sent, and the promises that stay pending', async () => {
    assert.deepEqual(await found(/ shows (.+) pixels/g), [
        '晓阳 with an icon of 16 × 16', '月光 with an icon of 24 × 24', '青叶 with an icon of 32 × 32']);
    assert.deepEqual(await found(/ the promise of (\w+) stays pending/g), [
        'launchWelcomeBanner', 'launchCommonPage', 'launchAntiAddiction']);
});

test('what the sample game prints fits the screen, and base64 is shortened', async () => {
    const { stdout } = await played;
    const columns = (line) => line.replace(/[\p{Script=Han}，！]/gu, '..').length;
    assert.deepEqual(stdout.split('\n').filter((line) => columns(line) > WIDTH), []);
    assert.deepEqual(await found(/"encodedIcon":"(.*?)"/g), [184, 172, 264].map((length) => (
        `iVBORw0K…\u00a0${length}\u00a0characters`)));
});

test('the TypeScript game compiles strictly, and its suite passes, ends, and fails if the game ends unexpected', async () => {
    const out = path.join(ROOT, 'out', 'examples', 'shop');
    fs.rmSync(out, { recursive: true, force: true });
    const run = (command, args, env) => promisify(execFile)(command, args,
        { ...OPTIONS, env: { ...process.env, NODE_TEST_CONTEXT: undefined, ...env } });
    await run('tsc', ['-p', path.join(ROOT, 'examples', 'shop')], { LD_PRELOAD: '' });
    const { stdout, stderr } = await run(process.execPath, ['--test', '--test-reporter=tap', out], { GAMEAPI_LOG: '' });
    assert.deepEqual([/^# pass 5$/m.test(stdout), /^# fail 0$/m.test(stdout), stderr], [true, true, '']);
    const suite = path.join(out, 'game.test.js');
    const unhandled = fs.readFileSync(suite, 'utf8').replace(/\w+\.default\.onExit\(resolve\)/, 'void 0');
    fs.writeFileSync(suite, unhandled);
    const failed = run(process.execPath, ['--test', '--test-reporter=tap', out], { GAMEAPI_EXIT_STATUS: '1', GAMEAPI_LOG: '' });
    await assert.rejects(failed, ({ code, stdout: told }) => code === 1 && told.includes('the module ends the process'));
});
