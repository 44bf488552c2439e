// For `import`: what `require` returns, also as named exports.

import service from './index.js';

export default service;
export const { ScenarioError, createService, newState, play, readScenario } = service;
