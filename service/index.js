'use strict';

const { play } = require('./play.js');
const { ScenarioError, readScenario } = require('./scenario.js');
const { createService } = require('./service.js');
const { newState } = require('./state.js');

module.exports = { ScenarioError, createService, newState, play, readScenario };
