// For `import`: the same functions as `require` gives, under their names as well.

import gamePlayer from './index.js';

export default gamePlayer;
export const {
    init, getLocalPlayer, savePlayerRole, prePurchase, postPurchase, bindPlayer, unbindPlayer, verifyLocalPlayer,
    unionLogin, launchWelcomeBanner, launchAntiAddiction, quickGameLogin, launchCommonPage, syncTraceId, on, off,
    reportEventOperation, onEventCallback
} = gamePlayer;
