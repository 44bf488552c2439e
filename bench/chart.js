'use strict';

// Lets gnuplot draw how the costs grow with size: an SVG chart with a panel per benchmark, and in it a line each for
// module and floor.

const { execFileSync } = require('child_process');

const COLUMNS = 3;
const LEAST_SPAN = 30;  // of the vertical axis, so that a small difference looks small

const makeHead = (cores, lines) => `
set terminal svg size ${300 * COLUMNS}, ${30 + 210 * lines} font 'sans-serif,11' noenhanced background 'white'
set multiplot layout ${lines}, ${COLUMNS} title 'cores: ${cores}; both axes are logarithmic'
set linetype 1 linecolor '#b8431f' linewidth 2 pointtype 7 pointsize 0.5
set linetype 2 linecolor '#1f5f8b' linewidth 2 pointtype 7 pointsize 0.5
set logscale
set autoscale xfix
set offsets graph 0.1, graph 0.1
set border 3
set xtics scale 0
unset ytics
set key at screen 0.25, 0.99 horizontal`;

function makePanel(rows, format) {
    const costs = rows.flatMap(({ module, floor }) => [module, floor]);
    const [low, high] = [Math.min(...costs), Math.max(...costs)];
    const [middle, reach] = [Math.sqrt(low * high), Math.max(high / low, LEAST_SPAN) ** 0.7];
    const label = (size, cost, line, isAbove) => `set label '${format(cost)}' at ${size}, ${cost} center ${
        isAbove ? 'offset 0, 0.7' : 'offset 0, -0.7'} textcolor linetype ${line}`;
    const [{ work, unit, of }] = rows;
    return `
$costs << end
${rows.map(({ size, module, floor }) => `${size} ${module} ${floor}`).join('\n')}
end
unset label
${rows.map(({ size, module, floor }) => label(size, module, 1, module >= floor)).join('\n')}
${rows.map(({ size, module, floor }) => label(size, floor, 2, module < floor)).join('\n')}
set title '${work} (${unit})'
set xlabel '${of}'
set yrange [${middle / reach} : ${middle * reach}]
plot for [i = 1:2] $costs using 1:i + 1:xtic(1) with linespoints title word('module floor', i)
unset key`;
}

/** The chart of the benchmarks with several sizes, as measured on the most cores. `format` writes a cost. */
function makeChart(rows, format) {
    const cores = Math.max(...rows.map((row) => row.cores));
    const names = [...new Set(rows.map(({ work }) => work))];
    const panels = names.map((name) => rows.filter((row) => row.work === name && row.cores === cores))
        .filter((panel) => panel.length > 1);
    const head = makeHead(cores, Math.ceil(panels.length / COLUMNS));
    const input = [head, ...panels.map((panel) => makePanel(panel, format))].join('\n');
    return execFileSync('gnuplot', { encoding: 'utf8', input });
}

module.exports = { makeChart };
