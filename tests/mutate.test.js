'use strict';

// The mutation tool: what it changes in a source, and what it leaves alone.

const assert = require('node:assert/strict');
const { spawnSync } = require('node:child_process');
const path = require('node:path');
const { test } = require('node:test');
const { mutationsOf } = require('../scripts/mutations.js');

const ROOT = path.dirname(__dirname);
const SOURCE = `#include <x.h>
constexpr Row ROWS[] = {
    {1, "one"},
};
// if (a == b) Count(5);
void Count(int a, int b) {
    GAME_LOGI("begin %{public}d", 7);
    if (a && !b) return;
    std::lock_guard<std::mutex> guard(mutex_);
    total_ = a;
    Add(a, b);
}
`;

test('each kind of change is found, and comments, log lines and preprocessor lines are left alone', () => {
    const found = mutationsOf('x.cpp', SOURCE).map(({ line, kind, before, after }) => [line, kind, before.trim(), after]);
    assert.deepEqual(found, [
        [3, 'table entry', '{1, "one"},', ''], [3, 'constant', '1', '2'], [3, 'constant', '"one"', '"one~"'],
        [7, 'early return', '', 'return;\n'],
        [8, 'condition', 'a && !b', '!(a && !b)'], [8, 'condition', '&&', ' || '],
        [9, 'dropped lock', 'std::lock_guard<std::mutex> guard(mutex_);', ''],
        [10, 'dropped statement', 'total_ = a;', ''], [11, 'dropped statement', 'Add(a, b);', ''],
        [11, 'swapped arguments', 'a, b', 'b, a'],
    ]);
});

test('a wrong argument is reported in one line, with the usage', () => {
    for (const args of [['--count', '0'], ['--seed', 'x'], ['--nothing'], ['--file', 'nowhere']]) {
        const { status, stderr } = spawnSync(path.join(ROOT, 'scripts', 'mutate'), args, { encoding: 'utf8' });
        assert.deepEqual([status, /^mutate: [^\n]+\nusage: /.test(stderr)], [2, true], stderr);
    }
});
