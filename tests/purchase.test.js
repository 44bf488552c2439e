'use strict';

const assert = require('node:assert/strict');
const { answer, device, ends, game, start, test, testTexts, track, wantOf } = require('./support');

const purchaseText = (type, more = {}) => {
    const { developerPayload = '', productId = '', reservedInfo = '' } = more;
    return `{"developerPayload":"${developerPayload}","productId":"${productId}","productType":${type},` +
        `"reservedInfo":"${reservedInfo}"}`;
};

testTexts('prePurchase', 'tavikExtra', [
    ['a product alone', { productId: 'p1' },
        '{"developerPayload":"","productId":"p1","productType":0,"reservedInfo":""}'],
    ['all fields, in key order', { reservedInfo: 'r', developerPayload: 'd', productType: 2, productId: 'p' },
        '{"developerPayload":"d","productId":"p","productType":2,"reservedInfo":"r"}'],
    ['a payload that is JSON as a text', { developerPayload: '{"a":"\u9f99"}' },
        purchaseText(0, { developerPayload: '{\\"a\\":\\"\u9f99\\"}' })],
    ...[
        [-1, -1], [2147483647, 2147483647], [2147483648, -2147483648], [4294967297, 1], [1.9, 1], [-0, 0], [NaN, 0],
        [Infinity, 0], ['1', 0], [true, 0], [null, 0], [1n, 0], [[1], 0],
    ].map(([type, sent]) =>
        [`${typeof type} ${type} as product type ${sent}`, { productType: type }, purchaseText(sent)]),
]);

testTexts('postPurchase', 'tavikExtra', [
    ['data that are no text as an empty one', { purchaseData: 42 }, '{"purchaseData":""}'],
    ['data that are JSON as a text', { purchaseData: '{"order":[1,"\u9f99"]}' },
        '{"purchaseData":"{\\"order\\":[1,\\"\u9f99\\"]}"}'],
    ['data cut at 4096 bytes without an error', { purchaseData: `${'d'.repeat(4095)}\u00e9${'d'.repeat(904)}` },
        `{"purchaseData":"${'d'.repeat(4095)}"}`],
]);

test('a purchase and its completion, each told by what the extension answers', async () => {
    const pre = start('prePurchase');
    await answer(pre.modal, ['release', 0], ['receive', { resultCode: 0, resultMessage: '{"order":"o-1"}' }]);
    assert.deepEqual([pre.state, pre.modal.isOpen], [['resolved', '{"order":"o-1"}'], false]);
    const post = track(game.postPurchase(device.createAbilityContext(), { purchaseData: pre.state[1] }));
    assert.deepEqual(device.modals()[1].want, wantOf(5, { tavikExtra: '{"purchaseData":"{\\"order\\":\\"o-1\\"}"}' }));
    await answer(device.modals()[1], ['result', 0, { resultMessage: 'not for this request' }]);
    assert.deepEqual(post.state, ['resolved', undefined]);
    assert.deepEqual(ends(), [['prePurchase', 0], ['postPurchase', 0]]);
});
