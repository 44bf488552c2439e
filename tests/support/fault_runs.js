'use strict';

// Runs scenarios with failing calls, in a child process. It reports each fault point before it is tried, so that the
// last line names it after a crash, and then its effects.

const fs = require('node:fs');

const support = require('./index.js');
const { FOR_EVER, SCENARIOS, Stage, leftovers, playInWorker, playNext, prepare, refusals, runOut } =
    require('./scenarios.js');

const { device, once } = support;
// An environment that loads the module, listens, makes a request and ends.
const LOAD = 'an environment that is loaded and ends';
// Its timer would end the process if the request type could not be read.
const LEFT_ASLEEP = 'a time limit of the game\'s own';

const uncaught = [];
process.on('uncaughtException', (error) => uncaught.push(error));

const describe = (value) => (value instanceof Error ? `${value.code} ${value.message}` : String(value));

/** Everything that a game should not see: of the stage, uncaught, refused or left over. As [effect, detail]. */
function effectsOf({ requests, refusedAnswers }, { scenario, mode }) {
    const pending = requests.filter(({ method, state }) => state === 'pending' && !method.startsWith('launch'));
    const odd = requests.filter(({ state, error }) => state === 'threw' && !(error instanceof Error));
    const { environments, ...left } = leftovers();
    return [
        ...pending.map(({ form, method }) => [`a ${form} stays pending`, method]),
        ...odd.map(({ method, error }) => [`${method} threw`, describe(error)]),
        ...uncaught.splice(0).map((error) => [`uncaught: ${describe(error)}`]),
        ...refusedAnswers.map((error) => [`an answer on the ${mode} thread throws ${describe(error)}`]),
        ...refusals().map((line) => ['a call is refused', line]),
        ...Object.entries(scenario === LOAD ? { ...left, environments } : left)
            .filter(([, count]) => count !== 0).map(([what, count]) => [`${what} are left`, count]),
    ];
}

/** Starts and ends an environment. Resolves to the number of events that it heard. */
async function playAndEnd() {
    const worker = playInWorker('a first start', 4, 'terminate()');
    worker.on('error', (error) => uncaught.push(error));
    const [heard] = await once(worker, 'message');
    await worker.terminate();
    return heard;
}

/** Plays the scenario with the failing call. Resolves to whether it failed, and the effects. */
async function tryPoint(point) {
    const { scenario, mode, call, skip, times } = point;
    const stage = new Stage({ isOrderly: mode === 'ui' });
    prepare(mode);
    device.failNext(call, { skip, times });
    await (scenario === LOAD ? playAndEnd() : stage.play(SCENARIOS[scenario]));
    device.failNext(call, { skip: FOR_EVER });
    const isMet = device.faults().find((each) => each.call === call).failed > 0;
    await runOut({ isAsleep: scenario === LEFT_ASLEEP });
    const effects = [];
    if (scenario === LOAD) {
        effects.push(...effectsOf(stage, point));
        prepare(mode);
        effects.push(...(await playAndEnd() === 1 ? [] : [['the next environment gets nothing']]));
        await runOut();
    }
    const next = await playNext();
    effects.push(...(next === 'resolved,next' ? [] : [['the next request and event', next]]));
    return { isMet, effects: [...effects, ...effectsOf(stage, point)] };
}

/** Tries one fault point and reports it. Resolves to whether a call failed there. */
async function report(point) {
    const print = (outcome) => fs.writeSync(1, `${JSON.stringify({ point, ...outcome })}\n`);
    print();
    const outcome = await tryPoint(point);
    print(outcome);
    return outcome.isMet;
}

/** Makes each call of a scenario fail, or those in `only`: once, and together with all later calls of the function. */
async function sweep(scenario, mode, only) {
    void support.game;
    await report({ scenario, mode, call: 'napi_typeof', skip: FOR_EVER, times: 1 });
    const made = device.faults().filter((each) => each.made > 0).map(({ call }) => call);
    for (const call of only || made) {
        for (const times of [1, FOR_EVER]) {
            let skip = 0;
            while (await report({ scenario, mode, call, skip, times })) {
                skip += 1;
            }
        }
    }
}

module.exports = { report, sweep };
