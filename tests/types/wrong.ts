// What must not compile. Each line stands beside one like it, here or in game.ts, that does. Nothing of this runs.

import gamePlayer from 'game-player-extension-module';
import type { BusinessError, ErrorCode as Code } from 'game-player-extension-module';
import * as device from 'game-player-extension-module/device';
import { ErrorCode, isBusinessError } from 'game-player-extension-module/errors';

declare const context: gamePlayer.Context;
declare const modal: device.Modal;
declare const caught: unknown;

export function contexts(): void {
    // @ts-expect-error none
    gamePlayer.init();
    // @ts-expect-error a text
    gamePlayer.init('context');
    // @ts-expect-error null
    void gamePlayer.getLocalPlayer(null);
    // @ts-expect-error data may be missing
    void gamePlayer.getLocalPlayer(context).then((player) => player.length);
    // @ts-expect-error no method that opens a modal
    void device.nextModal('syncTraceId');
}

export function callbacks(): void {
    // @ts-expect-error no function
    gamePlayer.init(context, 'callback');
    // @ts-expect-error an error is no text
    gamePlayer.init(context, (error: string) => error);
    // @ts-expect-error there may be no error
    gamePlayer.init(context, (error) => error.code);
    // @ts-expect-error the result of the callback form
    void gamePlayer.init(context, () => undefined).then();
    // @ts-expect-error there is no data unless there is no error
    gamePlayer.getLocalPlayer(context, (error, data) => data.length);
    // @ts-expect-error the data is a text
    gamePlayer.getLocalPlayer(context, (error, data) => !error && data.toFixed());
    // @ts-expect-error a third argument behind the callback
    gamePlayer.prePurchase(context, { productId: 'p1' }, () => undefined, 0);
}

export function promisesOnly(): void {
    const callback = (): void => undefined;
    // @ts-expect-error
    void gamePlayer.bindPlayer(context, 'open-1', 'team-1', callback);
    // @ts-expect-error
    void gamePlayer.unbindPlayer(context, 'open-1', 'team-1', callback);
    // @ts-expect-error
    void gamePlayer.verifyLocalPlayer(context, { thirdOpenId: 'open-1' }, callback);
    // @ts-expect-error
    void gamePlayer.unionLogin(context, {}, callback);
    // @ts-expect-error
    void gamePlayer.quickGameLogin(context, { gameAppId: 'app-1' }, callback);
    // @ts-expect-error
    void gamePlayer.launchWelcomeBanner(context, 'text', callback);
    // @ts-expect-error
    void gamePlayer.launchCommonPage(context, 'text', callback);
    // @ts-expect-error
    void gamePlayer.launchAntiAddiction(context, 60, 'text', 14, callback);
}

export async function results(): Promise<void> {
    // @ts-expect-error
    const started: string = await gamePlayer.init(context);
    // @ts-expect-error a text, unless another type is given
    const player: { playerId: string } = await gamePlayer.getLocalPlayer(context);
    // @ts-expect-error
    const bound: boolean = await gamePlayer.bindPlayer(context, 'open-1', 'team-1');
    // @ts-expect-error
    void gamePlayer.launchCommonPage(context, 'text').then((page) => page.length);
    void [started, player, bound];
}

export function parameters(): void {
    // @ts-expect-error
    void gamePlayer.bindPlayer(context, 'open-1');
    // @ts-expect-error
    void gamePlayer.bindPlayer(context, 'open-1', 7);
    // @ts-expect-error
    void gamePlayer.verifyLocalPlayer(context, { thirdOpenId: 'open-1', isAdult: 'yes' });
    // @ts-expect-error
    void gamePlayer.verifyLocalPlayer(context, { isAdult: true });
    // @ts-expect-error
    void gamePlayer.savePlayerRole(context);
    // @ts-expect-error
    void gamePlayer.savePlayerRole(context, { roleId: 7 });
    // @ts-expect-error
    void gamePlayer.savePlayerRole(context, { rolId: 'r1' });
    // @ts-expect-error
    void gamePlayer.prePurchase(context, { productType: 1 });
    // @ts-expect-error
    void gamePlayer.prePurchase(context, { productId: 'p1', productType: '1' });
    // @ts-expect-error
    void gamePlayer.postPurchase(context, { purchaseData: 42 });
    // @ts-expect-error
    void gamePlayer.postPurchase(context, 'text');
    // @ts-expect-error
    void gamePlayer.quickGameLogin(context, { gameAppId: 123 });
    // @ts-expect-error
    void gamePlayer.unionLogin(context, { thirdAccountInfos: { accountName: 'Lin' } });
    // @ts-expect-error
    void gamePlayer.unionLogin(context, { thirdAccountInfos: [{ accountName: 'Lin', accountIcon: { id: 7 } }] });
    // @ts-expect-error
    void gamePlayer.launchWelcomeBanner(context);
    // @ts-expect-error
    void gamePlayer.launchAntiAddiction(context, '60', 'text', 14);
    // @ts-expect-error
    gamePlayer.syncTraceId(5);
    // @ts-expect-error
    gamePlayer.reportEventOperation('load', 1500);
    // @ts-expect-error
    gamePlayer.onEventCallback({ resultInfo: 'Mei' });
}

export function events(): void {
    // @ts-expect-error an unknown event
    gamePlayer.on('playerLeft', () => undefined);
    // @ts-expect-error no listener
    gamePlayer.on('playerChanged');
    // @ts-expect-error the other event's argument
    gamePlayer.on('playerChanged', (text: string) => text);
    // @ts-expect-error the other event's argument
    gamePlayer.on('gameAddictionPrevented', ({ resultInfo }) => resultInfo);
    // @ts-expect-error an unknown event
    gamePlayer.off('playerLeft');
    // @ts-expect-error undefined is no listener
    gamePlayer.off('playerChanged', undefined);
}

export function errors(): void {
    // @ts-expect-error not before it is known to be an error of the module
    void caught.code;
    // @ts-expect-error a code that there is not
    void (isBusinessError(caught) && caught.code === 402);
    // @ts-expect-error a name that there is not
    void ErrorCode.TIMEOUT;
    // @ts-expect-error read only
    ErrorCode.PARAMETER = 401;
    // @ts-expect-error
    const code: Code = 402;
    // @ts-expect-error a code is a number
    const error: BusinessError = Object.assign(new Error('text'), { code: '401' });
    // @ts-expect-error the module itself has no codes at run time
    void gamePlayer.ErrorCode;
    void [code, error];
}

export function theDevice(): void {
    // @ts-expect-error
    device.createAbilityContext({ windows: true });
    // @ts-expect-error
    device.createUIExtensionContext({ modules: { entry: { mediaById: { 1: 'text' } } } });
    // @ts-expect-error
    device.createStageContext('ability');
    // @ts-expect-error
    device.showWindow();
    // @ts-expect-error
    void device.nextModal('5');
    // @ts-expect-error
    device.onModal(5);
    // @ts-expect-error
    device.answerOn('main');
    // @ts-expect-error
    modal.isOpen = false;
    // @ts-expect-error
    void modal.result('0');
    // @ts-expect-error
    void modal.receive({ resultCode: null });
    // @ts-expect-error
    void modal.receive({ resultCode: [1] });
    // @ts-expect-error
    void device.clock.advance('5');
    // @ts-expect-error
    device.failNext('napi_typeof', { times: '1' });
    // @ts-expect-error
    void device.logs().filter(({ level }) => level === 'X');
    // @ts-expect-error
    device.setSystemApp('yes');
}
