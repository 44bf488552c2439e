// Tests the game on the stand-in device. To run: npx tsc -p examples/shop && node --test out/examples/shop/game.test.js

import assert from 'node:assert/strict';
import { afterEach, test } from 'node:test';
import device from 'game-player-extension-module/device';
import type { GameEnd, Modal, ModalFilter } from 'game-player-extension-module/device';
import { ErrorCode, RequestType } from 'game-player-extension-module/errors';
import { Game } from './game.js';

afterEach(() => device.reset());

/** Answers the next modal of a method, and returns it. */
async function answer(method: ModalFilter, code: number, resultMessage?: string): Promise<Modal> {
    const modal = await device.nextModal(method);
    await modal.receive(resultMessage === undefined ? { resultCode: code } : { resultCode: code, resultMessage });
    return modal;
}

async function loggedIn(): Promise<Game> {
    const game = new Game(device.createAbilityContext());
    const login = game.logIn();
    await answer('init', ErrorCode.SUCCESS);
    const page = await answer('getLocalPlayer', ErrorCode.SUCCESS, '{"playerId":"p1"}');
    assert.deepEqual(await login, { playerId: 'p1' });
    assert.ok(page.isOpen, 'the page of a login stays until it is released');
    return game;
}

test('a player logs in, and out when the account changes', async () => {
    const game = await loggedIn();
    const page = device.modals().at(-1);
    assert.ok(page);
    await page.receive({ resultCode: 9, resultInfo: 'someone else' });
    assert.equal(game.player, null);
});

test('a player who is not signed in does not play', async () => {
    const game = new Game(device.createAbilityContext());
    const login = game.logIn();
    await answer('init', ErrorCode.SUCCESS);
    await answer('getLocalPlayer', ErrorCode.NOT_SIGNED_IN);
    assert.equal(await login, null);
});

test('gems are bought once they are paid for', async () => {
    const game = await loggedIn();
    const bought = game.buyGems(5);
    const modal = await answer({ requestType: RequestType.PRE_PURCHASE }, ErrorCode.SUCCESS, 'order 7');
    assert.ok(String(modal.want.parameters['tavikExtra']).includes('"productId":"gems-5"'));
    await answer('postPurchase', ErrorCode.SUCCESS);
    assert.deepEqual([await bought, game.gems], ['bought', 5]);
});

test('what the shop says of a purchase that fails depends on why', async () => {
    const game = await loggedIn();
    const answers: [number, string][] = [
        [ErrorCode.NETWORK, 'try again'], [ErrorCode.BLOCKLISTED, 'refused'], [12345, 'try again'],
    ];
    for (const [code, said] of answers) {
        const bought = game.buyGems(5);
        await answer('prePurchase', code);
        assert.deepEqual([await bought, game.gems], [said, 0]);
    }
});

test('the game ends when the time to play is over', async () => {
    const ended = new Promise<GameEnd>((resolve) => { device.onExit(resolve); });
    device.clock.manual();
    const game = new Game(device.createAbilityContext());
    const login = game.logIn();
    await answer('init', ErrorCode.SUCCESS);
    await (await device.nextModal('getLocalPlayer')).receive({ resultCode: 0, playableTime: 10 });
    assert.equal(await login, null, 'no data came');
    await device.clock.advance(11 * 60000);
    assert.deepEqual(await ended, { reason: 'timer', requestType: RequestType.GET_LOCAL_PLAYER, code: undefined });
});
