'use strict';

// The mutation tool: what it changes in a source, and what it leaves alone.

const assert = require('node:assert/strict');
const { test } = require('node:test');
const { mutationsOf } = require('../scripts/mutations.js');
const { run } = require('./support/files');

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

test('each kind of change is found, and some lines are left alone', () => {
    const found = mutationsOf('x.cpp', SOURCE)
        .map(({ line, kind, before, after }) => `${line}, ${kind}: ${before.trim()} -> ${after.trim()}`);
    assert.deepEqual(found, [
        '3, table entry: {1, "one"}, -> ',
        '3, constant: 1 -> 2',
        '3, constant: "one" -> "one~"',
        '7, early return:  -> return;',
        '8, condition: a && !b -> !(a && !b)',
        '8, condition: && -> ||',
        '9, dropped lock: std::lock_guard<std::mutex> guard(mutex_); -> ',
        '10, dropped statement: total_ = a; -> ',
        '11, dropped statement: Add(a, b); -> ',
        '11, swapped arguments: a, b -> b, a',
    ]);
});

test('a wrong argument is reported in one line, with the usage', async () => {
    for (const args of [['--count', '0'], ['--seed', 'x'], ['--nothing'], ['--file', 'nowhere']]) {
        const { code, stderr } = await run('scripts/mutate', args);
        assert.deepEqual([code, /^mutate: [^\n]+\nusage: /.test(stderr)], [2, true], stderr);
    }
});
