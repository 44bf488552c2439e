'use strict';

// The emulator as a command: games of all sorts without a page, its server as another program sees it, and its end.

const assert = require('node:assert/strict');
const { once } = require('node:events');
const fs = require('node:fs');
const http = require('node:http');
const { LOAD, emulate, openGame, post, printed, readRecords, sampleGame, testEmulator } = require('./support/emulator');
const { folderWith } = require('./support/files');

const THROWING = 'throw new RangeError(\'of the game\')';

for (const name of ['train', 'bedtime']) {
    testEmulator(`the scenario ${name} of the sample game passes`, async () => {
        const args = ['--headless', '--scenario', `examples/arcade/${name}.json`, 'examples/arcade/game.js'];
        const { code, stdout } = await emulate(args);
        assert.deepEqual([code, /passed in/.test(stdout)], [0, true], stdout);
    });
}

const IN_VAIN = 'the game should end by itself, but it';

for (const { does, source, end = 'ends', code = 0, says = 'passed' } of [
    { does: 'throw', source: THROWING, end: 'fails' },
    { does: 'throw unexpectedly', source: THROWING, code: 1, says: `${IN_VAIN} failed: RangeError: of the game` },
    { does: 'set a status', source: 'process.exitCode = 3', code: 1, says: `${IN_VAIN} failed: exit status 3` },
    { does: 'abort', source: 'process.abort()', code: 1, says: `${IN_VAIN} failed: signal SIGABRT` },
    { does: 'need what is not there', source: 'require("nowhere")', code: 2,
        says: 'the game could not start: Error: Cannot find module \'nowhere\'' },
    { does: 'hang', source: 'for (;;);', code: 1, says: `${IN_VAIN} still ran after 2 s` },
    { does: 'go on', source: `${LOAD} game.init(context); setInterval(() => {}, 1000)`, end: 'runs' },
    { does: 'end by an answer', source: `${LOAD} game.prePurchase(context, {})`, end: { module: 10 } },
    { does: 'end in time', source: `${LOAD} game.launchAntiAddiction(context, 5, '', 2)`, end: { module: 'timer' } },
    { does: 'flood the log', source: `${LOAD} for (let i = 0; i < 1e5; ++i) game.onEventCallback({ resultCode: i })` },
    { does: 'replace timers',
        source: 'globalThis.setTimeout = globalThis.setImmediate = () => {}; require("timers").setTimeout = null;' },
]) {
    testEmulator(`a game may ${does}`, async () => {
        const rules = [{ when: { method: 'prePurchase' }, answer: [{ after: 500, result: 10 }] }];
        const timeLimit = does === 'hang' ? 2 : 20;
        const scenario = { version: 1, timeLimit, rules, steps: [{ advance: 60000 }], expect: { end } };
        const folder = folderWith({ 'game.js': source, 'scenario.json': scenario });
        const played = await emulate(['--headless', '--scenario', 'scenario.json', 'game.js'], folder);
        const text = played.stdout + played.stderr;
        assert.deepEqual([played.code, text.includes(says)], [code, true], text);
    });
}

testEmulator('a game gets the one module by every name, and its arguments', async () => {
    const source = `
        import { Worker, isMainThread } from 'node:worker_threads';
        import { createRequire } from 'node:module';
        import game from 'game-player-extension-module';
        import registered from 'core.velmor.gamePlayerExtensionAbility';
        import { NETWORK } from './codes.mjs';
        const require = createRequire(import.meta.url);
        const names = ['game-player-extension-module', 'core.velmor.gamePlayerExtensionAbility',
            '@core.velmor.gamePlayerExtensionAbility'];
        console.log(isMainThread, [registered, ...names.map(require)].every((one) => one === game), NETWORK);
        if (isMainThread) {
            await game.init(getContext());
            new Worker(new URL(import.meta.url));
            console.log(process.env.GAME_EMULATOR, process.send, ...process.argv.slice(2));
        }`;
    const codes = `
        import { ErrorCode } from 'game-player-extension-module/errors';
        export const { NETWORK } = ErrorCode;`;
    const folder = folderWith({ 'game.mjs': source, 'codes.mjs': codes });
    const { code, stdout, stderr } = await emulate(['--headless', 'game.mjs', '--speed', 'of its own'], folder);
    assert.deepEqual([code, stderr, ...stdout.split('\n').slice(0, 3).sort()], [0, '',
        'false true 1002000002', 'true true 1002000002', 'undefined undefined --speed of its own']);
});

for (const [args, line] of [
    [[], 'no game is named: emulator GAME, and GAME is a .js, .mjs or .cjs file'],
    [['nowhere.js'], 'there is no file nowhere.js'],
    [['--speed', 'fast', 'game.js'], '--speed must be a number from 0.001 to 1000000, not \'fast\''],
    [['--speed', '2', '--manual-clock', 'game.js'], '--speed and --manual-clock exclude each other'],
    [['--junit', 'x.xml', 'game.js'], '--junit needs --headless'],
    [['--scenario', 'scenario.json', 'game.js'], 'scenario.json: \'version\' is missing'],
]) {
    testEmulator(`a command line is refused with one line: ${line}`, async () => {
        const { code, stdout, stderr } = await emulate(args, folderWith({ 'game.js': '', 'scenario.json': '{}' }));
        assert.deepEqual([code, stdout, stderr], [2, '', `game emulator: ${line}\n`]);
    });
}

testEmulator('JUnit XML reports what failed, with every character allowed', async () => {
    const scenario = { version: 1, name: 'a "<b>" & \u0001', expect: { calls: [{ method: 'init' }] } };
    const folder = folderWith({ 'game.js': '', 'scenario.json': scenario });
    const args = ['--headless', '--scenario', 'scenario.json', '--junit', 'out.xml', 'game.js'];
    const { code } = await emulate(args, folder);
    const xml = fs.readFileSync(`${folder}/out.xml`, 'utf8').replace(/time="[\d.]+"/g, 'time=""');
    const failure = 'expected a call of init; init was not called';
    assert.deepEqual([code, xml.split('\n')[3].trim()], [1,
        '<testcase name="a &#34;&#60;b&#62;&#34; &#38; \ufffd" classname="game-emulator" time="">' +
        `<failure message="${failure}">${failure}</failure></testcase>`]);
});

const LIMITED = sampleGame('game.launchAntiAddiction(context, 60, "", 2); setInterval(() => {}, 1000);');

testEmulator('what was played by hand is recorded, and plays again', async () => {
    const { child, address, folder } = await openGame(LIMITED, '--manual-clock', '--record', 'made.json');
    const page = await readRecords(address);
    const come = (kind, method) => page.next((record) => record.kind === kind && record.method === method);
    for (const [method, [command, value], ...answers] of [
        ['init', ['step', { advance: 2500 }], { own: true }],
        ['getLocalPlayer', ['step', { player: 'p2' }], { own: true }, { after: 700, release: 0 }],
        ['prePurchase', ['step', { advance: 1000 }], { result: 1002000002 }],
        ['bindPlayer', ['hand', []], { own: true }],
    ]) {
        const { modal } = await come('opened', method);
        await post(address, command, value);
        await post(address, 'answer', { modal, with: answers });
    }
    await come('settled', 'bindPlayer');
    await post(address, 'step', { advance: 91000 });
    assert.equal((await come('end')).how, 'module');
    page.close();
    const [, ...byHand] = child.text.out.trim().split('\n');
    child.kill();
    await once(child, 'close');
    const again = await emulate(['--headless', '--scenario', 'made.json', 'game.js'], folder);
    assert.equal(again.code, 0, again.stdout + fs.readFileSync(`${folder}/made.json`, 'utf8'));
    assert.deepEqual(again.stdout.trim().split('\n').slice(0, -1), byHand);
    const [agreed, news, , ...others] = byHand;
    assert.deepEqual([agreed, news, ...others], ['got undefined', 'Mei signed in', 'met 1002000002', 'got undefined']);
});

const WAITING = `${LOAD} console.log('pid', process.pid); game.init(context).then(() => console.log('started'));`;

testEmulator('only who knows the token and comes from the page is served', async () => {
    const { address } = await openGame(WAITING);
    const { port, host, pathname } = new URL(address);
    const get = async (name, options) => (await fetch(new URL(name, address), options)).status;
    const raw = (headers) => new Promise((resolve) => {
        http.get({ host: '127.0.0.1', port, path: pathname, headers }, ({ statusCode }) => resolve(statusCode));
    });
    for (const [status, expected] of [
        [get(''), 200], [get('/'), 403], [get('/0123/'), 403], [get('../device/index.js'), 403],
        [get('server.js'), 404], [get('preact.mjs'), 200], [get('', { method: 'DELETE' }), 405],
        [raw({ Host: 'example.com' }), 403], [raw({ Host: `localhost:${port}` }), 200],
        [raw({ Host: host, Origin: 'http://example.com' }), 403],
    ]) {
        assert.equal(await status, expected);
    }
    assert.match((await fetch(address)).headers.get('content-security-policy'),
        /^default-src 'none'; script-src 'self' 'sha256-[^']+'; style-src 'self'; /);
    for (const [name, value, headers, expected, complaint] of [
        ['clock', { rate: 0 }, { Origin: 'http://example.com' }, 403],
        ['nothing', {}, {}, 404],
        ['clock', { rate: 0 }, { 'Content-Type': 'text/plain' }, 415],
        ['clock', 'x'.repeat(70000), {}, 413],
        ['step', { advnce: 1 }, {}, 400],
        ['answer', { modal: 99, with: [{ result: 0 }] }, {}, 400, 'there is no open request of modal 99 to answer'],
        ['answer', { modal: 1, with: [{ receive: { a: null } }] }, {}, 400,
            'rules[0].answer[0].receive.a: must be number,string,boolean,array,object, not null'],
        ['clock', { rate: 0 }, {}, 200],
    ]) {
        const [status, answer] = await post(address, name, value, headers);
        assert.deepEqual([status, complaint && answer.error], [expected, complaint]);
    }
});

testEmulator('two pages see the same, and one that comes back gets what it missed', async () => {
    const { address } = await openGame(WAITING);
    const [one, two] = [await readRecords(address), await readRecords(address)];
    const { modal, n } = await one.next(({ kind }) => kind === 'opened');
    one.close();
    await post(address, 'answer', { modal, with: [{ own: true }] });
    const settled = await two.next(({ kind }) => kind === 'settled');
    const back = await readRecords(address, { 'Last-Event-ID': String(n) });
    assert.deepEqual(await back.next(({ kind }) => kind === 'settled'), settled);
    assert.equal(back.records[0].n, n + 1);
    await post(address, 'restart');
    const again = await two.next(({ kind }) => kind === 'start');
    assert.ok(again.n > settled.n);
});

testEmulator('a taken port is reported; two emulators run at once', async () => {
    const { address, folder } = await openGame(WAITING);
    const { port } = new URL(address);
    const { code, stderr } = await emulate(['--port', port, 'game.js'], folder);
    assert.deepEqual([code, stderr], [2,
        `game emulator: port ${port} cannot be used (EADDRINUSE): choose another with --port, or leave it out\n`]);
    assert.notEqual((await openGame(WAITING)).address, address);
});

const isAlive = (pid) =>
    fs.existsSync(`/proc/${pid}`) && !/^\d+ \(.*\) Z/.test(fs.readFileSync(`/proc/${pid}/stat`, 'utf8'));

for (const signal of ['SIGINT', 'SIGTERM', 'SIGKILL']) {
    testEmulator(`${signal} of the emulator leaves no process of the game behind`, async () => {
        const { child, folder } = await openGame(`
            const { spawn } = require('node:child_process');
            console.log('pids', process.pid, spawn('sleep', ['1000']).pid);
            setTimeout(() => { for (;;); }, 10);`, '--record', 'made.json');
        const [, ...pids] = await printed(child, (text) => /^pids (\d+) (\d+)$/m.exec(text));
        assert.deepEqual(pids.map(isAlive), [true, true]);
        child.kill(signal);
        await once(child, 'close');  // the game's output is closed as well
        assert.equal(fs.existsSync(`${folder}/made.json`), signal !== 'SIGKILL');
        while (pids.some(isAlive)) {
            await new Promise(setImmediate);
        }
    });
}

testEmulator('with --watch, a change in the game\'s folder restarts it', async () => {
    const { child, folder } = await openGame('console.log("first"); setInterval(() => {}, 1000);', '--watch');
    await printed(child, (text) => text.includes('first'));
    fs.writeFileSync(`${folder}/game.js`, 'console.log("second");');
    await printed(child, (text) => text.includes('second'));
});
