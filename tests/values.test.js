'use strict';

// How JS values are read: strings, numbers, flags and records.

const assert = require('node:assert/strict');
const { seeded } = require('./model/generator');
const { REQUESTS, attempt, device, ends, game, runInChild, test } = require('./support');
const { assertAgrees, call } = require('./support/oracle');

const CTX = { ctx: 0 };
const OTHERS = [5, true, null, undefined, {}, [], () => {}, 10n, Symbol('s'), new String('x'), new Number(5),
    new Boolean(true), { toString: () => 'x', valueOf: () => 5 }];
// A string is cut at 4096 bytes, before the character that would exceed them, and ends at a NUL.
const STRINGS = ['', 'abc', '\u00e9\u6f22\u{1f600}', 'a\0b', '\0', 'a'.repeat(4096), 'a'.repeat(5000), '\u00e9'.repeat(3000),
    '\u6f22'.repeat(5000), `${'a'.repeat(4095)}\u00e9`, `${'a'.repeat(4094)}\u6f22z`, `${'a'.repeat(4093)}\u6f22z`,
    `${'a'.repeat(4093)}\u{1f600}z`, `${'a'.repeat(4092)}\u{1f600}z`];
const LONE = ['a\ud800b', '\udc00', `${'a'.repeat(4094)}\ud800z`, `\ud800${'\u6f22'.repeat(1365)}`];
const NUMBERS = [18, -1, 18.9, -1.9, -0, 2147483647, 2147483648, 4294967301, 1e300, NaN, Infinity, '18'];
const RECORDS = Object.entries(REQUESTS).filter(([, { record }]) => record);

const lastWant = () => device.modals().at(-1).want.parameters;
const listen = call('on', ['playerChanged', { fn: 'plain', as: 'listener' }]);

test('a value is read as a string, a number or a flag in the same way wherever it stands', async () => {
    for (const value of [...STRINGS, ...NUMBERS, ...OTHERS]) {
        await assertAgrees([
            listen, call('syncTraceId', [value]), call('bindPlayer', [CTX, value, value]),
            call('launchCommonPage', [CTX, value]), call('reportEventOperation', [value, value, value]),
            call('onEventCallback', [{ resultCode: 1002000015, resultInfo: value }]),
            ...RECORDS.map(([name, { record: [, fields] }]) =>
                call(name, [CTX, Object.fromEntries(Object.keys(fields).map((field) => [field, value]))])),
        ]);
    }
    game.bindPlayer(device.createAbilityContext(), `${'a'.repeat(4095)}\u00e9`, 'a\0b');
    assert.deepEqual([lastWant().thirdOpenId, lastWant().teamPlayerId], ['a'.repeat(4095), 'a']);
});

/** The steps of calls that read a string without writing it as JSON. */
const readings = (value) => [
    call('syncTraceId', [value]), call('bindPlayer', [CTX, value, value]), call('launchCommonPage', [CTX, value]),
    call('launchWelcomeBanner', [CTX, value]), call('launchAntiAddiction', [CTX, 0, value, 14]), ['advance', 15000],
    call('reportEventOperation', [value, 5, 0]), call('on', [value, { fn: 'plain', as: 'listener' }]),
    call('onEventCallback', [{ resultCode: 1002000015, resultInfo: value }]),
    ...[{ moduleName: value }, { moduleName: 'entry', params: [value] }].map((accountIcon) =>
        call('unionLogin', [CTX, { thirdAccountInfos: [{ accountName: 'name', accountIcon }] }])),
];

test('strings of every kind about the limit are read as a device gives them', async () => {
    const random = seeded(7);
    const pick = (list) => list[Math.floor(random() * list.length)];
    for (let round = 0; round < 60; ++round) {
        const isWellFormed = round % 2 === 0;
        const units = ['a', '\u00e9', '\u6f22', '\u{1f600}', ...(isWellFormed ? [] : ['\ud800', '\udfff'])];
        const unit = pick(units);
        const long = unit.repeat(Math.floor(4090 / Buffer.byteLength(unit)));
        const value = long + Array.from({ length: 12 }, () => pick(random() < 0.05 ? ['\0'] : units)).join('');
        const json = RECORDS.filter(() => isWellFormed).map(([name, { record: [, fields] }]) =>
            call(name, [CTX, Object.fromEntries(Object.keys(fields).map((field) => [field, value]))]));
        await assertAgrees([listen, ...readings(value), ...json]);
    }
});

test('a lone surrogate is read as on a device, or as in Node, and ends the process as JSON', async () => {
    for (const value of LONE) {
        await assertAgrees([listen, ...readings(value)]);
    }
    device.strings('node');
    game.savePlayerRole(device.createAbilityContext(), { roleName: 'a\ud800b' });
    assert.equal(JSON.parse(lastWant().tavikExtra).roleName, 'a\ufffdb');
    device.reset();
    const strings = RECORDS.flatMap(([name, { record: [, fields] }]) => Object.entries(fields)
        .filter(([, kind]) => kind === 'string').map(([field]) => ({ name, field, object: { [field]: '\udbff' } })));
    const account = { accountName: '\udbff', accountIcon: {} };
    strings.push({ name: 'unionLogin', field: 'accountName', object: { loginPanelType: 1, thirdAccountInfos: [account] } });
    await Promise.all(strings.map(async ({ name, field, object }) => {
        const { signal, stderr } = await runInChild(({ game, device }, method, parameter) =>
            game[method](device.createAbilityContext(), parameter), [name, object], { GAMEAPI_LOG: '' });
        assert.equal(signal, 'SIGABRT');
        assert.match(stderr, new RegExp(`^game device: ${name}: ${field} has the lone surrogate U\\+DBFF\\. .*toWellFormed.*\n` +
            `game device: the module aborts the process: ${field} of ${name} .* JSON\n`));
    }));
});

test('a string that is cut off, or ends at a NUL, is named', async () => {
    const { stderr } = await runInChild(({ game, device }) => {
        game.bindPlayer(device.createAbilityContext(), 'x'.repeat(5000), 'x'.repeat(4096));
        game.savePlayerRole(device.createAbilityContext(), { roleName: 'a\0b', roleId: '\u{1f600}'.repeat(1025) });
        device.strings('node');
        game.syncTraceId('a\0\ud800');
    }, [], { GAMEAPI_LOG: '' });
    assert.deepEqual(stderr.split('\n').filter((line) => !line.endsWith('has no answer')), [
        'game device: bindPlayer: argument 2 is cut off: only 4096 of its 5000 bytes of UTF-8 are sent, on a device too',
        'game device: savePlayerRole: roleId is cut off: only 4096 of its 4100 bytes of UTF-8 are sent, on a device too',
        'game device: savePlayerRole: roleName ends at its first NUL character, on a device too: what follows is not sent',
        '',
    ]);
});

test('a record is any object, whatever it is and shows, and nothing else', async () => {
    const shown = { thirdOpenId: 'o', isAdult: true, ageRange: 2, roleId: 'r', productType: 3, gameAppId: 'a' };
    const unread = new Proxy({}, { get: () => assert.fail('read'), has: () => false });
    const values = [
        {}, [], ['x'], new Date(0), new Map(), Object.create(null), new String('x'), /x/, unread, shown,
        Object.create(shown), Object.freeze({ ...shown, more: 1 }), { get thirdOpenId() { return 'of a getter'; } },
        new Proxy({}, { get: (_, key) => shown[key], has: (_, key) => key in shown }),
        undefined, null, 0, 'x', true, Symbol('s'), 1n, () => {},
    ];
    for (const [name, { callbackAt }] of RECORDS) {
        for (const value of values) {
            await assertAgrees([call(name, [CTX, value])]);
            await assertAgrees(callbackAt ? [call(name, [CTX, value, { fn: 'plain', as: 'callback' }])] : []);
        }
    }
});

test('a getter may call the module again', () => {
    const verify = (thirdUserInfo) => {
        game.verifyLocalPlayer(device.createAbilityContext(), thirdUserInfo);
        return lastWant().thirdUserInfo;
    };
    const info = { get thirdOpenId() { return verify({ thirdOpenId: 'inner' }).length > 0 ? 'outer' : ''; } };
    assert.equal(verify(info), '{"thirdOpenId":"outer"}');
    assert.equal(device.modals().length, 2);
});

const trap = () => {
    throw new RangeError('of the getter');
};
const trapped = (key) => Object.defineProperty({}, key, { get: trap });
const HAS_TRAP = new Proxy({}, { has: trap });
const ALL_TRAP = new Proxy({}, { get: trap, has: () => true });

test('what a getter throws is thrown, and the request goes nowhere', async () => {
    const { proxy, revoke } = Proxy.revocable({}, {});
    revoke();
    const callback = { fn: 'plain', as: 'callback' };
    for (const [name, { callbackAt, record: [, fields] }] of RECORDS) {
        for (const object of [...Object.keys(fields).map(trapped), HAS_TRAP, { value: proxy }, ALL_TRAP]) {
            await assertAgrees([call(name, [CTX, object]), ...(callbackAt ? [call(name, [CTX, object, callback])] : [])]);
        }
    }
    for (const info of [trapped('resultCode'), HAS_TRAP, new Proxy({ resultCode: 1002000015 }, { get: trap })]) {
        await assertAgrees([listen, call('onEventCallback', [info])]);
    }
    device.reset();
    const outcome = attempt(() => game.savePlayerRole(device.createAbilityContext(), trapped('roleName')));
    assert.deepEqual([outcome, ends()], [['threw', undefined, 'of the getter'], [['savePlayerRole', 401]]]);
});
