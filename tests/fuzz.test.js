'use strict';

const assert = require('node:assert/strict');
const { spawnSync } = require('node:child_process');
const path = require('node:path');
const { test } = require('node:test');
const { ROOT } = require('./support');

// In a process of its own, which a crash would end before its last line.
function run(...args) {
    return spawnSync(process.execPath, [path.join(ROOT, 'soak', 'fuzz', 'run.js'), ...args], { encoding: 'utf8' });
}

for (const seed of ['1', '100000']) {
    test(`4000 drawn values from seed ${seed} on are read as documented, and the parameters travel`, () => {
        const { status, stdout } = run('--trials', '4000', '--seed', seed);
        assert.equal(stdout, `fuzzing: 4000 trials from seed ${seed} on, no difference\n`);
        assert.equal(status, 0);
    });
}

test('a wrong argument is told in one line, with the usage', () => {
    for (const [args, complaint] of [
        [[], 'one of --seconds and --trials must be given'],
        [['--nothing'], "Unknown option '--nothing'"],
        [['--seconds', 'x'], "--seconds must be a whole number of at most nine digits, not 'x'"],
        [['--seed', '1.5', '--trials', '1'], "--seed must be a whole number of at most nine digits, not '1.5'"],
    ]) {
        const { status, stderr } = run(...args);
        assert.equal(status, 2);
        assert.ok(stderr.includes(complaint) && stderr.includes('\nusage: '), stderr);
    }
});
