'use strict';

// The package as a game sees it: its types let good programs compile and bad ones not, and tell of what is there at
// run time; and it is one module, however it is loaded.

const assert = require('node:assert/strict');
const { execFile } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { promisify } = require('node:util');
const { ROOT, device, expectChild, game } = require('./support');
const { ErrorCode } = require('game-player-extension-module/errors');

const OUT = path.join(ROOT, 'out', 'types');
const FIRST_SERVICE_CODE = 1002000000;
const DATA = '{"playerId":"p1"}';

let compilation;

async function runCompiler() {
    fs.rmSync(OUT, { recursive: true, force: true });
    const options = { timeout: 60000, env: { ...process.env, LD_PRELOAD: '' } };    // no sanitizer on the compiler
    try {
        await promisify(execFile)('tsc', ['-p', path.join(ROOT, 'tests', 'types')], options);
    } catch (error) {
        const reason = error.code === 'ENOENT' ? 'tsc is not on PATH: install node-typescript' : error.message;
        assert.fail(error.stdout || reason);
    }
}

/** Compiles tests/types into OUT, once. */
function compile() {
    compilation = compilation || runCompiler();
    return compilation;
}

test('programs compile against the types', compile);

test('what must not compile does not, line by line', async () => {
    const file = path.join(ROOT, 'tests', 'types', 'wrong', 'wrong.ts');
    const lines = fs.readFileSync(file, 'utf8').trimEnd().split('\n');
    const first = lines.lastIndexOf('') + 1;
    const options = { env: { ...process.env, LD_PRELOAD: '' }, timeout: 60000 };
    const project = path.join(path.dirname(file), 'tsconfig.json');
    const { stdout } = await promisify(execFile)('tsc', ['-p', project], options).catch((error) => error);
    const wrong = new Set(Array.from(stdout.matchAll(/wrong\.ts\((\d+),/g), ([, line]) => Number(line) - 1));
    assert.deepEqual(lines.filter((line, i) => wrong.has(i) !== i >= first), []);
});

const declared = (file, pattern) => {
    const names = fs.readFileSync(path.join(ROOT, file), 'utf8').matchAll(pattern);
    return [...new Set(Array.from(names, ([, ...name]) => name.join(' ')))].sort();
};

test('the types declare what is there at run time and nothing else', () => {
    const { ErrorCode, RequestType } = require('game-player-extension-module/errors');
    const constants = [...Object.entries(ErrorCode), ...Object.entries(RequestType)].map((entry) => entry.join(' '));
    for (const [file, pattern, there] of [
        ['index.d.ts', /^ {4}function (\w+)/gm, Object.getOwnPropertyNames(game)],
        ['device/index.d.ts', /^export (?:function|const) (\w+)/gm, Object.keys(device)],
        ['device/index.d.ts', /^ {4}(\w+)\(.*(?:void|number|Promise<void>);$/gm,
            [...Object.keys(device.clock), 'result', 'receive', 'release', 'error']],
        ['errors.d.ts', /^ {4}readonly ([A-Z_]+): (\d+);$/gm, constants],
    ]) {
        assert.deepEqual(declared(file, pattern), [...there].sort(), file);
    }
});

for (const [file, out] of [
    ['game.js', [
        '6 done', 'p1', DATA, DATA, DATA, 'done', 'done', 'done', DATA, DATA, 'Mei', '0',
        'The thirdOpenId or teamPlayerId has been bound.', '3 launched',
    ]],
    ['game.mjs', ['Mei', 'This interface is not available for this game.', 'one module']],
]) {
    test(`what TypeScript made of ${file.replace('js', 'ts')} plays`, async () => {
        await compile();
        await expectChild(async (_, program) => {
            const { play } = await import(program);
            console.log((await play()).join('\n'));
        }, { args: [path.join(OUT, file)], out });
    });
}

test('the error codes are those that the module passes on', async () => {
    const passed = [0];
    for (const code of [1, 202, 401, 402, ...Array.from({ length: 32 }, (_, i) => FIRST_SERVICE_CODE + i)]) {
        const request = game.bindPlayer(device.createAbilityContext(), '', '').catch((error) => error.code);
        await device.modals().at(-1).error(code);
        passed.push(...(await request === code ? [code] : []));
    }
    device.reset();
    assert.deepEqual(passed, Object.values(ErrorCode));
});

test('an error of the module is told from others', () => {
    const { isBusinessError } = require('game-player-extension-module/errors');
    const errorOf = (code) => Object.assign(new Error('text'), { code });
    for (const [value, expected] of [
        [errorOf(401), true], [errorOf(402), false], [errorOf('401'), false], [errorOf('ENOENT'), false],
        [new Error('text'), false], [{ code: 401 }, false], [401, false], [null, false], [undefined, false],
    ]) {
        assert.equal(isBusinessError(value), expected);
    }
    assert.throws(() => game.bindPlayer(), isBusinessError);
});

test('require and import give one module by folder and by name, in a Worker as well', () => expectChild(
    async ({ startWorker, once }) => {
        const check = async ({ ROOT }) => {
            const name = 'game-player-extension-module';
            const pathOf = require('node:path').join;
            for (const [entry, file] of [['', 'index.js'], ['/device', 'device/index.js'], ['/errors', 'errors.js']]) {
                const required = require(name + entry);
                const { default: imported, ...names } = await import(name + entry);
                const isSame = [
                    required === imported, required === require(pathOf(ROOT, file)),
                    Object.getOwnPropertyNames(required).every((key) => names[key] === required[key]),
                    Object.keys(names).length === Object.getOwnPropertyNames(required).length,
                ];
                console.log(entry, ...isSame);
            }
        };
        await check({ ROOT: process.cwd() });
        await once(startWorker(check), 'exit');
    }, {
        out: ['', '/device', '/errors', '', '/device', '/errors'].map((entry) => `${entry} true true true true`),
    }));

test('the package holds all that is in its folder, and starts what there is', () => {
    const { files, scripts } = require('game-player-extension-module/package.json');
    const there = fs.readdirSync(ROOT, { withFileTypes: true })
        .filter(({ name }) => !/^(\..*|out|node_modules|package\.json|README\.md|.*\.tgz)$/.test(name))
        .map((entry) => (entry.isDirectory() ? `${entry.name}/` : entry.name));
    assert.deepEqual(files.filter((name) => !name.startsWith('.')).sort(), there.sort());
    for (const command of Object.values(scripts)) {
        fs.accessSync(path.join(ROOT, command), fs.constants.X_OK);
    }
});
