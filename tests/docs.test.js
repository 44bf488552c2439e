'use strict';

// The documents: their examples run, and their lists are complete. In a page every block marked "js" runs. The first
// one has the page as its scope, each later one a scope of its own within that. A line
//     console.log(...); // -> text
// has to print that text, and no other line prints.

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { ROOT, device, expectChild, game } = require('./support');
const { ErrorCode } = require('game-player-extension-module/errors');

const PAGES = ['README.md', 'CONTRIBUTING.md', 'CHANGELOG.md',
    ...fs.readdirSync(path.join(ROOT, 'docs')).filter((name) => name.endsWith('.md')).map((name) => `docs/${name}`)];
const FENCE_OR_LINE = /^```(\w*)\n([^]*?)^```$|^.+$/gm;
const PRINTING = /console\.log\((.*)\); *\/\/ -> (.*)$/gm;
const LINK = /\]\(([^)#:\s]*)(?:#([^)]*))?\)/g;

const read = (file) => fs.readFileSync(path.join(ROOT, file), 'utf8');
const entriesOf = (folder) => fs.readdirSync(path.join(ROOT, folder), { withFileTypes: true });

// The examples of a page as one program, in which each line stands where it does in the page.
function programOf(page) {
    const program = { blocks: 0, checks: 0 };
    program.source = read(page).replace(FENCE_OR_LINE, (text, language, code) => {
        if (language !== 'js') {
            return text.replace(/.+/g, '');
        }
        program.blocks += 1;
        const checked = code.replace(/^import (.*) from ('.*');/gm, 'const $1 = require($2);').replace(PRINTING, (_, args, expected) => {
            program.checks += 1;
            return `print(${JSON.stringify(expected)}, ${args});`;
        });
        return program.blocks > 1 ? `{\n${checked}}` : `\n${checked}`;
    });
    return program;
}

// In a process of its own, which ends by itself. Prints how many lines printed what they should, or what went wrong.
async function runProgram({ ROOT }, page, source) {
    const assert = require('node:assert/strict');
    const { createRequire } = require('node:module');
    const path = require('node:path');
    const { format } = require('node:util');
    const vm = require('node:vm');
    let checks = 0;
    const print = (expected, ...args) => {
        assert.equal(format(...args), expected);
        checks += 1;
    };
    const run = vm.runInThisContext(`(async (require, print) => {${source}\n})`, { filename: page });
    await run(createRequire(path.join(ROOT, page)), print)
        .then(() => console.log(checks), (error) => console.log(error.stack));
}

for (const [page, { blocks, checks, source }] of PAGES.map((page) => [page, programOf(page)])) {
    if (blocks > 0) {
        test(`the examples of ${page} run and print what they say`, async () => {
            assert.doesNotMatch(source, /console\.log/);
            await expectChild(runProgram, { args: [page, source], out: [`${checks}`] });
        });
    }
}

test('every method has a section with an example', () => {
    const sections = new Map(read('docs/api.md').split(/^## /m).map((text) => [text.split('\n', 1)[0], text]));
    const lacking = Object.getOwnPropertyNames(game).filter((name) => {
        const [, example = ''] = /^```js\n([^]*?)^```$/m.exec(sections.get(name)) || [];
        return !example.includes(`gamePlayer.${name}(`);
    });
    assert.deepEqual(lacking, []);
});

// What the module says to a code.
async function messageOf(code) {
    if (code === ErrorCode.SUCCESS) {
        try {
            return game.init();
        } catch (error) {
            return error.message;
        }
    }
    const message = game.bindPlayer(device.createAbilityContext(), '', '').catch((error) => error.message);
    await device.modals().at(-1).error(code);
    return message;
}

test('the error codes are documented with the messages that the module gives them', async () => {
    const [api, types] = [read('docs/api.md'), read('errors.d.ts').replace(/\n +\* /g, ' ')];
    for (const [name, code] of Object.entries(ErrorCode)) {
        const message = await messageOf(code);
        assert.ok(api.includes(`\n| ${code} | \`${name}\` | ${message} |\n`), `docs/api.md: ${name}, ${message}`);
        assert.match(types, new RegExp(`"${message}"[^/]*\\*/\\s+readonly ${name}: ${code};`));
    }
    device.reset();
});

// The names in the picture end where two blanks begin.
test('the README shows the house as it is', () => {
    const [, picture] = /^## The house\n+```\n([^]*?)^```/m.exec(read('README.md'));
    const shown = picture.split('\n').flatMap((line) => line.split('  ', 1)[0].split(' ')).filter(Boolean);
    const there = entriesOf('.').map((entry) => (entry.isDirectory() ? `${entry.name}/` : entry.name))
        .filter((name) => !/^\.|^out\/$|^node_modules\/$|\.(md|tgz)$|^CMake/.test(name));
    assert.deepEqual(shown.sort(), there.sort());
});

test('the porting page lists every header of the platform, and files that there are', () => {
    const headersIn = (folder) => entriesOf(`platform/include/${folder}`)
        .flatMap(({ name }) => (name.endsWith('.h') ? [folder + name] : headersIn(`${folder}${name}/`)));
    const page = read('docs/porting.md');
    const listed = Array.from(page.matchAll(/^\| `([\w/]+\.h)` \|/gm), ([, name]) => name);
    assert.deepEqual(listed.sort(), headersIn('').sort());
    const named = Array.from(page.matchAll(/`([\w/]+\.(?:cpp|h|def|txt|js))`/g), ([, name]) => name);
    const places = ['', 'platform/', 'platform/include/'].map((folder) => path.join(ROOT, folder));
    assert.deepEqual(named.filter((name) => !places.some((place) => fs.existsSync(path.join(place, name)))), []);
});

test('links between the documents lead somewhere', () => {
    const anchorOf = (title) => title.toLowerCase().replace(/[^\w -]/g, '').replace(/ /g, '-');
    const anchorsIn = (file) => Array.from(read(file).matchAll(/^#+ (.*)$/gm), ([, title]) => anchorOf(title));
    const isBroken = (page, file, anchor) => {
        const target = file ? path.join(path.dirname(page), file) : page;
        return !fs.existsSync(path.join(ROOT, target)) || (anchor !== undefined && !anchorsIn(target).includes(anchor));
    };
    const broken = PAGES.flatMap((page) => Array.from(read(page).matchAll(LINK))
        .filter(([, file, anchor]) => isBroken(page, file, anchor))
        .map(([link]) => `${page}: ${link}`));
    assert.deepEqual(broken, []);
});
