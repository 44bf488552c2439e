'use strict';

// When and how results reach the game, and what keeps the process alive until then.

const assert = require('node:assert/strict');
const { ask, device, expectChild, inBothOrders, turn } = require('./support');

inBothOrders((test) => ['ui', 'caller'].forEach((thread) => {
    test(`answers on the ${thread} thread arrive later, in their order, microtasks running in between`, async () => {
        const seen = [];
        for (let i = 0; i < 8; ++i) {
            ask('init', function () {
                seen.push(`${i} ${this}`);
                Promise.resolve().then(() => seen.push(`after ${i}`));
            });
        }
        const order = [3, 1, 0, 7, 6, 2, 5, 4];
        device.answerOn(thread);
        const answered = order.map((i) => device.modals()[i].result(0));
        await Promise.resolve();
        seen.push('went on');
        await Promise.all(answered);
        await turn();
        assert.deepEqual(seen, ['went on', ...order.flatMap((i) => [`${i} undefined`, `after ${i}`])]);
    });
}));

inBothOrders((test) => {
    test('an answer, a delivery and an onModal keep the process', () => expectChild(
        async ({ ask, device, setQueueOrder }) => {
            setQueueOrder();
            ask('init', () => console.log('called'));
            void device.modals()[0].result(0);
            device.onModal((modal) => void modal.receive({ resultCode: 0 }));
            console.log(await ask('bindPlayer', 'o', 't'));
        }, { out: ['called', 'undefined'] }));

    test('a request that waits for its window keeps the process until then', () => expectChild(
        ({ game, device, setQueueOrder }) => {
            setQueueOrder();
            const context = device.createAbilityContext({ window: false });
            device.clock.real(100);
            game.getLocalPlayer(context).then(() => console.log('settled'));
            setTimeout(() => device.showWindow(context), 5).unref();
            process.on('exit', () => console.log(device.modals().length, device.modals()[0].isOpen));
        }, { out: ['1 true'] }));

    test('nothing else keeps the process: requests, modals, listeners, limits', () => expectChild(
        async ({ game, answer, ask, start, setQueueOrder }) => {
            setQueueOrder();
            game.on('playerChanged', () => {});
            ask('launchAntiAddiction', 60, 'text', 6);
            start('prePurchase');
            const [released, answered] = [start('getLocalPlayer'), start('getLocalPlayer')];
            await answer(released.modal, ['release', 0]);
            await answer(answered.modal, ['receive', { resultCode: 0, playableTime: 5 }]);
            await answer(start('launchCommonPage').modal, ['release', 0]);
            console.log(released.state[0], released.modal.isOpen, answered.state[0], answered.modal.isOpen);
        }, { out: ['pending false resolved true'] }));
});
