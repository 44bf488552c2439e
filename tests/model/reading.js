'use strict';

// How the module reads JS values, written from its documented rules alone: strings, numbers and flags, and what each
// request sends.

const { isProxy } = require('node:util').types;
const { METHODS } = require('../support/requests');

const MAX_BYTES = 4096;
const PANEL_WITHOUT_ICONS = 1;

const isObject = (value) => typeof value === 'object' && value !== null;
// To Node-API, a proxy of an array is not an array.
const isArray = (value) => !isProxy(value) && Array.isArray(value);
const has = (value, key) => value !== undefined && value !== null && key in Object(value);
const get = (value, key) => (has(value, key) ? Object(value)[key] : undefined);

/** The bytes of a string in UTF-8. A lone surrogate counts as a character of three bytes. */
function encode(value) {
    const bytesOf = (code) => [0xe0 | (code >> 12), 0x80 | ((code >> 6) & 0x3f), 0x80 | (code & 0x3f)];
    return Buffer.concat(value.split(/(\p{Surrogate})/u).map((part) =>
        Buffer.from(/^\p{Surrogate}/u.test(part) ? bytesOf(part.charCodeAt(0)) : part)));
}

/** Up to the first NUL, and cut to whole characters within the limit. Empty if the value is not a string. */
function text(value) {
    if (typeof value !== 'string') {
        return '';
    }
    let bytes = encode(value);
    if (bytes.length > MAX_BYTES) {
        let end = MAX_BYTES;
        while ((bytes[end] & 0xc0) === 0x80) {
            --end;
        }
        bytes = bytes.subarray(0, end);
    }
    return bytes.toString().split('\0')[0];
}

/** The lowest 32 bits of a number. 0 for other values and numbers that are not finite. */
const int = (value) => (typeof value === 'number' ? value | 0 : 0);
const flag = (value) => value === true;

const READERS = { string: text, int, flag };

/** Reads what logs its complaints. */
class Reader {
    argument(value) {
        if (typeof value !== 'string') {
            this.log('GetStringUtf8 value param type is not string');
        }
        return text(value);
    }

    iconByNames(names, resources) {
        for (let i = 0; i < names.length; ++i) {
            const name = this.argument(names[i]);
            const last = name.lastIndexOf('.') + 1;
            const media = last > 0 ? resources.mediaByName?.[name.slice(last)] : undefined;
            const found = media?.length ? media : resources.rawFiles?.[name];
            if (found?.length) {
                return found;
            }
        }
        return undefined;
    }

    /** The icon that a description refers to in the game's modules, in base64. Empty if there is none. */
    icon(description, modules) {
        const moduleName = text(get(description, 'moduleName'));
        if (moduleName === '') {
            this.log('GetEncodedAccountIcon moduleName is empty');
            return '';
        }
        const resources = Object.hasOwn(modules, moduleName) ? modules[moduleName] : undefined;
        if (!resources) {
            this.log(`${resources === null ? 'resourceManager' : 'moduleContext'} is nullptr`);
            return '';
        }
        const media = resources.mediaById?.[int(get(description, 'id')) >>> 0];
        const names = media?.length ? [] : get(description, 'params');
        if (!isArray(names)) {
            return '';
        }
        const found = media?.length ? media : this.iconByNames(names, resources);
        if (!found) {
            this.log('Base64Encode error: invalid input param.');
            return '';
        }
        return Buffer.from(found).toString('base64');
    }

    account(element, panel, modules) {
        const accountName = text(get(element, 'accountName'));
        if (panel === PANEL_WITHOUT_ICONS) {
            return [{ accountName, encodedIcon: '' }];
        }
        if (!has(element, 'accountIcon')) {
            this.log('JsObjectToAccountInfoList has not accountIcon property');
            return [];
        }
        const encodedIcon = this.icon(get(element, 'accountIcon'), modules);
        if (encodedIcon === '') {
            this.log('JsObjectToAccountInfoList icon size is 0');
            return [];
        }
        return [{ accountName, encodedIcon }];
    }

    accounts(object, panel, modules) {
        const list = get(object, 'thirdAccountInfos');
        if (!isArray(list)) {
            const problem = has(object, 'thirdAccountInfos') ? 'array' : 'existed';
            this.log(`JsObjectToAccountInfoList thirdAccountInfos not ${problem}`);
            return [];
        }
        return Array.from({ length: list.length }, (_, i) => this.account(list[i], panel, modules)).flat();
    }

    /** The JSON of a record that is read from an object, with its keys sorted. */
    recordOf(object, fields, modules) {
        const record = {};
        for (const [name, kind] of Object.entries(fields)) {
            if (kind === 'accounts') {
                record[name] = this.accounts(object, record.loginPanelType || 0, modules);
            } else if (!kind.endsWith('?') || has(object, name)) {
                record[name] = READERS[kind.replace('?', '')](get(object, name));
            }
        }
        return JSON.stringify(Object.fromEntries(Object.entries(record).sort(([a], [b]) => (a < b ? -1 : 1))));
    }

    /** The parameters that `method` sends in addition to the common ones. Null if its record is not an object. */
    sent(method, rest, modules = {}) {
        const { record, sent: names = {} } = METHODS[method];
        if (!record) {
            return Object.fromEntries(Object.keys(names).map((name, i) => [name, this.argument(rest[i])]));
        }
        const [key, fields] = record;
        return isObject(rest[0]) ? { [key]: this.recordOf(rest[0], fields, modules) } : null;
    }
}

module.exports = { Reader, get, int, text };
