'use strict';

// The output of the sample: titles, labelled lines, Wants and tables, none wider than the screen.

const util = require('node:util');

const WIDTH = Math.max(72, Math.min(process.stdout.columns || 100, 100));
const MARGIN = ' '.repeat(4);
const LABEL = 11;
const ARROW = '→ ';
const ROOM = WIDTH - MARGIN.length - LABEL - ARROW.length; // for the text after an arrow
const REAL_TIME = '  (999.9 ms)';
const HAS_COLOUR = Boolean(process.stdout.isTTY) && !process.env.NO_COLOR;
const STYLES = { bold: 1, dim: 2, red: 31, green: 32, yellow: 33, cyan: 36 };
const LABEL_STYLES = { game: 'green', want: 'cyan', extension: 'yellow' };

// Stops when the reader closes the pipe, as head does.
process.stdout.on('error', () => process.exit(1));

function paint(style, text) {
    return HAS_COLOUR && style && text ? `\x1b[${STYLES[style]}m${text}\x1b[0m` : text;
}

function print(text = '') {
    process.stdout.write(`${text.trimEnd()}\n`);
}

// The ranges, both ends included, of East Asian wide characters and emoji, which take two columns.
const WIDE = [
    [0x1100, 0x115f], [0x2e80, 0x303e], [0x3041, 0xa4cf], [0xac00, 0xd7a3], [0xf900, 0xfaff], [0xfe30, 0xfe6f],
    [0xff01, 0xff60], [0xffe0, 0xffe6], [0x1f300, 0x1faff], [0x20000, 0x3fffd],
];

function columnsOf(character) {
    const point = character.codePointAt(0);
    return WIDE.some(([first, last]) => first <= point && point <= last) ? 2 : 1;
}

/** As much of the beginning of `text` as fits into `width` columns. */
function beginning(text, width) {
    let [end, left] = [0, width];
    for (const character of text) {
        left -= columnsOf(character);
        if (left < 0) {
            break;
        }
        end += character.length;
    }
    return text.slice(0, end);
}

/** Wraps `text` to lines of at most `width` columns, after a space or comma if possible. Keeps the indentation. */
function fold(text, width) {
    return text.split('\n').flatMap((line) => {
        const full = beginning(line, width);
        if (full === line) {
            return [line];
        }
        const [indent] = line.match(/^ */);
        const gap = Math.max(full.lastIndexOf(' '), full.lastIndexOf(',')) + 1;
        const end = gap > indent.length + width / 3 ? gap : full.length;
        return [line.slice(0, end).trimEnd(), ...fold(indent + line.slice(end), width)];
    });
}

/** Whether `text` needs no wrapping if its first line follows an arrow. */
function fits(text) {
    return (ARROW + text).split('\n').every((line) => beginning(line, ROOM) === line);
}

const names = new WeakMap();

/** Makes `describe` show `value` as `name` from now on. Returns the value. */
function named(name, value) {
    names.set(value, name);
    return value;
}

/** Abbreviates the long words of `text` that nobody reads, such as base64. */
function shorten(text) {
    return text.replace(/[\w+/=]{65,}/g, (word) => `${word.slice(0, 8)}…\u00a0${word.length}\u00a0characters`);
}

/** A value as it would be written in code, on one line or on several of about `width` columns. */
function describe(value, width = Infinity) {
    if (value instanceof Error) {
        return `${value.name}${value.code === undefined ? '' : ` ${value.code}`}: ${value.message}`;
    }
    if (typeof value === 'function') {
        return value.name || 'callback';
    }
    return names.get(value) || shorten(util.inspect(value, { breakLength: width, depth: 5, maxArrayLength: 8 }));
}

function describeCall(name, args) {
    const forms = [Infinity, ROOM, ROOM / 2].map((width) => (
        `${name}(${args.map((value) => describe(value, width)).join(', ')})`));
    return forms.find(fits) || forms.pop();
}

/** Formats a duration, given in milliseconds, in suitable units. */
function duration(ms) {
    if (ms < 1000) {
        return ms < 1 ? `${Math.round(ms * 1000)} µs` : `${ms.toFixed(1)} ms`;
    }
    const [minutes, seconds] = [Math.floor(ms / 60000), (ms % 60000) / 1000];
    return [minutes && `${minutes} min`, seconds && `${seconds} s`].filter(Boolean).join(' ');
}

/** Prints text after a label that names its subject, such as "game" or "clock". */
function line(label, text, style) {
    fold(text, ROOM).forEach((part, i) => {
        const head = paint(LABEL_STYLES[label] || 'dim', label) + ' '.repeat(LABEL - label.length);
        print(MARGIN + (i === 0 ? head : ' '.repeat(LABEL + ARROW.length)) + paint(style, part));
    });
}

/** Prints what the game received, and the time if known. The length of a real time does not affect the line breaks. */
function received(text, time, style) {
    const gap = fits(text + REAL_TIME) ? '  ' : '\n';
    line('game', `← ${text}${time ? `${gap}(${time})` : ''}`, style);
}

function want({ bundleName, abilityName, parameters }) {
    const width = Math.max(...Object.keys(parameters).map((key) => key.length)) + 2;
    const rows = Object.entries(parameters).map(([key, value]) => (
        key.padEnd(width) + fold(describe(value), ROOM - width).join(`\n${' '.repeat(width)}`)));
    line('want', [`→ ${bundleName} / ${abilityName}`, ...rows].join('\n'));
}

function paragraph(text, style) {
    fold(text, WIDTH - MARGIN.length).forEach((part) => print(MARGIN + paint(style, part)));
    print();
}

function title(number, name, about) {
    print(`${paint('dim', String(number).padStart(2))}  ${paint('bold', name)}`);
    paragraph(about, 'dim');
}

/** Prints rows of cells under their headings. Columns of numbers are right-aligned. */
function table(heads, rows) {
    const widthOf = (column) => Math.max(...[heads, ...rows].map((row) => String(row[column]).length));
    const widths = heads.map((_, column) => widthOf(column));
    const pads = rows[0].map((cell) => (typeof cell === 'number' ? 'padStart' : 'padEnd'));
    [heads, ...rows].forEach((row, i) => {
        const cells = row.map((cell, column) => String(cell)[pads[column]](widths[column]));
        print(MARGIN + paint(i === 0 ? 'dim' : '', cells.join('   ')));
    });
}

module.exports = { describe, describeCall, duration, line, named, paragraph, print, received, table, title, want };
