'use strict';

const assert = require('node:assert/strict');
const { sent } = require('../soak/hostile/reading');
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

/** Checks what goes out, and what is warned of, by the model's reading. */
function assertSent(param, modules = MODULES, kind = 'createAbilityContext') {
    const warned = [];
    const expected = sent('unionLogin', [param], (warning) => warned.push(warning), modules);
    device.reset();
    assert.equal(sentText(param, device[kind]({ modules: MODULES })), expected.unionLoginParam);
    const lines = device.logs().filter(({ level }) => 'WE'.includes(level));
    assert.deepEqual(lines.map(({ message }) => message.replace(/^\[.*?\)\]/, '')), warned);
}

const namesOf = (param) => JSON.parse(sentText(param)).thirdAccountInfos.map(({ accountName }) => accountName);

const unionText = (dialog, panel, accounts = '') => `{${panel === undefined ? '' : `"loginPanelType":${panel},`}` +
    `"showLoginDialog":${dialog},"thirdAccountInfos":[${accounts}]}`;

testTexts('unionLogin', 'unionLoginParam', [
    ['a dialog and a panel', { showLoginDialog: true, loginPanelType: 2 }, unionText(true, 2)],
    ['accounts of panel 1 by name alone, in their order', {
        loginPanelType: 1,
        thirdAccountInfos: [
            { accountName: '\u9f99"', accountIcon: { get moduleName() { return assert.fail('read'); } } }, { accountName: 5 }, ,
        ],
    }, unionText(false, 1, ['\u9f99\\"', '', ''].map((name) => `{"accountName":"${name}","encodedIcon":""}`).join())],
]);

test('accounts go with their icons, in their order, and those without a usable one are left out', () => {
    const accounts = [good('a1'), { accountName: 'no icon' }, { accountIcon: icon({ id: 10 }) }, {}, null, 'text', ,
        { accountName: 'no module', accountIcon: { moduleName: 'other', id: 10 } }, good('a2')];
    const each = (name) => `{"accountName":"${name}","encodedIcon":"dGVu"}`;
    assert.equal(sentText({ thirdAccountInfos: accounts, loginPanelType: 2 }),
        unionText(false, 2, [each('a1'), each(''), each('a2')].join()));
    assert.equal(countLogs(`JsObjectToAccountInfoList end, length=${accounts.length}`), 1);
    assertSent({ thirdAccountInfos: accounts, loginPanelType: 2 });
    assertSent({ thirdAccountInfos: accounts, loginPanelType: 1 });
    for (const thirdAccountInfos of [undefined, null, 5, 'ab', {}, { 0: {}, length: 1 }, new Set([{}]), new Uint8Array(2),
        new Proxy([{}], {})]) {
        assertSent({ thirdAccountInfos });
    }
    assertSent({});
});

test('an icon is looked for by its id, then by each name as media and as a raw file', () => {
    const unread = { get params() { return assert.fail('read'); } };
    const descriptors = [
        ...[10, 10.9, -1, 0, 11, 12, '10', undefined].flatMap((id) => [icon({ id }), icon({ id, params: ['app.media.icon'] })]),
        Object.assign(Object.create(unread), icon({ id: 10 })),
        ...[['app.media.raw'], ['app.media.blank'], ['icon'], ['end.'], ['none', 'no.such', 5, , 'x.icon', 'no.such'],
            ['none', 'no.such'], [], 'icon', { 0: 'icon', length: 1 }, new Proxy(['icon'], {})].map((params) => icon({ params })),
        ...['bare', 'broken', 'Entry', '', ['entry']].map((moduleName) => ({ moduleName, id: 10, params: ['icon'] })),
        { id: 10 }, undefined, null, 5, 'entry',
    ];
    for (const accountIcon of descriptors) {
        assertSent({ thirdAccountInfos: [{ accountIcon }] });
    }
    assertSent({ thirdAccountInfos: [good('a')] }, {}, 'createUIExtensionContext');
    sentText({ thirdAccountInfos: [{ accountIcon: icon({ params: ['app.media.raw'] }) }] });
    assert.equal(countLogs('raw iconName: app.media.raw, len: 4'), 1);
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
    const late = Object.defineProperty(['', 'icon'], 0, { get: () => (late[1] = 'app.media.icon') && 'none' });
    assert.deepEqual(namesOf({ thirdAccountInfos: [params, late].map((names, i) => ({
        accountName: `${i}`, accountIcon: icon({ params: names })
    })) }), ['1']);
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
