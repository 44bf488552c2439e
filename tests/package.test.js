'use strict';

// The package: which native libraries it loads, and what scripts/pack refuses.

const assert = require('node:assert/strict');
const fs = require('node:fs');
const { test } = require('node:test');
const { folderWith, read, run } = require('./support/files');

const MACHINE = `${process.platform}-${process.arch}`;
const HINT = 'run ./build in HERE, which makes one from source.';
const BUILT = { 'out/release/x.js': 'module.exports = "built"' };
const FOR_THIS = { [`prebuilt/${MACHINE}/x.js`]: 'module.exports = "prebuilt"' };
const FOR_OTHERS = { 'prebuilt/linux-mips/x.js': '', 'prebuilt/os-arm/x.js': '' };
const BROKEN = { [`prebuilt/${MACHINE}/x.js`]: 'throw new Error("no library")' };

for (const { loads, files, build = '', error } of [
    { loads: 'built', files: { ...BUILT, ...FOR_THIS } },
    { loads: 'prebuilt', files: FOR_THIS },
    { files: { ...BUILT, ...FOR_THIS }, build: 'debug', error: 'There is no build "debug" of the module' },
    { files: {}, error: 'There is no build "release" of the module' },
    { files: FOR_OTHERS, error: `The package has no build for ${MACHINE}, only for linux-mips and os-arm` },
    { files: BROKEN, error: `The package's build for ${MACHINE} does not load here; it needs glibc 2.34 or newer` },
]) {
    test(`the package loads ${loads ? `what is ${loads}` : `nothing: ${error}`}`, () => {
        const folder = folderWith({ ...files, 'lib/addon.js': read('lib/addon.js') });
        const before = process.env.GAMEAPI_BUILD || '';
        process.env.GAMEAPI_BUILD = build;
        const load = () => require(`${folder}/lib/addon.js`).loadAddon('x.js');
        if (error) {
            assert.throws(load, { message: `${error}: ${HINT.replace('HERE', folder)}` });
        } else {
            assert.equal(load(), loads);
        }
        process.env.GAMEAPI_BUILD = before;
    });
}

const RELEASED = '## [Unreleased]\n\n## [1.0.0] - 2020-01-01\n\n- All.\n';
const UNRELEASED = '## [Unreleased]\n\n- New.\n\n## [1.0.0] - 2020-01-01\n';

for (const { version = '1.0.0', changes = RELEASED, added = [], complaint } of [
    { added: ['new.txt'], complaint: 'there are uncommitted changes, commit or remove them: ?? new.txt' },
    { version: '1.0', complaint: 'CHANGELOG.md has no section for version 1.0 ' },
    { changes: UNRELEASED, complaint: 'CHANGELOG.md has changes under [Unreleased]' },
]) {
    test(`scripts/pack refuses: ${complaint}`, async () => {
        const folder = folderWith({
            'CHANGELOG.md': changes, 'package.json': `{\n    "version": "${version}",\n}\n`,
            'scripts/pack': read('scripts/pack'), 'scripts/common.sh': read('scripts/common.sh'),
        });
        const options = { cwd: folder, env: { LD_PRELOAD: '' } };  // no sanitizer for the tools
        const commit = 'git init -q && git add . && git -c user.name=n -c user.email=e commit -qm all';
        assert.equal((await run('sh', ['-c', commit], options)).code, 0);
        added.forEach((name) => fs.writeFileSync(`${folder}/${name}`, ''));
        const { code, stderr } = await run('scripts/pack', [], options);
        assert.deepEqual([code, stderr.slice(0, complaint.length + 6)], [1, `pack: ${complaint}`]);
    });
}
