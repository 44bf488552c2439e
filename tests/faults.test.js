'use strict';

// Makes every call of the module fail: once, and together with all later calls of the same function. The scenarios make
// all calls there are. Afterwards nothing is left over, and the next request works normally.

const assert = require('node:assert/strict');
const { MESSAGES } = require('./model/tables');
const { SYSTEM_ERROR, answer, ask, device, ends, game, runInChild, start, test } = require('./support');
const { FOR_EVER, SCENARIOS } = require('./support/scenarios.js');

// If one of these fails, an answer ends its request, and a system error is thrown into the environment.
const QUEUEING = ['napi_get_uv_event_loop', 'uv_queue_work', 'new(nothrow)'];
// Made while the extension's answer is processed, on whichever thread it arrives.
const ANSWER_CALLS = [...QUEUEING, 'CloseModalUIExtension', 'GetUIContent', 'Write'];
// In scenarios in which one call always fails: the fallback calls.
const REMAINING_CALLS = {
    'errors that cannot be made': ['napi_get_and_clear_last_exception', 'napi_set_named_property', 'napi_throw_error'],
};
// Made once per environment, or once per process.
const LOAD_CALLS = ['napi_add_env_cleanup_hook', 'napi_define_properties', 'napi_create_reference'];
const FIRST_CALLS = ['AddProcessor', 'new(nothrow)', 'napi_add_env_cleanup_hook', 'napi_define_properties'];

// These also prevent the result of a request from reaching JS.
const UNDELIVERED = [...QUEUEING, 'napi_open_handle_scope', 'CreateModalUIExtension',
    'napi_get_and_clear_last_exception'];
/** The effects that a game may notice, and the calls whose failure causes them. */
const EFFECTS = {
    'a promise stays pending': [...UNDELIVERED,
        'napi_get_undefined', 'napi_reject_deferred', 'napi_resolve_deferred', 'napi_throw_error'],
    'a callback stays pending': [...UNDELIVERED, 'napi_call_function', 'napi_create_reference',
        'napi_get_reference_value', 'napi_get_undefined', 'napi_typeof'],
    [`uncaught: ${SYSTEM_ERROR.join(' ')}`]: ['napi_open_handle_scope'],
    [`uncaught: undefined ${MESSAGES[1002000015]}`]: ['napi_get_and_clear_last_exception'],
    [`an answer on the caller thread throws ${SYSTEM_ERROR.join(' ')}`]: QUEUEING,
    // A system error is thrown off the JS thread, or into an environment that ended without its clean-up hook.
    'a call is refused': [...QUEUEING, 'napi_add_env_cleanup_hook'],
    'environments are left': ['napi_add_env_cleanup_hook'],
    'listeners are left': ['napi_add_env_cleanup_hook'],
};

const BLOCKED = MESSAGES[1002000008];
const UNWRITTEN = 'Base64Encode error: bio write fail.';
const UNREADABLE = 'Base64Encode error: bio get mem ptr fail.';
const UNPARSED = 'CreateResultMessage parse napiResult or resultMessage failed';
const UNMADE = 'napi create errorCode failed';

// What runs while `fail` makes calls fail, after some that succeed; what the game sees; and the first logged error.
for (const { what, play, rows } of [
    { what: 'a union login with two accounts', rows: [
        [{ CreateModuleContext: 0 }, ['b'], 'moduleContext is nullptr'],
        [{ GetResourceManager: 0 }, ['b'], 'resourceManager is nullptr'],
        [{ GetMediaDataById: 0 }, ['b']],
        [{ BIO_new: 0 }, ['b'], 'Base64Encode error: memBio is nullptr.'],
        [{ BIO_new: 1 }, ['b'], 'Base64Encode error: b64Bio is nullptr.'],
        [{ BIO_write: 0 }, ['b'], UNWRITTEN],
        [{ BIO_write: 1 }, ['b'], UNWRITTEN],
        [{ BIO_ctrl: 0 }, ['b'], UNREADABLE],
        [{ BIO_ctrl: 1 }, ['b'], UNWRITTEN],  // the first piece is still there
        [{ BIO_ctrl: 2 }, ['a', 'b']],
        [{ BIO_ctrl: 3 }, ['b'], UNREADABLE],
    ], play: (fail) => {
        const account = (accountName) => ({ accountName, accountIcon: { moduleName: 'entry', id: 7 } });
        const context = device.createAbilityContext({ modules: { entry: { mediaById: { 7: Buffer.alloc(20000) } } } });
        fail();
        game.unionLogin(context, { thirdAccountInfos: [account('a'), account('b')] });
        const { thirdAccountInfos } = JSON.parse(device.modals()[0].want.parameters.unionLoginParam);
        return thirdAccountInfos.map(({ accountName }) => accountName);
    } },
    { what: 'a login that succeeds, as analytics gets before', rows: [
        [{ WrapWantParams: 0 }, [true, 'rejected', ...SYSTEM_ERROR], UNPARSED],
        [{ napi_get_named_property: 0 }, [true, 'rejected', ...SYSTEM_ERROR], UNPARSED],
        [{ napi_resolve_deferred: 0 }, [true, 'pending']],
        [{ uv_queue_work: 0 }, [false, 'pending'], 'SendMessageBack uv_queue_work call failed'],
        [{ napi_get_uv_event_loop: 0 }, [false, 'pending'], 'isValidEnv[1] or get loop failed'],
    ], play: async (fail) => {
        const request = start('getLocalPlayer');
        fail();
        await answer(request.modal, ['receive', { resultCode: 0, resultMessage: 'data' }]);
        assert.deepEqual(ends(), [['getLocalPlayer', 0]]);
        return [request.modal.isOpen, ...request.state];
    } },
    { what: 'a login that fails, by promise and by callback', rows: [
        [{ napi_create_error: 0 }, Array(2).fill(`1002000008 ${BLOCKED}`), UNMADE],
        [{ napi_create_error: 0, napi_set_named_property: 0 }, Array(2).fill(`undefined ${BLOCKED}`), UNMADE],
        [{ napi_create_error: 0, napi_throw_error: 0 }, [false, false], UNMADE],
    ], play: async (fail) => {
        const errors = [];
        ask('getLocalPlayer').catch((error) => errors.push(error));
        ask('getLocalPlayer', (error) => errors.push(error));
        for (const modal of device.modals()) {
            fail();
            await answer(modal, ['result', 1002000008]);
        }
        return errors.map((error) => error instanceof Error && `${error.code} ${error.message}`);
    } },
]) {
    for (const [calls, expected, error] of rows) {
        test(`${what}, while ${JSON.stringify(calls)} fails`, async () => {
            const fail = () => Object.entries(calls).forEach(([call, skip]) => device.failNext(call, { skip }));
            assert.deepEqual(await play(fail), expected);
            const first = device.logs().find(({ level }) => level === 'E');
            assert.equal(first?.message.split(')]').pop(), error);
        });
    }
}

const failed = [];
const seen = new Set();

/** Records what a child process reports about its fault points. Returns the problems. */
function read({ code, signal, stdout, stderr }) {
    const reports = stdout.split('\n').filter(Boolean).map((line) => JSON.parse(line));
    const problems = [];
    for (const { point, isMet, effects = [] } of reports) {
        failed.push(...(isMet ? [point.call] : []));
        for (const [effect, ...detail] of effects) {
            seen.add(`${effect} by ${point.call}`);
            problems.push(...(isMet && EFFECTS[effect]?.includes(point.call) ? [] : [[point, effect, ...detail]]));
        }
    }
    // The module may end the process with status 0.
    if (code !== 0 || !reports.at(-1).effects) {
        problems.push([reports.at(-1), `the process ended with ${signal || code}`, stderr.slice(-2000)]);
    }
    return problems;
}

async function run(how, ...args) {
    const child = await runInChild((_, how, args) => require('./tests/support/fault_runs.js')[how](...args),
        [how, args]);
    assert.deepEqual(read(child), []);
}

for (const scenario of Object.keys(SCENARIOS)) {
    test(`${scenario}: any failing call`, () => run('sweep', scenario, 'caller', REMAINING_CALLS[scenario]));
    test(`${scenario}: any failing call of an answer from outside`, () => run('sweep', scenario, 'ui', ANSWER_CALLS));
}
test('an environment that is loaded and ends: any failing call', () =>
    run('sweep', 'an environment that is loaded and ends', 'ui', LOAD_CALLS));

for (const call of FIRST_CALLS) {
    test(`a first start: failing calls of ${call}`, async () => {
        for (const times of [1, FOR_EVER]) {
            for (let skip = 0, before = -1; failed.length > before; ++skip) {
                before = failed.length;
                await run('report', { scenario: 'a first start', mode: 'caller', call, skip, times });
            }
        }
    });
}

test('every call that can fail did, with all its known effects', () => {
    assert.deepEqual(device.faults().filter(({ call }) => !failed.includes(call)), []);
    const known = Object.entries(EFFECTS).flatMap(([effect, calls]) => calls.map((call) => `${effect} by ${call}`));
    assert.deepEqual(known.filter((each) => !seen.has(each)), []);
    console.log(`${failed.length} points of failure`);
});
