'use strict';

// The game service's extension, as far as the sample needs one. It answers each modal according to its request type.

const { setImmediate: turn } = require('node:timers/promises');
const device = require('../device');
const screen = require('./screen');

const INIT = 1;
const GET_LOCAL_PLAYER = 2;
const SAVE_PLAYER_ROLE = 3;
const PRE_PURCHASE = 4;
const POST_PURCHASE = 5;
const ANTI_ADDICTION_PAGE = 6;
const BIND_PLAYER = 7;
const UNBIND_PLAYER = 8;
const VERIFY_LOCAL_PLAYER = 9;
const UNION_LOGIN = 10;
const WELCOME_BANNER = 13;
const QUICK_GAME_LOGIN = 14;
const COMMON_PAGE = 15;

const SUCCESS = 0;
const PLAYER_CHANGED = 9;
const NO_SUCH_ORDER = 1002000001;
const NO_NETWORK = 1002000002;
const NOT_REAL_NAME = 1002000004;
const ALREADY_BOUND = 1002000012;
const NOT_BOUND = 1002000013;

/** The state of the world as the service sees it. The scenes change it. */
const world = {
    isOnline: true,
    player: { gamePlayerId: 'G-1001', teamPlayerId: 'T-1001', playerName: 'Lin' },
    nextPlayer: null,   // signs in on the next page of getLocalPlayer
    playableMinutes: 0, // 0: no limit
    roleName: '',       // of the last saved role
};

const openOrders = new Set();
const bindings = new Set();
const bindingOf = ({ thirdOpenId, teamPlayerId }) => `${thirdOpenId} ${teamPlayerId}`;

// A page that stays open after it has handed over the data, until it is released.
function handOver(result) {
    const data = { resultCode: SUCCESS, resultMessage: JSON.stringify(result) };
    if (world.playableMinutes > 0) {
        Object.assign(data, { playableTime: world.playableMinutes, endText: 'Enough for today.' });
    }
    return [['receive', data], ['release', 0]];
}

function showLocalPlayer() {
    if (!world.nextPlayer) {
        return handOver(world.player);
    }
    [world.player, world.nextPlayer] = [world.nextPlayer, null];
    const change = { resultCode: PLAYER_CHANGED, resultInfo: `${world.player.playerName} signed in` };
    return [['receive', change], ...handOver(world.player)];
}

function logInToQuickGame({ quickGameLoginParam }) {
    return handOver({ ...JSON.parse(quickGameLoginParam), ...world.player });
}

function saveRole({ tavikExtra }) {
    world.roleName = JSON.parse(tavikExtra).roleName;
    return [['result', SUCCESS]];
}

function sell({ tavikExtra }) {
    const { productId, developerPayload } = JSON.parse(tavikExtra);
    const order = JSON.stringify({ orderId: 'O-5001', productId, developerPayload });
    openOrders.add(order);
    return [['result', SUCCESS, { resultMessage: order }]];
}

function completePurchase({ tavikExtra }) {
    return [['result', openOrders.delete(JSON.parse(tavikExtra).purchaseData) ? SUCCESS : NO_SUCH_ORDER]];
}

/** The width and height of a PNG image, from its header chunk. */
function sizeOf(png) {
    if (png.toString('latin1', 0, 16) !== '\x89PNG\r\n\x1a\n\0\0\0\rIHDR') {
        throw new Error('the icon is not a PNG image');
    }
    return `${png.readUInt32BE(16)} × ${png.readUInt32BE(20)}`;
}

// The player selects the last account.
function offerAccounts({ unionLoginParam }) {
    const accounts = JSON.parse(unionLoginParam).thirdAccountInfos;
    for (const { accountName, encodedIcon } of accounts) {
        const icon = Buffer.from(encodedIcon, 'base64');
        screen.line('extension', `shows ${accountName} with an icon of ${sizeOf(icon)} pixels, ${icon.length} bytes`);
    }
    return handOver({ accounts: accounts.length, accountName: accounts.at(-1).accountName });
}

function verify({ thirdUserInfo }) {
    return [['result', JSON.parse(thirdUserInfo).isRealName ? SUCCESS : NOT_REAL_NAME]];
}

function bind(parameters) {
    const isBound = bindings.has(bindingOf(parameters));
    bindings.add(bindingOf(parameters));
    return [['result', isBound ? ALREADY_BOUND : SUCCESS]];
}

function unbind(parameters) {
    return [['result', bindings.delete(bindingOf(parameters)) ? SUCCESS : NOT_BOUND]];
}

// By request type: a function that takes the parameters and returns the answers. Each answer is the name of a method of
// the modal, followed by its arguments.
const ANSWERS = {
    [INIT]: () => [['result', SUCCESS]],
    [GET_LOCAL_PLAYER]: showLocalPlayer,
    [SAVE_PLAYER_ROLE]: saveRole,
    [PRE_PURCHASE]: sell,
    [POST_PURCHASE]: completePurchase,
    [ANTI_ADDICTION_PAGE]: () => [],
    [BIND_PLAYER]: bind,
    [UNBIND_PLAYER]: unbind,
    [VERIFY_LOCAL_PLAYER]: verify,
    [UNION_LOGIN]: offerAccounts,
    [WELCOME_BANNER]: () => [['release', 0]],
    [QUICK_GAME_LOGIN]: logInToQuickGame,
    [COMMON_PAGE]: () => [['release', 0]],
};

function answersTo({ requestType, ...parameters }) {
    if (!world.isOnline) {
        return [['error', NO_NETWORK, 'offline', 'The service cannot be reached.']];
    }
    if (!ANSWERS[requestType]) {
        throw new Error(`the extension has no answers to requests of type ${requestType}`);
    }
    return ANSWERS[requestType](parameters);
}

/** Gives one answer, such as 'release', to a request. */
async function answer(modal, kind, ...args) {
    screen.line('extension', `← ${screen.describeCall(kind, args)}`);
    await modal[kind](...args);
}

async function serve(modal) {
    screen.want(modal.want);
    for (const [kind, ...args] of answersTo(modal.want.parameters)) {
        await answer(modal, kind, ...args);
    }
}

let begun = 0;
let work = Promise.resolve();

/** Starts serving the modals of this environment, one at a time. */
function open() {
    device.onModal((modal) => {
        begun += 1;
        work = work.then(() => serve(modal));
    });
}

/** Resolves when every modal so far has received all its answers. */
async function rest() {
    while (begun < device.modals().length) {
        await turn();
    }
    await work;
}

module.exports = { answer, open, rest, world };
