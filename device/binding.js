'use strict';

module.exports = require('../addon.js').loadAddon('device.node');
