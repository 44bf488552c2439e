'use strict';

// Gives a game this package under every name that it may import it by: the one of the package, and the one under which
// the module is registered on a device. Otherwise a second copy in the game's folder would have a device of its own.

const Module = require('node:module');
const path = require('node:path');
const { pathToFileURL } = require('node:url');

const PACKAGE = 'game-player-extension-module';
const REGISTERED = /^(@?core\.velmor\.gamePlayerExtensionAbility|game-player-extension-module)(?=$|\/)/;

/** The name as this package itself resolves it; null for other modules. */
const ownName = (name) => (REGISTERED.test(name) ? name.replace(REGISTERED, PACKAGE) : null);

/** The hook of `import`. */
function resolve(name, context, next) {
    const own = ownName(name);
    return own ? next(own, { ...context, parentURL: pathToFileURL(__filename).href }) : next(name, context);
}

function install() {
    const original = Module._resolveFilename;
    Module._resolveFilename = function resolveFilename(name, parent, ...rest) {
        const own = typeof name === 'string' && ownName(name);
        return own ? original.call(this, own, module, ...rest) : original.call(this, name, parent, ...rest);
    };
    if (Module.registerHooks) {
        Module.registerHooks({ resolve });
    } else {
        // Node 18 before 18.19 has no hooks for `import`: there, the package must be installed where the game is.
        Module.register?.(pathToFileURL(path.join(__dirname, 'names.mjs')));
    }
}

module.exports = { install, resolve };
