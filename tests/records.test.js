'use strict';

// What the records of requests look like as they are sent: literals that check the model's reading of them.

const { testTexts } = require('./support');

testTexts('savePlayerRole', 'tavikExtra', [
    ['all seven fields, in key order', {
        thirdOpenId: 't', teamPlayerId: 'm', serverName: 'S', serverId: 's', roleName: 'R', roleId: 'r', gamePlayerId: 'g'
    }, '{"gamePlayerId":"g","roleId":"r","roleName":"R","serverId":"s","serverName":"S","teamPlayerId":"m",' +
        '"thirdOpenId":"t"}'],
    ['what JSON must escape, nothing else, and nothing for what is missing', { roleName: '"\\/\b\f\n\r\t\x01\x7f\u2028\u9f99' },
        '{"gamePlayerId":"","roleId":"","roleName":"\\"\\\\/\\b\\f\\n\\r\\t\\u0001\x7f\u2028\u9f99","serverId":"",' +
        '"serverName":"","teamPlayerId":"","thirdOpenId":""}'],
]);

testTexts('prePurchase', 'tavikExtra', [
    ['all fields, in key order', { reservedInfo: 'r', developerPayload: 'd', productType: 4294967297.9, productId: 'p' },
        '{"developerPayload":"d","productId":"p","productType":1,"reservedInfo":"r"}'],
]);

testTexts('postPurchase', 'tavikExtra', [
    ['data that are JSON as a string', { purchaseData: '{"order":[1,"\u9f99"]}' },
        '{"purchaseData":"{\\"order\\":[1,\\"\u9f99\\"]}"}'],
]);

testTexts('verifyLocalPlayer', 'thirdUserInfo', [
    ['all fields, in key order', { thirdOpenId: 'o', isRealName: true, isAdult: false, ageRange: 3 },
        '{"ageRange":3,"isAdult":false,"isRealName":true,"thirdOpenId":"o"}'],
    ['undefined fields as given', { isRealName: undefined, isAdult: undefined, ageRange: undefined },
        '{"ageRange":0,"isAdult":false,"isRealName":false,"thirdOpenId":""}'],
    ['no field that was not given', {}, '{"thirdOpenId":""}'],
]);

testTexts('quickGameLogin', 'quickGameLoginParam', [
    ['an id in any script', { gameAppId: '"\u9f99"\u{1f409}' }, '{"gameAppId":"\\"\u9f99\\"\u{1f409}"}'],
]);
