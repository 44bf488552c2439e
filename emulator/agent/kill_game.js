'use strict';

const { spawnSync } = require('node:child_process');

/** Ends the process of a game at once, and those that it has started and that are still its own. */
function killGame(pid) {
    const isWindows = process.platform === 'win32';
    if (isWindows) {
        spawnSync('taskkill', ['/pid', pid, '/t', '/f'], { stdio: 'ignore', windowsHide: true });
    }
    try {
        process.kill(isWindows ? pid : -pid, 'SIGKILL');  // elsewhere, the game leads its process group
    } catch {
        // It has ended.
    }
}

module.exports = { killGame };
