'use strict';

// A player's day with a small game. `game` is the module, wrapped so that its calls and their results are printed. The
// stand-in device takes the place of a real one, and extension.js that of the game service.

const { spawn } = require('node:child_process');
const { once } = require('node:events');
const fs = require('node:fs');
const path = require('node:path');
const device = require('../device');
const { answer, rest, world } = require('./extension');
const screen = require('./screen');
const { open, pass, perform, scene, watch } = require('./stage');

const QUICK_GAME_LOGIN = 14;
const SECOND = 1000;
const MINUTE = 60 * SECOND;
const SUN = 0x01000001;
const readIcon = (name) => fs.readFileSync(path.join(__dirname, 'icons', `${name}.png`));

open();
const game = watch(require('..'));
const context = screen.named('context', device.createAbilityContext({
    modules: {
        entry: {
            mediaById: { [SUN]: readIcon('sun') },
            mediaByName: { moon: readIcon('moon') },
            rawFiles: { 'leaf.png': readIcon('leaf') },
        },
    },
}));
const morning = device.clock.now();
let player = null;

const news = []; // what the listeners heard
const onPlayerChanged = ({ resultInfo }) => news.push(resultInfo);
const onPrevented = (reason) => news.push(reason);

/** The code of the error that `call` throws or rejects with. */
async function codeOf(call) {
    try {
        await call();
    } catch (error) {
        return error.code;
    }
}

/** Lets `ms` pass. The module then shows for 15 s that the time is up. Returns what the game's listeners heard. */
async function runOut(ms) {
    await pass(ms);
    const page = device.modals().at(-1);
    await pass(15 * SECOND);
    screen.line('window', page.isOpen ? 'still shows the page' : 'shows the game again');
    await answer(page, 'release', 0);
    return news.splice(0);
}

scene('The game starts', {
    about: 'It names its trace, listens for a change of player, and calls init, which returns a promise.',
    async play() {
        game.syncTraceId('morning-1');
        game.on('playerChanged', onPlayerChanged);
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
        await pass(3 * SECOND);
        screen.line('window', 'shows its first page');
        device.showWindow(lateContext);
        await pass(SECOND);
        return started;
    },
    comesTo: 'started',
});

scene('Not for every game', {
    about: 'Only a system application may listen for the end of the playable time.',
    async play() {
        const code = await codeOf(() => game.on('gameAddictionPrevented', onPrevented));
        screen.line('device', 'makes the game a system application');
        device.setSystemApp(true);
        game.on('gameAddictionPrevented', onPrevented);
        return code;
    },
    comesTo: 202,
});

scene('Ten minutes of a quick game', {
    about: 'Its login limits the time. At the end the module shows a page for 15 s and tells the listener; the game '
        + 'goes on.',
    async play() {
        world.playableMinutes = 10;
        await game.quickGameLogin(context, { gameAppId: 'com.example.quick' });
        world.playableMinutes = 0;
        return runOut(10 * MINUTE + 15 * SECOND); // the module checks its clock every 15 s
    },
    comesTo: ['The user is under age.'],
});

scene('Who is playing', {
    about: 'The extension hands over the player; its page stays until it is released.',
    async play() {
        player = JSON.parse(await game.getLocalPlayer(context));
        return player.playerName;
    },
    comesTo: 'Lin',
});

scene('Is it really Lin', {
    about: 'The game tells what it knows of its own account, and the extension agrees.',
    play: () => game.verifyLocalPlayer(context, { thirdOpenId: 'open-7', isRealName: true, isAdult: true }),
});

scene('Two accounts become one', {
    about: 'The game binds its own account to the player.',
    play: () => game.bindPlayer(context, 'open-7', player.teamPlayerId),
});

scene('Once is enough', {
    about: 'The same again: the extension refuses, and the game catches a business error.',
    play: () => codeOf(() => game.bindPlayer(context, 'open-7', player.teamPlayerId)),
    comesTo: 1002000012,
});

scene('Two accounts again', {
    about: 'The game takes the binding back.',
    play: () => game.unbindPlayer(context, 'open-7', player.teamPlayerId),
});

scene('A hero with a name', {
    about: 'The game saves the role that Lin plays; its texts reach the extension as they are.',
    async play() {
        const { gamePlayerId, teamPlayerId } = player;
        await game.savePlayerRole(context, {
            roleId: 'R-3', roleName: '云中剑客', serverId: 'S-1', serverName: '华东一区·春暖花开', gamePlayerId, teamPlayerId,
        });
        return world.roleName;
    },
    comesTo: '云中剑客',
});

scene('A purchase', {
    about: 'The extension sells, and the game has the purchase completed once it has handed out the gems.',
    async play() {
        const purchaseData = await game.prePurchase(context, { productId: 'gems-60', developerPayload: 'level-4' });
        await game.postPurchase(context, { purchaseData });
        return JSON.parse(purchaseData).productId;
    },
    comesTo: 'gems-60',
});

scene('One of many accounts', {
    about: 'Icons by identifier, by media name and as a raw file. An account without its icon is left out.',
    async play() {
        return JSON.parse(await game.unionLogin(context, {
            showLoginDialog: true,
            loginPanelType: 2,
            thirdAccountInfos: [
                { accountName: '晓阳', accountIcon: { moduleName: 'entry', id: SUN } },
                { accountName: '月光', accountIcon: { moduleName: 'entry', params: ['app.media.moon'] } },
                { accountName: 'Nobody', accountIcon: { moduleName: 'entry', params: ['app.media.gone'] } },
                { accountName: '青叶', accountIcon: { moduleName: 'entry', params: ['leaf.png'] } },
            ],
        }));
    },
    comesTo: { accounts: 3, accountName: '青叶' },
});

scene('A welcome, and a page', {
    about: 'These launches await no answer: the player closes each page, and their promises never settle.',
    async play() {
        const text = '欢迎回来，今天也请和伙伴们一起守护云中城！';
        game.launchWelcomeBanner(context, JSON.stringify({ playerName: player.playerName, text }));
        await rest();
        game.launchCommonPage(context, JSON.stringify({ page: 'achievements' }));
    },
    pending: ['launchWelcomeBanner', 'launchCommonPage'],
});

scene('Out of reach', {
    about: 'The network is gone and the extension fails. A callback gets the error as its first argument.',
    async play() {
        world.isOnline = false;
        const outcome = await new Promise((resolve) => {
            game.getLocalPlayer(context, (error, data) => resolve(error ? error.code : data));
        });
        world.isOnline = true;
        return outcome;
    },
    comesTo: 1002000002,
});

scene('Someone else takes over', {
    about: 'Mei signs in on the page. The listener hears of it before the request is answered.',
    async play() {
        world.nextPlayer = { gamePlayerId: 'G-2002', teamPlayerId: 'T-2002', playerName: 'Mei' };
        player = JSON.parse(await game.getLocalPlayer(context));
        return [...news.splice(0), player.playerName];
    },
    comesTo: ['Mei signed in', 'Mei'],
});

scene('The old listener retires', {
    about: 'A server finds the player invalid. The game passes that on, and who still listens hears it.',
    async play() {
        game.off('playerChanged', onPlayerChanged);
        const heard = new Promise((resolve) => {
            game.on('playerChanged', function onPlayerInvalid({ resultInfo }) {
                resolve(resultInfo);
            });
        });
        game.onEventCallback({ resultCode: 1002000015, resultInfo: 'Mei has to sign in again' });
        return [...news, await heard];
    },
    comesTo: ['Mei has to sign in again'],
});

scene('A mistake in the game', {
    about: 'An argument is missing: nothing goes out, and the call itself throws.',
    play: () => codeOf(() => game.bindPlayer(context, 'open-7')),
    comesTo: 401,
});

scene('A timing of the game\'s own', {
    about: 'The game reports that its level took 1500 ms to load, without an error.',
    play: () => game.reportEventOperation('loadLevel', 1500, 0),
});

scene('A limit of the game\'s own', {
    about: 'The game allows a minute itself; with the request type of a quick game it goes on afterwards.',
    play() {
        game.launchAntiAddiction(context, 60, 'The trial is over.', QUICK_GAME_LOGIN);
        return runOut(MINUTE + 15 * SECOND);
    },
    comesTo: ['The user is under age.'],
    pending: ['launchAntiAddiction'],
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
    about: 'One event for each request that ended, each on and off, and each report, with the device\'s times in '
        + 'milliseconds since the morning.',
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
    comesTo: { requests: 18, events: 21, errors: 4, spentMs: 5500 },
});

if (process.argv.length > 2) {
    process.stderr.write(`The sample takes no arguments, but got: ${process.argv.slice(2).join(' ')}\n`);
    process.exit(2);
}
screen.paragraph('A player\'s day. → is what goes out, ← what comes back, and in brackets the time that took: real '
    + 'time, or the device\'s if its clock was moved on meanwhile.');
perform();
