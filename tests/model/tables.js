'use strict';

// The rules of the module as tables, written from what it promises and not from its code.

const { ErrorCode, RequestType } = require('../../lib/errors');
const { read } = require('../support/files');
const { int } = require('./reading');

const { AGREEMENT_NOT_AGREED, PLAYER_INVALID, SYSTEM_INTERNAL, UNDER_AGE } = ErrorCode;
const { INIT, QUICK_GAME_LOGIN } = RequestType;

/** The text of each error code, as in the table of the documents. */
const MESSAGES = Object.fromEntries(
    Array.from(read('docs/api.md').matchAll(/^\| (\d+) \| `\w+` \| (.*) \|$/gm), ([, ...row]) => row));

const BAD_CONTEXTS = ['param invalid', 'param invalid', 'it is not a stage mode', 'it is not a stage mode',
    'get context failed', null];
const bytes = (length) => Uint8Array.from({ length }, (_, i) => i);
/** The modules of the game's abilities. A UI extension has none. */
const MODULES = {
    entry: {
        mediaById: { 1: bytes(3), 4294967295: Buffer.alloc(4, 255), 2: bytes(0) },
        mediaByName: { icon: Buffer.from('icon'), blank: bytes(0), '': bytes(4000) },
        rawFiles: {
            icon: bytes(5), 'a.png': bytes(256), 'app.media.icon': bytes(1), 'app.media.raw': Buffer.from('raw'),
            'a.blank': bytes(2), 'b.': bytes(7),
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
        (code === 10 || (code === AGREEMENT_NOT_AGREED && type === INIT) ||
            (code === UNDER_AGE && type !== QUICK_GAME_LOGIN));
}

const codeOf = (kind, payload) => (kind === 'receive' ? intParam(payload, 'resultCode', SYSTEM_INTERNAL) : payload);

module.exports = {
    BAD_CONTEXTS, CALLBACK_NAMES, EVENT_TYPES, MESSAGES, MODULES, PLAYER_INVALID, QUICK_GAME_LOGIN, SYSTEM_INTERNAL,
    UNDER_AGE, codeOf, intParam, isDeadly, textParam,
};
