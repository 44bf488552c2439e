'use strict';

// Draws JS values of every kind, including hostile ones. Whatever throws, throws the same error.

const UNITS = ['a', 'Z', '0', ' ', '"', '\\', '/', '\n', '\t', '\u0001', '\u007f', '\u00e9', '\u2028', '\u6f22',
    '\uffff', '\u{1f600}', '\0', '.'];
const LONG_UNITS = ['a', '\u00e9', '\u6f22', '\u{1f600}', '\n'];
const SURROGATES = ['\ud800', '\udc00'];
const NUMBERS = [0, -0, 1, -1, 2, 0.5, -1.9, 60, 401, 1002000015, 2147483647, 2147483648, -2147483648, -2147483649,
    4294967296, 4294967356, 2 ** 53, 1e300, -1e300, 5e-324, NaN, Infinity, -Infinity];
/** Values that are neither strings nor numbers. */
const OTHERS = [undefined, null, true, false, 10n, -(2n ** 70n), Symbol('s'), {}, [], [60], () => 60, new Date(60),
    new String('boxed'), new Number(60), new Boolean(true), { valueOf: () => 60, toString: () => 'x' }];

class Values {
    constructor(random) {
        this.random = random;
        this.error = new Error('of a trap');
        this.isForJson = false;
    }

    below(count) { return Math.floor(this.random() * count); }

    pick(list) { return list[this.below(list.length)]; }

    fails() {
        return () => {
            throw this.error;
        };
    }

    /** Any value; objects nest at most `depth` deep. */
    any(depth = 3) {
        const drawn = this.random();
        if (drawn < 0.35) {
            return this.text();
        }
        return drawn < 0.7 || depth === 0 ? this.pick([this.number(), this.pick(OTHERS)]) : this.anyObject(depth - 1);
    }

    number() {
        return this.random() < 0.8 ? this.pick(NUMBERS) : (this.random() - 0.5) * 2 ** this.below(70);
    }

    // A lone surrogate in what is sent as JSON ends the process.
    text() {
        const more = this.isForJson ? [] : SURROGATES;
        if (this.random() < 0.9) {
            return Array.from({ length: this.below(12) }, () => this.pick([...UNITS, ...more])).join('');
        }
        const unit = this.pick([...LONG_UNITS, ...more]);
        return 'x'.repeat(this.below(4)) + unit.repeat(1000 + this.below(5000));
    }

    anyObject(depth) {
        const inner = () => this.any(depth);
        return this.pick([
            () => ({ a: inner(), length: 1, 0: inner() }), () => [inner(), inner()], () => Array(3),
            () => Object.freeze([this.text(), this.text()]), () => Object.create(null),
            () => Object.freeze({ a: inner() }), () => new Map([[1, inner()]]), () => new Uint8Array(3),
            () => new Error('e'), () => Promise.resolve(), () => class {}, () => this.fails(), () => globalThis,
            () => ({ toString: this.fails(), valueOf: this.fails(), [Symbol.toPrimitive]: this.fails() }),
            () => Object.defineProperty([], 0, { get: this.fails() }), () => this.proxy(() => {}),
            () => this.proxy([inner()]), () => this.proxy({ a: inner() }),
        ])();
    }

    /** A proxy of `target`: transparent, revoked, or with traps that throw. */
    proxy(target) {
        if (this.random() < 0.3) {
            const { proxy, revoke } = Proxy.revocable(target, {});
            revoke();
            return proxy;
        }
        const traps = this.pick([{}, {}, { get: this.fails() }, { has: this.fails() }, { has: () => true },
            { has: () => false }, { getPrototypeOf: this.fails(), ownKeys: this.fails() }]);
        return new Proxy(target, traps);
    }

    /** An object with some of `keys`, in one of the forms that an object can have. `member(key)` draws the values. */
    record(keys, member = () => this.any(), chance = 0.75) {
        const values = keys.filter(() => this.random() < chance).map((key) => [key, member(key)]);
        const plain = Object.fromEntries(values);
        const getters = Object.fromEntries(values.map(([key, value]) => [key, { get: () => value, enumerable: true }]));
        return this.pick([
            () => plain, () => plain, () => plain, () => Object.freeze(plain),
            () => Object.assign(Object.create(null), plain), () => Object.create(plain),
            () => Object.assign([], plain), () => Object.defineProperties({}, getters),
            () => this.proxy(plain), () => this.proxy(Object.freeze(plain)), () => Object.assign(new Date(0), plain),
            () => Object.defineProperty(plain, this.pick(keys), { get: this.fails() }), () => this.any(),
        ])();
    }
}

module.exports = { NUMBERS, OTHERS, Values };
