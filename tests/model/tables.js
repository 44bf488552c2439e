'use strict';

// The rules of the module as tables, written from what it promises and not from its code.

const { int } = require('./reading');

const UNDER_AGE = 1002000006;
const NOT_AGREED = 1002000011;
const PLAYER_INVALID = 1002000015;
const SYSTEM_ERROR = 1002000001;
const ICONS_TOO_LARGE = 100015;
const QUICK_GAME = 14;

const MESSAGES = {
    0: 'Success',
    202: 'Permission denied, non-system app called system api.',
    401: 'Parameter error.',
    1002000001: 'System internal error.',
    1002000002: 'Network connection error.',
    1002000003: 'The Lumora ID is not signed in or not authorized.',
    1002000004: 'User cancels real name authentication or not real name.',
    1002000005: 'The country or region of the signed-in Lumora ID does not support.',
    1002000006: 'The user is under age or not real-name.',
    1002000007: 'The application to which the product belongs is not listed in the specified country.',
    1002000008: 'The LUMORA ID is in the blocklist.',
    1002000009: 'The game account is unavailable for the game.',
    1002000010: 'The playerId is not current player.',
    1002000011: 'Agreement not agreed.',
    1002000012: 'The thirdOpenId or teamPlayerId has been bound.',
    1002000013: 'The thirdOpenId and teamPlayerId are not bound.',
    1002000014: 'This interface is not available for this game.',
    1002000015: 'The current player information is invalid. Execute the login process again to obtain the player ' +
        'information.',
    1002000016: 'Union login canceled by user.',
    1002000017: 'Illegal application identity.',
};

const BAD_CONTEXTS = ['param invalid', 'param invalid', 'it is not a stage mode', 'it is not a stage mode',
    'get context failed', null];
/** The modules of the game's abilities. A UI extension has none. */
const bytes = (length) => Uint8Array.from({ length }, (_, i) => i);
const MODULES = {
    entry: {
        mediaById: { 1: bytes(3), 4294967295: Buffer.alloc(4, 255), 2: bytes(0) },
        mediaByName: { icon: Buffer.from('icon'), blank: bytes(0), '': bytes(4000) },
        rawFiles: {
            icon: bytes(5), 'a.png': bytes(256), 'app.media.icon': bytes(1), 'app.media.raw': Buffer.from('raw'),
            'a.blank': bytes(2), 'b.': bytes(7)
        },
    },
    bare: {},
    locked: null,
};
const EVENT_TYPES = ['playerChanged', 'gameAddictionPrevented'];
const CALLBACK_NAMES = { result: 'OnResultForModal', receive: 'OnReceive', error: 'OnError', release: 'OnRelease' };

const isInt32 = (value) => value === int(value) && !Object.is(value, -0);
const intParam = (params, key, missing) => (isInt32(params[key]) ? params[key] : missing);
const textParam = (params, key) => (typeof params[key] === 'string' ? params[key] : '');

/** Whether an answer ends the game. Errors and releases never do. */
function isDeadly(kind, code, type) {
    return (kind === 'result' || kind === 'receive') &&
        (code === 10 || (code === NOT_AGREED && type === 1) || (code === UNDER_AGE && type !== QUICK_GAME));
}

const codeOf = (kind, payload) => (kind === 'receive' ? intParam(payload, 'resultCode', SYSTEM_ERROR) : payload);

module.exports = {
    BAD_CONTEXTS, CALLBACK_NAMES, EVENT_TYPES, ICONS_TOO_LARGE, MESSAGES, MODULES, PLAYER_INVALID, QUICK_GAME, SYSTEM_ERROR,
    UNDER_AGE, codeOf, intParam, isDeadly, textParam,
};
