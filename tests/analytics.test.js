'use strict';

const assert = require('node:assert/strict');
const { REQUESTS, answer, device, ends, expectChild, game, start, test } = require('./support');

const { clock } = device;
const fieldsOf = (event) => Object.fromEntries(event.params);
const lastFields = () => fieldsOf(device.analytics.events().at(-1));

test('the first event of a process adds the processor, and none of those after it does', () => expectChild(
    async ({ device, roundTrip }) => {
        const added = () => device.logs().filter(({ message }) => message.includes('ha init success'));
        console.log(device.analytics.processors().length);
        await roundTrip();
        await roundTrip();
        const [{ name, appId, routeInfo, triggerCond, eventConfigs }, ...others] = device.analytics.processors();
        console.log(name, appId, routeInfo, triggerCond.row, triggerCond.timeout, others.length);
        for (const { domain, name, isRealTime } of eventConfigs) {
            console.log(domain, name, isRealTime);
        }
        console.log(added().map(({ tag, level, message }) => `${tag} ${level} ${message.includes('Init')}`).join());
        console.log(device.analytics.events().length);
    }, {
        out: [
            '0', 'ha_app_event com_lumora_xelos_sdk_ocg AUTO 30 90 0', 'api_diagnostic api_exec_end false',
            'api_diagnostic api_called_stat true', 'api_diagnostic api_called_stat_cnt true', 'VelmorPerf I true', '2',
        ],
    }));

test('a processor that is refused is not asked for again, and events are written all the same', () => expectChild(
    async ({ device, roundTrip }) => {
        device.failNext('AddProcessor');
        await roundTrip();
        await roundTrip();
        console.log(device.analytics.processors().length, device.analytics.events().length);
    }, { out: ['0 2'] }));

test('an end event carries its seven parameters in order, its times in boot milliseconds', async () => {
    const begin = clock.now();
    const request = start('bindPlayer');
    await clock.advance(1234);
    await answer(request.modal, ['result', 1002000012]);
    const [{ domain, name, type, params }, ...others] = device.analytics.events();
    assert.deepEqual([domain, name, type, others], ['api_diagnostic', 'api_exec_end', 'BEHAVIOR', []]);
    const [[key, id], ...rest] = params;
    assert.equal(key, 'trans_id');
    assert.match(id, /^transId_\d+$/);
    assert.deepEqual(rest, [
        ['api_name', 'bindPlayer'], ['sdk_name', 'VelmorKit'], ['begin_time', begin], ['end_time', begin + 1234],
        ['result', 0], ['error_code', 1002000012],
    ]);
});

for (const [name, { hidden }] of Object.entries(REQUESTS)) {
    test(`${name} writes one event per call, with the code that JS is told`, async () => {
        const told = (code) => hidden ? 0 : code;
        for (const [given, code] of [
            [['result', 0], 0], [['receive', { resultCode: 0 }], 0], [['error', 1002000002], told(1002000002)],
            [['result', 4711], told(1002000001)], [['receive', {}], told(1002000001)],
            [['receive', { resultCode: 1002000015 }], 1002000015],
        ]) {
            const before = ends().length;
            const request = start(name);
            await answer(request.modal, given, given, ['release', 0]);
            assert.deepEqual(ends().slice(before), [[name, code]], JSON.stringify(given));
            assert.equal(request.state[0] === 'rejected' ? request.state[1] : 0, code);
        }
        assert.equal(new Set(device.analytics.events().map((event) => fieldsOf(event).trans_id)).size, 6);
    });
}

test('an event that cannot be written changes nothing for the caller', async () => {
    device.failNext('Write');
    const request = start('bindPlayer');
    await answer(request.modal, ['result', 0]);
    assert.deepEqual([request.state, ends()], [['resolved', undefined], []]);
});

for (const [args, expected] of [
    [['load', 1500, 7], ['load', -1500, 7]],
    [['load', -250, -1], ['load', 250, -1]],
    [['', 0, 0], ['', 0, 0]],
    [[5, '1500', null], ['', 0, 0]],
    [['load', 1.9, 2147483648], ['load', -1, -2147483648]],
    [['load', NaN, Infinity], ['load', 0, 0]],
    [['a\0b', 2147483647, 401], ['a', -2147483647, 401]],
    [[undefined, undefined, undefined], ['', 0, 0]],
]) {
    test(`reportEventOperation(${args.map(String).join(', ').replace('\0', '\\0')}) is written as it reads`, () => {
        assert.equal(game.reportEventOperation(...args), undefined);
        const { api_name: name, begin_time: begin, end_time: end, error_code: code, result } = lastFields();
        assert.deepEqual([name, begin - clock.now(), code, end, result], [...expected, clock.now(), 0]);
        assert.equal(device.analytics.events().length, 1);
    });
}

test('reportEventOperation with any count but three writes nothing', () => {
    for (const args of [[], ['load'], ['load', 5], ['load', 5, 0, 1]]) {
        assert.equal(game.reportEventOperation(...args), undefined);
    }
    assert.deepEqual(device.analytics.events(), []);
});
