'use strict';

// A small game that calls every method of the module, and a day with it. The first part is the game. It is the same on
// a device, where `context` is that of the game's ability. The second part, from `morning` on, is the day: `device`
// takes the place of a real device, and `service` that of its game service. An arrow shows what a line makes the game
// print.

const device = require('game-player-extension-module/device');
const { createService } = require('game-player-extension-module/service');
const gamePlayer = require('game-player-extension-module');
const { ErrorCode, RequestType, isBusinessError } = require('game-player-extension-module/errors');

const ICON = 'iVBORw0KGgoAAAANSUhEUgAAABgAAAAYAQAAAADIDABVAAAAD0lEQVR42mP4//8/Aw0xAHOjR7n1dzQqAAAAAElFTkSuQmCC';
const png = Buffer.from(ICON, 'base64');
const entry = { mediaById: { 7: png }, mediaByName: { moon: png }, rawFiles: { 'leaf.png': png } };
const context = device.createAbilityContext({ modules: { entry } });

/** The code of the error that a request fails with, or that of success. */
async function codeOf(request) {
    try {
        await request;
        return ErrorCode.SUCCESS;
    } catch (error) {
        if (!isBusinessError(error)) {
            throw error;
        }
        return error.code;
    }
}

/** Shows how a request ended. */
function show(what, code) {
    console.log(`${what}: ${code === ErrorCode.SUCCESS ? 'done' : `failed with ${code}`}`);
}

async function start() {
    gamePlayer.syncTraceId('day-1');
    gamePlayer.on('playerChanged', ({ resultInfo }) => console.log('News:', resultInfo));
    await gamePlayer.init(context);
}

/** Signs the player in. Nothing awaits the banner, because its promise never settles. */
async function signIn() {
    const player = JSON.parse(await gamePlayer.getLocalPlayer(context));
    gamePlayer.launchWelcomeBanner(context, JSON.stringify({ playerName: player.playerName }));
    return player;
}

/** Binds the game's own account to the player, if the game service agrees with what the game knows about it. */
async function bind(thirdOpenId, { teamPlayerId }) {
    await gamePlayer.verifyLocalPlayer(context, { thirdOpenId, isRealName: true, isAdult: true });
    await gamePlayer.bindPlayer(context, thirdOpenId, teamPlayerId);
}

/** Saves the role that the player plays. Calls `onSaved` with a text for the screen. */
function saveRole(roleName, { gamePlayerId }, onSaved) {
    gamePlayer.savePlayerRole(context, { roleId: 'R-3', roleName, gamePlayerId }, (error) => {
        onSaved(error ? error.message : `${roleName} is saved`);
    });
}

/** Sells a product. Reports to analytics how many milliseconds that took and how it ended. */
async function sell(productId) {
    const begun = Date.now();
    const code = await codeOf(gamePlayer.prePurchase(context, { productId, developerPayload: 'level-4' })
        .then((purchaseData) => gamePlayer.postPurchase(context, { purchaseData })));
    gamePlayer.reportEventOperation('sell', Date.now() - begun, code);
    return code;
}

/** Offers accounts, with icons by ID, by media name and as a raw file. The one without an icon is left out. */
function chooseAccount() {
    return gamePlayer.unionLogin(context, {
        showLoginDialog: true,
        loginPanelType: 2,
        thirdAccountInfos: [
            { accountName: '晓阳', accountIcon: { moduleName: 'entry', id: 7 } },
            { accountName: '月光', accountIcon: { moduleName: 'entry', params: ['app.media.moon'] } },
            { accountName: '青叶', accountIcon: { moduleName: 'entry', params: ['leaf.png'] } },
            { accountName: 'Nobody', accountIcon: { moduleName: 'entry', params: ['gone.png'] } },
        ],
    });
}

/** Limits the time to play, in seconds. The module then shows a page for 15 seconds, and a quick game goes on. */
function limitTrial(seconds) {
    return new Promise((resolve) => {
        gamePlayer.on('gameAddictionPrevented', function onPrevented(message) {
            gamePlayer.off('gameAddictionPrevented', onPrevented);
            resolve(message);
        });
        gamePlayer.launchAntiAddiction(context, seconds, 'The trial is over.', RequestType.QUICK_GAME_LOGIN);
    });
}

function showAchievements() {
    gamePlayer.launchCommonPage(context, JSON.stringify({ page: 'achievements' }));
}

/** Passes on that the game's own server no longer knows the player. */
function invalidate({ playerName }) {
    const resultInfo = `${playerName} has to sign in again`;
    gamePlayer.onEventCallback({ resultCode: ErrorCode.PLAYER_INVALID, resultInfo });
}

/** Lin, who is of age, binds an account and buys gems. */
async function morning(service) {
    await start();
    const lin = await signIn();
    console.log('Signed in:', lin.playerName); // -> Signed in: Lin
    show('Binding', await codeOf(bind('open-7', lin))); // -> Binding: done
    show('Binding again', await codeOf(bind('open-7', lin))); // -> Binding again: failed with 1002000012
    await gamePlayer.unbindPlayer(context, 'open-7', lin.teamPlayerId);
    console.log('Bindings left:', service.state.bindings.length); // -> Bindings left: 0
    const text = await new Promise((resolve) => { saveRole('云中剑客', lin, resolve); });
    console.log('Role:', text); // -> Role: 云中剑客 is saved
    show('Gems', await sell('gems-60')); // -> Gems: done
    service.state = { online: false };
    show('Gems without a network', await sell('gems-60')); // -> Gems without a network: failed with 1002000002
    service.state = { online: true };
}

/** Lin chooses an account and tries a quick game. Only a system application may listen for the end of the trial. */
async function noon(service) {
    service.state = { unionAccount: '青叶' };
    console.log('Account:', await chooseAccount()); // -> Account: {"accountName":"青叶"}
    const { thirdAccountInfos } = JSON.parse(device.modals().at(-1).want.parameters.unionLoginParam);
    const withIcon = thirdAccountInfos.filter(({ encodedIcon }) => encodedIcon === ICON);
    console.log('Offered:', ...withIcon.map(({ accountName }) => accountName)); // -> Offered: 晓阳 月光 青叶
    const login = await gamePlayer.quickGameLogin(context, { gameAppId: 'quick-1' });
    console.log('Quick game:', login); // -> Quick game: {"playerId":"p1","gameAppId":"quick-1"}
    device.setSystemApp(true);
    const message = limitTrial(60);
    await device.clock.advance(90000);
    console.log('Trial:', await message); // -> Trial: The user is under age.
    showAchievements();
}

/** Mei, who is under age, has 90 minutes left. Then the module shows a page, and 15 seconds later it ends the game. */
async function evening(service) {
    await service.switchPlayer('p2');
    const mei = await signIn(); // -> News: Mei signed in
    console.log('Signed in:', mei.playerName); // -> Signed in: Mei
    invalidate(mei); // -> News: Mei has to sign in again
    device.onExit(({ reason }) => console.log('The module ends the game:', reason));
    await device.clock.advance(91 * 60000); // -> The module ends the game: timer
}

async function main() {
    device.clock.manual(); // only `advance` moves the time, in milliseconds
    const service = createService();
    await morning(service);
    await noon(service);
    await evening(service);
}

main();
