'use strict';

// What the module logs for whole requests and events, line by line, compared with docs/logs.md.

const assert = require('node:assert/strict');
const { advance, answer, ask, countLogs, device, game, raise, start, test, turn } = require('./support');
const { read } = require('./support/files');

/** The module's lines since the last reset, without line numbers, each with its level unless that is I. */
function lines() {
    const own = device.logs().filter(({ domain, tag }) => domain === 0xd00470a && tag === 'GAMEAPISDK');
    return own.map(({ level, message }) => {
        assert.match(message, /^\[\(~?\w+:\d+\)\]/);
        return `${level}: ${message.replace(/:\d+\)/, ')')}`.replace(/^I: /, '');
    });
}

// The hook is added once per thread, even if that fails, so no test below logs it again.
device.failNext('napi_add_env_cleanup_hook');
game.on('playerChanged', lines);
const hooked = lines().filter((line) => line.includes('hook'));

test('the hook of an environment\'s listeners counts as added though it was not', () => {
    assert.deepEqual(hooked, ['[(AssembleEventCallback)]AssembleEventCallback add env hook succeeded']);
});

const PLAYS = {
    'A request by callback': () => {
        ask('init', () => {});
        return answer(device.modals()[0], ['result', 0]);
    },
    'A request that fails': () => answer(start('bindPlayer').modal, ['error', 5, 'name', 'text'], ['error', 6]),
    'A result that cannot be delivered': () => {
        device.failNext('uv_queue_work');
        return answer(start('bindPlayer').modal, ['result', 0]);
    },
    'A listener that removes itself': () => {
        const listener = () => game.off('playerChanged', listener);
        game.on('playerChanged', listener);
        raise();
        return turn();
    },
    'A login whose page stays open': () =>
        answer(start('getLocalPlayer').modal, ['receive', { resultCode: 0 }], ['release', 0]),
    'A time to play that is over': async () => {
        const info = { thirdOpenId: 'open-1', isRealName: true, isAdult: false, ageRange: 1 };
        void ask('verifyLocalPlayer', info);
        const limited = ['receive', { resultCode: 0, playableTime: 1 }];
        await answer(device.modals()[0], ['receive', { resultCode: 0 }], limited, limited);
        await device.clock.advance(75000);
    },
    'A window that shows no page yet': async () => {
        const { context } = start('savePlayerRole', device.createAbilityContext({ window: false }));
        await advance(1000);
        device.showWindow(context);
        await advance(1000);
        await answer(device.modals()[0], ['release', 0]);
    },
    'A page without its text': () => void ask('launchCommonPage'),
    'Methods without a request': async () => {
        game.syncTraceId('t');
        game.reportEventOperation('name', 1, 0);
        game.on('playerChanged', () => {});
        raise();
        await turn();
        game.off('playerChanged');
    },
};
const written = read('docs/logs.md').split('\n## ').slice(1)
    .map((section) => [section.split('\n')[0], section.split('```\n')[1]]);

for (const [what, play] of Object.entries(PLAYS)) {
    test(`the log has the lines of its page: ${what}`, async () => {
        await play();
        assert.deepEqual(lines(), Object.fromEntries(written)[what]?.trim().split('\n'));
    });
}

test('verifyLocalPlayer logs each field that it has read before it reads the next', () => {
    const read = [];
    const info = {};
    for (const name of ['isRealName', 'isAdult', 'ageRange']) {
        Object.defineProperty(info, name, { get: () => read.push(lines().at(-1)) });
    }
    void ask('verifyLocalPlayer', info);
    assert.deepEqual(read, ['begin ParseVerifyLocalPlayerReq', 'has isRealName field', 'has isAdult field']
        .map((text) => `[(ParseVerifyLocalPlayerReq)]${text}`));
});

test('a page without a window and a request without a callback each end with their line', async () => {
    game.launchCommonPage(device.createAbilityContext({ window: false }), '');
    ask('init', 5);
    await answer(device.modals()[0], ['result', 0]);
    await advance(5000);
    const text = lines().filter((line) => /need not message back|deferred nullptr/.test(line));
    assert.deepEqual(text, ['W: [(SendMessageBackWork)]SendMessageBackWork callback and deferred nullptr',
        '[(DelayStartUIExtensionAbility)]DelayStartUIExtensionAbility need not message back']);
});

test('the window is not looked for when no modal is open', async () => {
    const { modal } = start('bindPlayer');
    device.failNext('uv_queue_work');
    await answer(modal, ['result', 0]);
    assert.equal(countLogs('CloseModalUIExtension need not close modal'), 1);
    assert.equal(device.faults().find(({ call }) => call === 'GetUIContent').made, 1);
});
