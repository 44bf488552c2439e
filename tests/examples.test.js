'use strict';

const assert = require('node:assert/strict');
const { execFile } = require('node:child_process');
const path = require('node:path');
const { test } = require('node:test');
const { promisify } = require('node:util');

const GAME = path.join(__dirname, '..', 'examples', 'game.js');
const OPTIONS = { timeout: 60000, killSignal: 'SIGKILL' };
const SCENES = [
    'The game starts', 'A window that is late', 'Who is playing', 'Is it really Lin', 'Two accounts become one',
    'Once is enough', 'Two accounts again', 'Out of reach', 'Someone else takes over', 'A mistake in the game',
    'A timing of the game\'s own', 'Time is up', 'What analytics got',
];
const METHODS = [
    'bindPlayer', 'getLocalPlayer', 'init', 'on', 'reportEventOperation', 'syncTraceId', 'unbindPlayer',
    'verifyLocalPlayer',
];

test('the sample game plays all its scenes, calls its methods and ends with status 0', async () => {
    const { stdout } = await promisify(execFile)(process.execPath, [GAME], OPTIONS);
    const found = (pattern) => Array.from(stdout.matchAll(pattern), ([, text]) => text);
    assert.deepEqual(found(/^ ?\d+ {2}(\S.*)$/gm), SCENES);
    assert.deepEqual([...new Set(found(/^ +game +→ (\w+)\(/gm))].sort(), METHODS);
    assert.equal(found(/ (transId_\d+)$/gm).length, 12);
});
