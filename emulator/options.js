'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { parseArgs } = require('node:util');
const { readScenario } = require('../service/scenario.js');

const USAGE = `usage: emulator [options] GAME [ARGUMENTS]
  GAME              a .js, .mjs or .cjs file, which runs with Node and the arguments in a process of its own
  --scenario FILE   plays this scenario; without it, requests wait for an answer on the page
  --headless        no page: prints what failed; exit status 1 if something did, 2 if the game could not start
  --junit FILE      writes the outcome as JUnit XML (with --headless)
  --record FILE     writes what happened as a scenario when the game ends
  --speed N         device time passes N times as fast
  --manual-clock    device time stands until it is moved on the page, or by the scenario
  --port N          the port of the page on 127.0.0.1; default: a free one
  --watch           restarts the game when a file in its folder changes
`;

const OPTIONS = {
    scenario: { type: 'string' },
    headless: { type: 'boolean', default: false },
    junit: { type: 'string' },
    record: { type: 'string' },
    speed: { type: 'string' },
    'manual-clock': { type: 'boolean', default: false },
    port: { type: 'string', default: '0' },
    watch: { type: 'boolean', default: false },
    help: { type: 'boolean', default: false },
};

/** Refuses the command line, with one line that names cause and cure. */
function refuse(text) {
    throw new Error(text);
}

// The game's own options come after its name.
function split(args) {
    const takesValue = (arg) => OPTIONS[arg.slice(2)]?.type === 'string';
    let end = 0;
    while (end < args.length && args[end].startsWith('-')) {
        end += takesValue(args[end]) ? 2 : 1;
    }
    return [args.slice(0, end), args[end], args.slice(end + 1)];
}

function parse(args) {
    try {
        return parseArgs({ args, options: OPTIONS }).values;
    } catch (error) {
        return refuse(`${error.message.split('. ')[0]}: see emulator --help`);
    }
}

function readNumber(name, text, least, most) {
    const number = Number(text);
    const isRight = text.trim() !== '' && number >= least && number <= most;
    return isRight ? number : refuse(`--${name} must be a number from ${least} to ${most}, not '${text}'`);
}

function readGame(game) {
    if (game === undefined) {
        refuse('no game is named: emulator GAME, and GAME is a .js, .mjs or .cjs file');
    }
    if (!/\.[mc]?js$/.test(game)) {
        refuse(`${game} is no .js, .mjs or .cjs file`);
    }
    return fs.existsSync(game) ? path.resolve(game) : refuse(`there is no file ${game}`);
}

/** The rate of the clock at the start; 0 is a manual clock. */
function readRate({ speed, 'manual-clock': isManual }, scenario) {
    if (speed !== undefined && isManual) {
        refuse('--speed and --manual-clock exclude each other');
    }
    if (speed !== undefined) {
        return readNumber('speed', speed, 0.001, 1e6);
    }
    return isManual || (scenario && scenario.clock !== 'real') ? 0 : 1;
}

/** Reads the command line. Throws an Error with one line that names cause and cure. */
function readOptions(args) {
    const [own, game, gameArguments] = split(args);
    const values = parse(own);
    if (values.help) {
        return { help: USAGE };
    }
    if (values.junit && !values.headless) {
        refuse('--junit needs --headless');
    }
    const { headless, junit, record, watch } = values;
    const port = readNumber('port', values.port, 0, 65535);
    const file = values.scenario && path.resolve(values.scenario);
    const scenario = values.scenario && readScenario(values.scenario);
    const rate = readRate(values, scenario);
    return { game: readGame(game), gameArguments, file, scenario, rate, headless, junit, record, watch, port };
}

module.exports = { readOptions };
