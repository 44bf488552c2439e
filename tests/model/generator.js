'use strict';

// Draws steps from a seed. It looks at the model, so that answers find modals and nothing ends the game too early.

const { METHODS } = require('../support/requests');
const { MESSAGES, UNDER_AGE, codeOf, isDeadly } = require('./tables');
const { Values } = require('./values');

const CODES = [...Object.keys(MESSAGES).map(Number), ...Array(12).fill(0), 9, 9, 10, 10, 1002000006, 1002000006,
    1002000006, 1002000011, 1002000015, 100015, 100015, -1, 5, 1002000018, 2147483647];
const WRONG_CODES = ['0', 0.5, true, -0, undefined, [], { a: 0 }];
const TEXTS = ['', 'text', '{"a":1}', '\u6f22\u{1f600}', 'a\0b', 'x'.repeat(5000)];
const NO_TEXTS = [undefined, null, 7, -0.5, true, {}, ['text']];
const NUMBERS = [0, 1, 2, -5, 1.5, 4294967297, 40000000, NaN];
const RESULT_MESSAGES = ['data', '', 0, -7, 2147483647, -2147483648, 2147483648, 1e300, -2.5, true, false, [], {},
    ['a', ''], { text: '\u00e9\u{1f600}', list: ['a', ''], deeper: { no: false, half: 1.5, none: {} } }, undefined];
const MINUTES = [undefined, undefined, 0, 1, 1, 1, 1, 2, -5, 1.5, '1', 35791395, 40000000];
const EVENT_NAMES = ['playerChanged', 'playerChanged', 'playerChanged', 'gameAddictionPrevented', 'other'];
/** Request types, for the answers of a limit's page. */
const TYPES = [...Array(20).fill(14), ...Array.from({ length: 17 }, (_, type) => type), 14.9, 2 ** 32 + 14,
    2 ** 16 + 14, -1, NaN, '14'];
const SPANS = [1, 999, 1000, 1000, 5000, 15000, 15000, 60000];
const LONGEST_SPAN = 150000;
const KINDS = ['result', 'result', 'receive', 'receive', 'receive', 'error', 'release', 'release'];
// Methods whose requests outlive their first answer are drawn more often.
const REQUEST_NAMES = [...Object.keys(METHODS), 'getLocalPlayer', 'verifyLocalPlayer', 'quickGameLogin',
    'quickGameLogin', 'unionLogin'];
const ACTING = ['off', 'call'];

class Generator extends Values {
    /** `isTame`: deliveries may run during the next answer, so functions only record and throw. */
    constructor(random, model, isTame, hasWorkers) {
        super(random);
        Object.assign(this, { model, isTame, hasWorkers, calls: 0, focus: 0 });
        // Half of the sequences use few methods, and get further with each.
        this.methods = this.random() < 0.5 ? REQUEST_NAMES : [this.pick(REQUEST_NAMES), this.pick(REQUEST_NAMES)];
    }

    /** Draws a step by weight. If it makes no sense now, a call takes its place. */
    next() {
        const isTimeWanted = this.model.sleepers.length > 0;
        const drawn = this.draw([
            [20, () => this.request(this.env())], [44, () => this.answers(1)],
            [16, () => this.answers(2 + this.below(4))], [8, () => this.listen()], [6, () => this.otherCall()],
            [isTimeWanted ? 16 : 4, () => this.advance()], [5, () => this.window()], [1, () => ['gc']],
            [2, () => ['system', this.random() < 0.7]], [this.hasWorkers ? 5 : 0, () => this.changeWorkers()],
        ]);
        return drawn || this.request(this.env());
    }

    draw(choices) {
        let left = this.below(choices.reduce((sum, [weight]) => sum + weight, 0));
        return choices.find(([weight]) => (left -= weight) < 0)[1]();
    }

    env() { return this.pick([...this.model.envs.keys()]); }

    id() { return `c${++this.calls}`; }

    request(env, method = this.pick(this.methods)) {
        const id = this.id();
        const { least = 3, most = least, callbackAt } = METHODS[method];
        const args = [this.context(env), ...this.rest(env, method)];
        const form = this.random();
        if (callbackAt && form < 0.5) {
            args.push(this.random() < 0.9 ? { fn: this.kind(env, args[0]), as: id } : { value: this.pick(NO_TEXTS) });
        } else if (form > 0.9) {
            args.length = this.below(Math.max(args.length, most) + 1);
        } else if (form > 0.8) {
            args.push({ fn: 'plain', as: id }, { value: 1 });
        }
        return ['call', env, id, method, args, 0];
    }

    context() { return this.random() < 0.9 ? { ctx: this.below(4) } : { bad: this.below(6) }; }

    // Functions that are called while the clock moves must not act, because the clock goes on.
    kind(env, { ctx }) {
        const isAwaited = ctx !== undefined && !this.model.envs.get(env).windows[ctx].isShown;
        return this.pick(['plain', 'plain', 'throws', ...(this.isTame || isAwaited ? [] : ACTING)]);
    }

    rest(env, method) {
        const { callbackAt, record } = METHODS[method];
        if (record) {
            return [{ value: this.object(env, record[1]) }];
        }
        if (method === 'launchAntiAddiction') {
            return [this.value(env, NUMBERS), this.value(env), { value: this.pick(TYPES) }];
        }
        return callbackAt ? [] : [this.value(env), this.value(env)].slice(method.startsWith('launch') ? 1 : 0);
    }

    /** A Worker gets only values that can be posted to it. */
    isWild(env) { return env === 'main' && this.random() < 0.3; }

    /** An object with some of the fields of a record, or something else. */
    object(env, fields) {
        const keys = Object.keys(fields);
        const isWild = this.isWild(env);
        this.isForJson = true;
        const member = (key) => (fields[key] === 'accounts' ? this.accounts(isWild) : this.fieldOf(isWild));
        const made = isWild ? this.record(keys, member) : this.tame(keys.filter(() => this.random() < 0.7), member);
        this.isForJson = false;
        return isWild || this.random() < 0.9 ? made : this.pick(NO_TEXTS);
    }

    fieldOf(isWild) { return isWild ? this.any() : this.pick([...TEXTS, ...NO_TEXTS, ...NUMBERS, 1, 1]); }

    tame(keys, draw) { return Object.fromEntries(keys.map((key) => [key, draw(key)])); }

    accounts(isWild) {
        const make = (fields) => {
            const draw = (key) => (this.random() < 0.9 ? fields[key]() : isWild ? this.any() : 5);
            const keys = Object.keys(fields);
            return isWild ? this.record(keys, draw, 0.95) : this.tame(keys, draw);
        };
        const icon = {
            moduleName: () => this.pick(['entry', 'entry', 'entry', 'bare', 'locked', '']),
            id: () => this.pick([1, 1, 1.9, -1, 0, 2, 5, 4294967297]),
            params: () => this.pick([['icon'], ['none', 'a.png'], ['app.media.icon'], ['app.media.raw'], ['a.blank'],
                ['b.'], ['none', 'no.such', 5, 'x.icon'], [''], ['.'], []]),
        };
        const account = { accountName: () => this.pick(TEXTS), accountIcon: () => make(icon) };
        const other = () => (isWild ? this.any() : this.pick(NO_TEXTS));
        const list = Array.from({ length: this.below(4) }, () => (this.random() < 0.9 ? make(account) : other()));
        return this.random() < 0.9 ? list : other();
    }

    /** An argument that is not a function: one of `good`, of another type, or any value. */
    value(env, good = TEXTS) {
        const value = this.isWild(env) ? this.any() : this.pick(this.random() < 0.8 ? good : NO_TEXTS);
        return { value: typeof value === 'function' ? undefined : value };
    }

    listen() {
        const env = this.env();
        const type = this.pick(EVENT_NAMES);
        const isTame = this.isTame || type !== 'playerChanged';
        const fn = this.pick(['plain', 'plain', 'throws', ...(isTame ? [] : ACTING)]);
        const listener = this.random() < 0.9 ? { fn, as: `${fn}${this.below(2)}` } : this.value(env);
        const args = [this.random() < 0.95 ? { value: type } : this.value(env), listener];
        const method = this.random() < 0.7 ? 'on' : 'off';
        if (this.random() < (method === 'on' ? 0.1 : 0.5)) {
            args.length = this.below(2);
        } else if (this.random() < 0.05) {
            args.push({ value: 1 });
        }
        return ['call', env, this.id(), method, args, this.below(3)];
    }

    otherCall() {
        const env = this.env();
        const resultCode = this.pick([1002000015, 1002000015, 0, '1002000015']);
        const changed = this.isWild(env) ? this.record(['resultCode', 'resultInfo'],
            (key) => (key === 'resultCode' && this.random() < 0.8 ? resultCode : this.any()))
            : { resultCode, resultInfo: this.value(env).value };
        const event = { value: this.random() < 0.9 ? changed : this.pick(NO_TEXTS) };
        const [method, ...args] = this.pick([
            ['onEventCallback', event], ['onEventCallback', event], ['syncTraceId', this.value(env)],
            ['reportEventOperation', this.value(env), this.value(env, NUMBERS), this.value(env, NUMBERS)],
        ]);
        return ['call', env, this.id(), method, this.random() < 0.9 ? args : args.slice(1), 0];
    }

    advance() {
        const { now, sleepers } = this.model;
        const next = Math.min(...sleepers.map(({ at }) => at)) - now;
        const span = Math.min(Number.isFinite(next) && this.random() < 0.6 ? next : this.pick(SPANS),
            this.model.exitTime() - now - 1, LONGEST_SPAN);
        return span > 0 ? ['advance', span] : null;
    }

    window() {
        return ['window', this.env(), this.below(4), this.pick(['show', 'show', 'hide', 'hide', 'renew'])];
    }

    changeWorkers() {
        const workers = [...this.model.envs.keys()].slice(1);
        const isStart = workers.length < 2 && (workers.length === 0 || this.random() < 0.5);
        return isStart ? ['start', `worker ${this.id()}`] : ['end', this.pick(workers)];
    }

    /** Answers that do not wait for each other, possibly with calls between them. */
    answers(count) {
        if (this.model.modals.length === 0) {
            return null;
        }
        const steps = Array.from({ length: count }, () => (count > 1 && this.random() < 0.15
            ? this.request('main') : this.answer(false)));
        return ['answers', this.isTame ? this.onePerRequest(steps) : steps];
    }

    // If a delivery may run during the next answer, the outcome for a request that ends is undefined.
    onePerRequest(steps) {
        const answered = new Set();
        return steps.filter(([kind, index]) => {
            const { request } = kind === 'answer' ? this.model.modals[index] : {};
            const isFirst = !answered.has(request);
            answered.add(request);
            return isFirst || !request;
        });
    }

    answer(isDeath) {
        const { modals } = this.model;
        for (;;) {
            const index = this.modal();
            const { request } = modals[index];
            const [kind, ...payload] = request.isTimed && this.random() < 0.15 ? ['result', UNDER_AGE] : this.payload();
            if (isDeath === (!request.isEnded && isDeadly(kind, codeOf(kind, payload[0]), request.type))) {
                return ['answer', index, kind, ...payload];
            }
        }
    }

    // Mostly the modal that answered last, so that a request gets several answers, or a recent one.
    modal() {
        const { length } = this.model.modals;
        if (this.random() < 0.3) {
            this.focus = this.random() < 0.7 ? length - 1 - this.below(Math.min(length, 4)) : this.below(length);
        }
        return this.focus;
    }

    payload() {
        const kind = this.pick(KINDS);
        const code = this.pick(CODES);
        const params = { resultMessage: this.pick(RESULT_MESSAGES), resultInfo: this.pick(['who', '', 5, undefined]) };
        if (kind === 'receive') {
            const resultCode = this.random() < 0.9 ? code : this.pick(WRONG_CODES);
            return [kind, { ...params, resultCode, playableTime: this.pick(MINUTES), endText: this.pick(['end', 7]) }];
        }
        if (kind === 'release') {
            return [kind, this.pick([0, 0, 1, -1])];
        }
        return [kind, code, ...this.pick(kind === 'error' ? [[], ['name', 'text']] : [[], [params], [params]])];
    }

    /** An answer or a moment that ends the game; null if there is none. */
    death() {
        const span = this.model.exitTime() - this.model.now;
        if (span <= LONGEST_SPAN && this.random() < 0.5) {
            return ['advance', span];
        }
        const isAnyOpen = this.model.modals.some(({ request }) => !request.isEnded);
        return isAnyOpen ? ['answers', [this.answer(true)]] : null;
    }
}

module.exports = { Generator };
