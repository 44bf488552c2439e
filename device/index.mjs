// For `import`: the same functions as `require` gives, under their names as well.

import device from './index.js';

export default device;
export const {
    createAbilityContext, createUIExtensionContext, createStageContext, showWindow, hideWindow, modals, nextModal,
    onModal, onExit, answerOn, clock, setSystemApp, logs, analytics, failNext, faults, reset
} = device;
