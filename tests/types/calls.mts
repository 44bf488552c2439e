// What a game may write against the types. Lines that are marked as wrong must not compile; all others must. The test
// adds lines that are generated for every method. Nothing here runs.

import type {} from 'game-player-extension-module/emulator';
import type { AsyncCallback, BusinessError as PlatformError } from '@kit.BasicServicesKit';
import gamePlayer, { bindPlayer, on } from 'game-player-extension-module';
import * as all from 'game-player-extension-module';
import type { BusinessError, Context, ThirdAccountInfo } from 'game-player-extension-module';
import device, { createAbilityContext, nextModal } from 'game-player-extension-module/device';
import type { GameEnd, Modal, ParameterObject } from 'game-player-extension-module/device';
import { ErrorCode, RequestType, isBusinessError } from 'game-player-extension-module/errors';
import service, { createService, play } from 'game-player-extension-module/service';
import type { Answer, Scenario, State } from 'game-player-extension-module/service';

declare const context: Context, modal: Modal, caught: unknown, error: BusinessError;
declare const onText: AsyncCallback<string>, onDone: AsyncCallback<void>;
declare function is<T>(value: T): void;
// The names of an object, with its numbers.
type Shown<T> = { [K in keyof T]: T[K] extends number ? T[K] : unknown };

// Parameters, results and callbacks
const accountIcon: gamePlayer.AccountIcon = { moduleName: 'entry', id: 7, params: ['app.media.lin'] as const };
const thirdAccountInfos: readonly ThirdAccountInfo[] = [{ accountName: 'Lin', accountIcon }, { accountName: 'Mei' }];
is<gamePlayer.UnionLoginParam>({ thirdAccountInfos });
is<ThirdAccountInfo>({ accountIcon }); // wrong
is<gamePlayer.AccountIcon>({ id: 7 }); // wrong
declare const named: [gamePlayer.PlayerRole, gamePlayer.ThirdUserInfo, gamePlayer.PurchaseParameter,
    gamePlayer.PurchaseResult, gamePlayer.QuickGameLoginParam];
is<gamePlayer.ResultCallback<string>>((failure, data) => (failure ? failure.message : data.trim()));
is<gamePlayer.ResultCallback<string>>((failure, data) => data.trim()); // wrong: a failure has none
is<gamePlayer.DoneCallback>((failure) => failure?.message);
is<gamePlayer.AsyncCallback<string>[]>([onText, (failure, data) => [failure.code.toFixed(), data.trim()]]);
is<gamePlayer.AsyncCallback<string>>(onDone); // wrong
is<Context[]>([getContext(context), globalThis.getContext()]);
getContext('window'); // wrong
bindPlayer(context, 'open-1', 'team-1').catch(() => all.init === gamePlayer.init);

// Calls without a request, and events
gamePlayer.syncTraceId('trace');
gamePlayer.reportEventOperation('load', 1500, 0);
gamePlayer.onEventCallback({ resultCode: ErrorCode.PLAYER_INVALID, resultInfo: 'Mei' });
gamePlayer.onEventCallback({ resultInfo: 'Mei' }); // wrong
on('playerChanged', ({ event, resultInfo }) => `${event.toFixed()} ${resultInfo.trim()}`);
gamePlayer.on('gameAddictionPrevented', (text) => text.trim());
gamePlayer.on('playerLeft', () => undefined); // wrong
gamePlayer.on('playerChanged'); // wrong
gamePlayer.on('playerChanged', (text: string) => text); // wrong: the other event's argument
gamePlayer.on('gameAddictionPrevented', ({ resultInfo }) => resultInfo); // wrong: the other event's argument
gamePlayer.off('playerChanged');
gamePlayer.off('playerChanged', (event: gamePlayer.PlayerChangedEvent) => event);
gamePlayer.off('playerChanged', undefined); // wrong

// Errors
is<gamePlayer.ErrorCode | false>(isBusinessError(caught) && caught.code);
caught.code; // wrong: not known to be an error of the module
error.code === 402; // wrong
ErrorCode.TIMEOUT; // wrong
is<gamePlayer.ErrorCode>(402); // wrong
is<BusinessError>(Object.assign(new Error('text'), { code: '401' })); // wrong
gamePlayer.ErrorCode; // wrong: the module itself has no codes at run time

// The device
const entry = { mediaById: { 7: new Uint8Array(3) }, mediaByName: {}, rawFiles: {} };
createAbilityContext({ window: false, modules: { entry, other: null } });
device.createAbilityContext({ windows: true }); // wrong
device.createUIExtensionContext({ modules: { entry: { mediaById: { 1: 'text' } } } }); // wrong
is<Promise<Modal>[]>([nextModal(), nextModal(500), nextModal({ requestType: RequestType.INIT }, { timeoutMs: 5 })]);
nextModal('syncTraceId'); // wrong
device.onModal((opened) => opened.error(ErrorCode.ALREADY_BOUND, 'name', 'message'));
device.onExit(({ reason, code }: GameEnd) => [reason === 'timer', code?.toFixed()]);
device.answerOn('main'); // wrong
modal.isOpen = false; // wrong
modal.result(0, { a: [''], b: { c: 1.5, d: true, e: undefined } });
is<ParameterObject>({ a: null }); // wrong
device.logs().filter(({ level }) => level === 'X'); // wrong

// The game service
createService({
    rules: [{ when: { method: 'init', nth: [1, 2] }, answer: [{ after: 5, result: 0 }, { own: true }] }], seed: 3,
});
createService({ state: { currentPlayr: 'p1' } }); // wrong
is<Answer>({ after: 5 }); // wrong
is<Answer>({ receive: { a: null } }); // wrong
service.createService().on('request', ({ modal: { method } }, rule) => method.length + (rule?.delay ?? 0)).close();
createService().state = { online: false };
is<State>(createService().state);
is<Scenario>({ version: 1, steps: [{ await: { method: 'init' } }], expect: { end: { module: 'timer' } } });
const played = play('scenario.json', async (context) => gamePlayer.init(context));
is<Promise<number[]>>(played.then(({ codes }) => codes.init));
device.onRecord((record) => record.kind === 'settled' && is<number | undefined>(record.code));
device.onRecord((record) => record.kind === 'setled'); // wrong
device.clock.after(5, () => {})();
