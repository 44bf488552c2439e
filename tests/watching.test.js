'use strict';

// What a watcher of the device sees, and the timers on its clock.

const assert = require('node:assert/strict');
const { answer, ask, attempt, device, game, nextMessage, raise, start, startWorker, test, turn } = require('./support');

const { clock } = device;

/** Watches; each record as its kind and the values of those of `fields` that it has. */
function watch(...fields) {
    const seen = [];
    device.onRecord((record) =>
        seen.push([record.kind, ...fields.filter((name) => name in record).map((name) => record[name])]));
    return seen;
}

const withoutLog = (seen) => seen.filter(([kind]) => kind !== 'log' && kind !== 'reported');

test('a watcher sees a call, its modal, its answers and its outcome', async () => {
    const seen = watch('method', 'how', 'code', 'message', 'data', 'arguments');
    const data = [];
    ask('getLocalPlayer', (error, player) => data.push(player));
    const login = device.modals().at(-1);
    await answer(login, ['receive', { resultCode: 0, resultMessage: 'Lin' }], ['release', 0]);
    const bound = start('bindPlayer');
    await answer(bound.modal, ['result', 1002000012]);
    assert.deepEqual([withoutLog(seen), data], [[
        ['call', 'getLocalPlayer', ['object', 'function']], ['opened', 'getLocalPlayer'],
        ['answered', 'getLocalPlayer', 'receive', 0], ['settled', 'getLocalPlayer', 'called back', 0, 'Lin'],
        ['answered', 'getLocalPlayer', 'release', 0], ['closed', 'getLocalPlayer'],
        ['call', 'bindPlayer', ['object', '"open-1"', '"team-1"']], ['opened', 'bindPlayer'],
        ['answered', 'bindPlayer', 'result', 1002000012], ['closed', 'bindPlayer'],
        ['settled', 'bindPlayer', 'rejected', 1002000012, 'The thirdOpenId or teamPlayerId has been bound.'],
    ], ['Lin']]);
    const logged = seen.filter(([kind, message]) => kind === 'log' && /end BindPlayer$/.test(message));
    assert.deepEqual([logged.length, seen.filter(([kind]) => kind === 'reported').length], [1, 2]);
});

test('a watcher sees to which call something belongs', async () => {
    const seen = watch('call', 'method', 'code', 'type', 'data');
    const throwing = { get productId() { throw new Error('of the game'); } };
    game.on('playerChanged', () => {});
    raise('Mei');
    attempt(() => ask('prePurchase', throwing));
    const context = device.createAbilityContext({ window: false });
    void game.getLocalPlayer(context);
    game.syncTraceId('after it');
    device.showWindow(context);
    await turn();
    await clock.advance(1000);
    function inner() {
        attempt(() => game.bindPlayer());
        game.syncTraceId('inner');
        return 'product-1';
    }
    async function outer() {
        await game.prePurchase(device.createAbilityContext(), { get productId() { return inner(); } });
    }
    const bought = outer();
    await Promise.all([device.modals()[1].result(1002000002), assert.rejects(bought, ({ stack }) => {
        assert.match(stack, /^\s+at prePurchase \(.*watching\.test\.js/m);
        return /at outer /.test(stack) && !/at inner /.test(stack);
    })]);
    await turn();
    assert.deepEqual(withoutLog(seen).map(([kind, call, ...rest], _, [[, first]]) => [kind, call - first, ...rest]), [
        ['call', 0, 'on'], ['call', 1, 'onEventCallback'], ['call', 2, 'prePurchase'], ['settled', 2, 'prePurchase'],
        ['call', 3, 'getLocalPlayer'], ['call', 4, 'syncTraceId'], ['heard', 0, 'on', 'playerChanged', 'Mei'],
        ['opened', 3, 'getLocalPlayer'], ['call', 5, 'prePurchase'], ['call', 6, 'bindPlayer'],
        ['settled', 6, 'bindPlayer', 401], ['call', 7, 'syncTraceId'], ['opened', 5, 'prePurchase'],
        ['answered', 5, 'prePurchase', 1002000002], ['closed', 5, 'prePurchase'],
        ['settled', 5, 'prePurchase', 1002000002],
    ]);
});

test('a watcher sees the calls of a Worker, and nothing once it looks away', async () => {
    const seen = watch('call', 'method');
    const worker = startWorker((support) => {
        void support.ask('init');
        support.parentPort.postMessage('done');
    });
    await nextMessage(worker);
    void start('init');
    await turn();
    const calls = seen.filter(([kind]) => kind === 'call');
    assert.deepEqual(calls.map(([, , method]) => method), ['init', 'init']);
    assert.notEqual(calls[0][1], calls[1][1]);
    device.onRecord(null);
    const before = seen.length;
    void start('init');
    await turn();
    assert.equal(seen.length, before);
    await worker.terminate();
});

test('handlers run at their times, and what they await holds the clock', async () => {
    const begin = clock.now();
    const seen = [];
    const record = (what) => seen.push([clock.now() - begin, what]);
    device.onModal(() => clock.after(500, async () => {
        await turn();
        record('modal');
    }));
    clock.after(1500, () => record('second'));
    clock.after(1000, () => {
        record('first');
        clock.after(0, () => record('at once'));
        clock.after(250, () => record('later'));
    });
    clock.after(700, () => record('never'))();
    ask('launchAntiAddiction', 1, '', 14);
    assert.equal(clock.next(), 1000);
    await clock.advance(16000);
    assert.deepEqual(seen, [[1000, 'first'], [1000, 'at once'], [1250, 'later'], [1500, 'second'], [15500, 'modal']]);
    clock.after(1, () => record('forgotten'));
    device.reset();
    clock.manual();
    await clock.advance(10);
    assert.equal(seen.length, 5);
});
