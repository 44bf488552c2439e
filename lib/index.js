'use strict';

module.exports = require('./addon.js').loadAddon('game_player_extension_ability.node');
