// The entry point for `import`: exports the module as the default, and its functions by name.

import gamePlayer from './index.js';

export default gamePlayer;
export const {
    init, getLocalPlayer, savePlayerRole, prePurchase, postPurchase, bindPlayer, unbindPlayer, verifyLocalPlayer,
    unionLogin, launchWelcomeBanner, launchAntiAddiction, quickGameLogin, launchCommonPage, syncTraceId, on, off,
    reportEventOperation, onEventCallback,
} = gamePlayer;
