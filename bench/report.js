'use strict';

// Makes a table of the figures, and writes it and the chart to docs/.

const fs = require('fs');
const path = require('path');
const { makeChart } = require('./chart');

const DOCS = path.join(__dirname, '..', 'docs');
const PAGE = path.join(DOCS, 'performance.md');
const CHART = path.join(DOCS, 'performance.svg');
const [BEGIN, END] = ['<!-- written by bench/run from here -->', '<!-- to here -->'];

const HIGHER_IS_BETTER = '1/s';

// As it is shown: no figure is more exact.
function isReached({ unit, ratio, goal }) {
    const shown = Number(ratio.toFixed(2));
    return unit === HIGHER_IS_BETTER ? shown >= goal : shown <= goal;
}

const digits = (value) => (value >= 100 ? Math.round(value).toString() : value.toPrecision(3));

function makeTable(rows) {
    const head = ['work', 'size', 'cores', 'module', 'floor', 'bare', 'unit', 'ratio', 'goal', 'reached'];
    const lines = [head, head.map(() => '-'), ...rows.map((row) => [
        row.work, `${row.size} ${row.of}`, `${row.cores}`, digits(row.module), digits(row.floor),
        row.bare ? digits(row.bare) : '', row.unit,
        row.ratio.toFixed(2), `${row.goal}`, isReached(row) ? 'yes' : '**no**',
    ])];
    const widths = head.map((_, i) => Math.max(...lines.map((line) => line[i].length)));
    return lines.map((line, i) => {
        const cells = line.map((cell, j) => cell.padEnd(widths[j], i === 1 ? '-' : ' '));
        return `| ${cells.join(' | ')} |`;
    }).join('\n');
}

/** Rewrites the chart, and the part of the page between the two markers; the rest of the page stays as it is. */
function writeDocuments(rows, machine) {
    const [before, rest = ''] = fs.readFileSync(PAGE, 'utf8').split(BEGIN);
    const [, after] = rest.split(END);
    if (after === undefined) {
        throw new Error(`docs/performance.md has no place for the table: put the lines ${BEGIN} and ${END} into it`);
    }
    const reached = rows.filter(isReached).length;
    const summary = `Measured on ${machine}: ${reached} of ${rows.length} rows meet their goal.`;
    fs.writeFileSync(PAGE, `${before}${[BEGIN, summary, makeTable(rows), END].join('\n\n')}${after}`);
    fs.writeFileSync(CHART, makeChart(rows.filter(({ unit }) => unit !== HIGHER_IS_BETTER), digits));
}

module.exports = { makeTable, writeDocuments };
