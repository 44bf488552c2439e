'use strict';

// What the module logs of whole requests and events, line by line: it is read beside the documentation of the device.

const assert = require('node:assert/strict');
const { answer, device, game, start, test, turn } = require('./support');

/** The module's lines since the device began anew, each with its level unless that is I. */
function lines() {
    const own = device.logs().filter(({ domain }) => domain === 0xd00470a);
    return own.map(({ level, message }) => `${level}: ${message.replace(/^\[\([^)]*\)\]/, '')}`.replace('I: ', ''));
}

const opened = ['constructor ModalUICallback', 'GetUIContent abilityContext is not nullptr',
    'StartUIExtensionAbility create modal succeeded'];
const closing = (api) => [`SendMessageBack ${api}`, 'SendMessageBack isResetContext is true and close modal',
    'CloseModalUIExtension closed'];
const released = (what) => ['release enter', `release ${what}`, 'release exit'];

/** A call that opens its modal, or finds its window `late`. */
function called(method, { count, form = 'promise', isParsed = false, late = opened } = {}) {
    return [
        `begin ${method}`, ...(count ? [`${method} params size:${count}`] : []), `this is ${form} api`,
        'begin ParseAbilityContextReq', 'end ParseAbilityContextReq, get stage model ability context success',
        ...(isParsed ? [`begin Parse${method}Req`, `end Parse${method}Req`] : []),
        `begin Execute${method}`, ...late, `end Execute${method}`, `end ${method}`,
    ];
}

// Tried once in a thread, whether it is added or not: no test below logs it again.
device.failNext('napi_add_env_cleanup_hook');
game.on('playerChanged', lines);
const hooked = lines().filter((line) => line.includes('hook'));

test('the hook of an environment\'s listeners counts as added though it was not', () => {
    assert.deepEqual(hooked, ['AssembleEventCallback add env hook succeeded']);
});

for (const [what, play, expected] of [
    ['a request by callback', async () => {
        game.init(device.createAbilityContext(), () => {});
        await answer(device.modals()[0], ['result', 0]);
    }, [
        ...called('Init', { count: 2, form: 'callback' }), 'OnResultForModal resultCode=0',
        'DealResponseForModal init succeed.', ...closing('init'), 'IsParseResultMessage requestType=1',
        'CreateResultMessage set result[1] to undefined', ...released('callback'),
        'DoMessageBackSuccess release context',
    ]],
    ['a request that fails, and a second error', () => (
        answer(start('bindPlayer').modal, ['error', 5, 'name', 'text'], ['error', 6])
    ), [
        ...called('BindPlayer'), 'E: OnError code=5, name=name, message=text',
        'E: AssembleErrorMessage resultCode not existed: 5', ...closing('bindPlayer'),
        'CreateBusinessError errCode: 1002000001 errMsg: System internal error.', 'CreateBusinessError exit',
        ...released('deferred'), 'DoMessageBackSuccess release context', 'E: OnError code=6, name=, message=',
        'E: OnError baseContext is null',
    ]],
    ['a login whose page stays and is released', () => (
        answer(start('getLocalPlayer').modal, ['receive', { resultCode: 0 }], ['release', 0])
    ), [
        ...called('GetLocalPlayer', { count: 1 }), 'OnReceive enter', 'SendMessageBack getLocalPlayer',
        'IsParseResultMessage requestType=2', 'DoMessageBackSuccess set hasMsgBack to true', 'OnRelease releaseCode=0',
        'CloseModalUIExtension getLocalPlayer', 'CloseModalUIExtension closed', ...released('deferred'),
        'ResetContext delete context', 'OnRelease end, close modal UI extension finished',
    ]],
    ['a playable time that runs out', async () => {
        const received = ['receive', { resultCode: 0, playableTime: 1 }];
        await answer(start('verifyLocalPlayer').modal, received, received);
        await device.clock.advance(75000);
    }, [
        ...called('VerifyLocalPlayer', { count: 2, isParsed: true }), 'OnReceive enter',
        'LaunchAntiAddictionAbility playable time 60 seconds', 'SendMessageBack verifyLocalPlayer',
        'IsParseResultMessage requestType=9', 'CreateResultMessage set result[1] to undefined',
        'DoMessageBackSuccess set hasMsgBack to true', 'OnReceive enter',
        'DoAntiAddiction anti-addiction task started and return', 'SendMessageBack verifyLocalPlayer',
        'SendMessageBack hasMsgBack is true and close modal', 'CloseModalUIExtension verifyLocalPlayer',
        'CloseModalUIExtension closed', 'ResetContext anti-addiction keep context',
        'LaunchAntiAddictionAbility playable time 60 seconds end', ...opened, 'launched anti-addiction ability.',
    ]],
    ['a start that waits for its window', async () => {
        const { context } = start('savePlayerRole', device.createAbilityContext({ window: false }));
        await device.clock.advance(1000);
        device.showWindow(context);
        await device.clock.advance(1000);
        await answer(device.modals()[0], ['release', 0]);
    }, [
        ...called('SavePlayerRole', { count: 2, isParsed: true,
            late: [...opened.slice(0, 2), 'W: UIContent is nullptr and delay start UIExtensionAbility'] }),
        opened[1], opened[1], 'OnRelease releaseCode=0', 'OnRelease end, not need close modal UI extension',
    ]],
    ['a trace, a report and an event of the game\'s own', async () => {
        game.syncTraceId('t');
        game.reportEventOperation('name', 1, 0);
        game.on('playerChanged', () => {});
        game.onEventCallback({ resultCode: 1002000015 });
        await turn();
        game.off('playerChanged');
    }, [
        'begin SyncTraceId', 'SetTraceId traceId[t] success', 'end SyncTraceId', 'begin ReportEventOperation',
        'end ReportEventOperation', 'begin On', 'On params size:2, eventType == playerChanged',
        'RegisterGameEventCallback first register succeeded', 'end On', 'begin OnEventCallback',
        'DoGameEvent playerChanged[0] called', 'OnEventCallback enter', 'OnEventCallback uv_queue_work success',
        'release enter', 'release exit', 'OnEventCallback switch game account event callback end',
        'end OnEventCallback', 'DoGameEventWork enter', 'DoGameEventWork exit, callBack status 1', 'begin Off',
        'Off params size:1, eventType == playerChanged', 'EventCallback release callbackRef',
        'EventCallback release thisArgRef', 'EventCallback release exit',
        'UnRegisterGameEventCallback eventType playerChanged succeeded', 'end Off',
    ]],
]) {
    test(`the log tells of ${what}`, async () => {
        await play();
        assert.deepEqual(lines(), expected);
    });
}
