'use strict';

// The game service: its own answers, its rules, and scenarios.

const assert = require('node:assert/strict');
const path = require('node:path');
const { createService, newState, play, readScenario } = require('game-player-extension-module/service');
const { device, game, test, turn } = require('./support');
const { folderWith } = require('./support/emulator');

const { clock } = device;
const ROLE = { roleId: 'r1', roleName: 'Knight' };
const [LIN, MEI] = newState().players;
const MEI_PLAYS = { currentPlayer: 'p2' };

/** What a promise comes to: its value, parsed if it is JSON, or the code of its error. */
const outcome = (promise) => promise.then((text) => (text ? JSON.parse(text) : 'done'), ({ code }) => code);
const ask = (name, ...args) => outcome(game[name](device.createAbilityContext(), ...args));
const mei = (changes) => ({ ...MEI_PLAYS, players: [LIN, { ...MEI, ...changes }] });
const bind = (openId, team) => ask('bindPlayer', openId, team);
const unionLogin = (...names) => ask('unionLogin', {
    loginPanelType: 1, thirdAccountInfos: names.map((accountName) => ({ accountName })),
});
const buy = (productId) => ask('prePurchase', { productId, developerPayload: 'p' });
const finish = (data) => ask('postPurchase', { purchaseData: typeof data === 'string' ? data : JSON.stringify(data) });
const bought = (status) => ({ purchase: 'b1', productId: 'a', developerPayload: 'p', status });
const sold = (outcomeOfIt) => ({ products: [{ productId: 'a', outcome: outcomeOfIt }] });

// Each with the changes of the state, what the game does, and what each of its calls comes to.
for (const [what, state, calls, outcomes] of [
    ['a player', {}, () => [ask('init'), ask('getLocalPlayer')], ['done', {
        playerId: 'p1', gamePlayerId: 'G-1001', teamPlayerId: 'T-1001', playerName: 'Lin' }]],
    ['nobody', { currentPlayer: '' }, () => [ask('init'), ask('getLocalPlayer'), buy('a'), ask('savePlayerRole', ROLE), bind('o', '')],
        ['done', 1002000003, 1002000003, 'done', 1002000003]],
    ['no real name', mei({ isRealName: false }), () => [ask('getLocalPlayer'), ask('verifyLocalPlayer', {})], [1002000004, 1002000004]],
    ['a game without real names', {}, () => [ask('verifyLocalPlayer', { isRealName: false }), ask('verifyLocalPlayer', { isRealName: true })],
        [1002000004, 'done']],
    ['no time left', mei({ playableMinutes: 0 }), () => [ask('quickGameLogin', { gameAppId: 'q' })], [1002000006]],
    ['bindings', {}, () => [bind('o', 'T-1001'), bind('o', 'T-1001'), bind('other', 'T-1001'), bind('o', 'T-2002')],
        ['done', 1002000012, 1002000012, 1002000010]],
    ['unbinding', { bindings: [{ thirdOpenId: 'o', teamPlayerId: 'T-1001' }] }, () => ['x', 'o', 'o'].map((id) =>
        ask('unbindPlayer', id, 'T-1001')), [1002000013, 'done', 1002000013]],
    ['a paid purchase', {}, () => [buy('a'), finish(bought('paid')), finish(bought('paid')), finish('no JSON'), finish('null')],
        [bought('paid'), 'done', 1002000001, 1002000001, 1002000001]],
    ['a pending purchase', sold('pending'), () => [buy('a'), finish(bought('pending')), buy('b')],
        [bought('pending'), 1002000001, 1002000007]],
    ['a completed purchase', sold('completed'), () => [buy('a'), finish(bought('completed'))], [bought('completed'), 1002000001]],
    ['a cancelled purchase', sold('cancelled'), () => [buy('a')], [1002000001]],
    ['union accounts', {}, () => [unionLogin('A', 'B'), unionLogin()], [{ accountName: 'A' }, { accountName: 'Lin' }]],
    ['a chosen union account', { unionAccount: 'B' }, () => [unionLogin('A', 'B'), unionLogin('A')], [{ accountName: 'B' }, 1002000016]],
    ['quick games', { quickGames: ['q'] }, () => ['q', 'r'].map((gameAppId) => ask('quickGameLogin', { gameAppId })),
        [{ playerId: 'p1', gameAppId: 'q' }, 1002000014]],
    ['no network', { online: false }, () => [ask('getLocalPlayer'), bind('o', 'T-1001'), ask('init')], [1002000002, 1002000002, 'done']],
]) {
    test(`the service answers with ${what}`, async () => {
        const service = createService({ state });
        const results = [];
        for (const promise of calls()) {
            await clock.advance(0);
            results.push(await promise);
        }
        assert.deepEqual(results, outcomes);
        service.close();
    });
}

test('the service keeps roles and purchases; its state is a copy, and a wrong one is refused', async () => {
    const service = createService({});
    await Promise.all([ask('savePlayerRole', ROLE), buy('a'), turn()]);
    await Promise.all([ask('savePlayerRole', { ...ROLE, roleName: 'Mage' }), turn()]);
    const { roles, purchases, ...rest } = service.state;
    assert.deepEqual([roles.map(({ roleName }) => roleName), purchases], [['Mage'], [bought('paid')]]);
    assert.deepEqual({ ...rest, roles: [], purchases: [] }, newState());
    service.state.roles.push('x');
    assert.equal(service.state.roles.length, 1);
    assert.throws(() => { service.state = { currentPlayr: 'p1' }; }, /the state has no 'currentPlayr': possible is online, /);
    assert.throws(() => createService({ state: { currentPlayer: 'p9' } }), /currentPlayer is 'p9', but no player/);
});

test('a game hears of another player at once if it waits for an answer, else with its next question', async () => {
    const service = createService({ rules: [{ when: { method: 'prePurchase' }, wait: true }] });
    const heard = [];
    game.on('playerChanged', ({ resultInfo }) => heard.push(resultInfo));
    const purchase = buy('a');
    await turn();
    await service.switchPlayer('p2');
    assert.deepEqual(heard, ['Mei signed in']);
    await service.answer({ method: 'prePurchase' }, [{ own: true }]);
    await purchase;
    await service.switchPlayer('');
    assert.deepEqual([await ask('getLocalPlayer'), heard], [1002000003, ['Mei signed in', 'nobody is signed in']]);
    await assert.rejects(service.answer({ method: 'init' }, []), /there is no open request of init to answer/);
});

test('a young player has the time that is left; who has not agreed ends the game', async () => {
    const ends = [];
    device.onExit((end) => ends.push(end.reason));
    createService({ state: mei({ playableMinutes: 1, endText: 'Good night.' }) });
    assert.equal((await ask('getLocalPlayer')).playerName, 'Mei');
    await clock.advance(75000);
    assert.equal(device.modals().at(-1).want.parameters.endText, 'Good night.');
    await clock.advance(15000);
    assert.deepEqual(ends, ['timer']);
    device.reset();
    const answered = new Promise((resolve) => device.onExit(({ code }) => resolve(code)));
    createService({ state: { players: [{ ...LIN, hasAgreed: false }] } });
    void ask('init');
    assert.equal(await answered, 1002000011);
});

test('pages stay open until they are closed by hand', async () => {
    const service = createService();
    void game.launchCommonPage(device.createAbilityContext(), 'help');
    await clock.advance(1000);
    const [page] = service.waiting('launchCommonPage');
    assert.deepEqual([page.modal.isOpen, service.isAwaiting, service.waiting('init')], [true, false, []]);
    await service.answer({ modal: page.modal.id }, [{ release: 0 }]);
    assert.deepEqual([page.modal.isOpen, service.waiting()], [false, []]);
});

const NETWORK = [{ error: 1002000002 }];

// Each with rules, the products that the game buys one after the other, a second apart, and when each came to what.
for (const [what, rules, count, expected] of [
    ['late', [{ when: { method: 'prePurchase' }, answer: [{ after: 400, result: 5 }] }], 2, [[400, 1002000001], [1400, 1002000001]]],
    ['delayed', [{ delay: 250 }], 1, [[250, 'ok']]],
    ['doubled', [{ answer: [{ result: 1002000002 }, { result: 1002000003 }, { after: 9, result: 0 }] }], 1, [[0, 1002000002]]],
    ['killed', [{ answer: [{ after: 5, release: 1 }] }], 1, [['pending']]],
    ['malformed', [{ answer: [{ receive: { resultCode: '0' } }] }], 1, [[0, 1002000001]]],
    ['own after noise', [{ answer: [{ receive: { resultCode: 9, resultInfo: 'x' } }, { after: 30, own: true }] }], 1, [[30, 'ok']]],
    ['never', [{ when: { nth: [1, 3] }, never: true }], 3, [['pending'], [1000, 'ok'], ['pending']]],
    ['first and third', [{ when: { nth: 1 }, answer: NETWORK }, { when: { nth: 3 }, answer: NETWORK }], 3,
        [[0, 1002000002], [1000, 'ok'], [2000, 1002000002]]],
    ['every third', [{ when: { every: 3 }, answer: NETWORK }], 4, [[0, 'ok'], [1000, 'ok'], [2000, 1002000002], [3000, 'ok']]],
    ['twice', [{ times: 2, answer: NETWORK }], 3, [[0, 1002000002], [1000, 1002000002], [2000, 'ok']]],
    ['for some time', [{ from: 1000, until: 2000, answer: NETWORK }], 3, [[0, 'ok'], [1000, 1002000002], [2000, 'ok']]],
    ['by Want', [{ when: { want: { tavikExtra: { productId: 'p2' } } }, answer: NETWORK }], 3,
        [[0, 'ok'], [1000, 1002000002], [2000, 'ok']]],
    ['by type and the first of two', [{ when: { requestType: 2 }, never: true }, { when: { requestType: 4 }, answer: NETWORK },
        { never: true }], 1, [[0, 1002000002]]],
    ['by chance', [{ chance: 0.5, answer: NETWORK }], 3, [[0, 1002000002], [1000, 1002000002], [2000, 'ok']]],
]) {
    test(`a rule answers ${what}`, async () => {
        createService({ rules, seed: 7 });
        const begin = clock.now();
        const seen = Array.from({ length: count }, () => ['pending']);
        for (let i = 0; i < count; ++i) {
            const done = (result) => { seen[i] = [clock.now() - begin, result]; };
            game.prePurchase(device.createAbilityContext(), { productId: `p${i + 1}` }).then(() => done('ok'), ({ code }) => done(code));
            await clock.advance(1000);
        }
        assert.deepEqual(seen, expected);
    });
}

test('by hand: a list of methods, an answer with several parts, and a closed service', async () => {
    const service = createService({ byHand: ({ method, nth }) => method === 'init' && nth === 2 });
    const waits = [];
    service.on('waits', ({ nth }) => waits.push(nth));
    assert.equal(await ask('init'), 'done');
    const second = ask('init');
    await turn();
    assert.deepEqual([waits, service.isAwaiting, service.isBusy], [[2], true, false]);
    const given = service.answer({ method: 'init', nth: 2 }, [{ after: 100, own: true }]);
    await turn();
    assert.deepEqual([service.isBusy, service.nextDue], [true, 100]);
    await clock.advance(100);
    assert.deepEqual([await second, await given], ['done', undefined]);
    service.addRule({ delay: 50 });
    const third = outcome(game.init(device.createAbilityContext()));
    await clock.advance(10);
    service.close();
    await clock.advance(1000);
    assert.equal(await Promise.race([third, turn()]), undefined);
});

const LOGIN = async (context) => {
    await game.init(context);
    const player = JSON.parse(await game.getLocalPlayer(context));
    return game.bindPlayer(context, 'o', player.teamPlayerId).catch(() => {});
};

test('a scenario plays every kind of step, and reports', async () => {
    const heard = [];
    const report = await play({
        version: 1,
        systemApp: true,
        state: { quickGames: ['q'] },
        rules: [{ when: { method: 'bindPlayer' }, wait: true }],
        steps: [
            { await: { method: 'getLocalPlayer' }, player: 'p2' },
            { await: { method: 'bindPlayer', want: { thirdOpenId: 'o' } }, advance: 2500 },
            { rule: { when: { method: 'unbindPlayer' }, delay: 700 }, state: { bindings: [{ thirdOpenId: 'o', teamPlayerId: 'T-2002' }] } },
            { note: 'someone was faster', answer: { method: 'bindPlayer', nth: 1, with: [{ after: 300, own: true }] } },
            { await: { method: 'unbindPlayer' }, window: 'hidden', systemApp: false, clearRules: true },
            { fail: { call: 'CreateModalUIExtension', times: 2 }, window: 'shown' },
        ],
        expect: { calls: [{ method: 'bindPlayer', code: 1002000012 }, { method: 'unbindPlayer', code: 0 }, { method: 'init', times: 1 }] },
    }, async (context) => {
        game.on('gameAddictionPrevented', () => {});
        game.on('playerChanged', ({ resultInfo }) => heard.push(resultInfo));
        await LOGIN(context);
        await game.unbindPlayer(context, 'o', 'T-2002');
    });
    assert.deepEqual(heard, ['Mei signed in']);
    assert.deepEqual(report.codes, { init: [0], getLocalPlayer: [0], bindPlayer: [1002000012], unbindPlayer: [0] });
    const { begun, ended } = report.calls.find(({ method }) => method === 'bindPlayer');
    assert.deepEqual([ended - begun, report.end, report.state.bindings], [2800, { how: 'ends' }, []]);
    assert.deepEqual(device.modals(), []);
});

test('a scenario in a file on the real clock', async () => {
    const folder = folderWith({ 'a.json': { version: 1, clock: 'real', steps: [{ await: { method: 'init' } }, { advance: 5 }] } });
    assert.deepEqual((await play(path.join(folder, 'a.json'), LOGIN)).codes.bindPlayer, [0]);
});

// Each with what is expected, how the game goes, and what fails.
for (const [what, scenario, body, failures] of [
    ['a call', { expect: { calls: [{ method: 'init' }, { method: 'getLocalPlayer', code: 5 }] } }, LOGIN,
        ['expected a call of getLocalPlayer that gets 5 after the call of init; its calls were: {"requestType":2,"traceId":""} that got 0']],
    ['an order', { expect: { calls: [{ method: 'getLocalPlayer' }, { method: 'init' }] } }, LOGIN,
        ['expected a call of init after the call of getLocalPlayer; its calls were: {"requestType":1,"traceId":""} that got 0']],
    ['a Want', { expect: { calls: [{ method: 'unionLogin', want: { a: 1 } }] } }, LOGIN,
        ['expected a call of unionLogin with {"a":1}; unionLogin was not called']],
    ['a count', { expect: { calls: [{ method: 'init', times: 2 }] } }, LOGIN, ['expected 2 calls of init, not 1']],
    ['a code', { expect: { codes: { init: [5, 0], on: [1] } } }, LOGIN,
        ['expected init to meet 5; it met 0', 'expected on to meet 1; it met no code']],
    ['the end', {}, () => { throw new Error('oh'); }, ['the game should end by itself, but it failed: oh']],
    ['a failure', { expect: { end: 'fails' } }, LOGIN, ['the game should fail, but it ended by itself']],
    ['the module', { expect: { end: 'module' } }, LOGIN, ['the module should end the game, but it ended by itself']],
    ['no end by the module', { rules: [{ answer: [{ result: 10 }] }] }, LOGIN,
        ['the game should end by itself, but the module ended it: an answer with code 10']],
    ['another end by the module', { rules: [{ answer: [{ result: 10 }] }], expect: { end: { module: 'timer' } } }, LOGIN,
        ['the module should end the game with timer, but the module ended it: an answer with code 10']],
    ['a step', { steps: [{ await: { method: 'unionLogin' } }] }, LOGIN,
        ['steps[0] waits for a request of unionLogin, which the game did not make']],
    ['the time', { timeLimit: 0.05 }, () => new Promise(() => {}), ['the game should end by itself, but it still ran after 0.05 s']],
]) {
    test(`a scenario that expects ${what} in vain says so`, async () => {
        await assert.rejects(play({ version: 1, name: 'x', ...scenario }, body), (error) => {
            assert.deepEqual(error.message.split('\n  '), [`x: ${failures.length} failed`, ...failures]);
            assert.equal(error.cause?.message, what === 'the end' ? 'oh' : undefined);
            return true;
        });
        assert.deepEqual([device.modals(), device.logs()], [[], []]);
    });
}

test('a game that runs on is left when all that is expected has come, one that the module ends when it does', async () => {
    const forever = (context) => LOGIN(context).then(() => new Promise(() => {}));
    const met = { calls: [{ method: 'bindPlayer', code: 0 }] };
    assert.deepEqual((await play({ version: 1, expect: { ...met, end: 'runs' } }, forever)).end, { how: 'runs' });
    const steps = [{ await: { method: 'bindPlayer' } }, { advance: 5430000 }];
    const { end } = await play({ version: 1, state: MEI_PLAYS, steps, expect: { end: { module: 'timer' } } }, forever);
    assert.deepEqual(end, { how: 'module', code: undefined });
});

test('a wrong scenario is refused with its path, place and reason', () => {
    const rule = (value) => JSON.stringify({ version: 1, rules: [value] });
    for (const [text, reason] of [
        ['{\n "version": 1,\n}', /^line 3, column 1: no JSON: .+|^no JSON: .+/],
        ['{}', "'version' is missing"],
        ['{ "version": 2 }', 'version: must be 1'],
        ['{ "version": 1, "step": [] }', "unknown key 'step': possible is $schema, version, name, seed, clock, timeLimit, " +
            'systemApp, state, rules, steps, expect'],
        ['{ "version": 1, "clock": "fast" }', 'clock: must be one of manual, real, not "fast"'],
        ['{ "version": 1, "steps": [{}, { "advance": -1 }] }', 'steps[1].advance: must be >= 0, not -1'],
        [rule({ answer: [{ result: 0 }, { after: 1 }] }), 'rules[0].answer[1]: needs exactly one of own, result, receive, release, error'],
        [rule({ answer: [{ result: 0, release: 0 }] }), 'rules[0].answer[0]: needs exactly one of own, result, receive, release, error'],
        [rule({ answer: [{ receive: { a: { b: null } } }] }),
            'rules[0].answer[0].receive.a.b: must be number,string,boolean,array,object, not null'],
        [rule({ when: { method: ['init', 'on'] } }), /^rules\[0\]\.when\.method.*"on"/],
        [rule({ chance: 2 }), 'rules[0].chance: must be <= 1, not 2'],
    ]) {
        const file = path.join(folderWith({ 'a.json': text }), 'a.json');
        assert.throws(() => readScenario(file), ({ name, message }) => {
            const told = message.slice(`${file}: `.length);
            assert.deepEqual([name, message.startsWith(`${file}: `)], ['ScenarioError', true]);
            assert[typeof reason === 'string' ? 'equal' : 'match'](told, reason);
            return true;
        });
    }
    assert.throws(() => readScenario('nowhere.json'), { message: 'nowhere.json: there is no such file' });
});
