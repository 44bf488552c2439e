'use strict';

// The contexts that a game passes to the module, with their windows and the resources of the game's modules.

const binding = require('./binding.js');
const { check, entriesOf, isFirst, readFlag, readObject } = require('./checks.js');

const LARGEST_ID = 0xffffffff;

const tagOf = (value) => Object.prototype.toString.call(value);  // the same in every realm
const readBytes = (name, value) => check(tagOf(value) === '[object Uint8Array]', name, 'a Uint8Array', value);

function readId(name, key) {
    if (!/^\d+$/.test(key) || Number(key) > LARGEST_ID) {
        throw new TypeError(`${name} has the key '${key}', but keys must be integers from 0 to ${LARGEST_ID}`);
    }
    return Number(key);
}

const readNamed = (name, group) =>
    entriesOf(name, group).map(([key, bytes]) => [key, readBytes(`${name}.${key}`, bytes)]);
const readNumbered = (name, group) => readNamed(name, group).map(([key, bytes]) => [readId(name, key), bytes]);
const GROUPS = { mediaById: readNumbered, mediaByName: readNamed, rawFiles: readNamed };

const readModules = (name, modules) => entriesOf(name, modules).map(([key, resources]) =>
    [key, resources === null ? null : readObject(`${name}.${key}`, resources, GROUPS)]);

function createContext(isExtension, options = {}) {
    const { window = true, modules = [] } = readObject('options', options, { window: readFlag, modules: readModules });
    return binding.createContext(isExtension, window, modules);
}

/** Shows or hides the window of a context. */
function changeWindow(context, isShown) {
    if (!binding.changeWindow(context, isShown)) {
        throw new TypeError(
            'context must come from createAbilityContext or createUIExtensionContext: others have no window');
    }
}

module.exports = {
    createAbilityContext: (options) => createContext(false, options),
    createUIExtensionContext: (options) => createContext(true, options),
    createStageContext: (kind) => binding.createStageContext(isFirst('kind', kind, 'other', 'empty')),
    showWindow: (context) => changeWindow(context, true),
    hideWindow: (context) => changeWindow(context, false),
};
