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
const { ROOT, expectChild, game } = require('./support');

const FENCE_OR_LINE = /^```(\w*)\n([^]*?)^```$|^.+$/gm;
const PRINTING = /console\.log\((.*)\); *\/\/ -> (.*)$/gm;
const LINK = /\]\(([^)#:\s]*)(?:#([^)]*))?\)/g;

const read = (file) => fs.readFileSync(path.join(ROOT, file), 'utf8');
const isThere = (...names) => fs.existsSync(path.join(ROOT, ...names));
const firstGroups = (matches) => Array.from(matches, ([, text]) => text);
const namesIn = (folder) => fs.readdirSync(path.join(ROOT, folder), { withFileTypes: true })
    .map((entry) => (entry.isDirectory() ? `${entry.name}/` : entry.name));

const PAGES = ['README.md', 'CONTRIBUTING.md', 'CHANGELOG.md',
    ...namesIn('docs').filter((name) => name.endsWith('.md')).map((name) => `docs/${name}`)];

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

// Runs in its own process, which ends by itself. Prints how many lines were as expected, or what went wrong.
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

test('every method has a section with an example, every code its row and its text', () => {
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
    const tagged = firstGroups(declared.matchAll(/@syscap [\w.]+ @since 12 \/ function (\w+)/g));
    assert.deepEqual([...new Set(tagged)].sort(), Object.getOwnPropertyNames(game).sort());
    const thrown = firstGroups(declared.matchAll(/@throws (.*?)(?= @)/g));
    const known = Object.entries(MESSAGES).map(([code, text]) => `{ BusinessError } ${code} - ${text}`);
    assert.deepEqual([thrown.length > 20, thrown.filter((text) => !known.includes(text))], [true, []]);
});

test('every key of a scenario is in the types, those of rules, steps and expectations on the page of the emulator too', () => {
    const { definitions, properties } = JSON.parse(read('service/scenario.schema.json'));
    const [types, page] = [read('service/index.d.ts'), read('docs/emulator.md')];
    const keysOf = (part) => Object.keys(part.properties ?? {});
    const all = [...Object.keys(properties), ...Object.values(definitions).flatMap(keysOf)];
    assert.ok(all.length > 50);
    assert.deepEqual([...definitions.method.enum].sort(), Object.keys(REQUESTS).sort());
    assert.deepEqual(all.filter((key) => !new RegExp(`[ ({]\\${key[0] === '$' ? '' : 'b'}${key}\\??:`).test(types)), []);
    const told = ['rule', 'answer', 'step', 'expect'].flatMap((name) => keysOf(definitions[name]));
    assert.deepEqual(told.filter((key) => key !== 'note' && !new RegExp(`[\`.]${key}\\b`).test(page)), []);
});

test('the house in CONTRIBUTING has every folder and command at the root, and what is packed exists', () => {
    const [, house] = /^## The house\n+```\n([^]*?)^```/m.exec(read('CONTRIBUTING.md'));
    const shown = house.split('\n').flatMap((line) => line.split('  ', 1)[0].split(' ')).filter(Boolean);
    const unshown = /^\.|^(out|node_modules)\/$|\.(tgz|md|m?js|json)$|^CMake|^LICENSE$/;
    const there = namesIn('.').filter((name) => !unshown.test(name));
    assert.deepEqual(shown.sort(), there.sort());
    const { files, scripts } = require('game-player-extension-module/package.json');
    const made = ['prebuilt/'];  // by scripts/pack
    assert.deepEqual(files.filter((name) => !made.includes(name) && !isThere(name)), []);
    Object.values(scripts).forEach((command) => fs.accessSync(path.join(ROOT, command), fs.constants.X_OK));
});

test('the porting page lists every header of the platform, and files that there are', () => {
    const headersIn = (folder) => namesIn(`platform/include/${folder}`)
        .flatMap((name) => (name.endsWith('.h') ? [folder + name] : headersIn(folder + name)));
    const page = read('docs/porting.md');
    assert.deepEqual(firstGroups(page.matchAll(/^\| `([\w/]+\.h)` \|/gm)).sort(), headersIn('').sort());
    const named = firstGroups(page.matchAll(/`([\w/]+\.(?:cpp|h|def|txt|js))`/g));
    const isFound = (name) => ['', 'platform', 'platform/include'].some((place) => isThere(place, name));
    assert.deepEqual(named.filter((name) => !isFound(name)), []);
});

test('links between the documents have existing targets', () => {
    const anchorOf = (title) => title.toLowerCase().replace(/[^\w -]/g, '').replace(/ /g, '-');
    const anchorsIn = (file) => firstGroups(read(file).matchAll(/^#+ (.*)$/gm)).map(anchorOf);
    for (const page of PAGES) {
        for (const [link, file, anchor] of read(page).matchAll(LINK)) {
            const target = file ? path.join(path.dirname(page), file) : page;
            assert.ok(isThere(target), `${page}: ${link}`);
            assert.ok(anchor === undefined || anchorsIn(target).includes(anchor), `${page}: ${link}`);
        }
    }
});
