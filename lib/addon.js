'use strict';

// Finds the addons: those that ./build made, or else those that the package brings for this machine.

const fs = require('node:fs');
const path = require('node:path');

const ROOT = path.dirname(__dirname);
const PREBUILT = path.join(ROOT, 'prebuilt');
const MACHINE = `${process.platform}-${process.arch}`;
const LIST = new Intl.ListFormat('en');

/** What the package's build needs of this system, and may lack. */
function needs() {
    if (process.platform === 'win32') {
        return 'it needs a Node whose program is named node.exe';
    }
    const hasGlibc = process.report.getReport().header.glibcVersionRuntime;
    return `it needs glibc 2.34 or newer${hasGlibc ? '' : ', and this Node runs with another C library'}`;
}

function fail(problem, options) {
    throw new Error(`${problem}: run ./build in ${ROOT}, which makes one from source.`, options);
}

/** Loads the addon with this file name. GAMEAPI_BUILD selects another build than the default. */
function loadAddon(name) {
    const build = process.env.GAMEAPI_BUILD || 'release';
    const built = path.join(ROOT, 'out', build, name);
    if (fs.existsSync(built)) {
        return require(built);
    }
    if (process.env.GAMEAPI_BUILD || !fs.existsSync(PREBUILT)) {
        fail(`There is no build "${build}" of the module`);
    }
    const prebuilt = path.join(PREBUILT, MACHINE, name);
    if (!fs.existsSync(prebuilt)) {
        fail(`The package has no build for ${MACHINE}, only for ${LIST.format(fs.readdirSync(PREBUILT).sort())}`);
    }
    try {
        return require(prebuilt);
    } catch (cause) {
        return fail(`The package's build for ${MACHINE} does not load here; ${needs()}`, { cause });
    }
}

module.exports = { loadAddon };
