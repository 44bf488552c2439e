'use strict';

// Draws how the costs grow with size, as an SVG chart: one panel per benchmark, with a line each for module and floor.

const PANEL = { width: 300, height: 210, left: 24, right: 276, top: 40, bottom: 160 };
const COLUMNS = 3;
const COLOURS = { module: '#b8431f', floor: '#1f5f8b' };
const LEAST_SPAN = Math.log(30);  // of the vertical axis, so that a small difference looks small

const text = (x, y, content, more = '') => `<text x="${Math.round(x)}" y="${Math.round(y)}"${more}>${content}</text>`;
const centred = (colour) => ` fill="${colour}" text-anchor="middle"`;

// A logarithmic scale: a function that maps the values to positions between `from` and `to`.
function scale(values, from, to, leastSpan = 0) {
    const [low, high] = [Math.log(Math.min(...values)), Math.log(Math.max(...values))];
    const span = Math.max(high - low, leastSpan);
    return (value) => from + (to - from) * (Math.log(value) - (low + high - span) / 2) / span;
}

// Draws one side's line with its values, above the line where this side is higher than the other, else below it.
function makeLine(rows, side, x, y, format) {
    const other = side === 'module' ? 'floor' : 'module';
    const points = rows.map((row) => ({
        px: Math.round(x(row.size)), py: Math.round(y(row[side])), value: format(row[side]),
        shift: row[side] > row[other] ? -8 : 16
    }));
    const line = points.map(({ px, py }) => `${px},${py}`).join(' ');
    return `<polyline points="${line}" fill="none" stroke="${COLOURS[side]}" stroke-width="2"/>${points.map((point) => (
        `<circle cx="${point.px}" cy="${point.py}" r="3" fill="${COLOURS[side]}"/>`
        + text(point.px, point.py + point.shift, point.value, centred(COLOURS[side])))).join('')}`;
}

function makePanel(rows, format) {
    const { left, right, top, bottom } = PANEL;
    const x = scale(rows.map(({ size }) => size), left + 20, right - 20);
    const y = scale(rows.flatMap(({ module, floor }) => [module, floor]), bottom - 20, top + 16, LEAST_SPAN);
    const [{ work, unit, of }] = rows;
    return [
        text(left, 24, `${work} (${unit})`, ' font-weight="bold"'),
        `<path d="M${left} ${top}V${bottom}H${right}" fill="none" stroke="#888"/>`,
        ...Object.keys(COLOURS).map((side) => makeLine(rows, side, x, y, format)),
        ...rows.map(({ size }) => text(x(size), bottom + 16, size, centred('#000'))),
        text((left + right) / 2, bottom + 32, of, centred('#555'))
    ].join('\n');
}

// Draws the benchmarks that have several sizes, as measured on the most cores. `format` turns a value into a string.
function makeChart(rows, format) {
    const cores = Math.max(...rows.map((row) => row.cores));
    const groups = new Map();
    for (const row of rows.filter((row) => row.cores === cores)) {
        groups.set(row.work, [...groups.get(row.work) || [], row]);
    }
    const panels = [...groups.values()].filter((group) => group.length > 1).map((group, i) => {
        const place = [i % COLUMNS * PANEL.width, 30 + Math.floor(i / COLUMNS) * PANEL.height];
        return `<g transform="translate(${place.join(' ')})">\n${makePanel(group, format)}\n</g>`;
    });
    const [width, height] = [COLUMNS * PANEL.width, 30 + Math.ceil(panels.length / COLUMNS) * PANEL.height];
    const key = Object.entries(COLOURS).map(([side, colour], i) => (
        text(24 + 60 * i, 22, side, ` fill="${colour}" font-weight="bold"`)));
    const font = 'font-family="sans-serif" font-size="11"';
    return [
        `<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 ${width} ${height}" ${font}>`,
        `<rect width="${width}" height="${height}" fill="#fff"/>`, ...key,
        text(150, 22, `on ${cores} ${cores > 1 ? 'cores' : 'core'}; both axes are logarithmic`), ...panels, '</svg>', ''
    ].join('\n');
}

module.exports = { makeChart };
