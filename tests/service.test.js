'use strict';

// The game service: its own answers, its rules, and scenarios.

const assert = require('node:assert/strict');
const { createService, newState, play, readScenario } = require('game-player-extension-module/service');
const { device, game, test, turn } = require('./support');
const { folderWith } = require('./support/files');
const { CALLS } = require('./support/requests');

const { clock } = device;
const ROLE = {
    roleId: 'r1', roleName: 'Knight', serverId: '', serverName: '', gamePlayerId: '', teamPlayerId: '', thirdOpenId: '',
};
const [LIN, MEI] = newState().players;
const [BOUND, OF_MEI] = ['T-1001', 'T-2002'].map((teamPlayerId) => [{ thirdOpenId: 'o', teamPlayerId }]);

/** What a promise comes to: its value, parsed if it is JSON, or the code of its error. */
const outcome = (promise) => promise.then((text) => (text ? JSON.parse(text) : 'done'), ({ code }) => code);
const ask = (name, ...args) => outcome(game[name](device.createAbilityContext(), ...args));
const askValid = (name) => ask(name, ...CALLS[name].rest);
const mei = (changes) => ({ currentPlayer: 'p2', players: [LIN, { ...MEI, ...changes }] });
const bind = (openId, team) => ask('bindPlayer', openId, team);
const unbind = (openId, team) => ask('unbindPlayer', openId, team);
const logInTo = (gameAppId) => ask('quickGameLogin', { gameAppId });
const unionLogin = (...names) => ask('unionLogin', {
    loginPanelType: 1, thirdAccountInfos: names.map((accountName) => ({ accountName })),
});
const buy = (productId) => ask('prePurchase', { productId, developerPayload: 'p' });
const finish = (data) => ask('postPurchase', { purchaseData: typeof data === 'string' ? data : JSON.stringify(data) });
const bought = (status, purchase = 'b1') => ({ purchase, productId: 'a', developerPayload: 'p', status });
const PAID = bought('paid');
const sold = (outcomeOfIt) => ({ products: [{ productId: 'a', outcome: outcomeOfIt }] });

/** What the service reports of the game's players, in order. */
function newsOf() {
    const heard = [];
    game.on('playerChanged', ({ resultInfo }) => heard.push(resultInfo));
    return heard;
}

// What the game asks in a state, what each of its calls comes to, and the part of the state that they change.
for (const { given, state = {}, asks, answers, leaves } of [
    { given: 'a player', state: { announcesPlayer: true }, leaves: { announcesPlayer: false },
        asks: () => [ask('init'), ask('savePlayerRole', { ...ROLE, gamePlayerId: 'G-2002' }), ask('getLocalPlayer')],
        answers: ['done', 'done',
            { playerId: 'p1', gamePlayerId: 'G-1001', teamPlayerId: 'T-1001', playerName: 'Lin' }] },
    { given: 'nobody', state: { currentPlayer: '' },
        asks: () => [...['init', 'getLocalPlayer', 'savePlayerRole'].map(askValid), buy('a'), bind('o', '')],
        answers: ['done', 1002000003, 'done', 1002000003, 1002000003] },
    { given: 'roles', leaves: { roles: [{ ...ROLE, roleName: 'Mage' }] }, answers: ['done', 'done'],
        asks: () => ['Knight', 'Mage'].map((roleName) => ask('savePlayerRole', { ...ROLE, roleName })) },
    { given: 'no real name', state: mei({ isRealName: false }),
        asks: () => ['getLocalPlayer', 'verifyLocalPlayer'].map(askValid), answers: [1002000004, 1002000004] },
    { given: 'a game without real names', answers: [1002000004, 'done'],
        asks: () => [false, true].map((isRealName) => ask('verifyLocalPlayer', { isRealName })) },
    { given: 'no time left', state: mei({ playableMinutes: 0 }), asks: () => [logInTo('q')], answers: [1002000006] },
    { given: 'bindings', leaves: { bindings: BOUND }, answers: [1002000010, 'done', 1002000012, 1002000012],
        asks: () => [bind('o', 'T-2002'), bind('o', 'T-1001'), bind('o', 'T-1001'), bind('other', 'T-1001')] },
    { given: 'wrong unbinding', state: { bindings: BOUND }, answers: [1002000013, 1002000013],
        asks: () => [unbind('x', 'T-1001'), unbind('o', 'T-2002')] },
    { given: 'unbinding', state: { bindings: BOUND }, leaves: { bindings: [] }, answers: ['done', 1002000013],
        asks: () => [unbind('o', 'T-1001'), unbind('o', 'T-1001')] },
    { given: 'paid purchases', leaves: { purchases: [bought('completed'), bought('paid', 'b2')] },
        asks: () => [buy('a'), finish(PAID), finish(PAID), finish('no JSON'), finish('null'), buy('a')],
        answers: [PAID, 'done', 1002000001, 1002000001, 1002000001, bought('paid', 'b2')] },
    { given: 'a pending purchase', state: sold('pending'), leaves: { purchases: [bought('pending')] },
        asks: () => [buy('a'), finish(bought('pending')), buy('b')],
        answers: [bought('pending'), 1002000001, 1002000007] },
    { given: 'a completed purchase', state: sold('completed'), leaves: { purchases: [bought('completed')] },
        asks: () => [buy('a'), finish(bought('completed'))], answers: [bought('completed'), 1002000001] },
    { given: 'a cancelled purchase', state: sold('cancelled'), asks: () => [buy('a')], answers: [1002000001] },
    { given: 'union accounts', asks: () => [unionLogin('A', 'B'), unionLogin()],
        answers: [{ accountName: 'A' }, { accountName: 'Lin' }] },
    { given: 'a chosen union account', state: { unionAccount: 'B' },
        asks: () => [unionLogin('A', 'B'), unionLogin('A')], answers: [{ accountName: 'B' }, 1002000016] },
    { given: 'quick games', state: { quickGames: ['q'] }, asks: () => [logInTo('q'), logInTo('r')],
        answers: [{ playerId: 'p1', gameAppId: 'q' }, 1002000014] },
    { given: 'no network', state: { online: false, announcesPlayer: true }, answers: [1002000002, 1002000002, 'done'],
        asks: () => [ask('getLocalPlayer'), bind('o', 'T-1001'), ask('init')] },
]) {
    test(`the service answers with ${given}`, async () => {
        const service = createService({ state });
        const before = service.state;
        const results = [];
        for (const promise of asks()) {
            await clock.advance(0);
            results.push(await promise);
        }
        assert.deepEqual([results, service.state], [answers, { ...before, ...leaves }]);
        service.close();
    });
}

test('the state of a service is a copy, and a wrong one is refused', () => {
    const service = createService({});
    service.state.roles.push('x');
    assert.deepEqual(service.state, newState());
    assert.throws(() => { service.state = { currentPlayr: 'p1' }; },
        /the state has no 'currentPlayr': possible is online, /);
    assert.throws(() => createService({ state: { currentPlayer: 'p9' } }), /currentPlayer is 'p9', but no player/);
});

test('a game learns of another player at once, or with its next question', async () => {
    const service = createService({ rules: [{ when: { method: 'prePurchase' }, wait: true }] });
    const heard = newsOf();
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

for (const name of ['getLocalPlayer', 'verifyLocalPlayer', 'quickGameLogin']) {
    test(`${name} limits the time of a player under age, and of no other`, async () => {
        const texts = () => device.modals().filter(({ method }) => method === 'launchAntiAddiction')
            .map(({ want }) => want.parameters.endText);
        const limited = { playableMinutes: 1, endText: 'Good night.' };
        const service = createService();
        for (const [player, changes, expected] of [['p1', {}, []], ['p1', limited, []], ['p2', {}, ['Good night.']]]) {
            service.state = { players: [{ ...LIN, ...changes }, { ...MEI, ...limited }], currentPlayer: player };
            assert.notEqual(typeof await askValid(name), 'number');
            await clock.advance(75000);
            assert.deepEqual(texts(), expected);
        }
    });
}

for (const [name, state, code] of [
    ['init', { players: [{ ...LIN, hasAgreed: false }] }, 1002000011],
    ['getLocalPlayer', mei({ playableMinutes: 0 }), 1002000006],
    ['verifyLocalPlayer', mei({ playableMinutes: 0 }), 1002000006],
]) {
    test(`${name} ends the game of a player who must not play`, async () => {
        const ended = new Promise((resolve) => device.onExit(resolve));
        createService({ state });
        void askValid(name);
        assert.deepEqual(await ended, { reason: 'answer', requestType: CALLS[name].type, code });
    });
}

test('an open page waits for no news, an unknown player changes nothing', async () => {
    const service = createService();
    const heard = newsOf();
    void askValid('launchWelcomeBanner');
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
    void askValid('launchCommonPage');
    await clock.advance(1000);
    const [page] = service.waiting('launchCommonPage');
    assert.deepEqual([page.modal.isOpen, service.isAwaiting, service.waiting('init')], [true, false, []]);
    await service.answer({ modal: page.modal.id }, [{ release: 0 }]);
    assert.deepEqual([page.modal.isOpen, service.waiting()], [false, []]);
});

const OFFLINE = [{ error: 1002000002 }];
const MET = 1002000002;
const ofPurchases = { method: 'prePurchase' };

// Rules, and what the purchases that the game makes a second apart come to, each at which millisecond.
for (const [what, rules, ...outcomes] of [
    ['late', [{ when: ofPurchases, answer: [{ after: 400, result: 5 }] }], [400, 1002000001], [1400, 1002000001]],
    ['delayed', [{ delay: 250 }], [250, 'ok']],
    ['doubled', [{ answer: [{ result: MET }, { result: 1002000003 }, { after: 9, result: 0 }] }], [0, MET]],
    ['killed', [{ answer: [{ after: 5, release: 1 }] }], 'never'],
    ['own after noise', [{ answer: [{ receive: { resultCode: 9, resultInfo: 'x' } }, { after: 30, own: true }] }],
        [30, 'ok']],
    ['out of order', [{ when: { nth: 1 }, delay: 2300 }, { delay: 10 }], [2300, 'ok'], [1010, 'ok'], [2010, 'ok']],
    ['at its bounds', [{ when: { method: ['init', 'prePurchase'] }, from: 1001, answer: OFFLINE },
        { until: 1000, delay: 1 }], [1, 'ok'], [1000, 'ok'], [2000, MET]],
    ['never', [{ when: { nth: [1, 3] }, never: true }], 'never', [1000, 'ok'], 'never'],
    ['first and third', [1, 3].map((nth) => ({ when: { nth }, answer: OFFLINE })), [0, MET], [1000, 'ok'], [2000, MET]],
    ['every third', [{ when: { every: 3 }, answer: OFFLINE }], [0, 'ok'], [1000, 'ok'], [2000, MET], [3000, 'ok']],
    ['twice', [{ times: 2, answer: OFFLINE }], [0, MET], [1000, MET], [2000, 'ok']],
    ['for some time', [{ from: 1000, until: 2000, answer: OFFLINE }], [0, 'ok'], [1000, MET], [2000, 'ok']],
    ['by Want', [{ when: { want: { tavikExtra: { productId: 'p2' } } }, answer: OFFLINE }],
        [0, 'ok'], [1000, MET], [2000, 'ok']],
    ['by type and the first of two', [{ when: { requestType: 2 }, never: true },
        { when: { requestType: 4 }, answer: OFFLINE }, { never: true }], [0, MET]],
    ['by chance', [{ chance: 0.5, answer: OFFLINE }], [0, MET], [1000, MET], [2000, 'ok']],
]) {
    test(`a rule answers ${what}`, async () => {
        createService({ rules, seed: 7 });
        const begin = clock.now();
        const seen = outcomes.map(() => 'never');
        for (const i of outcomes.keys()) {
            void buy(`p${i + 1}`).then((result) => {
                seen[i] = [clock.now() - begin, typeof result === 'number' ? result : 'ok'];
            });
            await clock.advance(1000);
        }
        assert.deepEqual(seen, outcomes);
    });
}

test('chance depends on the seed, and a rule\'s time on its addition', async () => {
    const draw = async (seed) => {
        const service = createService({ rules: [{ chance: 0.5, answer: OFFLINE }], seed });
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
    service.addRule({ until: 10000, answer: OFFLINE });
    const results = [];
    for (const ms of [0, 9999, 1]) {
        await clock.advance(ms);
        results.push(await bind('o', 'T-1001'));
    }
    assert.deepEqual(results, [MET, MET, 'done']);
});

test('by hand: a choice of requests, several answers, a closed service', async () => {
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
    const third = ask('init');
    await clock.advance(10);
    service.close();
    await clock.advance(1000);
    assert.equal(await Promise.race([third, turn()]), undefined);
});

const logIn = async (context) => {
    await game.init(context);
    const player = JSON.parse(await game.getLocalPlayer(context));
    return game.bindPlayer(context, 'o', player.teamPlayerId).catch(() => {});
};
const forEver = () => new Promise(() => {});
const expecting = (...calls) => ({ expect: { calls } });

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
            { rule: { when: { method: 'unbindPlayer' }, delay: 700 }, state: { bindings: OF_MEI } },
            { note: 'too late', answer: { method: 'bindPlayer', nth: 1, with: [{ after: 300, own: true }] } },
            { await: { method: 'unbindPlayer' }, window: 'hidden', systemApp: false, clearRules: true },
            { fail: { call: 'CreateModalUIExtension', times: 2 }, window: 'shown' },
        ],
        ...expecting({ method: 'bindPlayer', code: 1002000012 }, { method: 'unbindPlayer', code: 0 },
            { method: 'init', times: 1 }),
    }, async (context) => {
        game.on('gameAddictionPrevented', () => {});
        game.on('playerChanged', ({ resultInfo }) => heard.push(resultInfo));
        await logIn(context);
        await game.unbindPlayer(context, 'o', 'T-2002');
    });
    assert.deepEqual(heard, ['Mei signed in']);
    assert.deepEqual(report.codes, { init: [0], getLocalPlayer: [0], bindPlayer: [1002000012], unbindPlayer: [0] });
    const { begun, ended } = report.calls.find(({ method }) => method === 'bindPlayer');
    assert.deepEqual([ended - begun, report.end, report.state.bindings], [2800, { how: 'ends' }, []]);
    assert.deepEqual(device.modals(), []);
});

const ENDED = [{ answer: [{ result: 10 }] }];
const IN_VAIN = 'the game should end by itself, but';

// Scenarios, what the error says, and how the game goes, unless it logs in.
for (const [scenario, failures, body = logIn] of [
    [expecting({ method: 'getLocalPlayer' }, { method: 'init' }),
        ['expected a call of init after the call of getLocalPlayer; ' +
            'its calls were: {"requestType":1,"traceId":""} that got 0']],
    [expecting({ method: 'unionLogin', want: { a: 1 } }),
        ['expected a call of unionLogin with {"a":1}; unionLogin was not called']],
    [expecting({ method: 'init', times: 2 }), ['expected 2 calls of init, not 1']],
    [{ expect: { codes: { init: [5, 0], on: [1] } } },
        ['expected init to meet 5; it met 0', 'expected on to meet 1; it met no code']],
    [{}, [`${IN_VAIN} it failed: oh`], () => { throw new Error('oh'); }],
    [{ rules: ENDED }, [`${IN_VAIN} the module ended it: an answer with code 10`]],
    [{ rules: ENDED, expect: { end: { module: 'timer' } } },
        ['the module should end the game with timer, but the module ended it: an answer with code 10']],
    [{ steps: [{ await: { method: 'unionLogin' } }] },
        ['steps[0] waits for a request of unionLogin, which the game did not make']],
    [{ timeLimit: 0.05 }, [`${IN_VAIN} it still ran after 0.05 s`], forEver],
]) {
    test(`a scenario fails: ${failures[0]}`, async () => {
        await assert.rejects(play({ version: 1, name: 'x', ...scenario }, body), ({ message, cause }) => {
            assert.deepEqual(message.split('\n  '), [`x: ${failures.length} failed`, ...failures]);
            assert.equal(cause?.message, message.endsWith('oh') ? 'oh' : undefined);
            return true;
        });
        assert.deepEqual([device.modals(), device.logs()], [[], []]);
    });
}

test('a game that runs on is left when all has come, or it is ended', async () => {
    const logInForEver = (context) => logIn(context).then(forEver);
    const met = { version: 1, expect: { calls: [{ method: 'bindPlayer', code: 0 }], end: 'runs' } };
    assert.deepEqual((await play(met, logInForEver)).end, { how: 'runs' });
    const steps = [{ await: { method: 'bindPlayer' } }, { advance: 5430000 }];
    const limited = { version: 1, state: { currentPlayer: 'p2' }, steps, expect: { end: { module: 'timer' } } };
    assert.deepEqual((await play(limited, logInForEver)).end, { how: 'module', code: undefined });
});

// The schema allows these, but they are wrong. Each with what the error says.
for (const [scenario, message] of [
    [{ steps: [{}, { player: 'p9' }] }, 'steps[1]: currentPlayer is \'p9\', but no player has this playerId'],
    [{ steps: [{ state: { players: [] } }] }, 'steps[0]: currentPlayer is \'p1\', but no player has this playerId'],
    [{ steps: [{ await: { method: 'init' }, answer: { method: 'postPurchase', with: [] } }] },
        'steps[0]: there is no open request of postPurchase to answer'],
    [{ steps: [{ fail: { call: 'nothing' } }] },
        'steps[0]: \'nothing\' cannot be made to fail: the module makes no such call'],
    [{ state: { currentPlayer: 'p9' } }, 'state: currentPlayer is \'p9\', but no player has this playerId'],
]) {
    test(`a scenario cannot be played: ${message}`, async () => {
        const file = `${folderWith({ 'a.json': { version: 1, ...scenario } })}/a.json`;
        const body = (context) => game.init(context).then(forEver);
        await assert.rejects(play(file, body), { name: 'ScenarioError', message: `${file}: ${message}` });
        assert.deepEqual([device.modals(), device.logs(), clock.next()], [[], [], Infinity]);
    });
}

test('on the real clock, a game may end while an answer is due', async () => {
    const steps = [{ await: { method: 'init' } }, { advance: 5 }];
    const expected = expecting({ method: 'init', code: 'pending' });
    const late = { version: 1, clock: 'real', rules: [{ delay: 3600000 }], steps, ...expected };
    assert.deepEqual((await play(late, (context) => { void game.init(context); })).end, { how: 'ends' });
});

test('a wrong scenario is refused with its path, place and reason', () => {
    const rule = (value) => ({ version: 1, rules: [value] });
    const step = (value) => ({ version: 1, steps: [value] });
    for (const [scenario, reason] of [
        ['{\n "version": 1,\n}', /^line 3, column 1: no JSON: .+|^no JSON: .+/],
        [{ version: 1, step: [] }, /^unknown key 'step': possible is .*systemApp, state, rules, steps, expect$/],
        [step({ advance: -1 }), 'steps[0].advance: must be >= 0, not -1'],
        [rule({ answer: [{ result: 0 }, { after: 1 }] }),
            'rules[0].answer[1]: needs exactly one of own, result, receive, release, error'],
        [rule({ answer: [{ receive: { a: { b: null } } }] }),
            'rules[0].answer[0].receive.a.b: must be number,string,boolean,array,object, not null'],
        [rule({ when: { nth: 0 } }), 'rules[0].when.nth: must be >= 1, not 0'],
        [step({ await: { method: 'on' } }), /^steps\[0\]\.await\.method: must be one of init, .*, not "on"$/],
        [{ version: 1, expect: { end: 'soon' } }, /^expect\.end: must not be "soon"\. One of ends, fails, /],
    ]) {
        const file = `${folderWith({ 'a.json': scenario })}/a.json`;
        assert.throws(() => readScenario(file), ({ name, message }) => {
            assert.deepEqual([name, message.startsWith(`${file}: `)], ['ScenarioError', true]);
            assert[typeof reason === 'string' ? 'equal' : 'match'](message.slice(`${file}: `.length), reason);
            return true;
        });
    }
    assert.throws(() => readScenario('nowhere.json'), { message: 'nowhere.json: there is no such file' });
});
