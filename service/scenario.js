'use strict';

const fs = require('node:fs');
const { changeState, newState } = require('./state.js');
const schema = require('./scenario.schema.json');

/** A scenario that cannot be read. The message names the file, the place in it and the reason. */
class ScenarioError extends Error {
    constructor(file, place, reason) {
        super([file, place, reason].filter(Boolean).join(': '));
        this.name = 'ScenarioError';
    }
}

function loadAjv() {
    try {
        return require('ajv');
    } catch (cause) {
        const missing = 'scenarios are checked with the npm package ajv, which is not installed: run npm install ajv';
        throw new Error(missing, { cause });
    }
}

let validate;

/** The validator, compiled on first use. */
const validator = () => (validate ??= new (loadAjv())({ allowUnionTypes: true, verbose: true }).compile(schema));

/** "steps[2].advance" for the JSON pointer "/steps/2/advance". */
const placeOf = (pointer) => pointer.slice(1).replace(/\/(\d+)(?=\/|$)/g, '[$1]').replace(/\//g, '.');

const REASONS = {
    additionalProperties: ({ params, parentSchema }) =>
        `unknown key '${params.additionalProperty}': possible is ${Object.keys(parentSchema.properties).join(', ')}`,
    required: ({ params }) => `'${params.missingProperty}' is missing`,
    enum: ({ params, data }) => `must be one of ${params.allowedValues.join(', ')}, not ${JSON.stringify(data)}`,
    oneOf: ({ schema: choices, parentSchema, data }) => (choices.every(({ required }) => required)
        ? `needs exactly one of ${choices.flatMap(({ required }) => required).join(', ')}`
        : `must not be ${JSON.stringify(data)}. ${parentSchema.description ?? ''}`.trim()),
    const: ({ params }) => `must be ${JSON.stringify(params.allowedValue)}`,
};

const reasonOf = (error) => REASONS[error.keyword]?.(error) ?? `${error.message}, not ${JSON.stringify(error.data)}`;

// A choice that fails also reports every alternative first: the deepest error but those is the cause.
function causeOf(errors) {
    const isAlternative = ({ schemaPath }) => /\/oneOf\/\d+\//.test(schemaPath);
    return errors.find((error) => !isAlternative(error)) ?? errors[0];
}

/** What the schema cannot check: whether the state has the player who is signed in. */
function checkState({ state = {} }, file) {
    try {
        changeState(newState(), state);
    } catch ({ message }) {
        throw new ScenarioError(file, 'state', message);
    }
}

function check(scenario, file) {
    if (!validator()(scenario)) {
        const error = causeOf(validator().errors);
        throw new ScenarioError(file, placeOf(error.instancePath), reasonOf(error));
    }
    checkState(scenario, file);
    return scenario;
}

/** Line and column of an offset, counted from 1. */
function lineOf(text, offset) {
    const before = text.slice(0, offset).split('\n');
    return `line ${before.length}, column ${before.at(-1).length + 1}`;
}

function parse(text, file) {
    try {
        return JSON.parse(text);
    } catch (error) {
        const [, offset] = /position (\d+)/.exec(error.message) ?? [];
        throw new ScenarioError(file, offset && lineOf(text, Number(offset)), `no JSON: ${error.message}`);
    }
}

/** Reads and checks a scenario: the path of a file, or the scenario itself. */
function readScenario(source) {
    if (typeof source !== 'string') {
        return check(source, 'scenario');
    }
    let text;
    try {
        text = fs.readFileSync(source, 'utf8');
    } catch (error) {
        throw new ScenarioError(source, '', error.code === 'ENOENT' ? 'there is no such file' : error.message);
    }
    return check(parse(text, source), source);
}

/** What a scenario leaves to its defaults, where more than one reader needs them. */
const withDefaults = (scenario) => ({ clock: 'manual', timeLimit: 30, ...scenario });

/** Check parts of a scenario, and return them. */
const checkAnswers = (answer) => check({ version: 1, rules: [{ answer }] }, '').rules[0].answer;
const checkStep = (step) => check({ version: 1, steps: [step] }, '').steps[0];

module.exports = { ScenarioError, checkAnswers, checkStep, readScenario, withDefaults };
