'use strict';

const assert = require('node:assert/strict');
const { attempt, countLogs, device, ends, game, test, testTexts, turn } = require('./support');

const [TEN, ELEVEN] = [Buffer.from('ten'), Buffer.from([0, 0xff, 0xfb, 11])];
const MODULES = {
    entry: {
        mediaById: { 10: TEN, 4294967295: ELEVEN, 12: Buffer.alloc(0) },
        mediaByName: { icon: TEN, blank: Buffer.alloc(0), '': ELEVEN },
        rawFiles: {
            icon: ELEVEN, 'app.media.icon': ELEVEN, 'app.media.raw': ELEVEN, 'app.media.blank': ELEVEN, 'end.': TEN,
        },
    },
    bare: {},
    broken: null,
};
const icon = (fields) => ({ moduleName: 'entry', ...fields });
const good = (accountName) => ({ accountName, accountIcon: icon({ id: 10 }) });

/** What the extension is sent for a parameter object, as its text. */
function sentText(param, context = device.createAbilityContext({ modules: MODULES })) {
    game.unionLogin(context, param);
    return device.modals().at(-1).want.parameters.unionLoginParam;
}

const accountsOf = (param, context) => JSON.parse(sentText(param, context)).thirdAccountInfos;
const namesOf = (param) => accountsOf(param).map(({ accountName }) => accountName);
/** The icon that an account with this descriptor is sent with; null if the account is left out. */
function sentIcon(descriptor, context) {
    const [account, ...others] = accountsOf({ thirdAccountInfos: [{ accountIcon: descriptor }] }, context);
    assert.deepEqual(others, []);
    return account ? account.encodedIcon : null;
}

const unionText = (dialog, panel, accounts = '') => `{${panel === undefined ? '' : `"loginPanelType":${panel},`}` +
    `"showLoginDialog":${dialog},"thirdAccountInfos":[${accounts}]}`;
testTexts('unionLogin', 'unionLoginParam', [
    ['a dialog and a panel', { showLoginDialog: true, loginPanelType: 2 }, unionText(true, 2)],
    ['a panel of type 0 as present', { loginPanelType: 0 }, unionText(false, 0)],
    ['a panel of an inherited type', Object.create({ loginPanelType: 3 }), unionText(false, 3)],
    ...[['2', 0], [undefined, 0], [null, 0], [true, 0], [NaN, 0], [-1, -1], [1.9, 1], [2 ** 31, -(2 ** 31)]]
        .map(([panel, sent]) => [`the ${typeof panel} ${panel} as panel ${sent}`, { loginPanelType: panel },
            unionText(false, sent)]),
    ...[1, 'true', null, {}].map((dialog) =>
        [`no dialog for the ${typeof dialog} ${dialog}`, { showLoginDialog: dialog }, unionText(false)]),
    ...Object.entries({
        object: { accountName: 'a' }, 'array-like object': { 0: {}, length: 1 }, text: 'ab', null: null, number: 5,
        set: new Set([{}]), 'typed array': new Uint8Array(2), proxy: new Proxy([{}], {}),
    }).map(([what, thirdAccountInfos]) =>
        [`no account for a ${what}`, { loginPanelType: 1, thirdAccountInfos }, unionText(false, 1)]),
    ['accounts of panel 1 by name alone, in their order',
        {
            loginPanelType: 1,
            thirdAccountInfos: [
                { accountName: '\u9f99"', accountIcon: { get moduleName() { return assert.fail('read'); } } },
                { accountName: 5 }, {}, 'text', null, undefined, , [],
            ],
        },
        unionText(false, 1, ['\u9f99\\"', ...Array(7).fill('')].map((name) =>
            `{"accountName":"${name}","encodedIcon":""}`).join())],
]);

test('accounts go with their icons, in their order, and those without a usable one are left out', () => {
    const accounts = [
        good('a1'), { accountName: 'no icon' }, { accountIcon: icon({ id: 10 }) }, {}, null, 'text', ,
        { accountName: 'no module', accountIcon: { moduleName: 'other', id: 10 } }, good('a2'),
        { accountName: 'undefined icon', accountIcon: undefined },
    ];
    const each = (name) => `{"accountName":"${name}","encodedIcon":"dGVu"}`;
    assert.equal(sentText({ thirdAccountInfos: accounts, loginPanelType: 2 }),
        unionText(false, 2, [each('a1'), each(''), each('a2')].join()));
    for (const [log, count] of [
        ['JsObjectToAccountInfoList has not accountIcon property', 5],
        ['JsObjectToAccountInfoList has accountIcon property, accountName=', 5],
        ['has accountIcon property, accountName=a2', 1],
        ['JsObjectToAccountInfoList icon size is 0', 2],
        ['moduleContext is nullptr', 1],
        [`JsObjectToAccountInfoList end, length=${accounts.length}`, 1],
    ]) {
        assert.equal(countLogs(log), count, log);
    }
});

test('accounts that are missing, or no array, are told of in the log', () => {
    sentText({});
    assert.equal(countLogs('JsObjectToAccountInfoList thirdAccountInfos not existed'), 1);
    sentText({ thirdAccountInfos: {} });
    assert.equal(countLogs('JsObjectToAccountInfoList thirdAccountInfos not array'), 1);
});

const NO_BYTES = 'Base64Encode error: invalid input param.';
const NO_MODULE = 'GetEncodedAccountIcon moduleName is empty';
const unread = { get params() { return assert.fail('read'); } };
for (const [what, descriptor, bytes, log] of [
    ['an id', icon({ id: 10 }), TEN, 'GetEncodedAccountIcon id:10, len:3, moduleName:entry'],
    ['an id, and never looks at the names', Object.assign(Object.create(unread), icon({ id: 10 })), TEN],
    ['an id with a fraction', icon({ id: 10.9 }), TEN],
    ['the id -1, which is the greatest', icon({ id: -1 }), ELEVEN, 'id:-1, len:4'],
    ['a media name', icon({ params: ['app.media.icon'] }), TEN, 'media iconName: app.media.icon, len: 3'],
    ['a media name after an id of nothing', icon({ id: 11, params: ['app.media.icon'] }), TEN],
    ['a media name after an id of an empty resource', icon({ id: 12, params: ['app.media.icon'] }), TEN],
    ['a media name after an id that is no number', icon({ id: '10', params: ['app.media.icon'] }), TEN],
    ['a raw file, when no media has its short name', icon({ params: ['app.media.raw'] }), ELEVEN,
        'raw iconName: app.media.raw, len: 4'],
    ['a raw file, when the media of its short name is empty', icon({ params: ['app.media.blank'] }), ELEVEN],
    ['a raw file for a name without a dot', icon({ params: ['icon'] }), ELEVEN, 'raw iconName: icon, len: 4'],
    ['the part after the last dot, be it empty', icon({ params: ['end.'] }), ELEVEN],
    ['the first name that yields something', icon({ params: ['none', 'no.such', 5, , 'x.icon', 'no.such'] }), TEN],
    ['nothing for names of nothing', icon({ id: 11, params: ['none', 'no.such'] }), null, NO_BYTES],
    ['nothing for no names', icon({ params: [] }), null, NO_BYTES],
    ['nothing without names', icon({}), null, 'icon size is 0'],
    ['nothing for a text', icon({ params: 'icon' }), null, 'icon size is 0'],
    ['nothing for what is like an array', icon({ params: { 0: 'icon', length: 1 } }), null, 'icon size is 0'],
    ['nothing for a Proxy of an array', icon({ params: new Proxy(['icon'], {}) }), null, 'icon size is 0'],
    ['nothing in a module of no resources', { moduleName: 'bare', id: 10, params: ['icon'] }, null, NO_BYTES],
    ['nothing in a module without a manager', { moduleName: 'broken', id: 10 }, null, 'resourceManager is nullptr'],
    ['nothing in no such module', { moduleName: 'Entry', id: 10 }, null, 'moduleContext is nullptr'],
    ['nothing in a module without a name', { id: 10 }, null, NO_MODULE],
    ['nothing in a module whose name is no text', { moduleName: ['entry'], id: 10 }, null, NO_MODULE],
    ...[undefined, null, 5, 'entry'].map((value) => [`nothing for ${value}`, value, null, NO_MODULE]),
]) {
    test(`an icon is looked for by ${what}`, () => {
        assert.equal(sentIcon(descriptor), bytes && bytes.toString('base64'));
        assert.ok(countLogs(log || 'GetEncodedAccountIcon id:') >= 1);
        assert.equal(countLogs(NO_BYTES), log === NO_BYTES ? 1 : 0);
    });
}

test('a UI extension has no icons, and its request goes out without those accounts', () => {
    const context = device.createUIExtensionContext({ modules: MODULES });
    assert.equal(sentIcon(icon({ id: 10 }), context), null);
    assert.equal(countLogs('moduleContext is nullptr'), 1);
    assert.deepEqual(accountsOf({ loginPanelType: 1, thirdAccountInfos: [good('a')] }, context),
        [{ accountName: 'a', encodedIcon: '' }]);
});

const MEMORY = 'Base64Encode error: memBio is nullptr.';
for (const [call, skip, log] of [
    ['CreateModuleContext', 0, 'moduleContext is nullptr'],
    ['GetResourceManager', 0, 'resourceManager is nullptr'],
    ['GetMediaDataById', 0, 'icon size is 0'],
    ['BIO_new', 0, MEMORY],
    ['BIO_new', 1, 'Base64Encode error: b64Bio is nullptr.'],
    ['BIO_write', 0, 'Base64Encode error: bio write fail.'],
    ['BUF_MEM_new', 0, MEMORY],
    ['BUF_MEM_grow', 0, MEMORY],
]) {
    test(`a failing ${call}, after ${skip} good ones, costs one account its place and no other`, () => {
        device.failNext(call, { skip });
        assert.deepEqual(namesOf({ thirdAccountInfos: [good('a'), good('b')] }), ['b']);
        assert.equal(countLogs(log), 1);
        assert.equal(countLogs('Base64Encode error'), log.startsWith('Base64') ? 1 : 0);
    });
}

test('a failing BIO_ctrl costs one account its place, unless it is the flush, whose result counts for nothing', () => {
    const told = [0, 1, 2].map((skip) => {
        device.reset();
        device.failNext('BIO_ctrl', { skip });
        const names = namesOf({ thirdAccountInfos: [good('a'), good('b')] });
        return [names.join(), countLogs(MEMORY), countLogs('Base64Encode error: bio get mem ptr fail.')].join();
    });
    assert.deepEqual(told.sort(), ['a,b,0,0', 'b,0,1', 'b,1,0']);
});

test('what a getter throws, at any depth, is thrown, and no modal opens', async () => {
    const trap = () => {
        throw new RangeError('of the getter');
    };
    const trapped = (target, key) => Object.defineProperty(target, key, { get: trap });
    const objects = [
        [trapped([], 0)], [trapped([good('a'), {}], 1)], [[good('a'), trapped(good('b'), 'accountName'), good('c')]],
        [[trapped({}, 'accountIcon')]], [[new Proxy({}, { has: trap })]], [[trapped({}, 'accountName')], 1],
        ...['moduleName', 'id', 'params'].map((key) => [[{ accountIcon: trapped(icon({}), key) }]]),
        [[{ accountIcon: icon({ params: trapped(['none', ''], 1) }) }]],
        [[{ accountIcon: new Proxy(icon({}), { get: trap }) }]],
    ].map(([thirdAccountInfos, loginPanelType = 0]) => ({ thirdAccountInfos, loginPanelType }));
    for (const [index, object] of objects.entries()) {
        const call = () => game.unionLogin(device.createAbilityContext({ modules: MODULES }), object);
        assert.deepEqual(attempt(call), ['threw', undefined, 'of the getter'], `object ${index}`);
    }
    await turn();
    assert.deepEqual([device.modals(), ends()], [[], objects.map(() => ['unbindPlayer', 401])]);
});

test('accounts and names that shrink or grow while they are read are read as far as they go', () => {
    const accounts = [good('a'), good('b'), good('c')];
    Object.defineProperty(accounts[0], 'accountName', { get: () => (accounts.length = 2) && 'shrinks' });
    assert.deepEqual(namesOf({ thirdAccountInfos: accounts }), ['shrinks', 'b']);
    assert.equal(countLogs('JsObjectToAccountInfoList end, length=3'), 1);
    const growing = [{ get accountName() { return `${growing.push(good('late'))}`; } }, good('b')];
    assert.deepEqual(namesOf({ loginPanelType: 1, thirdAccountInfos: growing }), ['3', 'b']);
    const params = Object.defineProperty(['', 'x', 'icon'], 0, { get: () => (params.length = 1) && 'none' });
    assert.equal(sentIcon(icon({ params })), null);
    const late = Object.defineProperty(['', 'icon'], 0, { get: () => (late[1] = 'app.media.icon') && 'none' });
    assert.equal(sentIcon(icon({ params: late })), 'dGVu');
});

test('thousands of accounts go out whole, in their order', () => {
    const many = Array.from({ length: 5000 }, (_, i) => i % 3 ? good(`${i}`) : { accountName: 'no icon' });
    assert.deepEqual(namesOf({ thirdAccountInfos: many }), many.map((_, i) => `${i}`).filter((i) => i % 3));
    assert.equal(namesOf({ thirdAccountInfos: many, loginPanelType: 1 }).length, 5000);
});

test('an icon of 32 MiB goes out whole, on one line', () => {
    const bytes = Buffer.alloc(32 * 1024 * 1024 + 1, Buffer.from(Array.from({ length: 251 }, (_, i) => i)));
    const context = device.createAbilityContext({ modules: { entry: { rawFiles: { large: bytes } } } });
    const text = sentText({ thirdAccountInfos: [{ accountIcon: icon({ params: ['large'] }) }] }, context);
    const expected = unionText(false, undefined, `{"accountName":"","encodedIcon":"${bytes.toString('base64')}"}`);
    assert.ok(text === expected, 'another text came out');
});
