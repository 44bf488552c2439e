'use strict';

// Accounts and icons of a union login: the model predicts what is sent and logged, and some literals check the model.

const assert = require('node:assert/strict');
const { CTX, OF_UI_EXTENSION, assertAgrees, call } = require('./model/oracle');
const { sent } = require('./model/reading');
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

const unread = (key, object = {}) => Object.defineProperty(object, key, { get: () => assert.fail('read') });
for (const [what, params] of Object.entries({
    'its dialog and panel': [
        { showLoginDialog: true, loginPanelType: 2 }, { showLoginDialog: 1 }, Object.create({ loginPanelType: 3 }),
        ...[0, '2', undefined, NaN, -1, 1.9, 2 ** 31].map((loginPanelType) => ({ loginPanelType })),
    ],
    'accounts as its panel shows them': [
        [good('a1'), { accountName: 'no icon' }, { accountIcon: icon({ id: 1 }) }, {}, null, 'text',
            { accountName: 5, accountIcon: { moduleName: 'other', id: 10 } },
            { accountName: '\u9f99"', accountIcon: undefined }],
        Array(2), { accountName: 'a' }, { 0: {}, length: 1 }, 'ab', null, new Set([{}]), new Uint8Array(2),
        new Proxy([{}], {}),
    ].flatMap((thirdAccountInfos) => [1, 2].map((loginPanelType) => ({ loginPanelType, thirdAccountInfos }))),
    'no icons to a panel without': [{ loginPanelType: 1, thirdAccountInfos: [{ accountIcon: unread('moduleName') }] }],
    'the icons of accounts': [
        unread('params', icon({ id: 1 })),
        ...[1.9, -1, 11, 2, '1'].map((id) => icon({ id, params: ['app.media.icon'] })),
        ...[['app.media.raw'], ['a.blank'], ['icon'], ['b.'], ['none', 'no.such'], [], undefined, 'icon',
            ['none', 'no.such', 5, undefined, 'x.icon', 'no.such'], { 0: 'icon', length: 1 }, new Proxy(['icon'], {})]
            .map((names) => icon({ params: names })),
        ...['bare', 'locked', 'Entry', '', ['entry']].map((moduleName) => ({ moduleName, id: 1, params: ['icon'] })),
        { id: 1 }, undefined, null, 5, 'entry',
    ].map((accountIcon) => ({ thirdAccountInfos: [{ accountIcon }] })),
})) {
    test(`a union login sends ${what}, and logs what it leaves out`, async () => {
        for (const value of params) {
            await assertAgrees([call('unionLogin', [CTX, { value }])]);
            await assertAgrees([call('unionLogin', [OF_UI_EXTENSION, { value }])]);
        }
    });
}

test('the JSON of a union login, and the log of how its icons were found', () => {
    const found = [{ id: 1 }, { id: -1 }, { params: ['app.media.icon'] }, { params: ['app.media.raw'] }];
    const accounts = found.map((fields) => ({ accountName: 'a', accountIcon: icon(fields) }));
    const each = ['AAEC', '/////w==', 'aWNvbg==', 'cmF3'].map((text) => `{"accountName":"a","encodedIcon":"${text}"}`);
    assert.equal(sentRecord({ showLoginDialog: true, loginPanelType: 2, thirdAccountInfos: [...accounts, {}] }),
        `{"loginPanelType":2,"showLoginDialog":true,"thirdAccountInfos":[${each}]}`);
    const told = ['GetEncodedAccountIcon id:1, len:3, moduleName:entry', 'GetEncodedAccountIcon id:-1, len:4',
        'GetEncodedAccountIcon media iconName: app.media.icon, len: 4',
        'GetEncodedAccountIcon raw iconName: app.media.raw, len: 3', 'JsObjectToAccountInfoList end, length=5',
        'JsObjectToAccountInfoList has accountIcon property, accountName=a'];
    assert.deepEqual(told.map(countLogs), [1, 1, 1, 1, 1, 4]);
});

test('what a getter throws, at any depth, is thrown as it is, and no modal opens', async () => {
    const trap = () => {
        throw new RangeError('of the getter');
    };
    const trapped = (target, key) => Object.defineProperty(target, key, { get: trap });
    const accounts = [
        trapped([], 0), trapped([good('a'), {}], 1), [good('a'), trapped(good('b'), 'accountName'), good('c')],
        [trapped({}, 'accountIcon')], [new Proxy({}, { has: trap })],
        ...['moduleName', 'id', 'params'].map((key) => [{ accountIcon: trapped(icon({}), key) }]),
        [named('a', trapped(['none', ''], 1))], [{ accountIcon: new Proxy(icon({}), { get: trap }) }],
    ];
    for (const thirdAccountInfos of accounts) {
        await assertAgrees([call('unionLogin', [CTX, { thirdAccountInfos }])]);
    }
    assert.throws(() => game.unionLogin(device.createAbilityContext(), trapped({}, 'thirdAccountInfos')), RangeError);
    assert.equal(countLogs('CreateBusinessError'), 0, 'an error is made while another one is pending');
});

test('a list or icon names that cannot be read leave accounts out, and encode nothing', () => {
    device.failNext('napi_get_array_length');
    assert.deepEqual(namesOf({ thirdAccountInfos: [good('a')] }), []);
    device.failNext('napi_get_element', { skip: 1 });
    assert.deepEqual(namesOf({ thirdAccountInfos: [named('a', ['icon']), good('b')] }), ['b']);
    assert.equal(countLogs('Base64Encode error'), 0);
});

test('accounts and names that shrink or grow while they are read are read as far as they go', () => {
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

test('thousands of accounts, and an icon of 32 MiB, go out whole, within one handle scope', () => {
    const large = Buffer.alloc(32 * 1024 * 1024 + 1, Buffer.from(Array.from({ length: 251 }, (_, i) => i)));
    const modules = { entry: { ...MODULES.entry, rawFiles: { large } } };
    const many = Array.from({ length: 5000 }, (_, i) => (i % 3 ? good(`${i}`) : { accountName: 'no icon' }));
    for (const thirdAccountInfos of [many, [named('a', ['large'])]]) {
        const { unionLoginParam } = sent('unionLogin', [{ thirdAccountInfos }], () => {}, modules);
        device.reset();
        device.failNext('napi_open_handle_scope', { skip: 1 });
        assert.ok(sentRecord({ thirdAccountInfos }, modules) === unionLoginParam, 'another string came out');
        assert.equal(device.faults().find(({ call }) => call === 'napi_open_handle_scope').made, 1);
    }
});
