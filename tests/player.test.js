'use strict';

const assert = require('node:assert/strict');
const { REQUESTS, device, game, test, testTexts, wantOf } = require('./support');

test('bindPlayer and unbindPlayer send values that are no strings as empty ones', () => {
    const uncalled = () => assert.fail('called');
    for (const name of ['bindPlayer', 'unbindPlayer']) {
        assert.ok(game[name](device.createAbilityContext(), 5, uncalled) instanceof Promise);
        assert.deepEqual(device.modals().at(-1).want,
            wantOf(REQUESTS[name].type, { thirdOpenId: '', teamPlayerId: '' }));
    }
});

testTexts('verifyLocalPlayer', 'thirdUserInfo', [
    ['all fields, in key order', { thirdOpenId: 'o', isRealName: true, isAdult: false, ageRange: 3 },
        '{"ageRange":3,"isAdult":false,"isRealName":true,"thirdOpenId":"o"}'],
    ['fields of wrong types as present', { thirdOpenId: 5, isRealName: 1, isAdult: 'true', ageRange: '3' },
        '{"ageRange":0,"isAdult":false,"isRealName":false,"thirdOpenId":""}'],
    ['undefined fields as present', { isRealName: undefined, isAdult: undefined, ageRange: undefined },
        '{"ageRange":0,"isAdult":false,"isRealName":false,"thirdOpenId":""}'],
    ['inherited fields', Object.create({ thirdOpenId: 'o', isAdult: true }), '{"isAdult":true,"thirdOpenId":"o"}'],
    ['fields beyond the known ones as nothing', { thirdOpenId: 'o', name: 'n' }, '{"thirdOpenId":"o"}'],
    ['quotes and non-ASCII text', { thirdOpenId: 'a"\\\n\u00e9\u6f22\u{1f600}' },
        '{"thirdOpenId":"a\\"\\\\\\n\u00e9\u6f22\u{1f600}"}'],
]);
