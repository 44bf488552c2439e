'use strict';

// Runs each benchmark once and briefly. The figures mean nothing.

const assert = require('node:assert/strict');
const { execFile } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { promisify } = require('node:util');
const { makeChart } = require('../bench/chart');

const ROOT = path.dirname(__dirname);
const INSTRUMENTED = /^(asan|ubsan|asan-ubsan|tsan|coverage)$/;
const skip = INSTRUMENTED.test(process.env.GAMEAPI_BUILD) && 'only a plain build has benchmarks';
async function measure(...options) {
    const json = path.join(ROOT, 'out', 'bench.json');
    fs.rmSync(json, { force: true });
    const args = [path.join(ROOT, 'bench', 'measure.js'), '--quick', '--json', json, ...options];
    const { stdout } = await promisify(execFile)(process.execPath, args, { timeout: 120000 });
    return { rows: JSON.parse(fs.readFileSync(json, 'utf8')), lines: stdout.trim().split('\n') };
}

test('every benchmark gives the rows that its page has, with their goals', { skip }, async () => {
    const { rows, lines } = await measure();
    const page = fs.readFileSync(path.join(ROOT, 'docs', 'performance.md'), 'utf8');
    const written = page.matchAll(/^\| (\S.*?) +\|.*\| ([\d.]+) +\| (?:yes|\*\*no\*\*) +\|$/gm);
    const goals = Array.from(written, ([, work, goal]) => [work, Number(goal)]);
    assert.deepEqual(Object.fromEntries(rows.map(({ work, goal }) => [work, goal])), Object.fromEntries(goals));
    for (const row of rows) {
        assert.equal(Object.keys(row).join(), 'work,size,module,floor,bare,unit,ratio,goal,cores');
        assert.ok(row.module > 0 && row.floor > 0 && row.size > 0 && row.cores === 1, JSON.stringify(row));
        assert.equal(row.bare > 0, /^(round trip|event)/.test(row.work), JSON.stringify(row));
        assert.match(row.unit, /^(us|1\/s|MiB|bytes)$/);
    }
    assert.equal(lines.length, rows.length + 2);
});

test('--only picks rows by a word of their name, and bad options are reported in one line', { skip }, async () => {
    const { rows } = await measure('--only', 'ISVALID');
    assert.deepEqual(new Set(rows.map(({ work }) => work)), new Set(['IsValidEnv']));
    for (const { options, code, says } of [
        { options: ['--only', 'nothing'], code: 1, says: /^bench: no row has "nothing" in its name; [^\n]*\n$/ },
        { options: ['--json', '/no/x'], code: 1, says: /^bench: \/no\/x cannot be written [^\n]*\n$/ },
        { options: ['--fast'], code: 2, says: /^bench: Unknown option '--fast'; usage: [^\n]*\n$/ },
        { options: ['--only='], code: 2, says: /^bench: An option has an empty value; usage: [^\n]*\n$/ },
    ]) {
        await assert.rejects(measure(...options), (error) => error.code === code && says.test(error.stderr), `${says}`);
    }
});

test('the chart has a panel per benchmark with several sizes, with the costs on the most cores', { skip }, () => {
    const row = (work, cores, size, module) => ({ work, size, of: 'B', cores, module, floor: module / 2, unit: 'us' });
    const rows = [row('hop', 1, 8, 111), row('hop', 2, 8, 40), row('hop', 2, 9, 60), row('skip', 2, 1, 5)];
    const svg = makeChart(rows, (cost) => `${cost} flat`);
    const texts = Array.from(svg.matchAll(/<text>(.*?)<\/text>/g), ([, text]) => text.trim());
    assert.deepEqual(texts.sort(), ['20 flat', '30 flat', '40 flat', '60 flat', '8', '9', 'B',
        'cores: 2; both axes are logarithmic', 'floor', 'hop (us)', 'module']);
});
