'use strict';

module.exports = require('../lib/addon.js').loadAddon('device.node');
