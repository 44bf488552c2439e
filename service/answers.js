'use strict';

// What the service answers on its own. An answer is plain JSON, as in a rule: { result: 0 }.

const { ErrorCode } = require('../lib/errors.js');
const { REQUESTS } = require('../lib/methods.js');
const { parse } = require('./rules.js');

const PLAYER_CHANGED = 9;

const result = (code, parameters) => [{ result: code, ...(parameters && { parameters }) }];
const hasNoTime = ({ isAdult, playableMinutes }) => !isAdult && playableMinutes === 0;

/** Hands over data and the time that is left to play. The page closes itself. */
function handOver(player, data) {
    const limited = player && !player.isAdult && player.playableMinutes > 0;
    const time = limited ? { playableTime: player.playableMinutes, endText: player.endText } : {};
    const text = data ? { resultMessage: JSON.stringify(data) } : {};
    return [{ receive: { resultCode: ErrorCode.SUCCESS, ...text, ...time } }, { release: 0 }];
}

/** Reports to the game that another player has signed in. */
function announce(player) {
    const resultInfo = player ? `${player.playerName} signed in` : 'nobody is signed in';
    return { receive: { resultCode: PLAYER_CHANGED, resultInfo } };
}

/** Why the player who is signed in cannot play; undefined if there is no reason. */
function refusalOf(player) {
    if (!player) {
        return ErrorCode.NOT_SIGNED_IN;
    }
    if (!player.isRealName) {
        return ErrorCode.NOT_REAL_NAME;
    }
    return hasNoTime(player) ? ErrorCode.UNDER_AGE : undefined;
}

const publicPartOf = ({ playerId, gamePlayerId, teamPlayerId, playerName }) =>
    ({ playerId, gamePlayerId, teamPlayerId, playerName });

function initialise({ player }) {
    return result(player && !player.hasAgreed ? ErrorCode.AGREEMENT_NOT_AGREED : ErrorCode.SUCCESS);
}

function logIn({ player, state }) {
    const change = state.announcesPlayer ? [announce(player)] : [];
    state.announcesPlayer = false;
    const refusal = refusalOf(player);
    return [...change, ...(refusal ? result(refusal) : handOver(player, publicPartOf(player)))];
}

function verify({ player, fields: { thirdUserInfo } }) {
    const refusal = refusalOf(player) ?? (thirdUserInfo.isRealName === false ? ErrorCode.NOT_REAL_NAME : undefined);
    return refusal ? result(refusal) : handOver(player);
}

function saveRole({ player, state, fields: { tavikExtra: role } }) {
    if (!player || (role.gamePlayerId && role.gamePlayerId !== player.gamePlayerId)) {
        return result(player ? ErrorCode.NOT_CURRENT_PLAYER : ErrorCode.NOT_SIGNED_IN);
    }
    state.roles = [...state.roles.filter(({ roleId }) => roleId !== role.roleId), role];
    return result(ErrorCode.SUCCESS);
}

// The error table has no code for a purchase that the player cancels: any other failure is the system's.
function sell({ player, state, fields: { tavikExtra: { productId, developerPayload } } }) {
    if (!player) {
        return result(ErrorCode.NOT_SIGNED_IN);
    }
    const product = state.products.find((one) => one.productId === productId);
    if (state.products.length > 0 && !product) {
        return result(ErrorCode.NOT_LISTED_IN_COUNTRY);
    }
    const status = product?.outcome ?? 'paid';
    if (status === 'cancelled') {
        return result(ErrorCode.SYSTEM_INTERNAL);
    }
    const purchase = { purchase: `b${state.purchases.length + 1}`, productId, developerPayload, status };
    state.purchases.push(purchase);
    return result(ErrorCode.SUCCESS, { resultMessage: JSON.stringify(purchase) });
}

// A pending purchase is completed once its status is 'paid'.
function completePurchase({ state, fields: { tavikExtra: { purchaseData } } }) {
    const number = parse(purchaseData)?.purchase;
    const purchase = state.purchases.find((one) => one.purchase === number && one.status === 'paid');
    if (purchase) {
        purchase.status = 'completed';
    }
    return result(purchase ? ErrorCode.SUCCESS : ErrorCode.SYSTEM_INTERNAL);
}

function bind({ player, state, fields: { thirdOpenId, teamPlayerId } }) {
    if (teamPlayerId !== player?.teamPlayerId) {
        return result(player ? ErrorCode.NOT_CURRENT_PLAYER : ErrorCode.NOT_SIGNED_IN);
    }
    if (state.bindings.some((one) => one.thirdOpenId === thirdOpenId || one.teamPlayerId === teamPlayerId)) {
        return result(ErrorCode.ALREADY_BOUND);
    }
    state.bindings.push({ thirdOpenId, teamPlayerId });
    return result(ErrorCode.SUCCESS);
}

function unbind({ state, fields: { thirdOpenId, teamPlayerId } }) {
    const isBound = (one) => one.thirdOpenId === thirdOpenId && one.teamPlayerId === teamPlayerId;
    const found = state.bindings.some(isBound);
    state.bindings = state.bindings.filter((one) => !isBound(one));
    return result(found ? ErrorCode.SUCCESS : ErrorCode.NOT_BOUND);
}

// Without a chosen account, the player takes the first one, or signs in with the service's own.
function logInToUnion({ player, state, fields: { unionLoginParam } }) {
    const names = (unionLoginParam.thirdAccountInfos ?? []).map(({ accountName }) => accountName);
    const wanted = state.unionAccount || names[0] || player?.playerName;
    const isOffered = names.includes(wanted) || wanted === player?.playerName;
    return wanted && isOffered ? handOver(null, { accountName: wanted }) : result(ErrorCode.UNION_LOGIN_CANCELED);
}

function logInToQuickGame({ player, state, fields: { quickGameLoginParam: { gameAppId } } }) {
    if (state.quickGames.length > 0 && !state.quickGames.includes(gameAppId)) {
        return result(ErrorCode.NOT_AVAILABLE);
    }
    const refusal = refusalOf(player);
    return refusal ? result(refusal) : handOver(player, { playerId: player.playerId, gameAppId });
}

/** By method, for those that do more than succeed. */
const OWN = {
    init: initialise,
    getLocalPlayer: logIn,
    savePlayerRole: saveRole,
    prePurchase: sell,
    postPurchase: completePurchase,
    bindPlayer: bind,
    unbindPlayer: unbind,
    verifyLocalPlayer: verify,
    unionLogin: logInToUnion,
    quickGameLogin: logInToQuickGame,
};

const ENCODED = ['tavikExtra', 'thirdUserInfo', 'unionLoginParam', 'quickGameLoginParam'];

/** The parameters of a Want, with those that are JSON decoded. */
function fieldsOf(parameters) {
    return Object.fromEntries(Object.entries(parameters)
        .map(([key, value]) => [key, ENCODED.includes(key) ? JSON.parse(value) : value]));
}

/** The service's own answers to a request. They may change the state. A page just stays open. */
function ownAnswers({ method, parameters }, state) {
    if (REQUESTS[method].isPage) {
        return [];
    }
    if (!state.online) {
        return [{ error: ErrorCode.NETWORK, name: 'offline', message: 'The service cannot be reached.' }];
    }
    const player = state.players.find(({ playerId }) => playerId === state.currentPlayer);
    const answer = OWN[method] ?? (() => result(ErrorCode.SUCCESS));
    return answer({ player, state, fields: fieldsOf(parameters) });
}

module.exports = { announce, ownAnswers };
