'use strict';

// What a run without a page came to: on the terminal, and as JUnit XML.

const fs = require('node:fs');
const { failuresOf } = require('../service/report.js');

/** What failed, one line each; none if all is as expected. */
function failuresOfRun({ expect }, { facts, isFull }, end) {
    if (isFull) {
        return [`the game did more than ${facts.length} things, so its outcome is not known`];
    }
    return failuresOf(expect, facts, end, facts.findLast(({ kind }) => kind === 'step')?.doing);
}

const escapeXml = (text) => text.replace(/[&<>"]/g, (sign) => `&#${sign.charCodeAt(0)};`)
    // Characters that XML 1.0 does not allow.
    .replace(/[^\t\n\r\u0020-\ud7ff\ue000-\ufffd\u{10000}-\u{10ffff}]/gu, '\ufffd');

function junitOf(name, failures, seconds) {
    const failure = failures.length > 0
        ? `<failure message="${escapeXml(failures[0])}">${escapeXml(failures.join('\n'))}</failure>` : '';
    return `<?xml version="1.0" encoding="UTF-8"?>
<testsuites>
  <testsuite name="game-emulator" tests="1" failures="${failures.length > 0 ? 1 : 0}" time="${seconds.toFixed(3)}">
    <testcase name="${escapeXml(name)}" classname="game-emulator" time="${seconds.toFixed(3)}">${failure}</testcase>
  </testsuite>
</testsuites>
`;
}

/** Prints the outcome and writes `junit`, if it is given. */
function reportOutcome({ name, failures, seconds, junit }) {
    const text = failures.length > 0
        ? [`${name}: ${failures.length} failed`, ...failures.map((line) => `  ${line}`)].join('\n')
        : `${name}: passed in ${seconds.toFixed(1)} s`;
    process.stdout.write(`${text}\n`);
    if (junit) {
        fs.writeFileSync(junit, junitOf(name, failures, seconds));
    }
}

module.exports = { failuresOfRun, reportOutcome };
