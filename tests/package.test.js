'use strict';

// The package: which native libraries it loads, and what scripts/pack refuses.

const assert = require('node:assert/strict');
const { execFileSync, spawnSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { test } = require('node:test');
const { ROOT } = require('./support');

const MACHINE = `${process.platform}-${process.arch}`;

/** Calls `use` with a new folder that holds these files by their names, and copies of some files of ours. */
function withFolder(files, copies, use) {
    const folder = fs.realpathSync(fs.mkdtempSync(path.join(os.tmpdir(), 'package-')));
    const texts = copies.map((name) => [name, fs.readFileSync(path.join(ROOT, name))]);
    for (const [name, text] of [...Object.entries(files), ...texts]) {
        fs.mkdirSync(path.dirname(path.join(folder, name)), { recursive: true });
        fs.writeFileSync(path.join(folder, name), text, { mode: 0o755 });
    }
    try {
        use(folder);
    } finally {
        fs.rmSync(folder, { recursive: true });
    }
}

const HINT = 'run ./build in HERE, which makes one from source.';
const BUILT = { 'out/release/x.js': 'module.exports = "built"' };
const FOR_THIS = { [`prebuilt/${MACHINE}/x.js`]: 'module.exports = "prebuilt"' };
const FOR_OTHERS = { 'prebuilt/linux-mips/x.js': '', 'prebuilt/os-arm/x.js': '' };
const BROKEN = { [`prebuilt/${MACHINE}/x.js`]: 'throw new Error("no library")' };

for (const [what, files, outcome, build = ''] of [
    ['what is built', { ...BUILT, ...FOR_THIS }, 'built'],
    ['what the package brings', FOR_THIS, 'prebuilt'],
    ['no other build than the one asked for', { ...BUILT, ...FOR_THIS }, `There is no build "debug" of the module: ${HINT}`, 'debug'],
    ['nothing where nothing is built', {}, `There is no build "release" of the module: ${HINT}`],
    ['nothing for other machines', FOR_OTHERS, `The package has no build for ${MACHINE}, only for linux-mips and os-arm: ${HINT}`],
    ['nothing that the system cannot load', BROKEN,
        `The package's build for ${MACHINE} does not load here; it needs glibc 2.34 or newer: ${HINT}`],
]) {
    test(`the package loads ${what}`, () => withFolder(files, ['lib/addon.js'], (folder) => {
        const before = process.env.GAMEAPI_BUILD || '';
        process.env.GAMEAPI_BUILD = build;
        const load = () => require(`${folder}/lib/addon.js`).loadAddon('x.js');
        if (outcome.endsWith(HINT)) {
            assert.throws(load, { message: outcome.replace('HERE', folder) });
        } else {
            assert.equal(load(), outcome);
        }
        process.env.GAMEAPI_BUILD = before;
    }));
}

const TOLD = '## [Unreleased]\n\n## [1.0.0] - 2020-01-01\n\n- All.\n';
const UNTOLD = '## [Unreleased]\n\n- New.\n\n## [1.0.0] - 2020-01-01\n';

for (const [what, version, changes, added, complaint] of [
    ['a tree with changes', '1.0.0', TOLD, ['new.txt'], 'there are uncommitted changes, commit or remove them: ?? new.txt'],
    ['a version without a section', '1.0.1', TOLD, [], 'CHANGELOG.md has no section for version 1.0.1 '],
    ['a version that another begins with', '1.0', TOLD, [], 'CHANGELOG.md has no section for version 1.0 '],
    ['changes without a version', '1.0.0', UNTOLD, [], 'CHANGELOG.md has changes under [Unreleased]'],
]) {
    const files = { 'CHANGELOG.md': changes, 'package.json': `{\n    "version": "${version}",\n}\n` };
    test(`scripts/pack refuses ${what}`, () => withFolder(files, ['scripts/pack', 'scripts/common.sh'], (folder) => {
        const options = { cwd: folder, encoding: 'utf8', env: { ...process.env, LD_PRELOAD: '' } };  // no sanitizer for the tools
        execFileSync('git init -q && git add . && git -c user.name=n -c user.email=e commit -qm all', { ...options, shell: true });
        added.forEach((name) => fs.writeFileSync(path.join(folder, name), ''));
        const { status, stderr } = spawnSync('scripts/pack', options);
        assert.deepEqual([status, stderr.slice(0, complaint.length + 6)], [1, `pack: ${complaint}`]);
    }));
}
