'use strict';

// The game service's extension, as far as the sample needs one: it answers every modal by the type of its request.

const device = require('../device');
const screen = require('./screen');

const INIT = 1;
const GET_LOCAL_PLAYER = 2;
const ANTI_ADDICTION_PAGE = 6;
const BIND_PLAYER = 7;
const UNBIND_PLAYER = 8;
const VERIFY_LOCAL_PLAYER = 9;

const SUCCESS = 0;
const PLAYER_CHANGED = 9;
const NO_NETWORK = 1002000002;
const NOT_REAL_NAME = 1002000004;
const ALREADY_BOUND = 1002000012;
const NOT_BOUND = 1002000013;

/** What the service knows of the world; the scenes change it. */
const world = {
    isOnline: true,
    player: { playerId: 'P-1001', playerName: 'Lin' },
    nextPlayer: null,   // who signs in at the next page of the local player
    playableMinutes: 0, // none: no limit
};

const bindings = new Set();
const bindingOf = ({ thirdOpenId, teamPlayerId }) => `${thirdOpenId} ${teamPlayerId}`;

// The page stays up after its data, until it is released.
function showLocalPlayer() {
    const answers = [];
    if (world.nextPlayer) {
        [world.player, world.nextPlayer] = [world.nextPlayer, null];
        answers.push(['receive', { resultCode: PLAYER_CHANGED, resultInfo: `${world.player.playerName} signed in` }]);
    }
    const data = { resultCode: SUCCESS, resultMessage: JSON.stringify(world.player) };
    if (world.playableMinutes > 0) {
        Object.assign(data, { playableTime: world.playableMinutes, endText: 'Enough for today.' });
    }
    return [...answers, ['receive', data], ['release', 0]];
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

// By request type: the answers to a request with these parameters, each a method of the modal with its arguments.
const ANSWERS = {
    [INIT]: () => [['result', SUCCESS]],
    [GET_LOCAL_PLAYER]: showLocalPlayer,
    [ANTI_ADDICTION_PAGE]: () => [],
    [BIND_PLAYER]: bind,
    [UNBIND_PLAYER]: unbind,
    [VERIFY_LOCAL_PLAYER]: verify,
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

async function serve(modal) {
    screen.want(modal.want);
    for (const [kind, ...args] of answersTo(modal.want.parameters)) {
        screen.line('extension', `← ${screen.describeCall(kind, args)}`);
        await modal[kind](...args);
    }
}

let work = Promise.resolve();

/** Begins to serve the modals of this environment, one after the other. */
function open() {
    device.onModal((modal) => {
        work = work.then(() => serve(modal));
    });
}

/** Resolves when every modal so far has been given all its answers. */
const rest = () => work;

module.exports = { open, rest, world };
