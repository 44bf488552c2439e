'use strict';

const { REQUESTS } = require('./methods.js');

const ErrorCode = Object.freeze({
    SUCCESS: 0,
    PERMISSION_DENIED: 202,
    PARAMETER: 401,
    SYSTEM_INTERNAL: 1002000001,
    NETWORK: 1002000002,
    NOT_SIGNED_IN: 1002000003,
    NOT_REAL_NAME: 1002000004,
    REGION_NOT_SUPPORTED: 1002000005,
    UNDER_AGE: 1002000006,
    NOT_LISTED_IN_COUNTRY: 1002000007,
    BLOCKLISTED: 1002000008,
    ACCOUNT_UNAVAILABLE: 1002000009,
    NOT_CURRENT_PLAYER: 1002000010,
    AGREEMENT_NOT_AGREED: 1002000011,
    ALREADY_BOUND: 1002000012,
    NOT_BOUND: 1002000013,
    NOT_AVAILABLE: 1002000014,
    PLAYER_INVALID: 1002000015,
    UNION_LOGIN_CANCELED: 1002000016,
    ILLEGAL_IDENTITY: 1002000017,
});

// getLocalPlayer becomes GET_LOCAL_PLAYER.
const constantOf = (method) => method.replace(/[A-Z]/g, (letter) => `_${letter}`).toUpperCase();

const RequestType = Object.freeze(Object.fromEntries(
    Object.entries(REQUESTS).map(([method, { type }]) => [constantOf(method), type])));

const codes = new Set(Object.values(ErrorCode));

// Does not use instanceof: Jest runs each test file in its own realm, whose errors have another prototype.
function isBusinessError(error) {
    return Object.prototype.toString.call(error) === '[object Error]' && codes.has(error.code);
}

module.exports = { ErrorCode, RequestType, isBusinessError };
