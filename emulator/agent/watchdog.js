'use strict';

// A thread in the game's process that ends it with the emulator, even if the game hangs or the emulator was killed:
// then the pipe between them closes.

const net = require('node:net');
const { killGame } = require('./kill_game.js');

const kill = () => {
    killGame(process.pid);
    process.kill(process.pid, 'SIGKILL');
};

new net.Socket({ fd: require('node:worker_threads').workerData.fd }).on('close', kill).on('error', kill).resume();
