'use strict';

// What the sample prints: titles, lines under a label, Wants and tables, none wider than the screen.

const util = require('node:util');

const WIDTH = Math.max(72, Math.min(process.stdout.columns || 100, 100));
const MARGIN = ' '.repeat(4);
const LABEL = 11;
const ROOM = WIDTH - MARGIN.length - LABEL - 2; // beside a label and an arrow
const REAL_TIME = '  (999.9 ms)'.length;
const HAS_COLOUR = Boolean(process.stdout.isTTY) && !process.env.NO_COLOR;
const STYLES = { bold: 1, dim: 2, red: 31, green: 32, yellow: 33, cyan: 36 };
const LABEL_STYLES = { game: 'green', want: 'cyan', extension: 'yellow' };

// A reader who closes the pipe, as head does, has seen enough.
process.stdout.on('error', () => process.exit(1));

function paint(style, text) {
    return HAS_COLOUR && style && text ? `\x1b[${STYLES[style]}m${text}\x1b[0m` : text;
}

function print(text = '') {
    process.stdout.write(`${text.trimEnd()}\n`);
}

/** The lines of `text`, none wider than `width`, cut after a blank or a comma where there is one. */
function fold(text, width) {
    return text.split('\n').flatMap((line) => {
        if (line.length <= width) {
            return [line];
        }
        const gap = Math.max(line.lastIndexOf(' ', width - 1), line.lastIndexOf(',', width - 1)) + 1;
        const end = gap > width / 2 ? gap : width;
        return [line.slice(0, end).trimEnd(), ...fold(line.slice(end), width)];
    });
}

const names = new WeakMap();

/** Has `value` printed as `name` from now on. Returns the value. */
function named(name, value) {
    names.set(value, name);
    return value;
}

/** A value as it would stand in code, on one line or on several of about `width`. */
function describe(value, width = Infinity) {
    if (value instanceof Error) {
        return `${value.name}${value.code === undefined ? '' : ` ${value.code}`}: ${value.message}`;
    }
    if (typeof value === 'function') {
        return value.name || 'callback';
    }
    return names.get(value) || util.inspect(value, { breakLength: width, depth: 5, maxArrayLength: 8 });
}

function describeCall(name, args) {
    const onLinesOf = (width) => `${name}(${args.map((value) => describe(value, width)).join(', ')})`;
    return onLinesOf(Infinity).length <= ROOM ? onLinesOf(Infinity) : onLinesOf(ROOM / 2);
}

/** A span of time, given in milliseconds, in the units that suit it. */
function duration(ms) {
    if (ms < 1000) {
        return ms < 1 ? `${Math.round(ms * 1000)} µs` : `${ms.toFixed(1)} ms`;
    }
    const [minutes, seconds] = [Math.floor(ms / 60000), (ms % 60000) / 1000];
    return [minutes && `${minutes} min`, seconds && `${seconds} s`].filter(Boolean).join(' ');
}

/** Text beside the label of whom it is about, such as "game" or "clock". */
function line(label, text, style) {
    fold(text, ROOM).forEach((part, i) => {
        const head = paint(LABEL_STYLES[label] || 'dim', label) + ' '.repeat(LABEL - label.length);
        print(MARGIN + (i === 0 ? head : ' '.repeat(LABEL + 2)) + paint(style, part));
    });
}

/** What the game got, and the time it took if that is known. How the lines fall does not hang on a real time. */
function received(text, time, style) {
    const gap = text.length + REAL_TIME <= ROOM ? '  ' : '\n';
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

/** Rows of cells under their heads; columns of numbers are set to the right. */
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
