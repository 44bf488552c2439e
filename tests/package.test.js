'use strict';

// The package: which native libraries it loads, and what ./pack refuses.

const assert = require('node:assert/strict');
const { execFileSync, spawnSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { after, test } = require('node:test');
const { ROOT } = require('./support');

const MACHINE = `${process.platform}-${process.arch}`;
const folders = [];

/** A new folder with these files, by their names. The value null copies the project's own. */
function makeFolder(files) {
    const folder = fs.realpathSync(fs.mkdtempSync(path.join(os.tmpdir(), 'package-')));
    folders.push(folder);
    for (const [name, text] of Object.entries(files)) {
        fs.mkdirSync(path.dirname(path.join(folder, name)), { recursive: true });
        if (text === null) {
            fs.cpSync(path.join(ROOT, name), path.join(folder, name));
        } else {
            fs.writeFileSync(path.join(folder, name), text);
        }
    }
    return folder;
}

after(() => folders.forEach((folder) => fs.rmSync(folder, { recursive: true })));

const load = (folder, name, build = '') => {
    const program = `process.stdout.write(require(${JSON.stringify(`${folder}/addon.js`)}).loadAddon('${name}'))`;
    const { stdout, stderr } = spawnSync(process.execPath, ['-e', program], { encoding: 'utf8', env: { ...process.env, GAMEAPI_BUILD: build } });
    return stdout || /^Error: (.*)$/m.exec(stderr)[1].replace(folder, 'HERE');
};

const HINT = 'run ./build in HERE, which makes one from source.';
const BUILT = { 'out/release/x.js': 'module.exports = "built"' };
const FOR_THIS = { [`prebuilt/${MACHINE}/x.js`]: 'module.exports = "prebuilt"' };
const FOR_OTHERS = { 'prebuilt/linux-mips/x.js': '', 'prebuilt/os-arm/x.js': '' };

for (const [what, files, loaded, build] of [
    ['what is built', { ...BUILT, ...FOR_THIS }, 'built'],
    ['what the package brings', FOR_THIS, 'prebuilt'],
    ['no other build than the one asked for', { ...BUILT, ...FOR_THIS }, `There is no build "debug" of the module: ${HINT}`, 'debug'],
    ['nothing where nothing is built', {}, `There is no build "release" of the module: ${HINT}`],
    ['nothing for other machines', FOR_OTHERS, `The package has no build for ${MACHINE}, only for linux-mips and os-arm: ${HINT}`],
    ['nothing that the system cannot load', { [`prebuilt/${MACHINE}/x.node`]: 'no library' },
        `The package's build for ${MACHINE} does not load here; it needs glibc 2.34 or newer: ${HINT}`],
]) {
    test(`the package loads ${what}`, () => {
        const folder = makeFolder({ 'addon.js': null, ...files });
        assert.equal(load(folder, Object.keys(files).some((name) => name.endsWith('x.node')) ? 'x.node' : 'x.js', build), loaded);
    });
}

for (const [what, { version = '1.0.0', changes = `## [Unreleased]\n\n## [1.0.0] - 2020-01-01\n\n- All.\n`, more }, complaint] of [
    ['a tree with changes', { more: { 'new.txt': '' } }, /^pack: there are uncommitted changes.*new\.txt/],
    ['a version without a section', { version: '1.0.1' }, /^pack: CHANGELOG\.md has no section for version 1\.0\.1 /],
    ['a version that others begin with', { version: '1.0' }, /^pack: CHANGELOG\.md has no section for version 1\.0 /],
    ['changes without a version', { changes: '## [Unreleased]\n\n- New.\n\n## [1.0.0] - 2020-01-01\n' }, /^pack: CHANGELOG\.md has changes under \[Unreleased\]/],
]) {
    test(`./pack refuses ${what}`, () => {
        const folder = makeFolder({
            pack: null, 'scripts/common.sh': null, 'CHANGELOG.md': changes, 'package.json': `{\n    "version": "${version}",\n}\n`,
        });
        const options = { encoding: 'utf8', env: { ...process.env, LD_PRELOAD: '' } };  // no sanitizer for the tools
        const git = (...args) => execFileSync('git', ['-C', folder, '-c', 'user.name=n', '-c', 'user.email=e', ...args], options);
        git('init', '--quiet');
        git('add', '.');
        git('commit', '--quiet', '--message=all');
        Object.entries(more || {}).forEach(([name, text]) => fs.writeFileSync(path.join(folder, name), text));
        const { status, stderr } = spawnSync(path.join(folder, 'pack'), options);
        assert.match(stderr, complaint);
        assert.equal(status, 1);
    });
}
