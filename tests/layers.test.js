'use strict';

// Which folders may include which, and what the module's sources must not mention: they build for the device unchanged.

const assert = require('node:assert/strict');
const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');

const ROOT = path.dirname(__dirname);
const BUILD = path.join(ROOT, 'out', process.env.GAMEAPI_BUILD || 'release');
// The layers of the module. Each may include itself, the layers before it, and the platform's headers.
const MODULE = ['common', 'analytics', 'events', 'modal', 'napi'].map((layer) => `module/${layer}`);
const ALLOWED = {
    ...Object.fromEntries(MODULE.map((layer, i) => [layer, [...MODULE.slice(0, i + 1), 'platform/include']])),
    'platform/include': ['platform/include'],
    platform: ['platform'],
    device: ['device', 'platform'],
};
// Where the compiler looks for quoted includes, after the folder of the including file.
const SEARCH_PATH = ['module', 'platform/include', 'platform'];
// The C++ library, and the other system headers that the device also has.
const SYSTEM_HEADERS = /^([a-z_0-9]+|unistd\.h|uv\.h|nlohmann\/json\.hpp|openssl\/\w+\.h)$/;
const NEVER_FAILING = ['BIO_f_base64', 'BIO_free_all', 'BIO_push', 'BIO_s_mem', 'BIO_set_flags', 'napi_module_register'];
const OF_CXX = /^_Z\w*(St3__1|__cxxabiv1|St7nothrow)|^_Z(nwm|d[al]Pvm?)$|^__cxa_/;
const OF_C = /^(mem|str|pthread_)\w+$|^(__assert_fail|_exit|abort|localeconv|rand|snprintf)$/;
// What the module's sources must not contain: names of runtimes, a PC, tests, conditional compilation.
const FOREIGN = [
    /\bNode(\.?js)?\b(?!-API)|\bnode\.js\b|\bworker_threads\b|\blibuv-pool\b/, /\bstand-?in\b|\bPC\b/i,
    /\bgtest\b|\btest hook\b|\bunder test\b/i, /^\s*#\s*(if|ifdef|elif|else)\b/m,
];

const read = (file) => fs.readFileSync(path.join(ROOT, file), 'utf8');
const firstGroups = (matches) => Array.from(matches, ([, text]) => text);
const isWithin = (file, folders) => folders.some((folder) => file.startsWith(`${folder}/`));

function sourcesIn(folder) {
    return fs.readdirSync(path.join(ROOT, folder), { withFileTypes: true }).flatMap((entry) => {
        const name = path.join(folder, entry.name);
        return entry.isDirectory() ? sourcesIn(name) : /\.(cpp|h)$/.test(name) ? [name] : [];
    });
}

/** The quoted includes of a file as paths from the root. */
function includesOf(file) {
    return firstGroups(read(file).matchAll(/^\s*#\s*include\s*"([^"]+)"/gm)).map((name) => (
        [path.dirname(file), ...SEARCH_PATH].map((folder) => path.join(folder, name))
            .find((candidate) => fs.existsSync(path.join(ROOT, candidate))) || `${name} (nowhere)`));
}

/** What a source of the module uses that the device does not have. */
function foreignIn(file) {
    const headers = firstGroups(read(file).matchAll(/^\s*#\s*include\s*<([^>]+)>/gm));
    return [...headers.filter((name) => !SYSTEM_HEADERS.test(name)),
        ...FOREIGN.filter((pattern) => pattern.test(read(file)))];
}

/** The dynamic symbols of a library that `nm` lists with this option. */
function symbols(library, option) {
    const lines = execFileSync('nm', ['-D', option, path.join(BUILD, library)], { encoding: 'utf8' }).split('\n');
    return lines.map((line) => line.trim().split(' ').pop().replace(/@.*/, '')).filter(Boolean);
}

for (const [layer, allowed] of Object.entries(ALLOWED)) {
    const isOfModule = MODULE.includes(layer);
    test(`${layer} includes of ours ${allowed.join(', ')}${isOfModule ? ', and reads as on the device' : ''}`, () => {
        const files = sourcesIn(layer);
        const wrong = files.map((file) => [file, ...includesOf(file).filter((target) => !isWithin(target, allowed)),
            ...(isOfModule ? foreignIn(file) : [])]);
        assert.ok(files.length > 0);
        assert.deepEqual(wrong.filter((each) => each.length > 1), []);
    });
}

// Of the device they may use what everybody may: its interface.
for (const [folder, allowed] of [['service', ['service', 'device/index.js', 'lib']],
    ['emulator', ['emulator', 'service', 'device/index.js', 'lib']]]) {
    test(`${folder} requires of ours ${allowed.join(', ')}`, () => {
        const files = fs.readdirSync(path.join(ROOT, folder), { recursive: true, encoding: 'utf8' })
            .filter((name) => /\.m?js$/.test(name)).map((name) => path.join(folder, name));
        const required = files.flatMap((file) => firstGroups(read(file).matchAll(/(?:\brequire\(|\bfrom )['"](\.[^'"]*)['"]/g))
            .map((name) => path.join(path.dirname(file), name)));
        assert.ok(files.length > 5 && required.length > 5);
        assert.deepEqual(required.filter((name) => !allowed.includes(name) && !isWithin(name, allowed)), []);
    });
}

test('built for a device, the module needs Node-API, libuv and the platform as listed, and the libraries of C and C++', () => {
    const imported = symbols('../device/module/core/velmor/libgameplayerextensionability.z.so', '--undefined-only');
    const listed = firstGroups(read('platform/wrap/calls.def').matchAll(/\bWRAPPED(?:_AS)?\((\w+)/g));
    const isListed = /^(napi|node_api|uv|BIO|BUF|EVP)_|^_Zn\w*nothrow_t$/;
    assert.deepEqual(imported.filter((name) => isListed.test(name)), [...listed, ...NEVER_FAILING].sort());
    const others = imported.filter((name) => !isListed.test(name) && !/^(_ZNK?4OHOS|HiLogPrint$)/.test(name));
    assert.deepEqual(others.filter((name) => !OF_CXX.test(name) && !OF_C.test(name)), []);
});

test('every call of the module that may fail goes to the stand-in device, which defines every listed call', () => {
    const imported = symbols('game_player_extension_ability.node', '--undefined-only');
    const offered = new Set(symbols('libgame_platform.so', '--defined-only'));
    const redirected = imported.filter((name) => name.startsWith('__wrap_'));
    const listed = firstGroups(read('platform/wrap/calls.def').matchAll(/\bWRAPPED(?:_AS)?\((\w+)/g));
    assert.ok(redirected.length > 20 && listed.length > 20);
    const needed = [...redirected, ...listed.map((name) => `__wrap_${name}`)];
    assert.deepEqual(needed.filter((name) => !offered.has(name)), []);
    assert.deepEqual(imported.filter((name) => /^(napi|node_api|uv|BIO|BUF|EVP)_|^_Zn\w*nothrow_t$/.test(name)), []);
});
