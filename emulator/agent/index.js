'use strict';

// Node loads this before the game, in its process. It puts the game on a stand-in device with a game service, reports
// to the emulator what happens, and handles its commands. All that the game sees of it is a global function
// `getContext` as on a device, which returns the context of its window.

const { Worker, isMainThread } = require('node:worker_threads');
const names = require('./names.js');

const CHANNEL_FD = 3;
const WATCHDOG_FD = 4;

names.install();
if (isMainThread && process.env.GAME_EMULATOR) {
    delete process.env.GAME_EMULATOR;  // the game's own child processes are not the game
    new Worker(`${__dirname}/watchdog.js`, { workerData: { fd: WATCHDOG_FD }, execArgv: [] }).unref();
    require('./guest.js').enter(CHANNEL_FD);
}
