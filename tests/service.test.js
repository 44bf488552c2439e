'use strict';

// The game service: its own answers, its rules, and scenarios.

const assert = require('node:assert/strict');
const path = require('node:path');
const { createService, newState, play, readScenario } = require('game-player-extension-module/service');
const { CALLS, device, game, test, turn } = require('./support');
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

const BOUND = [{ thirdOpenId: 'o', teamPlayerId: 'T-1001' }];

// Each with the changes of the state, what the game does, and the part of the state that this leaves.
for (const [what, state, call, left] of [
    ['a binding', {}, () => bind('o', 'T-1001'), { bindings: BOUND }],
    ['a binding of another player', {}, () => bind('o', 'T-2002'), { bindings: [] }],
    ['a binding without network', { online: false }, () => bind('o', 'T-1001'), { bindings: [] }],
    ['an unbinding', { bindings: BOUND }, () => ask('unbindPlayer', 'o', 'T-1001'), { bindings: [] }],
    ['a wrong unbinding', { bindings: BOUND }, () => ask('unbindPlayer', 'o', 'T-2002'), { bindings: BOUND }],
    ['a role of another player', {}, () => ask('savePlayerRole', { ...ROLE, gamePlayerId: 'G-2002' }), { roles: [] }],
    ['a role of nobody', { currentPlayer: '' }, () => ask('savePlayerRole', ROLE), { roles: [] }],
    ['a cancelled purchase', sold('cancelled'), () => buy('a'), { purchases: [] }],
    ['a second purchase', { purchases: [bought('completed')] }, () => buy('a'),
        { purchases: [bought('completed'), { ...bought('paid'), purchase: 'b2' }] }],
    ['a completion', { purchases: [bought('paid')] }, () => finish(bought('paid')),
        { purchases: [bought('completed')] }],
    ['a completion before it is paid', { purchases: [bought('pending')] }, () => finish(bought('pending')),
        { purchases: [bought('pending')] }],
    ['news that nobody could hear', { online: false, announcesPlayer: true }, () => ask('getLocalPlayer'),
        { announcesPlayer: true }],
    ['news that the game has heard', { announcesPlayer: true }, () => ask('getLocalPlayer'),
        { announcesPlayer: false }],
]) {
    test(`the state after ${what}`, async () => {
        const service = createService({ state });
        const before = service.state;
        await call();
        assert.deepEqual(service.state, { ...before, ...left });
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

for (const name of ['getLocalPlayer', 'verifyLocalPlayer', 'quickGameLogin']) {
    test(`${name} limits the time of a player under age, and of no other`, async () => {
        const pages = () => device.modals().filter(({ method }) => method === 'launchAntiAddiction').length;
        const service = createService({ state: { ...mei({ playableMinutes: 1 }), currentPlayer: 'p1' } });
        for (const [playerId, changes, shown] of [['p1', {}, 0], ['p1', { playableMinutes: 1 }, 0], ['p2', {}, 1]]) {
            const players = [{ ...LIN, ...changes }, { ...MEI, playableMinutes: 1 }];
            service.state = { players, currentPlayer: playerId };
            assert.notEqual(typeof await ask(name, ...CALLS[name].rest), 'number');
            await clock.advance(75000);
            assert.equal(pages(), shown);
        }
    });
}

for (const name of ['getLocalPlayer', 'verifyLocalPlayer']) {
    test(`${name} ends the game of a player who has no time left`, async () => {
        const ended = new Promise((resolve) => device.onExit(resolve));
        createService({ state: mei({ playableMinutes: 0 }) });
        void ask(name, ...CALLS[name].rest);
        assert.deepEqual(await ended, { reason: 'answer', requestType: CALLS[name].type, code: 1002000006 });
    });
}

test('a page that is open waits for no news, and an unknown player changes nothing', async () => {
    const service = createService();
    const heard = [];
    game.on('playerChanged', ({ resultInfo }) => heard.push(resultInfo));
    void game.launchWelcomeBanner(device.createAbilityContext(), 'hello');
    await turn();
    await assert.rejects(service.switchPlayer('p9'), /currentPlayer is 'p9', but no player has this playerId/);
    assert.deepEqual(service.state, newState());
    await service.switchPlayer('p2');
    await turn();
    assert.deepEqual([heard, service.state.announcesPlayer], [[], true]);
    assert.equal((await ask('getLocalPlayer')).playerId, 'p2');
    assert.equal((await ask('getLocalPlayer')).playerId, 'p2');
    assert.deepEqual(heard, ['Mei signed in']);
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
    ['out of order', [{ when: { nth: 1 }, delay: 2300 }, { delay: 10 }], 3, [[2300, 'ok'], [1010, 'ok'], [2010, 'ok']]],
    ['with an unknown failure', [{ answer: [{ error: 5, name: 'crash', message: 'x' }] }], 1, [[0, 1002000001]]],
    ['at its bounds', [{ when: { method: ['init', 'prePurchase'] }, from: 1001, answer: NETWORK },
        { until: 1000, delay: 1 }], 3, [[1, 'ok'], [1000, 'ok'], [2000, 1002000002]]],
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

test('chance depends on the seed alone, and the time of a rule begins when it is added', async () => {
    const draw = async (seed) => {
        const service = createService({ rules: [{ chance: 0.5, answer: NETWORK }], seed });
        const drawn = [];
        for (let i = 0; i < 24; ++i) {
            drawn.push(typeof await buy('a') === 'number');
        }
        service.close();
        return drawn;
    };
    const [first, again, other] = [await draw(3), await draw(3), await draw(4)];
    assert.deepEqual(first, again);
    assert.notDeepEqual(first, other);
    const service = createService();
    await clock.advance(5000);
    service.addRule({ until: 10000, answer: NETWORK });
    const results = [];
    for (const ms of [0, 9999, 1]) {
        await clock.advance(ms);
        results.push(await bind('o', 'T-1001'));
    }
    assert.deepEqual(results, [1002000002, 1002000002, 'done']);
});

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

// The schema does not tell that these are wrong. Each with what the error says.
for (const [scenario, message] of [
    [{ state: MEI_PLAYS, steps: [{}, { player: 'p9' }] },
        "steps[1]: currentPlayer is 'p9', but no player has this playerId"],
    [{ steps: [{ state: { players: [] } }] }, "steps[0]: currentPlayer is 'p1', but no player has this playerId"],
    [{ steps: [{ await: { method: 'init' }, answer: { method: 'postPurchase', with: [] } }] },
        'steps[0]: there is no open request of postPurchase to answer'],
    [{ steps: [{ fail: { call: 'nothing' } }] },
        "steps[0]: 'nothing' cannot be made to fail: the module makes no such call"],
    [{ state: { currentPlayer: 'p9' } }, "state: currentPlayer is 'p9', but no player has this playerId"],
]) {
    test(`a scenario cannot be played: ${message}`, async () => {
        const file = path.join(folderWith({ 'a.json': { version: 1, ...scenario } }), 'a.json');
        const forever = (context) => game.init(context).then(() => new Promise(() => {}));
        await assert.rejects(play(file, forever), { name: 'ScenarioError', message: `${file}: ${message}` });
        assert.deepEqual([device.modals(), device.logs(), clock.next()], [[], [], Infinity]);
    });
}

test('a game that has ended does not fail because an answer was still due', async () => {
    const steps = [{ await: { method: 'init' } }];
    const expect = { calls: [{ method: 'init', code: 'pending' }] };
    const late = { version: 1, clock: 'real', rules: [{ delay: 3600000 }], steps, expect };
    const { end } = await play(late, (context) => { void game.init(context); });
    assert.deepEqual(end, { how: 'ends' });
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
        [rule({ when: { nth: 0 } }), 'rules[0].when.nth: must be >= 1, not 0'],
        [rule({ times: 0 }), 'rules[0].times: must be >= 1, not 0'],
        [rule({ never: false }), 'rules[0].never: must be true'],
        ['[]', 'must be object, not []'],
        ['{ "version": 1, "state": { "bindings": [{ "thirdOpenId": "o" }] } }',
            "state.bindings[0]: 'teamPlayerId' is missing"],
        ['{ "version": 1, "steps": [{ "await": { "method": "init", "code": 5 } }] }',
            "steps[0].await: unknown key 'code': possible is method, want"],
        ['{ "version": 1, "steps": [{ "await": { "method": "on" } }] }',
            /^steps\[0\]\.await\.method: must be one of init, .*, not "on"$/],
        ['{ "version": 1, "steps": [{ "answer": { "method": "init" } }] }', "steps[0].answer: 'with' is missing"],
        ['{ "version": 1, "expect": { "end": "soon" } }', /^expect\.end: must not be "soon"\. One of ends, fails, /],
        ['{ "version": 1, "expect": { "codes": { "init": [0.5] } } }',
            'expect.codes.init[0]: must be integer, not 0.5'],
    ]) {
        const file = path.join(folderWith({ 'a.json': text }), 'a.json');
        assert.throws(() => readScenario(file), ({ name, message }) => {
            const told = message.slice(`${file}: `.length);
            assert.deepEqual([name, message.startsWith(`${file}: `)], ['ScenarioError', true]);
            assert[typeof reason === 'string' ? 'equal' : 'match'](told, reason);
            return true;
        });
    }
    assert.throws(() => readScenario(__dirname), ({ name, message }) =>
        name === 'ScenarioError' && message.startsWith(`${__dirname}: EISDIR`));
    assert.throws(() => readScenario('nowhere.json'), { message: 'nowhere.json: there is no such file' });
});
