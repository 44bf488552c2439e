'use strict';

// The documents: their examples run, and their lists are complete. Every block of a page that is marked "js" runs. The
// first block's scope is the page; each later block has its own scope inside it. A line
//     console.log(...); // -> text
// must print exactly that, and no other line prints.

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { ErrorCode } = require('game-player-extension-module/errors');
const { REQUESTS } = require('../lib/methods.js');
const { MESSAGES } = require('./model/tables');
const { expectChild, game } = require('./support');
const { ROOT, filesIn, firstGroups, isThere, read } = require('./support/files');

const FENCE_OR_LINE = /^```(\w*)\n([^]*?)^```$|^.+$/gm;
const PRINTING = /console\.log\((.*)\); *\/\/ -> (.*)$/gm;
const LINK = /\]\(([^)#:\s]*)(?:#([^)]*))?\)/g;
const PAGES = ['README.md', 'CONTRIBUTING.md', 'CHANGELOG.md', ...filesIn('docs', /\.md$/)];

/** The examples of a page as one program, with the line numbers of the page. */
function programOf(page) {
    let blocks = 0;
    return read(page).replace(FENCE_OR_LINE, (text, language, code) => {
        if (language !== 'js') {
            return text.replace(/.+/g, '');
        }
        blocks += 1;
        const checked = code.replace(/^import (.*) from ('.*');/gm, 'const $1 = require($2);')
            .replace(PRINTING, (_, args, expected) => `print(${JSON.stringify(expected)}, ${args});`);
        return blocks > 1 ? `{\n${checked}}` : `\n${checked}`;
    });
}

// Runs in a child process, which ends by itself. Prints how many lines were as expected, or what went wrong.
async function runProgram({ ROOT }, page, source) {
    const assert = require('node:assert/strict');
    const { format } = require('node:util');
    let checks = 0;
    const print = (expected, ...args) => {
        assert.equal(format(...args), expected);
        checks += 1;
    };
    const run = require('node:vm').runInThisContext(`(async (require, print) => {${source}\n})`, { filename: page });
    await run(require('node:module').createRequire(`${ROOT}/${page}`), print)
        .then(() => console.log(checks), (error) => console.log(error.stack));
}

for (const [page, source] of PAGES.map((page) => [page, programOf(page)]).filter(([, source]) => source.trim())) {
    test(`the examples of ${page} run and print what they say`, async () => {
        assert.doesNotMatch(source, /console\.log/);
        await expectChild(runProgram, { args: [page, source], out: [`${source.split('print("').length - 1}`] });
    });
}

test('every method has a section with an example, every code a row', () => {
    const [api, types] = [read('docs/api.md'), read('lib/errors.d.ts').replace(/\n +\* /g, ' ')];
    for (const name of Object.getOwnPropertyNames(game)) {
        const section = api.split(/^## /m).find((text) => text.startsWith(`${name}\n`));
        const [, example] = /^```js\n([^]*?)^```$/m.exec(section) || [];
        assert.ok(example?.includes(`gamePlayer.${name}(`), name);
    }
    for (const [name, code] of Object.entries(ErrorCode)) {
        assert.ok(api.includes(`\n| ${code} | \`${name}\` | ${MESSAGES[code]} |\n`), name);
        assert.match(types, new RegExp(`"${MESSAGES[code]}"[^/]*\\*/\\s+readonly ${name}: ${code};`));
    }
    const declared = read('lib/index.d.ts').replace(/\n +\*? */g, ' ');
    const tagged = firstGroups(declared, /@syscap [\w.]+ @since 12 \/ function (\w+)/g);
    assert.deepEqual([...new Set(tagged)].sort(), Object.getOwnPropertyNames(game).sort());
    const thrown = firstGroups(declared, /@throws (.*?)(?= @)/g);
    const known = Object.entries(MESSAGES).map(([code, text]) => `{ BusinessError } ${code} - ${text}`);
    assert.deepEqual([thrown.length > 20, thrown.filter((text) => !known.includes(text))], [true, []]);
});

test('every key of a scenario is in the types, and on its page', () => {
    const { definitions, properties } = JSON.parse(read('service/scenario.schema.json'));
    const [types, page] = [read('service/index.d.ts'), read('docs/emulator.md')];
    const keysOf = (part) => Object.keys(part.properties ?? {});
    const all = [...Object.keys(properties), ...Object.values(definitions).flatMap(keysOf)];
    assert.deepEqual([...definitions.method.enum].sort(), Object.keys(REQUESTS).sort());
    const isTyped = (key) => new RegExp(`[ ({]\\${key[0] === '$' ? '' : 'b'}${key}\\??:`).test(types);
    assert.deepEqual([all.length > 50, all.filter((key) => !isTyped(key))], [true, []]);
    const explained = ['rule', 'answer', 'step', 'expect'].flatMap((name) => keysOf(definitions[name]));
    const isOnPage = (key) => key === 'note' || new RegExp(`[\`.]${key}\\b`).test(page);
    assert.deepEqual(explained.filter((key) => !isOnPage(key)), []);
});

test('the house in CONTRIBUTING is complete, and what is packed exists', () => {
    const [house] = firstGroups(read('CONTRIBUTING.md'), /^## The house\n+```\n([^]*?)^```/gm);
    const shown = house.split('\n').flatMap((line) => line.split('  ', 1)[0].split(' ')).filter(Boolean);
    const unshown = /^\.|^(out|node_modules)\/$|\.(tgz|md|m?js|json)$|^CMake|^LICENSE$/;
    const there = fs.readdirSync(ROOT, { withFileTypes: true })
        .map((entry) => (entry.isDirectory() ? `${entry.name}/` : entry.name)).filter((name) => !unshown.test(name));
    assert.deepEqual(shown.sort(), there.sort());
    const { files, scripts } = require('game-player-extension-module/package.json');
    const made = ['prebuilt/'];  // by scripts/pack
    assert.deepEqual(files.filter((name) => !made.includes(name) && !isThere(name)), []);
    Object.values(scripts).forEach((command) => fs.accessSync(path.join(ROOT, command), fs.constants.X_OK));
});

test('the porting page lists every header, and files that there are', () => {
    const page = read('docs/porting.md');
    const headers = filesIn('platform/include', /\.h$/).map((file) => path.relative('platform/include', file));
    assert.deepEqual(firstGroups(page, /^\| `([\w/]+\.h)` \|/gm).sort(), headers.sort());
    const named = firstGroups(page, /`([\w/]+\.(?:cpp|h|def|txt|js))`/g);
    const isFound = (name) => ['', 'platform', 'platform/include'].some((place) => isThere(place, name));
    assert.deepEqual(named.filter((name) => !isFound(name)), []);
});

test('links between the documents have existing targets', () => {
    const anchorOf = (title) => title.toLowerCase().replace(/[^\w -]/g, '').replace(/ /g, '-');
    const anchorsIn = (file) => firstGroups(read(file), /^#+ (.*)$/gm).map(anchorOf);
    for (const page of PAGES) {
        for (const [link, file, anchor] of read(page).matchAll(LINK)) {
            const target = file ? path.join(path.dirname(page), file) : page;
            assert.ok(isThere(target), `${page}: ${link}`);
            assert.ok(anchor === undefined || anchorsIn(target).includes(anchor), `${page}: ${link}`);
        }
    }
});
