'use strict';

const assert = require('node:assert/strict');
const {
    REQUESTS, assertCalledWithFailure, attempt, device, ends, failureOf, game, outcomeOf, test, turn,
} = require('./support');
const { sent: sentBy } = require('../soak/fuzz/reading');

const lastWant = () => device.modals().at(-1).want.parameters;

function verify(info) {
    game.verifyLocalPlayer(device.createAbilityContext(), info);
    return JSON.parse(lastWant().thirdUserInfo);
}

/** The ways on which a JS string reaches the module and can be seen again. */
const READERS = {
    'an argument': (value) => {
        game.bindPlayer(device.createAbilityContext(), value, value);
        assert.equal(lastWant().teamPlayerId, lastWant().thirdOpenId);
        return lastWant().thirdOpenId;
    },
    'the trace identifier': (value) => {
        game.syncTraceId(value);
        return READERS['an argument']('') + lastWant().traceId;
    },
    'the text of a page': (value) => {
        game.launchCommonPage(device.createAbilityContext(), value);
        return lastWant().pageInfo;
    },
    'a field': (value) => verify({ thirdOpenId: value }).thirdOpenId,
    'the info of an event': async (value) => {
        const heard = [];
        game.on('playerChanged', ({ resultInfo }) => heard.push(resultInfo));
        game.onEventCallback({ resultCode: 1002000015, resultInfo: value });
        await turn();
        game.off('playerChanged');
        return heard.join();
    },
};
// Strings are cut at 4096 bytes, before the character that would exceed them, and at a NUL.
const STRINGS = [
    ['', ''], ['abc', 'abc'], ['\u00e9\u6f22\u{1f600}', '\u00e9\u6f22\u{1f600}'], ['a\0b', 'a'], ['\0', ''],
    ['a'.repeat(4096), 'a'.repeat(4096)], ['a'.repeat(5000), 'a'.repeat(4096)],
    ['\u00e9'.repeat(3000), '\u00e9'.repeat(2048)], [`${'a'.repeat(4095)}\u00e9`, 'a'.repeat(4095)],
    [`${'a'.repeat(4094)}\u6f22z`, 'a'.repeat(4094)], [`${'a'.repeat(4093)}\u6f22z`, `${'a'.repeat(4093)}\u6f22`],
    ['a\ud800b', 'a\ufffdb'], ['\udc00', '\ufffd'],
    ...[5, true, null, undefined, {}, [], () => {}, 10n, Symbol('s'), new String('x'), { toString: () => 'x' }]
        .map((value) => [value, '']),
];

for (const [way, read] of Object.entries(READERS)) {
    test(`${way} is read as a text of at most 4096 bytes, and as an empty one if it is no text`, async () => {
        for (const [index, [value, expected]] of STRINGS.entries()) {
            assert.equal(await read(value), expected, `value ${index}`);
        }
    });

    test(`${way} whose last character is cut within its surrogate pair stays valid UTF-8`, async () => {
        for (const length of [4093, 4094, 4095]) {
            const text = await read(`${'a'.repeat(length)}\u{1f600}z`);
            assert.equal(text.slice(0, length), 'a'.repeat(length));
            assert.ok(['', '\ufffd'].includes(text.slice(length)) && Buffer.byteLength(text) <= 4096);
        }
    });
}

test('a number is read as 32 bits, and anything else as 0', () => {
    for (const [value, expected] of [
        [18, 18], [-1, -1], [18.9, 18], [-1.9, -1], [2147483648, -2147483648], [4294967301, 5], [NaN, 0], [Infinity, 0],
        ['18', 0], [true, 0], [null, 0], [10n, 0], [new Number(5), 0], [{ valueOf: () => 5 }, 0],
    ]) {
        assert.equal(verify({ ageRange: value }).ageRange, expected, String(value));
    }
});

test('only the two booleans are read as they are', () => {
    for (const value of [true, false, 1, 'true', null, {}, new Boolean(true)]) {
        assert.deepEqual(verify({ isAdult: value }), { isAdult: value === true, thirdOpenId: '' });
    }
});

test('a well-behaved proxy and a getter are read as the fields that they show', () => {
    const shown = { thirdOpenId: 'o', isAdult: true, ageRange: 2 };
    assert.deepEqual(verify(new Proxy({}, { get: (_, key) => shown[key], has: (_, key) => key in shown })), shown);
    assert.deepEqual(verify({ get thirdOpenId() { return 'of a getter'; } }), { thirdOpenId: 'of a getter' });
});

test('a getter may call the module again', () => {
    const info = { get thirdOpenId() { return verify({ thirdOpenId: 'inner' }).thirdOpenId; } };
    assert.deepEqual(verify(info), { thirdOpenId: 'inner' });
    assert.equal(device.modals().length, 2);
});

const trap = () => {
    throw new RangeError('of the getter');
};
const trapped = (key) => Object.defineProperty({}, key, { get: trap });
const HAS_TRAP = new Proxy({}, { has: trap });

for (const [name, { callbackAt, failsAs = name, record }] of Object.entries(REQUESTS).filter(([, each]) => each.record)) {
    const [key, kinds] = record;
    const empty = sentBy(name, [{}])[key];
    const texts = Object.keys(kinds).filter((field) => kinds[field] === 'string');
    const call = (...args) => game[name](device.createAbilityContext(), ...args);
    const sent = (object) => {
        call(object);
        return lastWant()[key];
    };

    test(`${name} fails at once on a parameter that is no object`, async () => {
        const values = [undefined, null, 0, 'x', true, Symbol('s'), 1n, () => {}];
        for (const value of values) {
            assert.deepEqual(await outcomeOf(() => call(value)), failureOf(name));
            const calls = [];
            if (callbackAt) {
                assert.equal(call(value, (...given) => calls.push(given)), undefined);
                assertCalledWithFailure(name, calls);
            }
        }
        assert.deepEqual(ends(), Array(values.length * (callbackAt ? 2 : 1)).fill([failsAs, 401]));
        assert.deepEqual(device.modals(), []);
    });

    test(`${name} takes any object, though it has none of the fields`, () => {
        const proxy = new Proxy({}, { get: () => assert.fail('read'), has: () => false });
        const objects = [{}, [], ['x'], new Date(0), new Map(), Object.create(null), new String('x'), /x/, proxy];
        assert.deepEqual(objects.map(sent), objects.map(() => empty));
    });

    test(`${name} cuts every text, and reads as empty what is none`, () => {
        const long = '\u6f22'.repeat(5000);
        for (const field of texts) {
            const read = (value) => JSON.parse(sent({ [field]: value }))[field];
            assert.equal(read(long), long.slice(0, 1365), field);
            assert.deepEqual([7, true, null, {}, ['x']].map(read), ['', '', '', '', ''], field);
            assert.deepEqual(JSON.parse(sent({ [field]: 'x' })), { ...JSON.parse(empty), [field]: 'x' });
        }
    });

    test(`${name} throws what a getter throws, and the request goes nowhere`, async () => {
        const { proxy, revoke } = Proxy.revocable({}, {});
        revoke();
        const objects = [...Object.keys(kinds).map(trapped), HAS_TRAP, proxy,
            new Proxy({}, { get: trap, has: () => true })];
        for (const object of objects) {
            for (const more of callbackAt ? [[], [() => assert.fail('called')]] : [[]]) {
                assert.match(attempt(() => call(object, ...more)).join(), /^threw,,(of the getter|.* revoked)$/);
            }
        }
        await turn();
        assert.deepEqual(ends(), Array(objects.length * (callbackAt ? 2 : 1)).fill([failsAs, 401]));
        assert.deepEqual(device.modals(), []);
        assert.equal(sent({}), empty);
    });
}

test('what a getter throws while an event is read reaches the caller, and no listener', async () => {
    const heard = [];
    game.on('playerChanged', ({ resultInfo }) => heard.push(resultInfo));
    for (const info of [trapped('resultCode'), HAS_TRAP, new Proxy({ resultCode: 1002000015 }, { get: trap })]) {
        assert.deepEqual(attempt(() => game.onEventCallback(info)), ['threw', undefined, 'of the getter']);
    }
    await turn();
    assert.deepEqual([heard, ends()], [[], [['on', 0]]]);
});
