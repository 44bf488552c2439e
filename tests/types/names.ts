// Every name that the types declare, so that a test can hold them against what is there at run time. An object
// that lacks one, or has another one, does not compile.

import gamePlayer from 'game-player-extension-module';
import * as device from 'game-player-extension-module/device';
import { ErrorCode } from 'game-player-extension-module/errors';

type NamesOf<T> = { readonly [K in keyof T]: K };

export const methods: NamesOf<typeof gamePlayer> = {
    init: 'init',
    getLocalPlayer: 'getLocalPlayer',
    savePlayerRole: 'savePlayerRole',
    prePurchase: 'prePurchase',
    postPurchase: 'postPurchase',
    bindPlayer: 'bindPlayer',
    unbindPlayer: 'unbindPlayer',
    verifyLocalPlayer: 'verifyLocalPlayer',
    unionLogin: 'unionLogin',
    launchWelcomeBanner: 'launchWelcomeBanner',
    launchAntiAddiction: 'launchAntiAddiction',
    quickGameLogin: 'quickGameLogin',
    launchCommonPage: 'launchCommonPage',
    syncTraceId: 'syncTraceId',
    on: 'on',
    off: 'off',
    reportEventOperation: 'reportEventOperation',
    onEventCallback: 'onEventCallback',
};

export const deviceNames: NamesOf<typeof device> = {
    createAbilityContext: 'createAbilityContext',
    createUIExtensionContext: 'createUIExtensionContext',
    createStageContext: 'createStageContext',
    showWindow: 'showWindow',
    hideWindow: 'hideWindow',
    modals: 'modals',
    nextModal: 'nextModal',
    onModal: 'onModal',
    onExit: 'onExit',
    answerOn: 'answerOn',
    clock: 'clock',
    setSystemApp: 'setSystemApp',
    logs: 'logs',
    analytics: 'analytics',
    failNext: 'failNext',
    faults: 'faults',
    reset: 'reset',
};

export const clockNames: NamesOf<typeof device.clock> = {
    real: 'real', manual: 'manual', now: 'now', advance: 'advance', onAdvance: 'onAdvance', sleepers: 'sleepers',
};

export const codes: typeof ErrorCode = {
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
};
