'use strict';

const fs = require('fs');
const path = require('path');

const build = process.env.GAMEAPI_BUILD || 'release';
const addon = path.join(__dirname, '..', 'out', build, 'device.node');
if (!fs.existsSync(addon)) {
    throw new Error(`The stand-in device is not built: out/${build}/device.node is missing. Run ./build, which makes it.`);
}

module.exports = require(addon);
