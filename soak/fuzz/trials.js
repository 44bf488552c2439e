'use strict';

// One trial gives the module or the device a drawn value and compares what comes of it with an independent reading.

const { isDeepStrictEqual, inspect, types: { isProxy } } = require('node:util');
const { CALLS, device, game, turn } = require('../../tests/support');
const { seeded } = require('../hostile/generator');
const { argument, get, int, sent, text } = require('./reading');
const { Values } = require('./values');

const MAX_DEPTH = 32;
const EVENT_TYPES = ['playerChanged', 'gameAddictionPrevented'];
const PLAYER_INVALID = 1002000015;
/** What a promise became by now: [] while it is pending, [error] or [undefined, value]. */
function follow(promise) {
    const fate = [];
    promise.then((value) => fate.push(undefined, value), (error) => fate.push(error));
    return fate;
}

/** How a call ended: ['returned', value] or ['threw', error]. */
function attempt(call) {
    try {
        return ['returned', call()];
    } catch (error) {
        return ['threw', error];
    }
}

const messageOf = ([how, what]) => (how === 'threw' ? what.message : undefined);

function travelledText(value) {
    if (typeof value !== 'string') {
        throw new TypeError('is no text');
    }
    return Buffer.from(value).toString();
}

/** The parameters as they travel; throws a TypeError for a value that cannot. */
function travelled(value, depth = 0) {
    if (typeof value === 'number' || typeof value === 'boolean') {
        return value;
    }
    if (typeof value === 'string') {
        return travelledText(value);
    }
    if (Array.isArray(value)) {
        return Array.from({ length: value.length }, (_, i) => travelledText(value[i]));
    }
    const prototype = typeof value === 'object' && value !== null ? Object.getPrototypeOf(value) : undefined;
    if (prototype === undefined || (prototype && Object.getPrototypeOf(prototype) !== null) || depth > MAX_DEPTH) {
        throw new TypeError('cannot travel');
    }
    return Object.fromEntries(Object.entries(value).filter(([, each]) => each !== undefined)
        .map(([key, each]) => [travelled(key), travelled(each, depth + 1)]));
}

/** Whether a proxy is in `value`, or in a chain of prototypes. */
function hasProxy(value) {
    if (typeof value !== 'object' || value === null || value === globalThis || isProxy(value)) {
        return isProxy(value);
    }
    const inner = Object.values(Object.getOwnPropertyDescriptors(value)).map((property) => property.value);
    return [...inner, Object.getPrototypeOf(value)].some(hasProxy);
}

class Trial {
    constructor(seed) {
        this.values = new Values(seeded(seed));
    }

    /** Null, or what was not as it should be. */
    async run() {
        const { values } = this;
        device.reset();
        device.setSystemApp(true);
        device.clock.manual();
        device.answerOn('caller');
        const kind = values.random();
        if (kind < 0.7) {
            return this.tryRequest(kind < 0.2 ? 'unionLogin' : values.pick(Object.keys(CALLS)));
        }
        return values.pick([this.tryParameters, this.tryListening, this.tryEvent, this.tryReport, this.tryTrace,
            this.tryLimit]).call(this);
    }

    same(what, given, expected, actual) {
        const show = (value) => {
            const [how, shown] = attempt(() => inspect(value, { depth: 6, maxStringLength: 300 }));
            return how === 'threw' ? 'what cannot be shown' : shown;
        };
        return isDeepStrictEqual(expected, actual) ? null :
            `${what}(${show(given)})\nexpected ${show(expected)}\nactual   ${show(actual)}`;
    }

    bytes() {
        const length = this.values.below(this.values.pick([3, 50, 4000]));
        return Uint8Array.from({ length }, () => this.values.below(256));
    }

    modules() {
        const entry = {
            mediaById: { 1: this.bytes(), 4294967295: this.bytes() },
            mediaByName: { icon: this.bytes() },
            rawFiles: { icon: this.bytes(), 'a.png': this.bytes(), 'app.icon': this.bytes() },
        };
        return { entry, bare: {}, locked: null };
    }

    icon(key) {
        const { values } = this;
        const names = ['icon', 'a.png', 'app.media.icon', '', '.', values.any()];
        return { moduleName: () => values.pick([...Array(9).fill('entry'), 'bare', 'locked', values.any()]),
            id: () => values.pick([1, -1, 0, 5, 4294967297, values.any()]),
            params: () => values.pick([Array.from({ length: values.below(4) }, () => values.pick(names)), values.any()])
        }[key]();
    }

    account(key) {
        return key === 'accountName' ? this.values.any() :
            this.values.record(['moduleName', 'id', 'params'], (each) => this.icon(each), 0.95);
    }

    member(key) {
        const { values } = this;
        return key === 'thirdAccountInfos' && values.random() < 0.9 ? Array.from({ length: values.below(4) },
            () => values.record(['accountName', 'accountIcon'], (each) => this.account(each), 0.95)) : values.any();
    }

    tryRequest(method) {
        const { values } = this;
        const { type, least = 1, most = Infinity, record } = CALLS[method];
        const keys = record && Object.keys(record[1]);
        const modules = this.modules();
        const isAbility = values.random() < 0.9;
        const context = isAbility ? device.createAbilityContext({ modules }) : device.createUIExtensionContext();
        const isUsable = values.random() < 0.9;
        const rest = [keys ? values.record(keys, (key) => this.member(key)) : values.any(), values.any(), values.any()];
        const count = values.random() < 0.9 ? Math.min(most, Math.max(least, 2)) : values.below(5);
        const args = [isUsable ? context : values.pick([values.any(), values.proxy(context)]), ...rest].slice(0, count);
        const expected = attempt(() => (isUsable && args.length >= least && args.length <= most ?
            sent(method, args.slice(1), () => {}, isAbility ? modules : {}) : null));
        const before = device.modals().length;
        const actual = attempt(() => follow(game[method](...args) || Promise.resolve()));
        const wants = device.modals().slice(before).map(({ want: { parameters } }) => parameters);
        if (expected[0] === 'threw') {
            return this.same(method, args, ['threw', messageOf(expected), []], [actual[0], messageOf(actual), wants]);
        }
        const want = { requestType: type, 'ability.want.params.uiExtensionType': 'sys/commonUI', traceId: '' };
        return this.same(method, args, expected[1] ? [{ ...want, ...expected[1] }] : [], wants);
    }

    // Proxies travel as Node-API shows them, which is not what the language shows of them.
    async tryParameters() {
        const { values } = this;
        const member = () => values.pick([values.text(), values.number(), [values.text()], values.record(['a', 'b'])]);
        const keys = ['b', 'a', '\u00e9', '__proto__', '1'];
        const given = values.random() < 0.5 ? values.any(5) : values.record(keys, member);
        const promise = game.getLocalPlayer(device.createAbilityContext());
        const settled = follow(promise);
        const modal = device.modals().at(-1);
        const expected = given === undefined ? ['returned', undefined] : attempt(() => travelled(given));
        const answered = follow(modal.receive({ resultCode: 0, resultMessage: given }));
        await turn();
        if (hasProxy(given)) {
            return null;
        }
        if (expected[0] === 'threw') {
            return this.same('receive', given, [true, []], [answered[0] instanceof Error, settled]);
        }
        return this.same('receive', given, [[undefined, undefined], [undefined, expected[1]]], [answered, settled]);
    }

    tryListening() {
        const { values } = this;
        const name = values.pick(['on', 'off']);
        const args = [values.pick([...EVENT_TYPES, 'playerChanged\0x', values.any()]), values.any(), values.any()]
            .slice(0, values.pick([0, 1, 2, 2, 2, 2, 3]));
        const isFunction = typeof args[1] === 'function';
        const isGood = EVENT_TYPES.includes(text(args[0])) &&
            (args.length === 2 ? isFunction : name === 'off' && args.length === 1);
        const [how, what] = attempt(() => game[name](...args));
        EVENT_TYPES.forEach((type) => game.off(type));
        const expected = isGood ? ['returned', undefined, undefined] : ['threw', 401, 'Parameter error.'];
        return this.same(name, args, expected, [how, what?.code, what?.message]);
    }

    async tryEvent() {
        const { values } = this;
        const heard = [];
        const given = values.record(['resultCode', 'resultInfo'], (key) =>
            (key === 'resultCode' && values.random() < 0.8 ? PLAYER_INVALID : values.any()));
        const expected = attempt(() => (int(get(given, 'resultCode')) === PLAYER_INVALID ?
            [{ event: 0, resultInfo: text(get(given, 'resultInfo')) }] : []));
        game.on('playerChanged', (event) => heard.push(event));
        const actual = attempt(() => game.onEventCallback(given));
        await turn();
        game.off('playerChanged');
        return this.same('onEventCallback', given,
            expected[0] === 'threw' ? ['threw', messageOf(expected), []] : ['returned', undefined, expected[1]],
            [actual[0], messageOf(actual), heard]);
    }

    tryReport() {
        const args = [this.values.any(), this.values.any(), this.values.any()];
        game.reportEventOperation(...args);
        const { api_name: api, begin_time: begin, error_code: code } =
            Object.fromEntries(device.analytics.events().at(-1).params);
        const [name, cost, error] = args;
        return this.same('reportEventOperation', args,
            [argument(name, () => {}), device.clock.now() - int(cost), int(error)], [api, begin, code]);
    }

    tryTrace() {
        const given = this.values.any();
        game.syncTraceId(given);
        game.init(device.createAbilityContext());
        game.syncTraceId('');
        return this.same('syncTraceId', given, text(given), device.modals().at(-1).want.parameters.traceId);
    }

    async tryLimit() {
        const { values } = this;
        const args = [values.pick([values.any(), 1]), values.any(), values.any()];
        game.launchAntiAddiction(device.createAbilityContext(), ...args);
        await device.clock.advance(15000);
        const shown = device.modals().at(-1)?.want.parameters;
        return this.same('launchAntiAddiction', args, int(args[0]) < 15 ? text(args[1]) : undefined, shown?.endText);
    }
}

module.exports = { Trial };
