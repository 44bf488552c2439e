'use strict';

// The evening's session, in a process of its own: the module ends it when the playable time is over.

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
    await pass(30 * 60000 + 15000); // the module looks at its clock every 15 s
    if (device.modals().length < 2) {
        fail('the time is up, and no page says so');
    }
    await pass(15000);
    fail('the time is up, and the game still runs');
}

process.exitCode = 1; // only the module's end of the process has status 0
play();
