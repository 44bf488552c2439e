'use strict';

const assert = require('node:assert/strict');
const { ErrorCode } = require('game-player-extension-module/errors');
const { MESSAGES } = require('./model/tables');
const {
    PARAMETER_ERROR, SYSTEM_ERROR, answer, attempt, countLogs, device, ends, expectChild, game, start, test,
} = require('./support');
const { METHODS } = require('./support/requests');

const OTHERS = ['syncTraceId', 'on', 'off', 'reportEventOperation', 'onEventCallback'];

test('the module exports the methods of the table and five others', () => {
    assert.deepEqual(Object.getOwnPropertyNames(game).sort(), [...Object.keys(METHODS), ...OTHERS].sort());
});

test('the error codes are those that the documents have, with their messages', async () => {
    assert.deepEqual(Object.values(ErrorCode), Object.keys(MESSAGES).map(Number));
    for (const code of [1, 202, 401, 402, ...Array.from({ length: 32 }, (_, i) => 1002000000 + i)]) {
        const request = start('bindPlayer');
        await answer(request.modal, ['error', code]);
        assert.deepEqual(request.state, ['rejected', ...(code in MESSAGES ? [code, MESSAGES[code]] : SYSTEM_ERROR)]);
    }
});

for (const { call, outcome = ['returned', undefined], log } of [
    { call: 'napi_create_string_utf8', log: 'napi create errorMessage failed' },
    {
        call: 'napi_create_int32', outcome: ['threw', undefined, 'Parameter error.'],
        log: 'napi create errorCode failed',
    },
    { call: 'napi_create_error', log: 'napi create errorCode failed' },
    { call: 'napi_throw', log: 'ThrowBusinessError napi_throw status' },
]) {
    test(`a business error that ${call} spoils does no further harm`, () => {
        device.failNext(call);
        assert.deepEqual(attempt(() => game.bindPlayer()), outcome);
        assert.deepEqual([countLogs(log), ends()], [1, [['bindPlayer', 401]]]);
        assert.deepEqual(attempt(() => game.bindPlayer()), ['threw', ...PARAMETER_ERROR]);
    });
}

test('a second import on a thread shares all with the first', () => expectChild(
    async ({ ROOT, game, countLogs, raise, roundTrip, turn }) => {
        const isOfModule = (file) => file.endsWith('.node') || file === require.resolve(ROOT);
        Object.keys(require.cache).filter(isOfModule).forEach((file) => delete require.cache[file]);
        const again = require(ROOT);
        console.log(again !== game, countLogs('begin Entry'), countLogs('SaveEnvInfo add env success'));
        again.on('playerChanged', ({ resultInfo }) => console.log(`second heard ${resultInfo}`));
        raise('first');
        await turn();
        game.off('playerChanged');
        again.onEventCallback({ resultCode: 1002000015, resultInfo: 'nobody' });
        console.log(await roundTrip());
    }, { out: ['true 2 1', 'second heard first', '0-1'] }));

test('an import that fails throws, and a later one succeeds', () => expectChild(
    async (support) => {
        support.device.failNext('napi_define_properties');
        console.log(...support.attempt(() => support.game));
        console.log(await support.roundTrip());
    }, { out: ['threw 1002000001 System internal error.', '0-1'] }));

for (const order of [['worker', 'worker', 'main', 'worker'], ['workers', 'main', 'workers']]) {
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
