'use strict';

// How JS values are read: strings, numbers, flags and records.

const assert = require('node:assert/strict');
const { inspect } = require('node:util');
const { Comparison } = require('./model/comparison');
const { NUMBERS, OTHERS } = require('./model/values');
const { ask, attempt, device, ends, runInChild, test } = require('./support');
const { REQUESTS } = require('./support/requests');

// A string is cut at 4096 bytes, before the character that would exceed them, and ends at a NUL.
const STRINGS = ['', 'abc', '18', '\u00e9\u6f22\u{1f600}', 'a\0b', '\0', 'a'.repeat(4096), 'a'.repeat(5000),
    '\u00e9'.repeat(3000), '\u6f22'.repeat(5000), `${'a'.repeat(4095)}\u00e9`, `${'a'.repeat(4094)}\u6f22z`,
    `${'a'.repeat(4093)}\u6f22z`, `${'a'.repeat(4093)}\u{1f600}z`, `${'a'.repeat(4092)}\u{1f600}z`];
const LONE = ['a\ud800b', '\udc00', `${'a'.repeat(4094)}\ud800z`, `\ud800${'\u6f22'.repeat(1365)}`];
const RECORDS = Object.entries(REQUESTS).filter(([, { record }]) => record)
    .map(([name, { record: [, fields] }]) => ({ name, fields }));

const CTX = { ctx: 0 };
const LISTENER = { fn: 'plain', as: 'listener' };
/** The step of a call with these values, a context or a listener. */
const call = (method, ...args) => ['call', 'main', `${method}!`, method,
    args.map((arg) => (arg === CTX || arg === LISTENER ? arg : { value: arg })), 0];

/** Plays the steps on the module and on the model, and fails at the first difference. */
async function assertAgrees(steps) {
    const difference = await Comparison.run(steps);
    assert.equal(difference, null, `${inspect(steps, { depth: 9 })} differs: ${inspect(difference, { depth: 9 })}`);
}

const lastWant = () => device.modals().at(-1).want.parameters;

/** The steps of calls that read a value without writing it as JSON. */
const readings = (value) => [
    call('on', 'playerChanged', LISTENER), call('syncTraceId', value), call('bindPlayer', CTX, value, value),
    call('launchCommonPage', CTX, value), call('launchWelcomeBanner', CTX, value),
    call('launchAntiAddiction', CTX, 0, value, 14), ['advance', 15000],
    call('reportEventOperation', value, value, value), call('on', value, LISTENER),
    call('onEventCallback', { resultCode: 1002000015, resultInfo: value }),
    ...[{ moduleName: value }, { moduleName: 'entry', params: [value] }].map((accountIcon) =>
        call('unionLogin', CTX, { thirdAccountInfos: [{ accountName: 'name', accountIcon }] })),
];

test('a value is read in the same way wherever it stands', async () => {
    for (const value of [...STRINGS, ...NUMBERS, ...OTHERS]) {
        const records = RECORDS.map(({ name, fields }) =>
            call(name, CTX, Object.fromEntries(Object.keys(fields).map((field) => [field, value]))));
        await assertAgrees([...readings(value), ...records]);
    }
    ask('bindPlayer', `${'a'.repeat(4095)}\u00e9`, 'a\0b');
    assert.deepEqual([lastWant().thirdOpenId, lastWant().teamPlayerId], ['a'.repeat(4095), 'a']);
});

test('a lone surrogate is read as on a device, and ends the process as JSON', async () => {
    for (const value of LONE) {
        await assertAgrees(readings(value));
    }
    device.strings('node');
    ask('savePlayerRole', { roleName: 'a\ud800b' });
    assert.equal(JSON.parse(lastWant().tavikExtra).roleName, 'a\ufffdb');
    device.reset();
    const accounts = { loginPanelType: 1, thirdAccountInfos: [{ accountName: '\udbff', accountIcon: {} }] };
    const strings = [{ name: 'unionLogin', field: 'accountName', object: accounts },
        ...RECORDS.flatMap(({ name, fields }) => Object.keys(fields).filter((field) => fields[field] === 'string')
            .map((field) => ({ name, field, object: { [field]: '\udbff' } })))];
    await Promise.all(strings.map(async ({ name, field, object }) => {
        const { code, signal, stderr } = await runInChild(({ ask }, ...call) => ask(...call),
            [name, object], { GAMEAPI_LOG: '' });
        assert.equal(signal ?? code, process.platform === 'win32' ? 3 : 'SIGABRT');
        const [warning, end] = stderr.split('\n');
        assert.ok(warning.startsWith(`game device: ${name}: ${field} has the lone surrogate U+DBFF. `), stderr);
        assert.ok(warning.includes('toWellFormed'), stderr);
        assert.match(end, new RegExp(`^game device: the module aborts the process: ${field} of ${name} .* JSON$`));
    }));
});

test('a string that is cut off, or ends at a NUL, is named', async () => {
    const { stderr } = await runInChild(({ ask, device, game }) => {
        ask('bindPlayer', 'x'.repeat(5000), 'x'.repeat(4096));
        ask('savePlayerRole', { roleName: 'a\0b', roleId: '\u{1f600}'.repeat(1025) });
        device.strings('node');
        game.syncTraceId('a\0\ud800');
    }, [], { GAMEAPI_LOG: '' });
    const lines = [
        'bindPlayer: argument 2 is cut off: only 4096 of its 5000 bytes of UTF-8 are sent, on a device too',
        'savePlayerRole: roleId is cut off: only 4096 of its 4100 bytes of UTF-8 are sent, on a device too',
        'savePlayerRole: roleName ends at its first NUL character, on a device too: what follows is not sent',
    ];
    assert.deepEqual(stderr.split('\n').filter((line) => !line.endsWith('has no answer')),
        [...lines.map((line) => `game device: ${line}`), '']);
});

test('a getter may call the module again', () => {
    const verify = (thirdUserInfo) => {
        ask('verifyLocalPlayer', thirdUserInfo);
        return lastWant().thirdUserInfo;
    };
    const info = { get thirdOpenId() { return verify({ thirdOpenId: 'inner' }).length > 0 ? 'outer' : ''; } };
    assert.equal(verify(info), '{"thirdOpenId":"outer"}');
    assert.equal(device.modals().length, 2);
});

test('what a getter throws is thrown, and the request goes nowhere', async () => {
    const trap = () => {
        throw new RangeError('of the getter');
    };
    const trapped = (key) => Object.defineProperty({}, key, { get: trap });
    device.reset();
    const outcome = attempt(() => ask('savePlayerRole', trapped('roleName')));
    assert.deepEqual([outcome, ends()], [['threw', undefined, 'of the getter'], [['savePlayerRole', 401]]]);
});
