'use strict';

const assert = require('node:assert/strict');
const { MESSAGES } = require('../soak/hostile/tables');
const { SYSTEM_ERROR, answer, countLogs, device, ends, expectChild, game, start, test, turn } = require('./support');

test('a rejection carries an Error, and the callback form gets it with undefined', async () => {
    const calls = [];
    game.getLocalPlayer(device.createAbilityContext(), (...values) => calls.push(values));
    await answer(device.modals()[0], ['error', 1002000008]);
    const [[error, ...data], ...others] = calls;
    assert.ok(error instanceof Error);
    assert.deepEqual([error.code, error.message, data, others], [1002000008, MESSAGES[1002000008], [undefined], []]);
});

for (const calls of [['napi_create_error'], ['napi_create_error', 'napi_set_named_property'],
    ['napi_create_error', 'napi_throw_error']]) {
    test(`a failure is still told as one when ${calls.join(' and ')} fail`, async () => {
        const error = await new Promise((resolve) => {
            game.bindPlayer(device.createAbilityContext(), 'open', 'team').catch(resolve);
            calls.forEach((call) => device.failNext(call));
            device.modals()[0].error(1002000008);
        });
        const code = calls.includes('napi_set_named_property') ? undefined : 1002000008;
        const isErrorHad = !calls.includes('napi_throw_error');
        assert.deepEqual([error instanceof Error, error?.code, error?.message],
            isErrorHad ? [true, code, MESSAGES[1002000008]] : [false, undefined, undefined]);
    });
}

test('a callback gets an error too when the environment refuses to make it', async () => {
    const errors = [];
    game.getLocalPlayer(device.createAbilityContext(), (error) => errors.push(error.code));
    device.failNext('napi_create_error');
    await answer(device.modals()[0], ['error', 1002000008]);
    assert.deepEqual(errors, [1002000008]);
});

test('a callback is called with undefined as its receiver', async () => {
    const receivers = [];
    game.init(device.createAbilityContext(), function () {
        receivers.push(this);
    });
    await answer(device.modals()[0], ['result', 0]);
    assert.deepEqual(receivers, [undefined]);
});

for (const [call, state, log] of [
    ['WrapWantParams', ['rejected', ...SYSTEM_ERROR], 'CreateResultMessage parse napiResult or resultMessage failed'],
    ['napi_get_named_property', ['rejected', ...SYSTEM_ERROR], 'parse napiResult or resultMessage failed'],
    ['napi_resolve_deferred', ['pending'], 'DoMessageBackSuccess set hasMsgBack to true'],
]) {
    test(`a result whose ${call} fails is ${state[0]}, though analytics told of a success before`, async () => {
        const request = start('getLocalPlayer');
        device.failNext(call);
        await answer(request.modal, ['receive', { resultCode: 0, resultMessage: 'data' }]);
        assert.deepEqual([request.state, countLogs(log), ends()], [state, 1, [['getLocalPlayer', 0]]]);
        assert.equal(request.modal.isOpen, true);
    });
}

for (const [call, log] of [
    ['uv_queue_work', 'SendMessageBack uv_queue_work call failed'],
    ['napi_get_uv_event_loop', 'isValidEnv[1] or get loop failed'],
]) {
    test(`an answer that ${call} keeps from JS closes the modal, settles nothing and frees the request`, async () => {
        const request = start('getLocalPlayer');
        device.failNext(call);
        await answer(request.modal, ['receive', { resultCode: 0 }], ['receive', { resultCode: 0 }]);
        assert.deepEqual([request.state, request.modal.isOpen, countLogs(log)], [['pending'], false, 1]);
        assert.equal(countLogs('DoMessageBackException release context'), 1);
        assert.equal(countLogs('OnReceive baseContext is null'), 1);
    });
}

test('a delivery without a handle scope throws 1002000001 into the environment and settles nothing', () => expectChild(
    async ({ device, start, answer }) => {
        process.on('uncaughtException', (error) => console.log('uncaught', error.code, error.message));
        const request = start('bindPlayer');
        device.failNext('napi_open_handle_scope');
        await answer(request.modal, ['result', 0]);
        console.log(request.state[0], request.modal.isOpen);
    }, { out: ['uncaught 1002000001 System internal error.', 'pending false'] }));

for (const thread of ['ui', 'caller']) {
    test(`answers on the ${thread} thread arrive in their order, microtasks running in between`, async () => {
        const seen = [];
        for (let i = 0; i < 8; ++i) {
            game.init(device.createAbilityContext(), () => {
                seen.push(i);
                Promise.resolve().then(() => seen.push(`after ${i}`));
            });
        }
        const order = [3, 1, 0, 7, 6, 2, 5, 4];
        device.answerOn(thread);
        await Promise.all(order.map((i) => device.modals()[i].result(0)));
        await turn();
        assert.deepEqual(seen, order.flatMap((i) => [i, `after ${i}`]));
    });
}

test('an answer never settles before the code that follows it on the JS thread has run', async () => {
    device.answerOn('caller');
    const seen = [];
    game.init(device.createAbilityContext(), () => seen.push('called'));
    const answered = device.modals()[0].result(0);
    await Promise.resolve();
    seen.push('went on');
    await answered;
    await turn();
    assert.deepEqual(seen, ['went on', 'called']);
});

test('what a callback throws is an uncaught exception, and later deliveries still come', () => expectChild(
    async ({ game, device, answer, start }) => {
        process.on('uncaughtException', (error) => console.log('uncaught', error.message));
        for (const name of ['one', 'two']) {
            game.init(device.createAbilityContext(), () => {
                console.log('called', name);
                throw new Error(name);
            });
        }
        const request = start('bindPlayer');
        await Promise.all(device.modals().map((modal) => modal.result(0)));
        await answer(request.modal, ['release', 0]);
        console.log(request.state[0]);
    }, { out: ['called one', 'uncaught one', 'called two', 'uncaught two', 'resolved'] }));

test('what a callback throws ends a process that does not handle it', async () => {
    const { stderr } = await expectChild(async ({ game, device, answer }) => {
        game.init(device.createAbilityContext(), () => {
            throw new Error('of the callback');
        });
        await answer(device.modals()[0], ['result', 0]);
        console.log('went on');
    }, { code: 1 });
    assert.ok(stderr.includes('of the callback'));
});

test('an answer and a delivery on their way keep the process, and so does who hears of a modal', () => expectChild(
    async ({ game, device }) => {
        game.init(device.createAbilityContext(), () => console.log('called'));
        void device.modals()[0].result(0);
        device.onModal((modal) => void modal.receive({ resultCode: 0 }));
        console.log(await game.bindPlayer(device.createAbilityContext(), 'o', 't'));
    }, { out: ['called', 'undefined'] }));

test('a request that waits for its window keeps the process until the modal opens, and no longer', () => expectChild(
    async ({ game, device }) => {
        const context = device.createAbilityContext({ window: false });
        device.clock.real(100);
        game.getLocalPlayer(context).then(() => console.log('settled'));
        setTimeout(() => device.showWindow(context), 5).unref();
        process.on('exit', () => console.log(device.modals().length, device.modals()[0].isOpen));
    }, { out: ['1 true'] }));

test('a request without an answer keeps no process, nor do released modals, listeners or limits', () => expectChild(
    async ({ game, device, start, answer }) => {
        game.on('playerChanged', () => {});
        start('prePurchase');
        const released = start('getLocalPlayer');
        const answered = start('getLocalPlayer');
        const launched = start('launchCommonPage');
        game.launchAntiAddiction(device.createAbilityContext(), 60, 'text', 6);
        await answer(released.modal, ['release', 0]);
        await answer(answered.modal, ['receive', { resultCode: 0, playableTime: 5 }]);
        await answer(launched.modal, ['release', 0]);
        console.log(released.state[0], released.modal.isOpen, answered.state[0], answered.modal.isOpen);
    }, { out: ['pending false resolved true'] }));
