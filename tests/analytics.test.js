'use strict';

const assert = require('node:assert/strict');
const { answer, device, expectChild, game, start, test } = require('./support');

const { clock } = device;

test('the first event of a process adds the processor, no later one does', () => expectChild(
    async ({ device, countLogs, roundTrip }) => {
        console.log(device.analytics.processors().length);
        await roundTrip();
        await roundTrip();
        const [{ name, appId, routeInfo, triggerCond, eventConfigs }, ...others] = device.analytics.processors();
        console.log(name, appId, routeInfo, triggerCond.row, triggerCond.timeout, others.length);
        for (const { domain, name, isRealTime } of eventConfigs) {
            console.log(domain, name, isRealTime);
        }
        const { tag, level, message } = device.logs().find((line) => line.message.includes('ha init success'));
        console.log(tag, level, message.includes('Init'), countLogs('ha init success'));
        console.log(device.analytics.events().length);
    }, {
        out: [
            '0', 'ha_app_event com_lumora_xelos_sdk_ocg AUTO 30 90 0', 'api_diagnostic api_exec_end false',
            'api_diagnostic api_called_stat true', 'api_diagnostic api_called_stat_cnt true', 'VelmorPerf I true 1',
            '2',
        ],
    }));

test('a refused processor is not asked for again, and events are written', () => expectChild(
    async ({ device, roundTrip }) => {
        device.failNext('AddProcessor');
        await roundTrip();
        await roundTrip();
        console.log(device.analytics.processors().length, device.analytics.events().length);
    }, { out: ['0 2'] }));

test('an end event has seven parameters, its times in boot milliseconds', async () => {
    const begin = clock.now();
    const request = start('bindPlayer');
    await clock.advance(1234);
    await answer(request.modal, ['result', 1002000012]);
    const [{ params: [[key, id], ...params], ...event }, ...others] = device.analytics.events();
    assert.deepEqual([event, others], [{ domain: 'api_diagnostic', name: 'api_exec_end', type: 'BEHAVIOR' }, []]);
    assert.match(`${key} ${id}`, /^trans_id transId_\d+$/);
    assert.deepEqual(params, [
        ['api_name', 'bindPlayer'], ['sdk_name', 'VelmorKit'], ['begin_time', begin], ['end_time', begin + 1234],
        ['result', 0], ['error_code', 1002000012],
    ]);
});

test('reportEventOperation writes what it reads of three arguments', () => {
    clock.manual();
    game.reportEventOperation('load', 1500, 7);
    const { api_name: name, begin_time: begin, end_time: end, error_code: code } =
        Object.fromEntries(device.analytics.events().at(-1).params);
    assert.deepEqual([name, begin, end, code], ['load', clock.now() - 1500, clock.now(), 7]);
});
