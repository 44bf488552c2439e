'use strict';

// A player's day with a small game. `game` is the module itself, only that its calls and all that comes of them
// are printed; the stand-in device takes the place of a real one, and extension.js that of the game service.

const { spawn } = require('node:child_process');
const { once } = require('node:events');
const path = require('node:path');
const device = require('../device');
const { world } = require('./extension');
const screen = require('./screen');
const { open, pass, perform, scene, watch } = require('./stage');

open();
const game = watch(require('..'));
const context = screen.named('context', device.createAbilityContext());
const morning = device.clock.now();
const news = [];

scene('The game starts', {
    about: 'It names its trace, listens for a change of player, and calls init, which returns a promise.',
    async play() {
        game.syncTraceId('morning-1');
        game.on('playerChanged', function onPlayerChanged({ resultInfo }) {
            news.push(resultInfo);
        });
        await game.init(context);
    },
});

scene('A window that is late', {
    about: 'init with a callback. The module looks for a page to open on once a second, five times at most.',
    async play() {
        const lateContext = screen.named('lateContext', device.createAbilityContext({ window: false }));
        const started = new Promise((resolve) => {
            game.init(lateContext, (error) => resolve(error ? error.code : 'started'));
        });
        await pass(3000);
        screen.line('window', 'shows its first page');
        device.showWindow(lateContext);
        await pass(1000);
        return started;
    },
    comesTo: 'started',
});

scene('Who is playing', {
    about: 'The extension hands over the player; its page stays until it is released.',
    async play() {
        const player = JSON.parse(await game.getLocalPlayer(context));
        return player.playerName;
    },
    comesTo: 'Lin',
});

scene('Is it really Lin', {
    about: 'The game tells what it knows of its own account, and the extension agrees.',
    async play() {
        await game.verifyLocalPlayer(context, { thirdOpenId: 'open-7', isRealName: true, isAdult: true });
    },
});

scene('Two accounts become one', {
    about: 'The game binds its own account to the player.',
    async play() {
        await game.bindPlayer(context, 'open-7', 'team-7');
    },
});

scene('Once is enough', {
    about: 'The same again: the extension refuses, and the game catches a business error.',
    async play() {
        try {
            await game.bindPlayer(context, 'open-7', 'team-7');
        } catch (error) {
            return error.code;
        }
    },
    comesTo: 1002000012,
});

scene('Two accounts again', {
    about: 'The game takes the binding back.',
    async play() {
        await game.unbindPlayer(context, 'open-7', 'team-7');
    },
});

scene('Out of reach', {
    about: 'The network is gone and the extension fails. A callback gets the error as its first argument.',
    async play() {
        world.isOnline = false;
        const outcome = await new Promise((resolve) => {
            game.getLocalPlayer(context, (error, player) => resolve(error ? error.code : player));
        });
        world.isOnline = true;
        return outcome;
    },
    comesTo: 1002000002,
});

scene('Someone else takes over', {
    about: 'Mei signs in on the page. The listener hears of it before the request is answered.',
    async play() {
        world.nextPlayer = { playerId: 'P-2002', playerName: 'Mei' };
        const player = JSON.parse(await game.getLocalPlayer(context));
        return [...news, player.playerName];
    },
    comesTo: ['Mei signed in', 'Mei'],
});

scene('A mistake in the game', {
    about: 'An argument is missing: nothing goes out, and the call itself throws.',
    async play() {
        try {
            await game.bindPlayer(context, 'open-7');
        } catch (error) {
            return error.code;
        }
    },
    comesTo: 401,
});

scene('A timing of the game\'s own', {
    about: 'The game reports that its level took 1500 ms to load, without an error.',
    play() {
        game.reportEventOperation('loadLevel', 1500, 0);
    },
});

scene('Time is up', {
    about: 'In the evening Lin may play for 30 minutes. Then the module shows a page and, 15 s later, ends the '
        + 'process: here, one of its own.',
    async play() {
        const options = { stdio: 'inherit', timeout: 20000 };
        const evening = spawn(process.execPath, [path.join(__dirname, 'playtime.js')], options);
        const [status] = await once(evening, 'close');
        screen.line('process', `ended with status ${status}`);
        return status;
    },
    comesTo: 0,
});

scene('What analytics got', {
    about: 'One event for each call that ended, with the device\'s times in milliseconds since the morning.',
    play() {
        const events = device.analytics.events().map(({ params }) => Object.fromEntries(params));
        screen.table(['api_name', 'begin_time', 'end_time', 'error_code', 'result', 'sdk_name', 'trans_id'],
            events.map((event) => [event.api_name, event.begin_time - morning, event.end_time - morning,
                event.error_code, event.result, event.sdk_name, event.trans_id]));
        return {
            requests: device.modals().length,
            events: events.length,
            errors: events.filter((event) => event.error_code !== 0).length,
            spentMs: events.reduce((sum, event) => sum + event.end_time - event.begin_time, 0),
        };
    },
    comesTo: { requests: 9, events: 12, errors: 3, spentMs: 5500 },
});

if (process.argv.length > 2) {
    process.stderr.write(`The sample takes no arguments, but got: ${process.argv.slice(2).join(' ')}\n`);
    process.exit(2);
}
screen.paragraph('A player\'s day. → is what goes out, ← what comes back, and in brackets the time that took: real '
    + 'time, or the device\'s if its clock was moved on meanwhile.');
perform();
