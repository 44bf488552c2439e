// A game in TypeScript that makes every call in each of its forms. `play` tells what it got.

import gamePlayer from 'game-player-extension-module';
import type {
    Context, DoneCallback, PlayerChangedEvent, PlayerRole, ResultCallback, ThirdAccountInfo, ThirdUserInfo,
} from 'game-player-extension-module';
import * as device from 'game-player-extension-module/device';
import type { Modal, ParameterObject } from 'game-player-extension-module/device';
import { ErrorCode, isBusinessError } from 'game-player-extension-module/errors';

interface Player {
    playerId: string;
}

const role: PlayerRole = { roleId: 'r1', roleName: 'Lin' };
const account: ThirdUserInfo = { thirdOpenId: 'open-1', isRealName: true, isAdult: false, ageRange: 3 };
const accounts: readonly ThirdAccountInfo[] = [
    { accountName: 'Lin', accountIcon: { moduleName: 'entry', id: 7, params: ['app.media.lin'] } },
    { accountName: 'Mei' },
];

function answer(modal: Modal): void {
    const data: ParameterObject = { resultCode: ErrorCode.SUCCESS, resultMessage: '{"playerId":"p1"}' };
    void modal.receive(data);
}

async function callWithPromises(context: Context): Promise<string[]> {
    const done: void[] = [
        await gamePlayer.init(context),
        await gamePlayer.savePlayerRole(context, role),
        await gamePlayer.postPurchase(context, { purchaseData: 'data' }),
        await gamePlayer.bindPlayer(context, 'open-1', 'team-1'),
        await gamePlayer.unbindPlayer(context, 'open-1', 'team-1'),
        await gamePlayer.verifyLocalPlayer(context, account),
    ];
    const text: string = (await gamePlayer.getLocalPlayer(context)) ?? '{}';
    const player = JSON.parse(text) as Player;
    const purchase = await gamePlayer.prePurchase<string>(context, { productId: 'sword', productType: 1 });
    const login = await gamePlayer.unionLogin(context, { thirdAccountInfos: accounts });
    const quick = await gamePlayer.quickGameLogin<unknown>(context, { gameAppId: 'app-1' });
    return [`${done.length} done`, player.playerId, purchase.trim(), login?.trim() ?? 'none', String(quick)];
}

function callWithCallbacks(context: Context): Promise<string[]> {
    return new Promise((resolve) => {
        const said: string[] = [];
        const say: DoneCallback = (error) => said.push(error ? error.message : 'done');
        const bought: ResultCallback<string> = (error, purchase) => said.push(error ? error.message : purchase.trim());
        gamePlayer.init(context, say);
        gamePlayer.savePlayerRole(context, role, say);
        gamePlayer.postPurchase(context, { purchaseData: 'data' }, say);
        gamePlayer.prePurchase<string>(context, { productId: 'shield' }, bought);
        gamePlayer.getLocalPlayer(context, (error, player) => {
            if (error) {
                const code: ErrorCode = error.code;
                said.push(`${code}`);
            } else {
                said.push(player?.trim() ?? 'none');
            }
            resolve(said);
        });
    });
}

function launchPages(context: Context): string {
    const pages: Promise<never>[] = [
        gamePlayer.launchWelcomeBanner(context, 'Welcome'),
        gamePlayer.launchAntiAddiction(context, 60, 'Enough', 14),
        gamePlayer.launchCommonPage(context, 'page'),
    ];
    return `${pages.length} launched`;
}

async function listen(): Promise<string[]> {
    const heard: string[] = [];
    const note = ({ resultInfo }: PlayerChangedEvent) => heard.push(resultInfo);
    gamePlayer.on('gameAddictionPrevented', (text) => heard.push(text.trim()));
    gamePlayer.on('playerChanged', note);
    gamePlayer.on('playerChanged', ({ event }) => heard.push(`${event}`));
    gamePlayer.onEventCallback({ resultCode: ErrorCode.PLAYER_INVALID, resultInfo: 'Mei' });
    await device.clock.advance(0);
    gamePlayer.off('playerChanged', note);
    gamePlayer.off('playerChanged');
    gamePlayer.off('gameAddictionPrevented');
    return heard;
}

async function fail(context: Context): Promise<string> {
    device.onModal((modal) => modal.error(ErrorCode.ALREADY_BOUND, 'name', 'message'));
    try {
        await gamePlayer.bindPlayer(context, 'open-1', 'team-1');
    } catch (error) {
        return isBusinessError(error) && error.code === ErrorCode.ALREADY_BOUND ? error.message : 'another error';
    }
    return 'no error';
}

export async function play(): Promise<string[]> {
    const icon = new Uint8Array([1, 2, 3]);
    const context = device.createAbilityContext({ modules: { entry: { mediaById: { 7: icon } }, other: null } });
    device.clock.manual();
    device.setSystemApp(true);
    device.onModal(answer);
    gamePlayer.syncTraceId('trace');
    gamePlayer.reportEventOperation('load', 1500, 0);
    const said = [
        ...await callWithPromises(context), ...await callWithCallbacks(context), ...await listen(),
        await fail(context), launchPages(context),
    ];
    device.reset();
    return said;
}
