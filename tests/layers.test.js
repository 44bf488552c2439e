'use strict';

// Which folders may include which, and what the module's sources must not mention: they build for the device unchanged.

const assert = require('node:assert/strict');
const { execFileSync } = require('node:child_process');
const path = require('node:path');
const { test } = require('node:test');
const { ROOT, filesIn, firstGroups, isThere, read } = require('./support/files');

const BUILD = path.join(ROOT, 'out', process.env.GAMEAPI_BUILD || 'release');
// The layers of the module. Each may include itself, the layers before it, and the platform's headers.
const MODULE = ['common', 'analytics', 'events', 'modal', 'napi'].map((layer) => `module/${layer}`);
const ALLOWED = {
    ...Object.fromEntries(MODULE.map((layer, i) => [layer, [...MODULE.slice(0, i + 1), 'platform/include']])),
    'platform/include': ['platform/include'],
    platform: ['platform'],
    device: ['device', 'platform'],
};
// Of the device they may use what everybody may: its interface.
const JS_ALLOWED = {
    service: ['service', 'device/index.js', 'lib'],
    emulator: ['emulator', 'service', 'device/index.js', 'lib'],
};
// Where the compiler looks for quoted includes, after the folder of the including file.
const SEARCH_PATH = ['module', 'platform/include', 'platform'];
// The C++ library, and the other system headers that the device also has.
const SYSTEM_HEADERS = /^([a-z_0-9]+|unistd\.h|uv\.h|nlohmann\/json\.hpp|openssl\/\w+\.h)$/;
const OF_NODE = /^(napi|node_api|uv|BIO|BUF|EVP)_/;
const OF_PROCESS = /^(_exit|\w*nanosleep|pthread_create)$|_M_start_thread/;
const OF_THE_DEVICE = /^(_ZNK?4OHOS|HiLogPrint$)/;
const OF_CXX = /^_Z\w*(St3__1|__cxxabiv1|St7nothrow)|^_Z(nwm(RKSt9nothrow_t)?|d[al]Pvm?)$|^__cxa_/;
const OF_C = /^(mem|str|pthread_)\w+$|^(__assert_fail|_exit|abort|localeconv|rand|snprintf)$/;
// What the module's sources must not contain: names of runtimes, a PC, tests, conditional compilation.
const FOREIGN = [
    /\bNode(\.?js)?\b(?!-API)|\bnode\.js\b|\bworker_threads\b|\blibuv-pool\b/, /\bstand-?in\b|\bPC\b/i,
    /\bgtest\b|\btest hook\b|\bunder test\b/i, /^\s*#\s*(if|ifdef|elif|else)\b/m,
];
const [LISTED, PASSED] = ['REDIRECTED', 'PASSED'].map((kind) =>
    firstGroups(read('platform/calls/calls.def'), new RegExp(`\\b${kind}\\((\\w+)`, 'g')));

const isWithin = (file, folders) => folders.some((folder) => file === folder || file.startsWith(`${folder}/`));

/** The quoted includes of a file as paths from the root. */
function includesOf(file) {
    return firstGroups(read(file), /^\s*#\s*include\s*"([^"]+)"/gm).map((name) =>
        [path.dirname(file), ...SEARCH_PATH].map((folder) => path.join(folder, name)).find((found) => isThere(found)) ||
        `${name} (nowhere)`);
}

/** What a source of the module uses that the device does not have. */
function foreignIn(file) {
    const headers = firstGroups(read(file), /^\s*#\s*include\s*<([^>]+)>/gm);
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
        const files = filesIn(layer, /\.(cpp|h)$/);
        const wrong = files.map((file) => [file, ...includesOf(file).filter((target) => !isWithin(target, allowed)),
            ...(isOfModule ? foreignIn(file) : [])]);
        assert.ok(files.length > 0);
        assert.deepEqual(wrong.filter((each) => each.length > 1), []);
    });
}

for (const [folder, allowed] of Object.entries(JS_ALLOWED)) {
    test(`${folder} requires of ours ${allowed.join(', ')}`, () => {
        const required = filesIn(folder, /\.m?js$/).flatMap((file) =>
            firstGroups(read(file), /(?:\brequire\(|\bfrom )['"](\.[^'"]*)['"]/g)
                .map((name) => path.join(path.dirname(file), name)));
        assert.ok(required.length > 5);
        assert.deepEqual(required.filter((name) => !isWithin(name, allowed)), []);
    });
}

test('built for a device, the module needs what is listed', () => {
    const imported = symbols('../device/module/core/velmor/libgameplayerextensionability.z.so', '--undefined-only');
    const needed = [...LISTED, ...PASSED, 'napi_module_register'];
    assert.deepEqual(imported.filter((name) => OF_NODE.test(name)), needed.sort());
    const known = [OF_NODE, OF_THE_DEVICE, OF_CXX, OF_C];
    assert.deepEqual(imported.filter((name) => !known.some((pattern) => pattern.test(name))), []);
});

test('every call goes to the device, which has them all', () => {
    const imported = symbols('game_player_extension_ability.node', '--undefined-only');
    const offered = new Set(symbols('libgame_platform.so', '--defined-only'));
    const redirected = [...LISTED, ...PASSED].map((name) => `device_${name}`);
    assert.deepEqual(imported.filter((name) => name.startsWith('device_')), redirected.sort());
    assert.deepEqual(redirected.filter((name) => !offered.has(name)), []);
    assert.deepEqual(imported.filter((name) => OF_NODE.test(name) || OF_PROCESS.test(name)), []);
});
