'use strict';

// Builds the module from BUILD.gn, with what tests/gn/ has in place of the platform's build. Checks that BUILD.gn lists
// every source, and that bundle.json agrees with it.

const { spawnSync } = require('child_process');
const fs = require('fs');
const path = require('path');

const ROOT = path.dirname(__dirname);
const FOLDERS = ['napi', 'modal', 'events', 'common', 'analytics'];
const OUT = 'out/gn';
const TARGET = 'gameplayerextensionability';
const LABEL = `//module:${TARGET}`;
const GN = ['--root=.', '--dotfile=tests/gn/.gn'];

const readJson = (name) => JSON.parse(fs.readFileSync(path.join(ROOT, name), 'utf8'));

/** What a command prints. If it fails, shows that and ends. */
function run(command, ...args) {
    const { status, error, stdout, stderr } = spawnSync(command, args, { cwd: ROOT, encoding: 'utf8' });
    if (status !== 0) {
        console.log(error ? `${command} does not start (${error.code}): ./test installs it` : stdout + stderr);
        process.exit(1);
    }
    return stdout;
}

function sourcesIn(folder) {
    return fs.readdirSync(path.join(ROOT, 'module', folder), { recursive: true, encoding: 'utf8' })
        .filter((name) => name.endsWith('.cpp')).map((name) => `//module/${folder}/${name}`);
}

/** What differs between a list and what belongs there. */
function differences(what, listed, wanted) {
    return [...wanted.filter((name) => !listed.includes(name)).map((name) => `${what}: ${name} is missing`),
        ...listed.filter((name) => !wanted.includes(name)).map((name) => `${what}: ${name} does not belong there`)];
}

/** What is wrong in the lists of BUILD.gn and bundle.json. Takes what GN says of the target. */
function check({ sources, outputs, metadata }) {
    const { version, segment, component } = readJson('module/bundle.json');
    const [, syscap] = /@syscap (\S+)/.exec(fs.readFileSync(path.join(ROOT, 'lib/index.d.ts'), 'utf8'));
    const parts = new Set(metadata.external_deps.map((name) => name.split(':')[0]));
    return [
        ...differences('BUILD.gn, sources', sources, FOLDERS.flatMap(sourcesIn)),
        ...differences('BUILD.gn, the library', outputs,
            [`//${OUT}/module/core/velmor/libgameplayerextensionability.z.so`]),
        ...differences('bundle.json, components', component.deps.components, [...parts]),
        ...differences('bundle.json, syscap', component.syscap, [syscap]),
        ...differences('bundle.json, part and subsystem', [component.name, component.subsystem], metadata.part),
        ...differences('bundle.json, sub_component', component.build.sub_component,
            [`//${segment.destPath}:${TARGET}`]),
        ...differences('bundle.json, version', [version], [readJson('package.json').version]),
    ];
}

const headers = run('scripts/node-headers').trim();
const uv = fs.existsSync(`${headers}/uv.h`) ? headers : '/usr/include';
run('gn', 'gen', OUT, ...GN, '--fail-on-unused-args', `--args=node_include_dir="${headers}" uv_include_dir="${uv}"`);
const target = JSON.parse(run('gn', 'desc', OUT, LABEL, ...GN, '--format=json'))[LABEL];
const wrong = check(target);
wrong.forEach((line) => console.log(line));
if (wrong.length > 0) {
    process.exit(1);
}
run('ninja', '-C', OUT);
