/**
 * Names for the codes of the module's errors and for the types of its requests. Plain JS without a native part: it runs
 * wherever the game runs.
 */

/**
 * Every code that an error of the module can have. The module's own errors have `PARAMETER`, `PERMISSION_DENIED` or
 * `SYSTEM_INTERNAL`. The others are answers of the game service, passed on unchanged.
 */
export const ErrorCode: {
    /** "Success". Only the error that init and savePlayerRole throw for a missing argument has this code. */
    readonly SUCCESS: 0;
    /** "Permission denied, non-system app called system api." */
    readonly PERMISSION_DENIED: 202;
    /**
     * "Parameter error.", for an unsuitable argument or a window that showed no page within five seconds;
     * "Total size of icon resource is too large" if the game service refuses the icons of unionLogin.
     */
    readonly PARAMETER: 401;
    /** "System internal error." An answer with a code that is not listed here also arrives as this one. */
    readonly SYSTEM_INTERNAL: 1002000001;
    /** "Network connection error." */
    readonly NETWORK: 1002000002;
    /** "The Lumora ID is not signed in or not authorized." */
    readonly NOT_SIGNED_IN: 1002000003;
    /** "User cancels real name authentication or not real name." */
    readonly NOT_REAL_NAME: 1002000004;
    /** "The country or region of the signed-in Lumora ID does not support." */
    readonly REGION_NOT_SUPPORTED: 1002000005;
    /** "The user is under age or not real-name." It mostly ends the process instead; quickGameLogin fails with it. */
    readonly UNDER_AGE: 1002000006;
    /** "The application to which the product belongs is not listed in the specified country." */
    readonly NOT_LISTED_IN_COUNTRY: 1002000007;
    /** "The LUMORA ID is in the blocklist." */
    readonly BLOCKLISTED: 1002000008;
    /** "The game account is unavailable for the game." */
    readonly ACCOUNT_UNAVAILABLE: 1002000009;
    /** "The playerId is not current player." */
    readonly NOT_CURRENT_PLAYER: 1002000010;
    /** "Agreement not agreed." As the answer to init, it ends the game process instead. */
    readonly AGREEMENT_NOT_AGREED: 1002000011;
    /** "The thirdOpenId or teamPlayerId has been bound." */
    readonly ALREADY_BOUND: 1002000012;
    /** "The thirdOpenId and teamPlayerId are not bound." */
    readonly NOT_BOUND: 1002000013;
    /** "This interface is not available for this game." */
    readonly NOT_AVAILABLE: 1002000014;
    /**
     * "The current player information is invalid. Execute the login process again to obtain the player
     * information." If it comes with received data, it also notifies the listeners of "playerChanged". It is the only
     * code that makes init and savePlayerRole fail too.
     */
    readonly PLAYER_INVALID: 1002000015;
    /** "Union login canceled by user." */
    readonly UNION_LOGIN_CANCELED: 1002000016;
    /** "Illegal application identity." */
    readonly ILLEGAL_IDENTITY: 1002000017;
};

export type ErrorCode = typeof ErrorCode[keyof typeof ErrorCode];

/** The method that a modal belongs to: the parameter "requestType" of its Want, and of `launchAntiAddiction`. */
export const RequestType: {
    readonly INIT: 1;
    readonly GET_LOCAL_PLAYER: 2;
    readonly SAVE_PLAYER_ROLE: 3;
    readonly PRE_PURCHASE: 4;
    readonly POST_PURCHASE: 5;
    /** Also for the page that is shown when the time to play is over. */
    readonly LAUNCH_ANTI_ADDICTION: 6;
    readonly BIND_PLAYER: 7;
    readonly UNBIND_PLAYER: 8;
    readonly VERIFY_LOCAL_PLAYER: 9;
    readonly UNION_LOGIN: 10;
    readonly LAUNCH_WELCOME_BANNER: 13;
    readonly QUICK_GAME_LOGIN: 14;
    readonly LAUNCH_COMMON_PAGE: 15;
};

export type RequestType = typeof RequestType[keyof typeof RequestType];

/** An error that the module throws, rejects with or passes to a callback: a plain `Error` with a numeric `code`. */
export interface BusinessError extends Error {
    readonly code: ErrorCode;
}

/** Whether `error` is an error of the module, from any realm. */
export function isBusinessError(error: unknown): error is BusinessError;
