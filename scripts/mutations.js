'use strict';

// Finds places in a C++ source where a change most likely alters what it does. Each change affects one place.

const BLANK = /[^\n]/g;
// Never changed: comments, preprocessor lines, log calls, static assertions, `using` lines and template headers.
const LEFT_ALONE = [/\/\/.*$/gm, /\/\*[^]*?\*\//g, /^#.*$/gm, /\bGAME_LOG[IWE]\([^]*?\);/g, /\bHiLogPrint\([^]*?\);/g,
    /^ *static_assert\([^]*?\);$/gm, /^ *using .*;$/gm, /\btemplate <[^>]*>/g];
const STRING = /"(?:[^"\\\n]|\\.)*"/g;

/** Replaces everything that must not be changed with spaces. Positions and lines stay the same. */
function maskOf(source, ...more) {
    const blank = (found) => found.replace(BLANK, ' ');
    return [...LEFT_ALONE, ...more].reduce((text, pattern) => text.replace(pattern, blank), source);
}

/** The index of the parenthesis that closes the one just before `start`. */
function closing(text, start) {
    let depth = 1;
    let end = start;
    for (; depth > 0 && end < text.length; ++end) {
        depth += { '(': 1, ')': -1 }[text[end]] || 0;
    }
    return end - 1;
}

const replaced = (table) => ({ 0: found, index }) => [[index, found, table[found]]];
const OPPOSITES = { ' && ': ' || ', ' || ': ' && ', ' == ': ' != ', ' != ': ' == ', ' < ': ' <= ', ' <= ': ' < ',
    ' > ': ' >= ', ' >= ': ' > ' };
const TRUTHS = { true: 'false', false: 'true' };

function negated({ 0: found, index }, text) {
    const start = index + found.length;
    const condition = text.slice(start, closing(text, start));
    return condition.includes(';') ? [] : [[start, condition, `!(${condition})`]];
}

/** Rows of [kind, pattern, function]. The function turns a match into a list of changes: [place, before, after]. */
const KINDS = [
    ['condition', / (?:&&|\|\||[=!]=|[<>]=?) /g, replaced(OPPOSITES)],
    ['condition', /\bif \(/g, negated],
    ['constant', /\b(?:true|false)\b/g, replaced(TRUTHS)],
    ['constant', /(?<![\w.])\d+(?![\w.])/g, ({ 0: found, index }) => [[index, found, String(Number(found) + 1)]]],
    ['dropped statement', /^ {4,}(?:\(void\))?[\w:.>[\]*-]+(?:\([^;{}]*\)|(?: [-+|]?= [^;{}]+))[^;{}=]*;$/gm,
        ({ 0: found, index }) => (/^ *(?:return|break|continue|throw)\b/.test(found) ? [] : [[index, found, '']])],
    ['dropped lock', /^ +std::(?:lock_guard|shared_lock)<[^;]*;$/gm, ({ 0: found, index }) => [[index, found, '']]],
    ['swapped arguments', /(?<=\w\()(\w[\w.>-]*), (\w[\w.>-]*)(?=[,)])/g,
        ({ 0: found, 1: left, 2: right, index }) => (left === right ? [] : [[index, found, `${right}, ${left}`]])],
    ['early return', /^[\w:<>,*& ]+\([^;{}]*\)(?: const)? \{\n/gm, ({ 0: found, index }) =>
        (/^(?:namespace|struct|class|enum)\b/.test(found) ? []
            : [[index + found.length, '', /^(?:static )?void\b/.test(found) ? 'return;\n' : 'return {};\n']])],
    ['table entry', /^ +\{.*\},$/gm, ({ 0: found, index }) => [[index, found, '']]],
];

const lineAt = (source, place) => source.slice(0, place).split('\n').length;

/** All possible changes of a file's source, as {file, line, kind, place, before, after}. */
function mutationsOf(file, source) {
    const text = maskOf(source, STRING);
    const found = KINDS.flatMap(([kind, pattern, change]) => Array.from(text.matchAll(pattern))
        .flatMap((match) => change(match, text))
        .map(([place, before, after]) => ({ file, line: lineAt(source, place), kind, place,
            before: source.slice(place, place + before.length), after })));
    const strings = Array.from(maskOf(source).matchAll(STRING)).filter(({ 0: string }) => string.length > 2)
        .map(({ 0: before, index: place }) => ({ file, line: lineAt(source, place), kind: 'constant', place, before,
            after: `${before.slice(0, -1)}~"` }));
    return [...found, ...strings].sort((a, b) => a.place - b.place);
}

const mutate = (source, { place, before, after }) =>
    source.slice(0, place) + after + source.slice(place + before.length);

module.exports = { mutate, mutationsOf };
