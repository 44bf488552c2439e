// For `import`: what `require` returns, also as named exports.

import device from './index.js';

export default device;
export const {
    createAbilityContext, createUIExtensionContext, createStageContext, showWindow, hideWindow, modals, nextModal,
    onModal, onExit, onRecord, answerOn, queueOrder, strings, clock, setSystemApp, logs, analytics, failNext, faults,
    reset,
} = device;
