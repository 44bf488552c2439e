'use strict';

// What a game and its extension do together, told step by step, for tests that disturb it at every step.

const support = require('./index.js');

const { device, turn } = support;
const CALLBACK = Symbol('a callback that is noted');
const PLAYER_INVALID = 1002000015;

/**
 * Where a scenario plays. It notes what becomes of each call, and goes on whatever that is. The module loads with the
 * first call. `beforeStep` is awaited at every step; with `isOrderly` an answer waits for the one before it.
 */
class Stage {
    requests = [];
    heard = [];
    refusedAnswers = [];
    #beforeStep;
    #isOrderly;

    constructor({ beforeStep = () => {}, isOrderly = false } = {}) {
        this.#beforeStep = beforeStep;
        this.#isOrderly = isOrderly;
    }

    /** Calls the module; the promise that it returns, or the CALLBACK among `args`, is followed. */
    async call(method, ...args) {
        await this.#beforeStep();
        const opened = device.modals().length;
        const request = { method, form: args.includes(CALLBACK) ? 'callback' : 'promise', state: 'pending' };
        const callback = () => {
            request.state = 'called back';
        };
        try {
            const value = support.game[method](...args.map((arg) => arg === CALLBACK ? callback : arg));
            if (value instanceof Promise) {
                const settle = (state) => () => {
                    request.state = state;
                };
                value.then(settle('resolved'), settle('rejected'));
            } else if (request.form === 'promise') {
                request.state = 'returned';
            }
        } catch (error) {
            Object.assign(request, { state: 'threw', error });
        }
        request.modal = device.modals()[opened];
        this.requests.push(request);
        return request;
    }

    /** Gives answers [kind, ...arguments] to a request without waiting in between, and then lets them arrive. */
    async answer({ modal }, ...answers) {
        await this.#beforeStep();
        const given = [];
        for (const [kind, ...args] of modal ? answers : []) {
            given.push(modal[kind](...args).catch((error) => this.refusedAnswers.push(error)));
            await (this.#isOrderly && given.at(-1));
        }
        await this.#beforeStep();
        await Promise.all(given);
        await turn();
    }

    async advance(ms) {
        await this.#beforeStep();
        await device.clock.advance(ms);
        await turn();
    }

    async rest() {
        await this.#beforeStep();
        await turn();
    }

    listener() {
        return (event) => this.heard.push(event);
    }
}

const login = (more = {}) => ['receive', { resultCode: 0, resultMessage: 'data', ...more }];
const newContext = (options) => device.createAbilityContext(options);

const ICONS = {
    mediaById: { 7: Buffer.from('by id') },
    mediaByName: { icon: Buffer.from('by name') },
    rawFiles: { 'raw.png': Buffer.from('raw') },
};
const ACCOUNTS = [
    { accountName: 'one', accountIcon: { moduleName: 'entry', id: 7 } },
    { accountName: 'two', accountIcon: { moduleName: 'entry', id: 0, params: ['app.media.icon'] } },
    { accountName: 'three', accountIcon: { moduleName: 'entry', params: ['app.media.none', 'raw.png'] } },
    { accountName: 'four' },
];

/** The scenarios by name. They rely on the manual clock, and on a system application where they listen. */
const SCENARIOS = {
    async 'init by promise and by callback'(stage) {
        await stage.answer(await stage.call('init', newContext()), ['result', 0]);
        await stage.answer(await stage.call('init', newContext(), CALLBACK), ['error', 5]);
    },

    async 'errors that cannot be made'(stage) {
        for (const callback of [[], [CALLBACK]]) {
            const request = await stage.call('init', newContext(), ...callback);
            device.failNext('napi_create_error');
            await stage.answer(request, ['receive', { resultCode: PLAYER_INVALID }]);
        }
    },

    async 'calls that go nowhere'(stage) {
        const other = device.createStageContext('other');
        for (const [method, ...args] of [
            ['init'], ['init', null], ['init', null, CALLBACK], ['getLocalPlayer', other], ['bindPlayer', 1, 2],
            ['getLocalPlayer', null, CALLBACK], ['verifyLocalPlayer', newContext(), 5], ['launchCommonPage', null, ''],
            ['on', 'playerChanged', 5], ['off', 'playerChanged', () => {}], ['off'],
        ]) {
            await stage.call(method, ...args);
        }
    },

    async 'logins that succeed, fail and are released'(stage) {
        const kept = await stage.call('getLocalPlayer', newContext());
        await stage.answer(kept, login());
        await stage.answer(kept, ['release', 0]);
        const failed = await stage.call('getLocalPlayer', newContext(), CALLBACK);
        await stage.answer(failed, ['result', 1002000008]);
    },

    async 'answers that overtake each other'(stage) {
        const first = await stage.call('getLocalPlayer', newContext());
        const second = await stage.call('init', newContext());
        await stage.answer(first, login(), ['release', 0], login(), ['error', 401]);
        await stage.answer(second, ['error', 401], ['result', 0], ['release', 1]);
    },

    async 'requests with parameters'(stage) {
        const info = { thirdOpenId: 'open', isRealName: true, isAdult: false, ageRange: 3 };
        for (const [method, ...rest] of [
            ['verifyLocalPlayer', info], ['savePlayerRole', { roleId: 'r' }], ['postPurchase', { purchaseData: 'd' }],
            ['prePurchase', { productId: 'p', productType: 1 }], ['bindPlayer', 'open', 'team'],
        ]) {
            const request = await stage.call(method, newContext(), ...rest);
            await stage.answer(request, ['result', 0, { resultMessage: 'data' }]);
        }
    },

    async 'a union login with icons'(stage) {
        const context = newContext({ modules: { entry: ICONS } });
        const parameters = { showLoginDialog: true, loginPanelType: 2, thirdAccountInfos: ACCOUNTS };
        const request = await stage.call('unionLogin', context, parameters);
        await stage.answer(request, login());
        await stage.answer(request, ['release', 0]);
    },

    async 'a quick game whose time is up'(stage) {
        await stage.call('on', 'gameAddictionPrevented', stage.listener());
        const request = await stage.call('quickGameLogin', newContext(), { gameAppId: 'app' });
        await stage.answer(request, login({ playableTime: 1, endText: 'over' }));
        await stage.advance(75000);
        const page = { modal: device.modals().at(-1) };
        await stage.advance(15000);
        await stage.answer(page, ['release', 0]);
    },

    async 'a time limit of the game\'s own'(stage) {
        await stage.call('launchAntiAddiction', newContext(), 60, 'over', 14);
        await stage.advance(15000);
    },

    async 'pages that expect no answer'(stage) {
        for (const method of ['launchWelcomeBanner', 'launchCommonPage']) {
            await stage.answer(await stage.call(method, newContext(), 'text'), ['release', 0]);
        }
    },

    async 'listeners that come and go'(stage) {
        const [first, second] = [stage.listener(), stage.listener()];
        for (const listener of [first, second, first]) {
            await stage.call('on', 'playerChanged', listener);
        }
        await stage.call('onEventCallback', { resultCode: PLAYER_INVALID, resultInfo: 'who' });
        await stage.rest();
        await stage.call('off', 'playerChanged', second);
        await stage.call('onEventCallback', { resultCode: PLAYER_INVALID, resultInfo: 'who' });
        await stage.call('off', 'playerChanged');
        await stage.rest();
    },

    async 'events that the extension raises'(stage) {
        await stage.call('on', 'playerChanged', stage.listener());
        const request = await stage.call('bindPlayer', newContext(), 'open', 'team');
        await stage.answer(request, ['result', 9, { resultInfo: 'who' }], ['receive', { resultCode: PLAYER_INVALID }]);
        const quick = await stage.call('quickGameLogin', newContext(), { gameAppId: 'app' });
        await stage.answer(quick, ['result', 1002000006]);
    },

    async 'windows that come late and never'(stage) {
        const late = newContext({ window: false });
        await stage.call('getLocalPlayer', late);
        await stage.call('bindPlayer', newContext({ window: false }), 'open', 'team');
        await stage.call('init', newContext({ window: false }), CALLBACK);
        await stage.advance(2500);
        device.showWindow(late);
        await stage.advance(1000);
        await stage.answer({ modal: device.modals().at(-1) }, login());
        await stage.advance(2000);
    },

    async 'a first start'(stage) {
        await stage.call('on', 'playerChanged', stage.listener());
        const request = await stage.call('init', newContext());
        await stage.call('onEventCallback', { resultCode: PLAYER_INVALID, resultInfo: 'who' });
        await stage.answer(request, ['result', 0]);
        await stage.call('off', 'playerChanged');
    },

    async 'calls without a request'(stage) {
        await stage.call('syncTraceId', 'trace');
        await stage.call('reportEventOperation', 'save', 5, 0);
    },
};

const messages = () => device.logs().map(({ message }) => message.replace(/^\[[^\]]*\]/, ''));

/** What the log says came into being and is not gone yet: { contexts, listeners, environments }. */
function leftovers() {
    const lines = messages();
    const count = (...texts) => lines.filter((line) => texts.includes(line)).length;
    return {
        contexts: count('this is callback api', 'this is promise api',
            'OnEventCallback switch game account event callback end') - count('release exit'),
        listeners: count('RegisterGameEventCallback first register succeeded',
            'RegisterGameEventCallback callback register succeeded') - count('EventCallback release exit'),
        environments: count('SaveEnvInfo add env success') - count('DeleteEnvInfo delete env success'),
    };
}

/** A device as a scenario relies on, which forgets all that was before. */
function prepare(mode) {
    device.reset();
    device.clock.manual();
    device.setSystemApp(true);
    device.answerOn(mode);
}

/** A whole request and an event of this environment: [the state of the request, what a listener heard]. */
async function playNext() {
    const { game } = support;
    const heard = [];
    const opened = device.modals().length;
    game.on('playerChanged', ({ resultInfo }) => heard.push(resultInfo));
    const request = support.track(game.init(device.createAbilityContext()));
    game.onEventCallback({ resultCode: PLAYER_INVALID, resultInfo: 'next' });
    await device.modals()[opened].result(0);
    await turn();
    game.off('playerChanged');
    game.off('gameAddictionPrevented');
    await turn();
    return [request.state[0], ...heard];
}

/** Lets every thread of the module run to its end. */
async function runOut() {
    for (let rounds = 0; rounds < 20 && device.clock.sleepers() > 0; ++rounds) {
        await device.clock.advance(15000);
    }
}

/** The extension's last words on every modal, which no request survives that has no timer. */
async function endAllModals() {
    for (const modal of device.modals()) {
        for (const answer of [() => modal.error(401), () => modal.release(1)]) {
            await answer().catch(() => {});
            await turn();
        }
    }
}

module.exports = { SCENARIOS, Stage, endAllModals, leftovers, messages, playNext, prepare, runOut };
