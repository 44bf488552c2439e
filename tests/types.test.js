'use strict';

// The package as a game sees it: correct programs compile against its types, wrong ones do not, the types declare what
// exists at run time, and it is one module however it is loaded.

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { ErrorCode, RequestType, isBusinessError } = require('game-player-extension-module/errors');
const service = require('game-player-extension-module/service');
const { device, expectChild, game } = require('./support');
const { ROOT, firstGroups, read, run } = require('./support/files');
const { METHODS } = require('./support/requests');

/** For each kind of field: a correct value, and one of another type. */
const VALUES = {
    string: ["'text'", '5'], int: ['5', "'5'"], flag: ['true', "'yes'"], accounts: ['[]', "{ accountName: 'Lin' }"],
};
/** The methods whose record has no required field. */
const MAY_BE_EMPTY = ['savePlayerRole', 'unionLogin'];

const PROGRAM = 'out/types/calls.mts';
const ETS_PROGRAMS = ['tests/types/game.ets', 'tests/types/wrong.ets'];
const ETS_DECLARATIONS = ['emulator/index.d.ts', 'tests/types/kits.d.ts', 'tests/types/globals.d.ts'];
const isWrong = (line) => line.includes('// wrong');

/** The calls that the types must allow and refuse, for one row of the table of methods. */
function callsOf([name, { callbackAt, data, page, record, rest }]) {
    const call = (...args) => `gamePlayer.${name}(${args.join(', ')})`;
    const good = ['context', ...rest.map((value) => JSON.stringify(value))];
    const promised = call(...good);
    const [platforms, other] = data ? ['onText', 'onDone'] : ['onDone', 'onText'];
    const annotated = (type) => call(...good, `(failure: PlatformError, value: ${type}) => [failure.code, value]`);
    const calledBack = (body) => call(...good, `(error, data) => { ${body}; }`);
    const withOther = (i, other) => call(...good.slice(0, i), other, ...good.slice(i + 1));
    const fields = Object.entries(record?.[1] || {}).map(([field, kind]) => [field, ...VALUES[kind.replace('?', '')]]);
    const withField = (field, value) => call('context', `{ ...${good[1]}, ${field}: ${value} }`);
    const right = [
        `is<Promise<${page ? 'never' : data ? 'string | undefined' : 'void'}>>(${promised})`,
        ...fields.map(([field, value]) => withField(field, value)),
        MAY_BE_EMPTY.includes(name) && call('context', '{}'),
        data && `is<Promise<number>>(${promised.replace(name, `${name}<number>`)})`,
        callbackAt && `is<void>(${calledBack('error?.code.toFixed()')})`,
        callbackAt && data && calledBack('error ? error.message : data?.trim()'),
        ...(callbackAt ? [`is<void>(${call(...good, platforms)})`, annotated(data ? 'string' : 'void')] : []),
    ];
    const wrong = [
        call(), call(...good.slice(0, -1)), withOther(0, 'null'),
        ...rest.map((value, i) => withOther(i + 1, typeof value === 'string' ? '5' : "'text'")),
        ...fields.map(([field, , other]) => withField(field, other)), record && withField('other', 1),
        record && !MAY_BE_EMPTY.includes(name) && call('context', '{}'),
        `${promised}.then((value) => value.length)`, data && `is<Promise<number>>(${promised})`,
        call(...good, '() => undefined', ...(callbackAt ? ['0'] : [])),
        ...(callbackAt ? [calledBack('error.code'), `${calledBack('error')}.then()`, call(...good, "'callback'"),
            call(...good, other), annotated('number')] : []),
        ...(callbackAt && data ? [calledBack('data.length'), calledBack('if (!error) data.length')] : []),
    ];
    return [...right, ...wrong.map((line) => line && `${line} // wrong`)].filter(Boolean);
}

/** A statement that checks the declared names of an object, and its numbers. */
function shownAs([name, object]) {
    const text = JSON.stringify(object, (_, value) => (typeof value === 'function' ? 'a function' : value));
    return `is<Shown<typeof ${name}>>(${text})`;
}

/** What the compiler complains about: the lines that are marked as wrong, and its messages about anything else. */
async function complaints(program) {
    fs.mkdirSync(path.join(ROOT, path.dirname(PROGRAM)), { recursive: true });
    fs.writeFileSync(path.join(ROOT, PROGRAM), program.join('\n'));
    const options = { timeout: 60000, env: { LD_PRELOAD: '' } };  // no sanitizer on tsc
    const { code, stdout } = await run('tsc', ['-p', 'tests/types'], options);
    assert.notEqual(code, 'ENOENT', 'tsc is not on PATH: install node-typescript');
    return stdout.split('\n').filter((text) => /^\S/.test(text)).map((text) => {
        const line = text.startsWith(PROGRAM) ? program[/\((\d+),/.exec(text)[1] - 1] : '';
        return isWrong(line) ? line : text;
    });
}

/** What the compiler of ArkTS and one of its sets of rules complain about, in the same form. */
function complaintsOfArkTs(ruleSet) {
    const ts = require('ohos-typescript');
    const program = ts.createIncrementalProgramForArkTs({
        rootNames: [...ETS_PROGRAMS, ...ETS_DECLARATIONS].map((file) => path.join(ROOT, file)),
        options: {
            target: ts.ScriptTarget.ES2021, lib: ['lib.es2021.d.ts'], types: [], esModuleInterop: true, noEmit: true,
            moduleResolution: ts.ModuleResolutionKind.NodeJs, baseUrl: ROOT,
            paths: { 'game-player-extension-module': ['lib/index'], 'game-player-extension-module/*': ['*', 'lib/*'] },
        },
    });
    const found = [...ts.getPreEmitDiagnostics(program.getProgram()), ...ts[ruleSet].runArkTSLinter(program)];
    return found.map(({ file, start, messageText }) => {
        const line = file?.text.split('\n')[file.getLineAndCharacterOfPosition(start).line] || '';
        return isWrong(line) ? line : `${file?.fileName}: ${line} ${ts.flattenDiagnosticMessageText(messageText, ' ')}`;
    });
}

for (const ruleSet of ['ArkTSLinter_1_0', 'ArkTSLinter_1_1']) {
    test(`a game in ArkTS passes the checks of ${ruleSet}, which find what is wrong`, () => {
        const wrong = ETS_PROGRAMS.flatMap((file) => read(file).split('\n')).filter(isWrong);
        assert.deepEqual(new Set(complaintsOfArkTs(ruleSet)), new Set(wrong));
    });
}

test('what is right compiles, what is wrong does not, all is declared', async () => {
    const program = [
        ...read('tests/types/calls.mts').split('\n'), ...Object.entries(METHODS).flatMap(callsOf),
        ...Object.entries({ device, 'device.clock': device.clock, ErrorCode, RequestType, service }).map(shownAs),
    ];
    assert.deepEqual(new Set(await complaints(program)), new Set(program.filter(isWrong)));
    const declared = firstGroups(read('lib/index.d.ts'), /^ {4}function (\w+)/gm);
    assert.deepEqual([...new Set(declared)], Object.getOwnPropertyNames(game));
});

test('an error of the module is distinguished from others', () => {
    const others = [402, '401', undefined].map((code) => Object.assign(new Error('text'), { code }));
    const ofOtherRealm = require('node:vm').runInNewContext('Object.assign(new Error("text"), { code: 401 })');
    assert.deepEqual([...others, { code: 401 }, 401, null].filter(isBusinessError), []);
    assert.ok(isBusinessError(ofOtherRealm));
    assert.throws(() => game.bindPlayer(), isBusinessError);
});

test('require and import give one module by folder and by name', () => expectChild(
    async ({ startWorker, once }) => {
        // Runs here and in a Worker.
        const check = async ({ ROOT }) => {
            const { isDeepStrictEqual } = require('node:util');
            const files = { '': 'lib', '/device': 'device', '/errors': 'lib/errors', '/service': 'service' };
            for (const [entry, file] of Object.entries(files)) {
                const required = require(`game-player-extension-module${entry}`);
                const { default: imported, ...named } = await import(`game-player-extension-module${entry}`);
                const names = Object.getOwnPropertyNames(required).map((name) => [name, required[name]]);
                console.log(required === imported, required === require(`${ROOT}/${file}`),
                    isDeepStrictEqual(named, Object.fromEntries(names)));
            }
        };
        await check({ ROOT: process.cwd() });
        await once(startWorker(check), 'exit');
    }, { out: Array(8).fill('true true true') }));
