'use strict';

const assert = require('node:assert/strict');
const { ErrorCode } = require('../errors.js');
const { MESSAGES } = require('../soak/hostile/tables');
const {
    METHODS: ASYNCHRONOUS, PARAMETER_ERROR, attempt, countLogs, device, ends, expectChild, game, test,
} = require('./support');

const METHODS = [
    'init', 'getLocalPlayer', 'savePlayerRole', 'prePurchase', 'postPurchase', 'bindPlayer', 'unbindPlayer',
    'verifyLocalPlayer', 'unionLogin', 'launchWelcomeBanner', 'launchAntiAddiction', 'quickGameLogin',
    'launchCommonPage', 'syncTraceId', 'on', 'off', 'reportEventOperation', 'onEventCallback',
];

test('the module exports exactly its eighteen functions, in their order', () => {
    assert.deepEqual(Object.getOwnPropertyNames(game), METHODS);
    assert.ok(METHODS.every((name) => typeof game[name] === 'function'));
});

test('every asynchronous method and every error code has its row in the tables of the tests', () => {
    const others = ['syncTraceId', 'on', 'off', 'reportEventOperation', 'onEventCallback'];
    assert.deepEqual([...Object.keys(ASYNCHRONOUS), ...others].sort(), [...METHODS].sort());
    assert.deepEqual(Object.keys(MESSAGES), Object.values(ErrorCode).map(String));
});

test('a business error is an Error whose own code is a number', () => {
    assert.throws(() => game.bindPlayer(), (error) => {
        assert.ok(error instanceof Error);
        assert.ok(Object.hasOwn(error, 'code'));
        assert.deepEqual([error.code, error.message], PARAMETER_ERROR);
        return true;
    });
});

for (const [call, outcome, log] of [
    ['napi_create_string_utf8', ['returned', undefined], 'napi create errorMessage failed'],
    ['napi_create_int32', ['threw', undefined, 'Parameter error.'], 'napi create errorCode failed'],
    ['napi_create_error', ['returned', undefined], 'napi create errorCode failed'],
    ['napi_throw', ['returned', undefined], 'ThrowBusinessError napi_throw status'],
]) {
    test(`a business error that ${call} spoils does no further harm`, () => {
        device.failNext(call);
        assert.deepEqual(attempt(() => game.bindPlayer()), outcome);
        assert.equal(countLogs(log), 1);
        assert.deepEqual(ends(), [['bindPlayer', 401]]);
        assert.deepEqual(attempt(() => game.bindPlayer()), ['threw', ...PARAMETER_ERROR]);
    });
}

test('a second import on a thread registers nothing again and shares all with the first', () => expectChild(
    async ({ ROOT, device, game, countLogs, roundTrip, turn }) => {
        for (const file of Object.keys(require.cache)) {
            if (file.endsWith('.node') || file === require.resolve(ROOT)) {
                delete require.cache[file];
            }
        }
        const again = require(ROOT);
        console.log(again !== game, countLogs('begin Entry'), countLogs('SaveEnvInfo add env success'));
        again.on('playerChanged', ({ resultInfo }) => console.log(`second heard ${resultInfo}`));
        game.onEventCallback({ resultCode: 1002000015, resultInfo: 'first' });
        await turn();
        game.off('playerChanged');
        again.onEventCallback({ resultCode: 1002000015, resultInfo: 'nobody' });
        const request = again.getLocalPlayer(device.createAbilityContext());
        await device.modals()[0].receive({ resultCode: 0, resultMessage: 'data' });
        console.log(await request, await roundTrip());
    }, { out: ['true 2 1', 'second heard first', 'data 0-1'] }));

test('an import that cannot define the methods throws, and a later one succeeds', () => expectChild(
    async (support) => {
        support.device.failNext('napi_define_properties');
        try {
            console.log('imported', support.game);
        } catch ({ code, message }) {
            console.log(typeof code, code, message);
        }
        console.log(await support.roundTrip());
    }, { out: ['number 1002000001 System internal error.', '0-1'] }));

for (const order of [
    ['main', 'worker'], ['worker', 'main'], ['worker', 'worker', 'main', 'worker'], ['workers', 'main', 'workers'],
]) {
    test(`the load order ${order.join(', ')} works, each step after the Workers before it ended`, () => expectChild(
        async ({ startWorker, once, roundTrip }, order) => {
            const inWorker = () => once(startWorker(({ roundTrip }) => roundTrip()), 'exit');
            for (const step of order) {
                const workers = { main: 0, worker: 1, workers: 4 }[step];
                await Promise.all(workers ? Array.from({ length: workers }, inWorker) : [roundTrip()]);
                console.log(step);
            }
        }, { args: [order], out: order }));
}

test('no argument, of any type and count, crashes a method or throws anything unforeseen', () => expectChild(
    async ({ REQUESTS, device, game, attempt }, methods) => {
        const trap = () => {
            throw new RangeError('trap');
        };
        const revocable = Proxy.revocable({}, {});
        revocable.revoke();
        const context = device.createAbilityContext();
        const pool = [
            undefined, null, 0, -1.5, NaN, 2 ** 40, 10n, '', 'playerChanged', 'gameAddictionPrevented', 'a\0b',
            '\ud800', true, Symbol('s'), [], {}, () => {}, new Date(0), new Uint8Array(8), Object.create(null),
            new Proxy({}, { get: trap, has: trap }), revocable.proxy, { get resultCode() { return trap(); } }, context,
            device.createUIExtensionContext({ window: false }), device.createStageContext('empty'),
        ];
        const lists = [[], ...pool.map((a) => [a]), ...pool.flatMap((a) => pool.map((b) => [a, b])),
            ...pool.flatMap((a) => pool.map((b) => [context, a, b])), ...pool.map((a) => [context, a, a, a])];
        const foreseen = (name, [kind, value, message]) => kind === 'returned'
            ? value === undefined || value instanceof Promise
            : [0, 202, 401].includes(value) || /^trap$|revoked/.test(message)
                || (name in REQUESTS && REQUESTS[name].hidden && message === 'Invalid argument');
        device.clock.manual();
        for (const name of methods) {
            for (const list of lists) {
                const outcome = attempt(() => game[name](...list));
                if (outcome[1] instanceof Promise) {
                    outcome[1].catch((error) => error.code === 401 || console.log(name, list, error));
                }
                if (!foreseen(name, outcome)) {
                    console.log(name, list, outcome);
                }
            }
        }
        await device.clock.advance(5000);
        device.reset();
    }, { args: [METHODS] }));
