'use strict';

const { testTexts } = require('./support');

/** The JSON text of a role with these fields in place of empty ones. */
function roleText(fields) {
    const keys = ['gamePlayerId', 'roleId', 'roleName', 'serverId', 'serverName', 'teamPlayerId', 'thirdOpenId'];
    return `{${keys.map((key) => `"${key}":"${fields[key] || ''}"`).join()}}`;
}

testTexts('savePlayerRole', 'tavikExtra', [
    ['a role of no fields as seven empty texts', {}, roleText({})],
    ['all seven fields, in key order',
        {
            thirdOpenId: 't', teamPlayerId: 'm', serverName: 'S', serverId: 's', roleName: 'R', roleId: 'r',
            gamePlayerId: 'g',
        },
        '{"gamePlayerId":"g","roleId":"r","roleName":"R","serverId":"s","serverName":"S","teamPlayerId":"m",' +
        '"thirdOpenId":"t"}'],
    ['a number as an empty text', { roleId: 7, serverId: '7' }, roleText({ serverId: '7' })],
    ['a Chinese name as it is, not escaped', { roleName: '\u5c0f\u9f99\u5973\u{1f409}' },
        roleText({ roleName: '\u5c0f\u9f99\u5973\u{1f409}' })],
    ['what JSON must escape, and nothing else', { roleName: '"\\/\b\f\n\r\t\x01\x7f\u2028' },
        roleText({ roleName: '\\"\\\\/\\b\\f\\n\\r\\t\\u0001\x7f\u2028' })],
    ['half a surrogate pair as the replacement character', { roleName: 'a\ud83d', serverName: '\udc09b' },
        roleText({ roleName: 'a\ufffd', serverName: '\ufffdb' })],
    ['a name of 5000 characters cut to 4096', { roleName: 'n'.repeat(5000) }, roleText({ roleName: 'n'.repeat(4096) })],
    ['a name cut before the character that crosses the limit', { roleName: `${'n'.repeat(4094)}\u9f99n` },
        roleText({ roleName: 'n'.repeat(4094) })],
    ['a name up to its NUL', { roleName: 'n\0m' }, roleText({ roleName: 'n' })],
    ['inherited fields and those of getters',
        Object.assign(Object.create({ roleId: 'r' }), { get roleName() { return 'R'; } }),
        roleText({ roleId: 'r', roleName: 'R' })],
    ['fields beyond the known ones as nothing', { roleId: 'r', level: 60 }, roleText({ roleId: 'r' })],
]);
