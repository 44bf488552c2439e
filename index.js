'use strict';

const path = require('node:path');

const build = process.env.GAMEAPI_BUILD || 'release';
const file = path.join(__dirname, 'out', build, 'game_player_extension_ability.node');

function load() {
    try {
        return require(file);
    } catch (error) {
        if (error.code === 'MODULE_NOT_FOUND') {
            throw new Error(`The module is not built for "${build}" yet: run ./build in its folder first.`);
        }
        throw error;
    }
}

module.exports = load();
