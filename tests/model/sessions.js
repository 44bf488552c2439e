'use strict';

// The life of a request: its modal, the extension's answers, its timer, and the game events. `World` has what both
// sides of the model share.

const {
    CALLBACK_NAMES, MESSAGES, PLAYER_INVALID, QUICK_GAME_LOGIN, SYSTEM_INTERNAL, UNDER_AGE, codeOf, intParam, isDeadly,
    textParam,
} = require('./tables');
const { rulesOf } = require('../support/requests');
const { World } = require('./world');

const mayEnd = ({ isReset, isTimed }) => isReset && !isTimed;

class Sessions extends World {
    open(request, params) {
        if (request.isEnded) {
            this.log('asyncContext is nullptr');
            return;
        }
        const parameters = { ...params, traceId: this.traceId };
        if (!request.window.isShown) {
            this.log('UIContent is nullptr and delay start UIExtensionAbility');
            this.sleep(1000, (again) => this.retry(request, parameters, 1, again));
        } else if (!request.env.isAlive) {
            this.log('StartUIExtensionAbility invalid env');
        } else {
            this.create(request, parameters);
        }
    }

    create(request, parameters) {
        request.session = { request, parameters, isOpen: true };
        this.modals.push(request.session);
    }

    retry(request, parameters, round, again) {
        const isValid = !request.isEnded && request.env.isAlive;
        if (isValid && request.window.isShown) {
            this.create(request, parameters);
        } else if (isValid && round < 5) {
            again(1000, () => this.retry(request, parameters, round + 1, again));
        } else {
            this.giveUp(request, isValid);
        }
    }

    giveUp(request, isValid) {
        if (!isValid) {
            this.log('DelayStartUIExtensionAbility invalid env');
        }
        this.log('After delay 5s, uiContent is still nullptr.');
        if (request.isEnded || request.hasBack) {
            return;
        }
        request.code = rulesOf(request.type).hidden ? 0 : 401;
        this.queue(request, 'DelayStartUIExtensionAbility invalid work or get loop failed');
    }

    answer(index, kind, payload, name = '', message = '') {
        const { request } = this.modals[index];
        if (kind === 'error') {
            this.log(`OnError code=${payload}, name=${name}, message=${message}`);
        }
        if (request.isEnded) {
            this.log(`${CALLBACK_NAMES[kind]} baseContext is null`);
            return;
        }
        const code = codeOf(kind, payload);
        if (isDeadly(kind, code, request.type)) {
            this.endGame('answer', code);
        } else {
            this[kind](request, payload, name);
        }
    }

    result(request, code, params) {
        request.code = code;
        if (code === UNDER_AGE) {
            request.isTimed = false;
            this.raise(request.env, 'gameAddictionPrevented', 'The user is under age.');
        } else if (code === 9) {
            this.raise(request.env, 'playerChanged', textParam(params || {}, 'resultInfo'));
            return;
        } else {
            this.judge(request, 'result', params || {});
        }
        this.sendBack(request);
    }

    receive(request, params) {
        request.code = codeOf('receive', params);
        if (!request.env.isAlive) {
            this.log('OnReceive invalid env');
            return;
        }
        if (request.code === PLAYER_INVALID || request.code === 9) {
            this.raise(request.env, 'playerChanged', textParam(params, 'resultInfo'));
        } else {
            this.judge(request, 'receive', params);
        }
        if (request.code !== 9) {
            this.sendBack(request);
        }
    }

    judge(request, kind, params) {
        const rules = rulesOf(request.type);
        if (request.code !== 0) {
            request.isReset = true;
            this.assembleError(request);
            return;
        }
        const isEnding = request.isOnItsWay && mayEnd(request);
        if (kind === 'result') {
            request.isReset ||= Boolean(rules.ends);
        } else if (!rules.stores) {
            this.log('DealResponseForReceive API not supported');
        } else {
            request.isReset &&= isEnding || !rules.stays;
        }
        if (rules.stores?.includes(kind)) {
            request.params = params;
        }
        const minutes = intParam(params, 'playableTime', -1);
        if (rules.timed && kind === 'receive' && !isEnding && !request.isTimed && minutes >= 1) {
            this.startTimer(request, textParam(params, 'endText'), Math.imul(minutes, 60));
        }
    }

    error(request, code) {
        if (!request.hasNoError) {
            this.log('OnError message has been back');
            return;
        }
        Object.assign(request, { hasNoError: false, isReset: true, code });
        this.assembleError(request);
        this.sendBack(request);
    }

    release(request, code) {
        const { closes } = rulesOf(request.type);
        if (!closes && code === 0) {
            return;
        }
        if (!closes) {
            this.log('ModalUIExtension meet exception and close modal');
        }
        request.isReset ||= !request.isTimed;
        this.closeAndReset(request);
    }

    assembleError(request) {
        if (rulesOf(request.type).hidden) {
            request.code = 0;
        } else if (!(request.code in MESSAGES)) {
            this.log(`AssembleErrorMessage resultCode not existed: ${request.code}`);
            const isTooLarge = request.type === 10 && request.code === 100015;
            request.message = isTooLarge ? 'Total size of icon resource is too large' : undefined;
            request.code = isTooLarge ? 401 : SYSTEM_INTERNAL;
        }
    }

    // The first answer settles the request, which lives until the result is delivered.
    sendBack(request) {
        if (request.hasBack) {
            this.closeAndReset(request);
            return;
        }
        if (request.isReset) {
            this.close(request);
        }
        this.report(request.method, request.start, request.code);
        this.queue(request, 'isValidEnv[0] or get loop failed');
    }

    queue(request, complaint) {
        const { env, code, message = MESSAGES[code], params } = request;
        request.hasBack = true;
        if (!env.isAlive) {
            this.log(complaint);
            this.close(request);
            request.isEnded = true;
            return;
        }
        request.isOnItsWay = true;
        env.queue.push(() => {
            this.settle(request, code, message, params.resultMessage);
            request.isOnItsWay = false;
            request.isEnded = mayEnd(request);
        });
    }

    settle({ env, id, type, callback }, code, message, resultMessage) {
        const error = code === 0 ? undefined : ['error', code, message];
        const data = code === 0 && rulesOf(type).data ? resultMessage : undefined;
        if (!callback) {
            env.heard.push(error ? ['rejected', id, error] : ['resolved', id, data]);
        } else if (callback.fn) {
            this.deliverTo(env, callback, 'none', [error, data]);
        } else {
            this.log('SendMessageBackWork callback and deferred nullptr');
        }
    }

    close(request) {
        if (request.session && request.window.isShown) {
            request.session.isOpen = false;
            request.session = null;
        }
    }

    closeAndReset(request) {
        this.close(request);
        request.isEnded = request.hasBack && !request.isOnItsWay && mayEnd(request);
    }

    // The timer looks every 15 seconds. Its time is up when it first finds the deadline past.
    startTimer(request, endText, seconds) {
        const looks = Math.max(1, Math.floor(seconds / 15) + 1);
        const isQuickGame = request.type === QUICK_GAME_LOGIN;
        request.isTimed = true;
        const exitAt = isQuickGame ? Infinity : this.now + (looks + 1) * 15000;
        this.sleep(looks * 15000, (again) => {
            this.open(request, { requestType: 6, endText });
            again(15000, () => (isQuickGame ? this.preventPlay(request) : this.endGame('timer', undefined)));
        }, exitAt);
    }

    preventPlay(request) {
        if (!request.isEnded) {
            Object.assign(request, { isTimed: false, isReset: true });
            this.raise(request.env, 'gameAddictionPrevented', 'The user is under age.');
            this.close(request);
        }
    }

    raise(env, type, info) {
        if (!env.isAlive) {
            this.log('DoGameEvent invalid context or env');
            return;
        }
        if (!this.listeners.has(type)) {
            this.log(`OnEventCallback eventType ${type} not existed`);
            return;
        }
        const value = type === 'playerChanged' ? { event: 0, resultInfo: info } : info;
        for (const listener of this.listeners.get(type).filter((each) => each.env === env)) {
            env.queue.push(() => {
                if (this.listeners.get(type)?.includes(listener)) {
                    this.deliverTo(env, listener.fn, listener.receiver, [value]);
                }
            });
        }
    }
}

module.exports = { Sessions };
