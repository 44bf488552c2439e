/**
 * The codes of the module's errors and the types of its requests, for code that wants names instead of numbers. Plain JS without a native
 * part: it runs wherever the game runs.
 */

/**
 * Every code that an error of the module can carry. What the module finds itself is `PARAMETER`,
 * `PERMISSION_DENIED` or `SYSTEM_INTERNAL`; the others are answers of the game service, passed on as they are.
 */
export const ErrorCode: {
    /** "Success". Carried only by what init and savePlayerRole throw when an argument is missing. */
    readonly SUCCESS: 0;
    /** "Permission denied, non-system app called system api." */
    readonly PERMISSION_DENIED: 202;
    /**
     * "Parameter error.", for an argument that will not do or a window that showed no page within five seconds;
     * "Total size of icon resource is too large" if the game service refuses the icons of unionLogin.
     */
    readonly PARAMETER: 401;
    /** "System internal error." Also what a code that is not listed here arrives as. */
    readonly SYSTEM_INTERNAL: 1002000001;
    /** "Network connection error." */
    readonly NETWORK: 1002000002;
    /** "The Lumora ID is not signed in or not authorized." */
    readonly NOT_SIGNED_IN: 1002000003;
    /** "User cancels real name authentication or not real name." */
    readonly NOT_REAL_NAME: 1002000004;
    /** "The country or region of the signed-in Lumora ID does not support." */
    readonly REGION_NOT_SUPPORTED: 1002000005;
    /** "The user is under age or not real-name." Mostly it ends the game process instead; quickGameLogin gets it. */
    readonly UNDER_AGE: 1002000006;
    /** "The application to which the product belongs is not listed in the specified country." */
    readonly NOT_LISTED_IN_COUNTRY: 1002000007;
    /** "The LUMORA ID is in the blocklist." */
    readonly BLOCKLISTED: 1002000008;
    /** "The game account is unavailable for the game." */
    readonly ACCOUNT_UNAVAILABLE: 1002000009;
    /** "The playerId is not current player." */
    readonly NOT_CURRENT_PLAYER: 1002000010;
    /** "Agreement not agreed." As the answer to init it ends the game process instead. */
    readonly AGREEMENT_NOT_AGREED: 1002000011;
    /** "The thirdOpenId or teamPlayerId has been bound." */
    readonly ALREADY_BOUND: 1002000012;
    /** "The thirdOpenId and teamPlayerId are not bound." */
    readonly NOT_BOUND: 1002000013;
    /** "This interface is not available for this game." */
    readonly NOT_AVAILABLE: 1002000014;
    /**
     * "The current player information is invalid. Execute the login process again to obtain the player
     * information." Sent along with data, it is told to the listeners of "playerChanged" too, and is the one code
     * that also makes init and savePlayerRole fail.
     */
    readonly PLAYER_INVALID: 1002000015;
    /** "Union login canceled by user." */
    readonly UNION_LOGIN_CANCELED: 1002000016;
    /** "Illegal application identity." */
    readonly ILLEGAL_IDENTITY: 1002000017;
};

export type ErrorCode = typeof ErrorCode[keyof typeof ErrorCode];

/** Which method a modal belongs to: the parameter "requestType" of its Want, and of `launchAntiAddiction`. */
export const RequestType: {
    readonly INIT: 1;
    readonly GET_LOCAL_PLAYER: 2;
    readonly SAVE_PLAYER_ROLE: 3;
    readonly PRE_PURCHASE: 4;
    readonly POST_PURCHASE: 5;
    /** Also of the page that the end of the time to play opens. */
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

/** What the module throws, rejects with and passes to callbacks: a plain `Error` with a number as its `code`. */
export interface BusinessError extends Error {
    readonly code: ErrorCode;
}

/** Whether what was caught is an error of the module, of whichever realm. */
export function isBusinessError(error: unknown): error is BusinessError;
