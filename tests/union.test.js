'use strict';

// Accounts and icons of a union login. The sequences of the model try them all; these are literals and extremes.

const assert = require('node:assert/strict');
const { Model } = require('./model/model');
const { MODULES } = require('./model/tables');
const { countLogs, device, game, test } = require('./support');

const icon = (fields) => ({ moduleName: 'entry', ...fields });
const good = (accountName) => ({ accountName, accountIcon: icon({ id: 1 }) });
const named = (accountName, params) => ({ accountName, accountIcon: icon({ params }) });

/** The JSON that the extension gets for a parameter object. */
function sentRecord(param, modules = MODULES) {
    game.unionLogin(device.createAbilityContext({ modules }), param);
    return device.modals().at(-1).want.parameters.unionLoginParam;
}

const namesOf = (param) => JSON.parse(sentRecord(param)).thirdAccountInfos.map(({ accountName }) => accountName);

test('the JSON of a union login, and the log of how its icons were found', () => {
    const found = [{ id: 1 }, { id: -1 }, { params: ['app.media.icon'] }, { params: ['app.media.raw'] }];
    const accounts = found.map((fields) => ({ accountName: 'a', accountIcon: icon(fields) }));
    const each = ['AAEC', '/////w==', 'aWNvbg==', 'cmF3'].map((text) => `{"accountName":"a","encodedIcon":"${text}"}`);
    assert.equal(sentRecord({ showLoginDialog: true, loginPanelType: 2, thirdAccountInfos: [...accounts, {}] }),
        `{"loginPanelType":2,"showLoginDialog":true,"thirdAccountInfos":[${each}]}`);
    const logged = ['GetEncodedAccountIcon id:1, len:3, moduleName:entry', 'GetEncodedAccountIcon id:-1, len:4',
        'GetEncodedAccountIcon media iconName: app.media.icon, len: 4',
        'GetEncodedAccountIcon raw iconName: app.media.raw, len: 3', 'JsObjectToAccountInfoList end, length=5',
        'JsObjectToAccountInfoList has accountIcon property, accountName=a'];
    assert.deepEqual(logged.map(countLogs), [1, 1, 1, 1, 1, 4]);
});

test('a list or icon names that cannot be read leave accounts out', () => {
    device.failNext('napi_get_array_length');
    assert.deepEqual(namesOf({ thirdAccountInfos: [good('a')] }), []);
    device.failNext('napi_get_element', { skip: 1 });
    assert.deepEqual(namesOf({ thirdAccountInfos: [named('a', ['icon']), good('b')] }), ['b']);
    assert.equal(countLogs('Base64Encode error'), 0);
});

test('lists that shrink or grow while they are read', () => {
    const changing = (list, get) => Object.defineProperty(list, 0, { get });
    const accounts = [good('a'), good('b'), good('c')];
    Object.defineProperty(accounts[0], 'accountName', { get: () => ((accounts.length = 2), 'shrinks') });
    assert.deepEqual(namesOf({ thirdAccountInfos: accounts }), ['shrinks', 'b']);
    const growing = [{ get accountName() { return `${growing.push(good('late'))}`; } }, good('b')];
    assert.deepEqual(namesOf({ loginPanelType: 1, thirdAccountInfos: growing }), ['3', 'b']);
    const shrinks = changing(['', 'x', 'icon'], () => ((shrinks.length = 1), 'none'));
    const grows = changing(['', 'icon'], () => ((grows[1] = 'app.media.icon'), 'none'));
    assert.deepEqual(namesOf({ thirdAccountInfos: [named('shrinks', shrinks), named('grows', grows)] }), ['grows']);
});

test('thousands of accounts, and an icon of 32 MiB, go out whole', () => {
    const large = Buffer.alloc(32 * 1024 * 1024 + 1, Buffer.from(Array.from({ length: 251 }, (_, i) => i)));
    const modules = { entry: { ...MODULES.entry, rawFiles: { large } } };
    const many = Array.from({ length: 5000 }, (_, i) => (i % 3 ? good(`${i}`) : { accountName: 'no icon' }));
    for (const thirdAccountInfos of [many, [named('a', ['large'])]]) {
        const { unionLoginParam } = new Model(0).sent('unionLogin', [{ thirdAccountInfos }], modules);
        device.reset();
        device.failNext('napi_open_handle_scope', { skip: 1 });
        assert.ok(sentRecord({ thirdAccountInfos }, modules) === unionLoginParam, 'another string came out');
        assert.equal(device.faults().find(({ call }) => call === 'napi_open_handle_scope').made, 1);
    }
});
