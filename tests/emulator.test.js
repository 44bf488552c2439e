'use strict';

// The emulator as a command: games of all sorts without a page, its server as another program sees it, and its end.

const assert = require('node:assert/strict');
const { once } = require('node:events');
const fs = require('node:fs');
const http = require('node:http');
const path = require('node:path');
const { test } = require('node:test');
const { LIMIT_MS, ROOT } = require('./support');
const { emulate, folderWith, openEmulator, post, printed, readRecords } = require('./support/emulator');

const EXAMPLE = path.join(ROOT, 'examples', 'arcade');
const LOAD = "const game = require('game-player-extension-module'); const context = getContext();";
const limited = { timeout: 2 * LIMIT_MS };

for (const name of ['train', 'bedtime']) {
    test(`the scenario ${name} of the sample game passes`, limited, async () => {
        const played = await emulate(['--headless', '--scenario', `${EXAMPLE}/${name}.json`, `${EXAMPLE}/game.js`]);
        assert.deepEqual([played.status, /passed in/.test(played.out)], [0, true], played.out);
    });
}

// Each game with the expected end, the emulator's status, and what it says.
for (const [what, source, end, status, said] of [
    ['ends', '', 'ends', 0, 'passed'],
    ['throws', "throw new RangeError('of the game')", 'fails', 0, 'passed'],
    ['throws against expectation', "throw new RangeError('of the game')", 'ends', 1,
        'the game should end by itself, but it failed: RangeError: of the game'],
    ['sets a status', 'process.exitCode = 3', 'ends', 1, 'the game should end by itself, but it failed: exit status 3'],
    ['kills itself', "process.kill(process.pid, 'SIGABRT')", 'ends', 1, 'but it failed: signal SIGABRT'],
    ['is no JavaScript', 'this is none', 'ends', 2, 'the game could not start: SyntaxError'],
    ['needs what is not there', "require('nowhere')", 'ends', 2, "the game could not start: Error: Cannot find module 'nowhere'"],
    ['hangs', 'for (;;);', 'ends', 1, 'the game should end by itself, but it still ran after 2 s'],
    ['goes on', `${LOAD} game.init(context); setInterval(() => {}, 1000)`, 'runs', 0, 'passed'],
    ['is ended by an answer', `${LOAD} game.prePurchase(context, { productId: 'a' })`, { module: 10 }, 0, 'passed'],
    ['is ended by the time', `${LOAD} game.launchAntiAddiction(context, 5, '', 2)`, { module: 'timer' }, 0, 'passed'],
    ['is ended against expectation', `${LOAD} game.prePurchase(context, { productId: 'a' })`, 'ends', 1,
        'but the module ended it: an answer with code 10'],
    ['floods the log', `${LOAD} for (let i = 0; i < 100000; ++i) game.onEventCallback({ resultCode: i, resultInfo: '' });`,
        'ends', 0, 'passed'],
    ['replaces timers', "globalThis.setTimeout = globalThis.setImmediate = () => {}; require('node:timers').setTimeout = null;",
        'ends', 0, 'passed'],
]) {
    test(`a game that ${what}`, limited, async () => {
        const rules = [{ when: { method: 'prePurchase' }, answer: [{ after: 500, result: 10 }] }];
        const steps = [{ advance: 60000 }];
        const scenario = { version: 1, timeLimit: what === 'hangs' ? 2 : 20, rules, steps, expect: { end } };
        const folder = folderWith({ 'game.js': source, 'scenario.json': scenario });
        const played = await emulate(['--headless', '--scenario', 'scenario.json', 'game.js'], folder);
        assert.deepEqual([played.status, (played.out + played.err).includes(said)], [status, true], played.out + played.err);
    });
}

test('a game gets the one module by every name, and its arguments', limited, async () => {
    const source = `
        import { Worker, isMainThread } from 'node:worker_threads';
        import { createRequire } from 'node:module';
        import game from 'game-player-extension-module';
        import registered from 'core.velmor.gamePlayerExtensionAbility';
        import { NETWORK } from './codes.mjs';
        const require = createRequire(import.meta.url);
        const names = ['game-player-extension-module', 'core.velmor.gamePlayerExtensionAbility', '@core.velmor.gamePlayerExtensionAbility'];
        console.log(isMainThread, [registered, ...names.map(require)].every((one) => one === game), NETWORK);
        if (isMainThread) {
            await game.init(getContext());
            new Worker(new URL(import.meta.url));
            console.log(process.env.GAME_EMULATOR, process.send, ...process.argv.slice(2));
        }`;
    const codes = "import { ErrorCode } from 'game-player-extension-module/errors'; export const { NETWORK } = ErrorCode;";
    const folder = folderWith({ 'game.mjs': source, 'codes.mjs': codes });
    const { out, status, err } = await emulate(['--headless', 'game.mjs', '--speed', 'of its own'], folder);
    assert.equal(err, '');
    assert.deepEqual([status, ...out.split('\n').slice(0, 3).sort()], [0,
        'false true 1002000002', 'true true 1002000002', 'undefined undefined --speed of its own']);
});

for (const [what, args, line] of [
    ['no game', [], 'no game is named: emulator GAME, and GAME is a .js, .mjs or .cjs file'],
    ['a game that is not there', ['nowhere.js'], 'there is no file nowhere.js'],
    ['a game that is no script', ['scenario.json'], 'scenario.json is no .js, .mjs or .cjs file'],
    ['an unknown option', ['--fast', 'game.js'], "Unknown option '--fast': see emulator --help"],
    ['a speed of nothing', ['--speed', 'fast', 'game.js'], "--speed must be a number from 0.001 to 1000000, not 'fast'"],
    ['two clocks', ['--speed', '2', '--manual-clock', 'game.js'], '--speed and --manual-clock exclude each other'],
    ['a report of a page', ['--junit', 'x.xml', 'game.js'], '--junit needs --headless'],
    ['a port that is none', ['--port', '70000', 'game.js'], "--port must be a number from 0 to 65535, not '70000'"],
    ['no such scenario', ['--scenario', 'nowhere.json', 'game.js'], 'nowhere.json: there is no such file'],
    ['a scenario with a typo', ['--scenario', 'scenario.json', 'game.js'],
        "scenario.json: steps[0]: unknown key 'advnce': possible is note, await, advance, player, state, rule, clearRules, " +
        'answer, window, systemApp, fail'],
]) {
    test(`a command line with ${what} is refused with one line`, limited, async () => {
        const folder = folderWith({ 'game.js': '', 'scenario.json': { version: 1, steps: [{ advnce: 5 }] } });
        assert.deepEqual(await emulate(args, folder), { status: 2, out: '', err: `game emulator: ${line}\n` });
    });
}

test('JUnit XML tells what failed, with every character allowed', limited, async () => {
    const scenario = { version: 1, name: 'a "<b>" & \u0001', expect: { calls: [{ method: 'init' }] } };
    const folder = folderWith({ 'game.js': '', 'scenario.json': scenario });
    const { status } = await emulate(['--headless', '--scenario', 'scenario.json', '--junit', 'out.xml', 'game.js'], folder);
    const xml = fs.readFileSync(path.join(folder, 'out.xml'), 'utf8').replace(/time="[\d.]+"/g, 'time=""');
    assert.deepEqual([status, xml.split('\n')[3].trim()], [1, '<testcase name="a &#34;&#60;b&#62;&#34; &#38; \ufffd" ' +
        'classname="game-emulator" time=""><failure message="expected a call of init; init was not called">' +
        'expected a call of init; init was not called</failure></testcase>']);
});

const PLAYED = `${LOAD}
    const told = (promise) => promise.then((data) => console.log(data), ({ code }) => console.log(code));
    game.on('playerChanged', ({ resultInfo }) => console.log(resultInfo));
    (async () => {
        await game.init(context);
        await told(game.getLocalPlayer(context));
        await told(game.prePurchase(context, { productId: 'sword' }));
        await told(game.bindPlayer(context, 'open-1', 'T-2002'));
        game.launchAntiAddiction(context, 60, '', 2);
        setInterval(() => {}, 1000);
    })();`;

test('what was played by hand is recorded, and comes to the same without a page', limited, async () => {
    const folder = folderWith({ 'game.js': PLAYED });
    const { child, address } = await openEmulator(['--manual-clock', '--record', 'made.json', 'game.js'], folder);
    const page = await readRecords(address);
    const waits = (method) => page.next(({ kind, method: its }) => kind === 'opened' && its === method);
    const { modal } = await waits('init');
    await post(address, 'step', { advance: 2500 });
    await post(address, 'answer', { modal, with: [{ own: true }] });
    const { modal: login } = await waits('getLocalPlayer');
    await post(address, 'step', { player: 'p2' });
    await post(address, 'answer', { modal: login, with: [{ own: true }, { after: 700, release: 0 }] });
    const { modal: purchase } = await waits('prePurchase');
    await post(address, 'step', { advance: 1000 });
    await post(address, 'answer', { modal: purchase, with: [{ result: 1002000002 }] });
    const { modal: binding } = await waits('bindPlayer');
    await post(address, 'hand', []);
    await post(address, 'answer', { modal: binding, with: [{ own: true }] });
    await page.next(({ kind, method }) => kind === 'settled' && method === 'bindPlayer');
    await post(address, 'step', { advance: 91000 });
    assert.deepEqual((await page.next(({ kind }) => kind === 'end')).how, 'module');
    page.close();
    const [, ...byHand] = child.text.out.trim().split('\n');
    child.kill();
    await once(child, 'close');
    const again = await emulate(['--headless', '--scenario', 'made.json', 'game.js'], folder);
    assert.equal(again.status, 0, again.out + fs.readFileSync(path.join(folder, 'made.json'), 'utf8'));
    assert.deepEqual(again.out.trim().split('\n').slice(0, -1), byHand);
    assert.deepEqual(byHand.slice(0, 1).concat(byHand.slice(2)), ['Mei signed in', '1002000002', 'undefined']);
});

const WAITING = `${LOAD} console.log('pid', process.pid); game.init(context).then(() => console.log('started'));`;

test('only who knows the token and comes from the page is served', limited, async () => {
    const { child, address } = await openEmulator(['game.js'], folderWith({ 'game.js': WAITING }));
    const { port, host } = new URL(address);
    const status = async (name, options) => (await fetch(new URL(name, address), options)).status;
    const raw = (headers) => new Promise((resolve) => {
        http.get({ host: '127.0.0.1', port, path: new URL(address).pathname, headers }, ({ statusCode }) => resolve(statusCode));
    });
    const statuses = [await status(''), await status('/'), await status('/0123/'), await status('../device/index.js'),
        await status('server.js'), await status('preact.mjs'), await raw({ Host: 'example.com' }), await raw({ Host: `localhost:${port}` }),
        await raw({ Host: host, Origin: 'http://example.com' }), await status('', { method: 'DELETE' })];
    assert.deepEqual(statuses, [200, 403, 403, 403, 404, 200, 403, 200, 403, 405]);
    const { headers } = await fetch(address);
    assert.match(headers.get('content-security-policy'), /^default-src 'none'; script-src 'self' 'sha256-[^']+'; style-src 'self'; /);
    const foreign = { Origin: 'http://example.com' };
    const answers = [await post(address, 'clock', { rate: 0 }, foreign), await post(address, 'nothing', {}),
        await post(address, 'clock', { rate: 0 }, { 'Content-Type': 'text/plain' }), await post(address, 'clock', 'x'.repeat(70000)),
        await post(address, 'step', { advnce: 1 }), await post(address, 'answer', { modal: 99, with: [{ result: 0 }] }),
        await post(address, 'answer', { modal: 1, with: [{ receive: { a: null } }] }), await post(address, 'clock', { rate: 0 })];
    assert.deepEqual(answers.map(([code]) => code), [403, 404, 415, 413, 400, 400, 400, 200]);
    assert.deepEqual(answers.slice(5, 7).map(([, { error }]) => error), ['there is no open request of modal 99 to answer',
        'rules[0].answer[0].receive.a: must be number,string,boolean,array,object, not null']);
    child.kill();
});

test('two pages see the same, and one that comes back gets what it missed', limited, async () => {
    const { child, address } = await openEmulator(['game.js'], folderWith({ 'game.js': WAITING }));
    const [one, two] = [await readRecords(address), await readRecords(address)];
    const { modal, n } = await one.next(({ kind }) => kind === 'opened');
    one.close();
    await post(address, 'answer', { modal, with: [{ own: true }] });
    const settled = await two.next(({ kind }) => kind === 'settled');
    const back = await readRecords(address, { 'Last-Event-ID': String(n) });
    await back.next(({ kind }) => kind === 'settled');
    assert.deepEqual(back.records[0].n, n + 1);
    assert.deepEqual(back.records.find((record) => record.n === settled.n), settled);
    await post(address, 'restart');
    const again = await two.next(({ kind }) => kind === 'start');
    assert.ok(again.n > settled.n);
    child.kill();
});

test('a taken port is told; two emulators run at once', limited, async () => {
    const folder = folderWith({ 'game.js': WAITING });
    const { child, address } = await openEmulator(['game.js'], folder);
    const { port } = new URL(address);
    const second = await emulate(['--port', port, 'game.js'], folder);
    assert.deepEqual([second.status, second.err], [2,
        `game emulator: port ${port} cannot be used (EADDRINUSE): choose another with --port, or leave it out\n`]);
    const third = await openEmulator(['game.js'], folder);
    assert.notEqual(third.address, address);
    child.kill();
    third.child.kill();
});

const isAlive = (pid) => fs.existsSync(`/proc/${pid}`) && !/^\d+ \(.*\) Z/.test(fs.readFileSync(`/proc/${pid}/stat`, 'utf8'));

for (const signal of ['SIGINT', 'SIGTERM', 'SIGKILL']) {
    test(`${signal} of the emulator leaves no process of the game behind`, limited, async () => {
        const source = `
            const { spawn } = require('node:child_process');
            console.log('pids', process.pid, spawn('sleep', ['1000']).pid);
            setTimeout(() => { for (;;); }, 10);`;
        const folder = folderWith({ 'game.js': source });
        const { child } = await openEmulator(['--record', 'made.json', 'game.js'], folder);
        const [, ...pids] = await printed(child, (text) => /^pids (\d+) (\d+)$/m.exec(text));
        assert.deepEqual(pids.map(isAlive), [true, true]);
        child.kill(signal);
        await once(child, 'close');  // the game's output is closed as well
        assert.equal(fs.existsSync(path.join(folder, 'made.json')), signal !== 'SIGKILL');
        while (pids.some(isAlive)) {
            await new Promise(setImmediate);
        }
    });
}

test('with --watch, a change in the game\'s folder restarts it', limited, async () => {
    const folder = folderWith({ 'game.js': "console.log('first'); setInterval(() => {}, 1000);" });
    const { child } = await openEmulator(['--watch', 'game.js'], folder);
    await printed(child, (text) => text.includes('first'));
    fs.writeFileSync(path.join(folder, 'game.js'), "console.log('second');");
    await printed(child, (text) => text.includes('second'));
    child.kill();
});
