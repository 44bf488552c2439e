'use strict';

// Each benchmark runs, once and briefly; what it measures then means nothing.

const assert = require('node:assert/strict');
const { execFile } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { test } = require('node:test');
const { promisify } = require('node:util');

const RUNNER = path.join(__dirname, '..', 'benchmarks', 'run.js');
const INSTRUMENTED = /^(asan|ubsan|asan-ubsan|tsan|coverage)$/;
const skip = INSTRUMENTED.test(process.env.GAMEAPI_BUILD) && 'only a plain build has benchmarks';
const WORKS = {
    'refused init()': 2, 'refused bindPlayer(ctx)': 2, prePurchase: 1.5, savePlayerRole: 1.5,
    'round trip, p50': 1.5, 'round trip, throughput': 0.6, event: 1.3, unionLogin: 1.15,
    'unionLogin peak memory': 3, 'memory of a pending request': 1.3, Base64Encode: 1.05,
    IsValidEnv: 1.2, 'log line': 1.2,
};

async function measure(...options) {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'bench-'));
    const json = path.join(folder, 'rows.json');
    try {
        const args = [RUNNER, '--quick', '--json', json, ...options];
        const { stdout } = await promisify(execFile)(process.execPath, args, { timeout: 120000 });
        return { rows: JSON.parse(fs.readFileSync(json, 'utf8')), lines: stdout.trim().split('\n') };
    } finally {
        fs.rmSync(folder, { recursive: true });
    }
}

test('every benchmark gives its rows', { skip }, async () => {
    const { rows, lines } = await measure();
    assert.deepEqual(Object.fromEntries(rows.map(({ work, goal }) => [work, goal])), WORKS);
    for (const row of rows) {
        assert.deepEqual(Object.keys(row), ['work', 'size', 'module', 'floor', 'unit', 'ratio', 'goal', 'cores']);
        assert.ok(row.module > 0 && row.floor > 0 && row.size > 0 && row.cores === 1, JSON.stringify(row));
        assert.equal(row.ratio, row.module / row.floor);
        assert.match(row.unit, /^(us|1\/s|MiB|bytes)$/);
    }
    assert.equal(lines.length, rows.length + 2);
});

test('--only picks rows by a word of their name, and tells of a word that none has', { skip }, async () => {
    const { rows } = await measure('--only', 'ISVALID');
    assert.deepEqual(new Set(rows.map(({ work }) => work)), new Set(['IsValidEnv']));
    await assert.rejects(measure('--only', 'nothing'), ({ code, stderr }) => (
        code === 1 && /^bench: no row has "nothing" in its name; there are [^\n]*\n$/.test(stderr)));
});
