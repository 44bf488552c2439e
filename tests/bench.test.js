'use strict';

// Runs each benchmark once and briefly. The figures mean nothing.

const assert = require('node:assert/strict');
const { execFile } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { promisify } = require('node:util');

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
        { options: ['--fast'], code: 2, says: /^bench: Unknown option '--fast'; usage: [^\n]*\n$/ },
    ]) {
        await assert.rejects(measure(...options), (error) => error.code === code && says.test(error.stderr), `${says}`);
    }
});
