'use strict';

// Summarises how much of the module the tests ran, prints it, and writes it to docs/coverage.md.
// usage: node scripts/coverage.js BUILD_FOLDER

const { execFileSync } = require('child_process');
const fs = require('fs');
const path = require('path');

const ROOT = path.dirname(__dirname);
const REPORT = path.join(ROOT, 'docs', 'coverage.md');
const FOLDERS = ['napi', 'modal', 'events', 'analytics', 'common'].map((name) => `module/${name}`);

// One record per source: { file, lines: [{ line_number, count, branches: [{ count }] }] }. Excludes the branches that
// the compiler adds for exceptions and for code that it knows is unreachable: they are not in the source.
function measure(buildDir) {
    const filters = FOLDERS.flatMap((folder) => ['--filter', `${folder}/`]);
    const options = ['--exclude-throw-branches', '--exclude-unreachable-branches', '--json', '-'];
    const output = execFileSync('gcovr', ['--root', ROOT, ...filters, ...options, buildDir],
        { cwd: ROOT, encoding: 'utf8', maxBuffer: 1 << 28 });
    const { files } = JSON.parse(output);
    if (files.length === 0) {
        throw new Error(`no counts in ${buildDir}: run ./test --coverage, which makes them`);
    }
    return files;
}

const share = (part, whole) => (whole === 0 ? '' : `${(100 * part / whole).toFixed(1)} %`);

function sumUp(name, lines) {
    const branches = lines.flatMap((line) => line.branches);
    const ran = (things) => things.filter(({ count }) => count > 0).length;
    return { name, lines: [ran(lines), lines.length], branches: [ran(branches), branches.length] };
}

const row = ({ name, lines, branches }) =>
    `| ${name} | ${lines.join(' of ')} | ${share(...lines)} | ${branches.join(' of ')} | ${share(...branches)} |`;

// Lists the source lines that never ran or ran only in part. Quotes their text, because line numbers change.
function missed({ file, lines }) {
    const text = fs.readFileSync(path.join(ROOT, file), 'utf8').split('\n');
    return lines
        .filter(({ count, branches }) => count === 0 || branches.some((branch) => branch.count === 0))
        .map(({ line_number: number, count, branches }) => {
            const never = branches.filter((branch) => branch.count === 0).length;
            const what = count === 0 ? 'never run' : `${never} of ${branches.length} branches not taken`;
            return `- \`${file}\`, ${what}: \`${text[number - 1].trim()}\``;
        });
}

function main(buildDir) {
    const files = measure(buildDir)
        .map(({ file, lines }) => ({ file, lines: lines.filter((line) => !line['gcovr/noncode']) }))
        .filter(({ lines }) => lines.length > 0)
        .sort((a, b) => a.file.localeCompare(b.file));
    const table = [
        '| file | lines | | branches | |', '|---|--:|--:|--:|--:|',
        ...files.map(({ file, lines }) => row(sumUp(file, lines))),
        row(sumUp('**all**', files.flatMap(({ lines }) => lines))),
    ];
    const rest = files.flatMap(missed);
    fs.writeFileSync(REPORT, [
        '# What the tests run of the module', '',
        'Written by `./test --coverage`. Branches that the compiler adds for exceptions do not count.',
        '[reliability.md](reliability.md) tells why the rest is not run.', '',
        ...table, '', '## Not run', '', ...rest, '',
    ].join('\n'));
    const { lines, branches } = sumUp('', files.flatMap((each) => each.lines));
    console.log([...table, '', ...rest].join('\n'));
    console.log(`${share(...lines)} of the lines and ${share(...branches)} of the branches run`);
}

main(process.argv[2]);
