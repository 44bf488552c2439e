'use strict';

// Finds the addons: those that ./build made, or else those that the package brings for this machine.

const fs = require('node:fs');
const path = require('node:path');

const OUT = path.join(__dirname, 'out');
const PREBUILT = path.join(__dirname, 'prebuilt');
const MACHINE = `${process.platform}-${process.arch}`;

const fail = (problem, cause) => {
    throw new Error(`${problem}: run ./build in ${__dirname}, which makes one from source.`, { cause });
};

/** Loads the addon with this file name. GAMEAPI_BUILD selects another build than the default. */
function loadAddon(name) {
    const build = process.env.GAMEAPI_BUILD;
    const built = path.join(OUT, build || 'release', name);
    if (build || fs.existsSync(built) || !fs.existsSync(PREBUILT)) {
        return fs.existsSync(built) ? require(built) : fail(`There is no build "${build || 'release'}" of the module`);
    }
    const prebuilt = path.join(PREBUILT, MACHINE, name);
    if (!fs.existsSync(prebuilt)) {
        const machines = fs.readdirSync(PREBUILT).sort().join(' and ');
        fail(`The package has no build for ${MACHINE}, only for ${machines}`);
    }
    try {
        return require(prebuilt);
    } catch (error) {
        return fail(`The package's build for ${MACHINE} does not load here; it needs glibc 2.34 or newer`, error);
    }
}

module.exports = { loadAddon };
