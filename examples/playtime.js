'use strict';

// The evening's play, in its own process, which the module ends when the playable time is over.

const device = require('../device');
const { world } = require('./extension');
const { named } = require('./screen');
const { fail, open, pass, watch } = require('./stage');

open();
const game = watch(require('..'));

async function play() {
    const context = named('context', device.createAbilityContext());
    world.playableMinutes = 30;
    game.syncTraceId('evening-1');
    await game.getLocalPlayer(context);
    await pass(30 * 60000 + 15000); // the module checks its clock every 15 s
    if (device.modals().length < 2) {
        fail('the time is up, and no page says so');
    }
    await pass(15000);
    fail('the time is up, and the game still runs');
}

process.exitCode = 1; // the status is 0 only if the module ends the process
play();
