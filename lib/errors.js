'use strict';

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
    ILLEGAL_IDENTITY: 1002000017
});

const RequestType = Object.freeze({
    INIT: 1,
    GET_LOCAL_PLAYER: 2,
    SAVE_PLAYER_ROLE: 3,
    PRE_PURCHASE: 4,
    POST_PURCHASE: 5,
    LAUNCH_ANTI_ADDICTION: 6,
    BIND_PLAYER: 7,
    UNBIND_PLAYER: 8,
    VERIFY_LOCAL_PLAYER: 9,
    UNION_LOGIN: 10,
    LAUNCH_WELCOME_BANNER: 13,
    QUICK_GAME_LOGIN: 14,
    LAUNCH_COMMON_PAGE: 15
});

const codes = new Set(Object.values(ErrorCode));

// Does not use instanceof: Jest runs each test file in its own realm, whose errors have another prototype.
function isBusinessError(error) {
    return Object.prototype.toString.call(error) === '[object Error]' && codes.has(error.code);
}

module.exports = { ErrorCode, RequestType, isBusinessError };
