'use strict';

// Predicts what the game, the extension, the log's warnings and errors, and analytics see of the module: by tables and
// rules on plain records, without threads or event loops. This file has the calls, and what reaches the game's
// functions.

const { get, int, text } = require('./reading');
const { Sessions } = require('./sessions');
const { METHODS, rulesOf } = require('../support/requests');
const { BAD_CONTEXTS, EVENT_TYPES, MESSAGES, MODULES, PLAYER_INVALID } = require('./tables');

class Model extends Sessions {
    /** Plays a step: there is a method for each kind. Returns its outcome. */
    step([kind, ...rest]) { return this[kind](...rest); }

    answers(steps) { return steps.map((step) => this.step(step)); }

    call(name, id, method, args, receiver) {
        const env = this.envs.get(name);
        return method in METHODS ? this.request(env, id, method, args) : this[method](env, args, receiver);
    }

    request(env, id, method, args) {
        const { type, least = 0, most = Infinity, callbackAt, failsAs = method, page, readsFirst } = METHODS[method];
        const failure = rulesOf(type).hidden ? 0 : 401;
        if (args.length < least || args.length > most) {
            this.report(method, this.now, 401);
            return this.threw(failure);
        }
        const values = args.slice(1).map((arg) => ('fn' in arg ? () => {} : arg.ctx === undefined ? arg.value : {}));
        const read = readsFirst ? this.sent(method, values) : undefined;
        const callback = args.length === callbackAt ? args[callbackAt - 1] : null;
        const request = { env, id, type, method, callback, start: this.now, window: this.windowOf(env, args[0]),
            params: {}, hasBack: Boolean(page), isOnItsWay: false, isReset: true, hasNoError: true, isTimed: false,
            isEnded: false };
        try {
            if (request.window && this.begin(request, values, read)) {
                return ['returned', callback ? undefined : 'promise'];
            }
        } catch (error) {
            this.report(failsAs, request.start, 401);
            return this.pass(error);
        }
        if (page) {
            this.log(`${page} build context failed`);
            return ['returned', 'promise'];
        }
        this.report(failsAs, request.start, 401);
        return this.fail(request, failure);
    }

    windowOf(env, arg = { bad: 0 }) {
        if (arg.ctx !== undefined) {
            return env.windows[arg.ctx];
        }
        const complaint = 'bad' in arg ? BAD_CONTEXTS[arg.bad] : 'it is not a stage mode';
        if (complaint) {
            this.log(complaint);
        }
        return null;
    }

    begin(request, values, read) {
        if (request.method === 'launchAntiAddiction') {
            request.type = int(values[2]);
            this.startTimer(request, this.argument(values[1]), int(values[0]));
            return true;
        }
        const more = read ?? this.sent(request.method, values, request.window.isOfAbility ? MODULES : {});
        if (more) {
            this.open(request, { requestType: request.type, ...more });
        }
        return more !== null;
    }

    fail(request, code) {
        const { env, callback } = request;
        const error = code === 0 ? null : ['error', code, MESSAGES[code]];
        if (callback) {
            return callback.fn && this.invoke(env, callback, 'none', [error, code === 0 ? undefined : null])
                ? ['threw', undefined, 'on purpose'] : ['returned', undefined];
        }
        if (code === 0) {
            return ['threw', undefined, 'Invalid argument'];
        }
        env.micro.push(() => env.heard.push(['rejected', request.id, error]));
        return ['returned', 'promise'];
    }

    on(env, args, receiver) {
        const type = args.length === 2 ? this.argument(args[0].value) : '';
        const code = args[1]?.fn && EVENT_TYPES.includes(type) && args.length === 2 ? this.permit(type) : 401;
        const listeners = this.listeners.get(type) || [];
        if (code === 0 && !listeners.some((each) => each.env === env && each.fn.as === args[1].as)) {
            this.listeners.set(type, [...listeners, { env, fn: args[1], receiver }]);
        }
        return this.endListening('on', code);
    }

    off(env, args) {
        const type = this.argument(args[0]?.value);
        let code = args.length <= 2 && EVENT_TYPES.includes(type) ? this.permit(type) : 401;
        if (code === 0 && args.length === 2 && !args[1].fn) {
            this.log(`Off eventType: ${type} or callback function invalid`);
            code = 401;
        }
        if (code === 0) {
            this.removeListeners(type, (each) => each.env === env && (!args[1] || each.fn.as === args[1].as), args[1]);
        }
        return this.endListening('off', code);
    }

    removeListeners(type, isMeant, one) {
        const listeners = this.listeners.get(type);
        const rest = listeners?.filter((each) => !isMeant(each));
        if (!listeners || (one && rest.length === listeners.length)) {
            this.log(`UnRegisterGameEventCallback eventType ${type} ${listeners ? 'callback ' : ''}not existed`);
        } else if (rest.length === 0) {
            this.listeners.delete(type);
        } else {
            this.listeners.set(type, rest);
        }
    }

    permit(type) {
        const isPermitted = type === 'playerChanged' || this.isSystem;
        if (!isPermitted) {
            this.log(MESSAGES[202]);
        }
        return isPermitted ? 0 : 202;
    }

    endListening(method, code) {
        this.report(method, this.now, code);
        return code === 0 ? ['returned', undefined] : this.threw(code);
    }

    onEventCallback(env, [result]) {
        try {
            if (int(get(result?.value, 'resultCode')) === PLAYER_INVALID) {
                this.raise(env, 'playerChanged', text(get(result.value, 'resultInfo')));
            }
        } catch (error) {
            return this.pass(error);
        }
        return ['returned', undefined];
    }

    reportEventOperation(env, args) {
        if (args.length === 3) {
            const [api, cost, code] = args.map(({ value }) => value);
            this.report(this.argument(api), this.now - int(cost), int(code));
        }
        return ['returned', undefined];
    }

    syncTraceId(env, [traceId]) {
        this.traceId = this.argument(traceId?.value);
        return ['returned', undefined];
    }

    invoke(env, fn, receiver, args) {
        env.heard.push(['called', fn.as, receiver, ...args]);
        if (fn.fn === 'off') {
            this.off(env, [{ value: 'playerChanged' }]);
        } else if (fn.fn === 'call') {
            this.request(env, `${fn.as}!`, 'bindPlayer', [{ ctx: 0 }, { value: 'again' }, { value: '' }]);
        }
        return fn.fn === 'throws';
    }

    deliverTo(env, fn, receiver, args) {
        if (this.invoke(env, fn, receiver, args)) {
            env.heard.push(['uncaught', 'on purpose']);
        }
    }

    /** What a getter throws reaches the caller. What is read and logged after it is undefined. */
    pass(error) {
        this.isLogUnsettled = true;
        return ['threw', undefined, error.message];
    }

    threw(code) { return ['threw', code, MESSAGES[code]]; }
}

module.exports = { Model };
