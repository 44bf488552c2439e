'use strict';

// What a game and its extension do together, step by step, for tests that interfere at every step.

const support = require('./index.js');

const { advance, countLogs, device, start, startWorker, turn } = support;
const CALLBACK = Symbol('a callback that is recorded');
const LISTENER = Symbol('a listener that is counted');
const LATE = Symbol('a context without a window');
const FOR_EVER = Number.MAX_SAFE_INTEGER;

/**
 * Plays steps, records the outcome of each call, and goes on whatever happens. The module loads with the first call.
 * `beforeStep` is awaited before every step. With `isOrderly`, each answer waits for the one before.
 */
class Stage {
    requests = [];
    refusedAnswers = [];
    given = [];
    heard = 0;

    constructor({ beforeStep = () => {}, isOrderly = false } = {}) {
        Object.assign(this, { beforeStep, isOrderly, [LATE]: device.createAbilityContext({ window: false }) });
        this[LISTENER] = () => { this.heard += 1; };
    }

    async play(steps) {
        for (const [kind, ...args] of steps) {
            await this.beforeStep();
            await this[kind](...args);
        }
    }

    /** A call with its own context. */
    open(method, rest = [], options = {}) {
        this.call(method, device.createAbilityContext(options), ...rest);
    }

    call(method, ...args) {
        const form = args.includes(CALLBACK) ? 'callback' : 'promise';
        const request = { method, form, state: 'pending' };
        const settle = (state) => () => Object.assign(request, { state });
        const opened = device.modals().length;
        this[CALLBACK] = settle('called back');
        try {
            const value = support.game[method](...this.made(args));
            request.state = value || form === 'callback' ? request.state : 'returned';
            value?.then(settle('resolved'), settle('rejected'));
        } catch (error) {
            Object.assign(request, { state: 'threw', error });
        }
        this.requests.push(Object.assign(request, { modal: device.modals()[opened] }));
    }

    /** Gives answers [kind, ...arguments] to the modal of a call, or to the latest, without waiting in between. */
    async answer(call, ...answers) {
        const modal = call === 'latest' ? device.modals().at(-1) : this.requests[call].modal;
        for (const [kind, ...args] of modal ? answers : []) {
            this.given.push(modal[kind](...args).catch((error) => this.refusedAnswers.push(error)));
            await (this.isOrderly && this.given.at(-1));
        }
    }

    /** Waits until everything on its way has arrived. */
    rest() { return Promise.all(this.given).then(turn); }

    advance(ms) { return advance(ms); }

    device(method, ...args) {
        device[method](...this.made(args));
    }

    made(args) { return args.map((arg) => (typeof arg === 'symbol' ? this[arg] : arg)); }
}

const CHANGED = { resultCode: 1002000015, resultInfo: 'who' };
const LOGIN = ['receive', { resultCode: 0, resultMessage: 'data' }];
const RESULT = ['result', 0, { resultMessage: 'data' }];
const LIMITED = ['receive', { resultCode: 0, playableTime: 1, endText: 'over' }];
const BYTES = Buffer.from('of an icon');
const ICONS = { mediaById: { 7: BYTES }, mediaByName: { icon: BYTES }, rawFiles: { 'raw.png': BYTES } };
const ACCOUNTS = [{ id: 7 }, { id: 0, params: ['app.media.icon'] }, { params: ['app.media.none', 'raw.png'] }, {}]
    .map((icon) => ({ accountName: 'name', accountIcon: { moduleName: 'entry', ...icon } }));

/** Answers to a call, and the wait for their delivery. */
const answer = (...args) => [['answer', ...args], ['rest']];
const BIND = ['open', 'bindPlayer', ['open', 'team']];
const QUICK = ['open', 'quickGameLogin', [{ gameAppId: 'app' }]];
const LISTEN = ['call', 'on', 'playerChanged', LISTENER];
const RAISE = ['call', 'onEventCallback', CHANGED];

/**
 * The scenarios by name. Steps are [method of Stage, ...arguments]. They need the manual clock and a system
 * application. Calls are numbered from 0.
 */
const SCENARIOS = {
    'errors that cannot be made': [[], [CALLBACK]].flatMap((rest, i) => [
        ['open', 'init', rest], ['device', 'failNext', 'napi_create_error'], ...answer(i, ['receive', CHANGED]),
    ]),
    'calls that open nothing': [
        ['init'], ['init', null], ['init', null, CALLBACK], ['getLocalPlayer', device.createStageContext('other')],
        ['bindPlayer', 1, 2], ['getLocalPlayer', null, CALLBACK], ['launchCommonPage', null, ''],
        ['verifyLocalPlayer', device.createAbilityContext(), 5], ['on', 'playerChanged', 5],
        ['off', 'playerChanged', () => {}], ['off'], ['syncTraceId', 'trace'], ['reportEventOperation', 'save', 5, 0],
    ].map((call) => ['call', ...call]),
    'logins that succeed, fail and are released': [
        ['open', 'getLocalPlayer'], ...answer(0, LOGIN), ...answer(0, ['release', 0]),
        ['open', 'getLocalPlayer', [CALLBACK]], ...answer(1, ['result', 1002000008]),
    ],
    'answers that overtake each other': [
        ['open', 'getLocalPlayer'], ...answer(0, LOGIN, ['release', 0], LOGIN, ['error', 401]),
        ['open', 'init', [CALLBACK]], ...answer(1, ['error', 401], ['result', 0], ['release', 1]),
    ],
    'requests and pages with parameters': [
        ['verifyLocalPlayer', { thirdOpenId: 'open', isRealName: true, isAdult: false, ageRange: 3 }],
        ['savePlayerRole', { roleId: 'r' }], ['postPurchase', { purchaseData: 'd' }], ['launchWelcomeBanner', 'text'],
        ['prePurchase', { productId: 'p', productType: 1 }], ['bindPlayer', 'open', 'team'], ['launchCommonPage', ''],
    ].flatMap(([method, ...rest], i) => [['open', method, rest], ...answer(i, RESULT, ['release', 0])]),
    'a union login with icons': [
        ['open', 'unionLogin', [{ loginPanelType: 2, thirdAccountInfos: ACCOUNTS }], { modules: { entry: ICONS } }],
        ...answer(0, LOGIN), ...answer(0, ['release', 0]),
    ],
    'a quick game whose time is up': [
        ['call', 'on', 'gameAddictionPrevented', LISTENER], QUICK, ...answer(1, LIMITED), ['advance', 75000],
        ['advance', 15000], ...answer('latest', ['release', 0]),
    ],
    'a time limit of the game\'s own': [['open', 'launchAntiAddiction', [60, 'over', 14]], ['advance', 15000]],
    'listeners that come and go': [
        LISTEN, ['call', 'on', 'playerChanged', Math.abs], LISTEN, RAISE, ['rest'],
        ['call', 'off', 'playerChanged', Math.abs], RAISE, ['call', 'off', 'playerChanged'], ['rest'],
    ],
    'events that the extension raises': [
        LISTEN, BIND, ...answer(1, ['result', 9, { resultInfo: 'who' }], ['receive', CHANGED]),
        QUICK, ...answer(2, ['result', 1002000006]),
    ],
    'windows that come late and never': [
        ['call', 'getLocalPlayer', LATE], [...BIND, { window: false }], ['open', 'init', [CALLBACK], { window: false }],
        ['advance', 2500], ['device', 'showWindow', LATE], ['advance', 1000], ...answer('latest', LOGIN),
        ['advance', 2000],
    ],
    'a first start': [
        LISTEN, ['open', 'init'], RAISE, ['rest'], ...answer(1, ['result', 0]), ['call', 'off', 'playerChanged'],
    ],
};

/** How an environment ends from within. */
const ENDS = {
    'terminate()': () => { for (;;) { /* until then */ } },
    'process.exit()': () => process.exit(7),
    'an uncaught exception': () => { throw new Error('on purpose'); },
    // It does nothing more, and ends when nothing keeps it alive.
    'its own end': () => new Promise(() => {}),
};

/** Plays a scenario up to a step, reports how many events were heard, and ends in one of the ways of ENDS. */
function playUntil(report, scenario, step, end) {
    let left = step;
    return new Stage({
        beforeStep() {
            if (left-- > 0) {
                return undefined;
            }
            report(this.heard);
            return ENDS[end]();
        },
    }).play(SCENARIOS[scenario]);
}

/** The same in a Worker. */
const playInWorker = (...args) => startWorker(({ ROOT, parentPort }, ...args) => {
    const { playUntil } = require(`${ROOT}/tests/support/scenarios.js`);
    return playUntil((heard) => parentPort.postMessage(heard), ...args);
}, ...args);

/** Log lines about calls for an environment that is gone, or on the wrong thread. */
const refusals = () => device.logs().map(({ message }) => message).filter((line) => line.includes(' refused: '));

/** How many of each exist, according to the log. A request whose thread sleeps does not count. */
function leftovers() {
    const listenersGone = countLogs('EventCallback release exit');
    const requests = countLogs('this is callback api') + countLogs('this is promise api') +
        countLogs('OnEventCallback switch game account event callback end');
    return {
        requests: requests - (countLogs('release exit') - listenersGone) - device.clock.sleepers(),
        listeners: countLogs('register succeeded') - listenersGone,
        environments: countLogs('SaveEnvInfo add env success') - countLogs('DeleteEnvInfo delete env success'),
    };
}

/** Resets the device to what a scenario needs. */
function prepare(mode) {
    support.reset();
    device.setSystemApp(true);
    device.answerOn(mode);
}

/** Makes a request and raises an event. Resolves to the request's state and what a listener heard. */
async function playNext() {
    const { game } = support;
    const heard = [];
    game.on('playerChanged', ({ resultInfo }) => heard.push(resultInfo));
    const request = start('init');
    game.onEventCallback({ ...CHANGED, resultInfo: 'next' });
    await request.modal.result(0);
    await turn();
    game.off('playerChanged');
    game.off('gameAddictionPrevented');
    await turn();
    return [request.state[0], ...heard].join();
}

/** Lets every thread of the module run to its end, and gives every modal a last answer. */
async function runOut({ isAsleep = false } = {}) {
    for (let rounds = 0; !isAsleep && rounds < 20 && device.clock.sleepers() > 0; ++rounds) {
        await device.clock.advance(15000);
    }
    for (const modal of device.modals()) {
        for (const [kind, code] of [['error', 401], ['release', 1]]) {
            await modal[kind](code).catch(() => {});
            await turn();
        }
    }
}

module.exports = {
    FOR_EVER, SCENARIOS, Stage, leftovers, playInWorker, playNext, playUntil, prepare, refusals, runOut,
};
