'use strict';

// Who may include whom, and what the module may know of: its own folders have to build for the device as they are.

const assert = require('node:assert/strict');
const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');

const ROOT = path.dirname(__dirname);
const BUILD = path.join(ROOT, 'out', process.env.GAMEAPI_BUILD || 'release');

// The folders and files of ours that each layer may include.
const MODULE_LAYERS = {
    common: ['common', 'platform/include'],
    analytics: ['analytics', 'common', 'platform/include'],
    events: ['events', 'analytics', 'common', 'platform/include'],
    modal: ['modal', 'events', 'analytics', 'common', 'platform/include'],
    napi: ['napi', 'modal', 'events', 'analytics', 'common', 'platform/include'],
};
const STAND_IN_LAYERS = {
    'platform/include': ['platform/include'],
    platform: ['platform'],
    device: ['device', 'platform'],
};

// Where the compiler looks for a quoted include, after the folder of the file itself.
const SEARCH_PATH = ['.', 'platform/include', 'platform'];

// The C++ library, and what else of the system the device has too.
const SYSTEM_HEADERS = /^([a-z_0-9]+|unistd\.h|uv\.h|nlohmann\/json\.hpp|openssl\/\w+\.h)$/;

// Calls of OpenSSL that report no failure.
const CANNOT_FAIL = ['BIO_f_base64', 'BIO_free_all', 'BIO_push', 'BIO_s_mem', 'BIO_set_flags', 'BUF_MEM_free'];

// What the module's sources must not contain.
const FOREIGN = {
    'a JS runtime by name': /\bNode(\.?js)?\b(?!-API)|\bnode\.js\b|\bworker_threads\b|\blibuv-pool\b/,
    'the stand-in device': /\bstand-?in\b|\bPC\b/i,
    'a test': /\bgtest\b|\btest hook\b|\bunder test\b/i,
    'a conditional': /^\s*#\s*(if|ifdef|elif|else)\b/m,
};

function sourcesIn(folder) {
    return fs.readdirSync(path.join(ROOT, folder), { withFileTypes: true }).flatMap((entry) => {
        const name = path.join(folder, entry.name);
        return entry.isDirectory() ? sourcesIn(name) : /\.(cpp|h)$/.test(name) ? [name] : [];
    });
}

function read(file) {
    return fs.readFileSync(path.join(ROOT, file), 'utf8');
}

function includesOf(file) {
    const includes = read(file).matchAll(/^\s*#\s*include\s*(["<])([^">]+)[">]/gm);
    return Array.from(includes, ([, quote, name]) => ({ isQuoted: quote === '"', name }));
}

function resolveInclude(file, name) {
    const found = [path.dirname(file), ...SEARCH_PATH].map((folder) => path.join(folder, name))
        .find((candidate) => fs.existsSync(path.join(ROOT, candidate)));
    return found || `${name} (nowhere)`;
}

function isWithin(file, allowed) {
    return allowed.some((name) => file === name || file.startsWith(`${name}/`));
}

// The symbols of the dynamic table of a library, with the given option of nm.
function symbols(library, option) {
    const lines = execFileSync('nm', ['-D', option, path.join(BUILD, library)], { encoding: 'utf8' }).split('\n');
    return lines.map((line) => line.trim().split(' ').pop().replace(/@.*/, '')).filter(Boolean);
}

for (const [layer, allowed] of Object.entries({ ...MODULE_LAYERS, ...STAND_IN_LAYERS })) {
    test(`${layer} includes nothing of ours but ${allowed.join(', ')}`, () => {
        const files = sourcesIn(layer);
        const wrong = files.flatMap((file) => includesOf(file)
            .filter(({ isQuoted }) => isQuoted)
            .map(({ name }) => resolveInclude(file, name))
            .filter((target) => !isWithin(target, allowed))
            .map((target) => `${file}: ${target}`));
        assert.ok(files.length > 0);
        assert.deepEqual(wrong, []);
    });
}

for (const layer of Object.keys(MODULE_LAYERS)) {
    test(`${layer} reads as on the device`, () => {
        const wrong = sourcesIn(layer).flatMap((file) => [
            ...includesOf(file)
                .filter(({ isQuoted, name }) => !isQuoted && !SYSTEM_HEADERS.test(name))
                .map(({ name }) => `${file}: <${name}>`),
            ...Object.entries(FOREIGN)
                .filter(([, pattern]) => pattern.test(read(file)))
                .map(([what]) => `${file}: ${what}`),
        ]);
        assert.deepEqual(wrong, []);
    });
}

test('every call of the module that may fail goes to the stand-in device, which has it', () => {
    const imported = symbols('game_player_extension_ability.node', '--undefined-only');
    const offered = new Set(symbols('libgame_platform.so', '--defined-only'));
    const redirected = imported.filter((name) => name.startsWith('__wrap_'));
    assert.ok(redirected.length > 20);
    assert.deepEqual(redirected.filter((name) => !offered.has(name)), []);
    const direct = imported.filter((name) => /^(napi|node_api|uv|BIO|BUF|EVP)_|^_Zn\w*nothrow_t$/.test(name));
    assert.deepEqual(direct.filter((name) => !CANNOT_FAIL.includes(name)), []);
});

test('every call that can be made to fail by name has its stand-in version', () => {
    const rows = read('platform/wrap/calls.def').matchAll(/\bWRAPPED(?:_AS)?\((\w+)/g);
    const names = Array.from(rows, ([, name]) => `__wrap_${name}`);
    const offered = new Set(symbols('libgame_platform.so', '--defined-only'));
    assert.ok(names.length > 0);
    assert.deepEqual(names.filter((name) => !offered.has(name)), []);
});
