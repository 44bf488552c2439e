// The package in an ES module: by default, by its names and as a whole. `play` tells what it got.

import gamePlayer, { bindPlayer, on, onEventCallback } from 'game-player-extension-module';
import * as all from 'game-player-extension-module';
import device, { createAbilityContext, nextModal } from 'game-player-extension-module/device';
import type { Modal } from 'game-player-extension-module/device';
import { ErrorCode, isBusinessError } from 'game-player-extension-module/errors';

export async function play(): Promise<string[]> {
    const heard = new Promise<string>((resolve) => on('playerChanged', ({ resultInfo }) => resolve(resultInfo)));
    onEventCallback({ resultCode: ErrorCode.PLAYER_INVALID, resultInfo: 'Mei' });
    const message = bindPlayer(createAbilityContext(), 'open-1', 'team-1')
        .then(() => 'no error', (error: unknown) => (isBusinessError(error) ? error.message : 'another error'));
    const modal: Modal = await nextModal();
    await modal.result(ErrorCode.NOT_AVAILABLE);
    gamePlayer.off('playerChanged');
    device.reset();
    return [await heard, await message, all.init === gamePlayer.init ? 'one module' : 'two modules'];
}
