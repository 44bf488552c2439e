import type { RequestType } from '../errors';

/**
 * The stand-in device: what the module finds on a PC in place of a device, and the ways to drive and watch it.
 *
 * There is one device per process. Every JS environment of it, the main thread and each Worker, may load this
 * and sees the same device. A wrong argument throws a TypeError or RangeError that names it and says what it
 * may be; functions that return a promise reject with it.
 *
 * What nobody asked for but a tester should know goes to stderr, as lines that begin with "game device:": the end
 * of the process by the module, a request without an answer, an answer that reaches nobody or that the module does
 * not read. The environment variable GAMEAPI_LOG=off silences them. They never change what happens.
 */

/** A context of the stage model, as the module's methods take it. It belongs to the environment that made it. */
export type Context = object;

/** The resources of one module of the game. The bytes are copied when the context is made. */
export interface Resources {
    /** Media by resource identifier, an integer from 0 to 4294967295. */
    mediaById?: Record<number, Uint8Array>;
    /** Media by name, without type or extension. */
    mediaByName?: Record<string, Uint8Array>;
    /** Raw files by their name within the package. */
    rawFiles?: Record<string, Uint8Array>;
}

export interface ContextOptions {
    /** Whether the window shows a page, so that a modal can open over it. Default true. */
    window?: boolean;
    /** The game's modules by name. With null the module exists, but its resource manager does not. */
    modules?: Record<string, Resources | null>;
}

/** Makes the context of an ability with a window of its own. */
export function createAbilityContext(options?: ContextOptions): Context;

/** Makes the context of a UI extension with a window of its own. */
export function createUIExtensionContext(options?: ContextOptions): Context;

/**
 * Makes a context of the stage model that no request can use: 'other' is neither of an ability nor of a UI
 * extension, 'empty' has nothing behind it.
 */
export function createStageContext(kind: 'other' | 'empty'): Context;

/** The window of `context` shows a page from now on. */
export function showWindow(context: Context): void;

/** The window of `context` shows no page any more. Its modals stay as they are. */
export function hideWindow(context: Context): void;

/** The value of a parameter. A number that is an integer of 32 bits travels as one, any other as a double. */
export type Parameter = number | boolean | string | string[] | ParameterObject;

/**
 * Parameters by key: a plain object, nested 32 deep at most. A key whose value is undefined is left out; any
 * other value that is no `Parameter`, null included, makes the call reject with a TypeError that names its key.
 */
export interface ParameterObject {
    [key: string]: Parameter | undefined;
}

/** What the module asked to be started. */
export interface Want {
    readonly bundleName: string;
    readonly abilityName: string;
    /** Empty: the local device. */
    readonly deviceId: string;
    /** In the order of their keys. */
    readonly parameters: Readonly<Record<string, Parameter>>;
}

/**
 * One modal UI extension that the module opened. Each environment has one object for it.
 *
 * Its four answers call the module on the device's UI thread (see `answerOn`), in the order in which they were
 * given and one at a time on the whole device. The promise is resolved when the call has returned and all that
 * it queued for this environment has been delivered, or when the answer has ended the game; until then it keeps the
 * process alive. A closed modal may still answer; one that `reset` made the device forget may not, nor may any after
 * the game has ended, and the promise is rejected.
 */
export interface Modal {
    /** The session id: above 0, and never used again. */
    readonly id: number;
    readonly want: Want;
    /** The two groups of booleans of the modal's configuration, in their order. */
    readonly config: { readonly leading: readonly boolean[]; readonly trailing: readonly boolean[] };
    /** Whether neither the module has closed it yet, nor its environment has ended. Live. */
    readonly isOpen: boolean;
    /**
     * Whether an answer was given that settles the request: a result or received data with a code other than 9, or an
     * error. Live.
     */
    readonly isAnswered: boolean;

    /** Ends the extension with a result. */
    result(code: number, parameters?: ParameterObject): Promise<void>;
    /** Sends data and goes on. */
    receive(parameters: ParameterObject): Promise<void>;
    /** Tells that the extension is gone. */
    release(code: number): Promise<void>;
    /** Tells that the extension failed. */
    error(code: number, name?: string, message?: string): Promise<void>;
}

/** All modals opened since the last reset, oldest first. */
export function modals(): Modal[];

/** A method that opens a modal, or the type of its requests. */
export type ModalFilter =
    | 'init' | 'getLocalPlayer' | 'savePlayerRole' | 'prePurchase' | 'postPurchase' | 'launchAntiAddiction'
    | 'bindPlayer' | 'unbindPlayer' | 'verifyLocalPlayer' | 'unionLogin' | 'launchWelcomeBanner' | 'quickGameLogin'
    | 'launchCommonPage' | { requestType?: RequestType };

/**
 * The oldest modal, of the filter's method if there is one, that is open, has no answer that settles its request, and
 * was not given out by `nextModal` yet, in whichever environment it was or will be opened; each is given out once.
 * Rejects if there is none within `timeoutMs` of real time, 5000 if left out.
 */
export function nextModal(filter?: ModalFilter, options?: { timeoutMs?: number }): Promise<Modal>;
export function nextModal(timeoutMs?: number): Promise<Modal>;

/**
 * Calls `handler` on this thread for every modal opened from now on, in their order, in any environment; never
 * from within the module's call that opened it. An environment has one handler: a new one replaces it, null
 * removes it. A handler does not keep the process alive. What it throws is an uncaught exception.
 */
export function onModal(handler: ((modal: Modal) => void) | null): void;

/** Why the module ended the game. */
export interface GameEnd {
    /** An answer of the game service, or a timer whose time to play was over. */
    readonly reason: 'answer' | 'timer';
    /** Of the modal that answered, or of the request that the timer belongs to. */
    readonly requestType: number;
    /** The code of the answer; undefined for a timer. */
    readonly code: number | undefined;
}

/**
 * What happens when the module ends the game. Without a handler it ends the process, with status 0 as on a device, or
 * with the one that the environment variable GAMEAPI_EXIT_STATUS gives. While there is a handler the process goes on
 * and `handler` is called on this thread; the thread of the device that asked for the end never returns, and until
 * `reset` every answer is refused. Only on a JS thread (`answerOn('caller')`) the process ends all the same, with
 * status 70. An environment has one handler: a new one replaces it, null or a reset removes it.
 */
export function onExit(handler: ((end: GameEnd) => void) | null): void;

/**
 * Where answers run: on the device's UI thread ('ui', the default), or on the JS thread that gives the answer,
 * before the answering call returns ('caller'). Holds for the whole device. With 'caller' an exception that the
 * module throws while it takes the answer rejects the answer's promise.
 */
export function answerOn(thread: 'ui' | 'caller'): void;

/** The device's time, on which the module's clock and all its waiting run. */
export const clock: {
    /** Follows the real clock from now on, `rate` times as fast: 60 is a minute a second. Default 1. */
    real(rate?: number): void;
    /** Stops time: it moves only by `advance`. */
    manual(): void;
    /** Milliseconds since the device booted. */
    now(): number;
    /**
     * Moves manual time on by `ms` milliseconds. It stops at each moment at which a thread of the module is to
     * wake, wakes one at a time, and lets it run until it sleeps again or ends. Several calls run one after the
     * other. Resolves when all that this queued for this environment has been delivered.
     */
    advance(ms: number): Promise<void>;
    /**
     * Calls `handler` with the milliseconds of each step that `advance` takes in this environment, so that a test
     * runner's fake timers follow; a promise that it returns is awaited. Steps end wherever a thread of the module
     * wakes. One handler for each environment; null or a reset removes it.
     */
    onAdvance(handler: ((ms: number) => unknown) | null): void;
    /** How many threads of the module are waiting for a moment to come. */
    sleepers(): number;
};

/** Whether the game counts as a system application. Default false. */
export function setSystemApp(isSystem: boolean): void;

export interface LogLine {
    /** Debug, info, warning, error or fatal. */
    level: 'D' | 'I' | 'W' | 'E' | 'F';
    domain: number;
    tag: string;
    message: string;
}

/**
 * The log lines since the last reset, oldest first; of more than 8192 the latest. With the environment variable
 * GAMEAPI_LOG set to a level (D, I, W, E, F), lines of that level and above are printed to stderr as well.
 */
export function logs(): LogLine[];

/** A registered processor of application events, as it was configured. */
export interface Processor {
    name: string;
    debugMode: string;
    routeInfo: string;
    appId: string;
    /** A batch is reported after `row` events or `timeout` seconds. */
    triggerCond: { row: number; timeout: number; onStartup: boolean; onBackground: boolean };
    userIds: Record<string, string>;
    userProperties: Record<string, string>;
    eventConfigs: { domain: string; name: string; isRealTime: boolean }[];
}

export interface AppEvent {
    domain: string;
    name: string;
    type: 'FAULT' | 'STATISTIC' | 'SECURITY' | 'BEHAVIOR';
    /** In the order in which they were added. */
    params: [key: string, value: string | number][];
}

export const analytics: {
    /** The processors of this process in the order of their registration. They outlive a reset. */
    processors(): Processor[];
    /** The events since the last reset, oldest first; of more than 65536 the latest. */
    events(): AppEvent[];
};

/**
 * Makes calls of the module fail: of its calls of the Node-API, libuv, OpenSSL or platform function `call`, the
 * next `skip` (default 0) pass and then `times` (default 1) fail, each as that function documents. A second
 * order for the same function replaces the first. Throws an Error if the module calls no such function.
 */
export function failNext(call: string, options?: { skip?: number; times?: number }): void;

/**
 * The functions that `failNext` takes, each with how many calls of it the module has made since the first
 * `failNext` after the last reset, and how many of them were made to fail.
 */
export function faults(): { call: string; made: number; failed: number }[];

/**
 * Brings everything back to how it began: modals, log lines and events are forgotten, waiting threads of the
 * module never wake, time is real, answers run on the UI thread, no call is made to fail, a game that has ended
 * may begin again, no environment has a handler, and this one has no listeners of the module's events. Contexts,
 * and promises of `nextModal`, stay in use.
 */
export function reset(): void;
