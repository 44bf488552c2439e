import type { RequestType } from '../lib/errors';

/**
 * The stand-in device takes the place of a real device on a PC. This is its interface to drive and observe it.
 *
 * There is one device per process. Every JS environment of the process, the main thread and each Worker, may load this
 * module and shares the same device. A wrong argument throws a TypeError or RangeError that names it and says what it
 * may be. Functions that return a promise reject with it.
 *
 * The device prints warnings for testers to stderr, as lines that begin with "game device:". They report that the
 * module ends the process, that a request has no answer, and that an answer reaches nobody or is not read by the
 * module. The environment variable GAMEAPI_LOG=off silences them. They never change what happens.
 */

/** A context of the stage model, for the module's methods. It belongs to the environment that created it. */
export type Context = object;

/** The resources of one module of the game. The bytes are copied when the context is created. */
export interface Resources {
    /** Media by resource ID, an integer from 0 to 4294967295. */
    mediaById?: Record<number, Uint8Array>;
    /** Media by name, without type or extension. */
    mediaByName?: Record<string, Uint8Array>;
    /** Raw files by their name within the package. */
    rawFiles?: Record<string, Uint8Array>;
}

export interface ContextOptions {
    /** Whether the window shows a page, so that a modal can open over it. Default true. */
    window?: boolean;
    /** The game's modules by name. A module that is null exists, but its resource manager does not. */
    modules?: Record<string, Resources | null>;
}

/** Creates the context of an ability, with its own window. */
export function createAbilityContext(options?: ContextOptions): Context;

/** Creates the context of a UI extension, with its own window. */
export function createUIExtensionContext(options?: ContextOptions): Context;

/**
 * Creates a context of the stage model that no request can use: 'other' is neither an ability's nor a UI extension's,
 * 'empty' has no native context.
 */
export function createStageContext(kind: 'other' | 'empty'): Context;

/** Makes the window of `context` show a page. */
export function showWindow(context: Context): void;

/** Makes the window of `context` show no page. Its modals stay as they are. */
export function hideWindow(context: Context): void;

/** The value of a parameter. A number that is a 32-bit integer is sent as an integer, any other as a double. */
export type Parameter = number | boolean | string | string[] | ParameterObject;

/**
 * Parameters by key: a plain object, nested at most 32 levels deep. A key whose value is undefined is left out. Any
 * other value that is not a `Parameter`, including null, makes the call reject with a TypeError that names its key.
 */
export interface ParameterObject {
    [key: string]: Parameter | undefined;
}

/** What the module asked to start. */
export interface Want {
    readonly bundleName: string;
    readonly abilityName: string;
    /** Empty for the local device. */
    readonly deviceId: string;
    /** In the order of their keys. */
    readonly parameters: Readonly<Record<string, Parameter>>;
}

/**
 * One modal UI extension that the module opened. Each environment has one object for it.
 *
 * Its four answers call the module on the device's UI thread (see `answerOn`), in the order in which they were given
 * and one at a time on the whole device. The promise resolves when the call has returned and everything that it queued
 * for this environment has been delivered, or when the answer has ended the game. Until then it keeps the process
 * alive. A closed modal may still answer. A modal that `reset` made the device forget may not, nor may any modal after
 * the game has ended: the promise is then rejected.
 */
export interface Modal {
    /** The session ID: above 0, and never reused. */
    readonly id: number;
    /** The method whose requests have its type, such as 'getLocalPlayer'. */
    readonly method: string;
    readonly want: Want;
    /** The two groups of booleans of the modal's configuration, in order. */
    readonly config: { readonly leading: readonly boolean[]; readonly trailing: readonly boolean[] };
    /** True until the module closes the modal or its environment ends. Always up to date. */
    readonly isOpen: boolean;
    /**
     * Whether an answer was given that settles the request: a result or received data with a code other than 9, or an
     * error. Always up to date.
     */
    readonly isAnswered: boolean;

    /** Ends the extension with a result. */
    result(code: number, parameters?: ParameterObject): Promise<void>;
    /** Sends data; the extension continues. */
    receive(parameters: ParameterObject): Promise<void>;
    /** Reports that the extension is gone. */
    release(code: number): Promise<void>;
    /** Reports that the extension failed. */
    error(code: number, name?: string, message?: string): Promise<void>;
}

/** All modals opened since the last reset, oldest first. */
export function modals(): Modal[];

/** GET_LOCAL_PLAYER is the type of the requests of getLocalPlayer. */
type MethodOf<Name extends string> = Name extends `${infer First}_${infer Rest}`
    ? `${Lowercase<First>}${Capitalize<MethodOf<Rest>>}` : Lowercase<Name>;

/** A method that opens a modal, or the type of its requests. */
export type ModalFilter = MethodOf<keyof typeof RequestType> | { requestType?: RequestType };

/**
 * Returns the oldest modal that is open, has no answer that settles its request, and was not yet returned by
 * `nextModal`. Each modal is returned once. With a filter, only modals of that method count. The modal may be opened in
 * any environment, and later than the call. Rejects if there is none within `timeoutMs` of real time, 5000 by default.
 */
export function nextModal(filter?: ModalFilter, options?: { timeoutMs?: number }): Promise<Modal>;
export function nextModal(timeoutMs?: number): Promise<Modal>;

/**
 * Calls `handler` on this thread for every modal opened from now on, in order, in any environment. It is never called
 * from within the module's call that opens the modal. An environment has one handler: a new one replaces it, null or a
 * reset removes it. A handler does not keep the process alive. What it throws becomes an uncaught exception.
 */
export function onModal(handler: ((modal: Modal) => void) | null): void;

/** Why the module ended the game. */
export interface GameEnd {
    /** An answer of the game service, or a timer when the time to play was over. */
    readonly reason: 'answer' | 'timer';
    /** The type of the modal that answered, or of the request that the timer belongs to. */
    readonly requestType: number;
    /** The code of the answer; undefined for a timer. */
    readonly code: number | undefined;
}

/**
 * Sets what happens when the module ends the game. Without a handler, the process ends. Its status is 0, as on a real
 * device, or the one in the environment variable GAMEAPI_EXIT_STATUS. With a handler, the process continues and
 * `handler` is called on this thread. The thread of the device that asked for the end never returns, and every answer
 * is refused until `reset`. If the end is asked for on a JS thread (`answerOn('caller')`), the process ends in spite of
 * the handler, with status 70. An environment has one handler: a new one replaces it, null or a reset removes it.
 */
export function onExit(handler: ((end: GameEnd) => void) | null): void;

/** What happens on the device. `time` is the device's, in milliseconds. */
export type DeviceRecord = { readonly time: number } & (
    /**
     * JS calls a method of the module. Strings among the arguments are in double quotes and cut off after 256 bytes; of
     * objects only the word "object" stands there. No other call of the process has this number.
     */
    | { kind: 'call'; call: number; method: string; arguments: string[] }
    /**
     * A call has come to its result. The code is 0 for success, and absent if the error has none; `data` and `message`
     * are those that the game gets, cut off after 4096 bytes. A call of a page launch never settles.
     */
    | {
        kind: 'settled'; call: number; method: string; how: 'resolved' | 'rejected' | 'called back' | 'thrown';
        code?: number; message?: string; data?: string;
    }
    /** A listener that this call of `on` added is called. */
    | { kind: 'heard'; call: number; method: 'on'; type: string; data?: string }
    /** A modal opens, or is closed. The call is the one whose request opened it. */
    | { kind: 'opened'; modal: number; call: number; method: string; parameters: Record<string, Parameter> }
    | { kind: 'closed'; modal: number; call: number; method: string }
    /** An answer reaches the module. An error has the parameters name and message. */
    | {
        kind: 'answered'; modal: number; call: number; method: string;
        how: 'result' | 'receive' | 'release' | 'error'; code: number; parameters: Record<string, Parameter>;
    }
    /** The module writes a log line, or an application event. */
    | { kind: 'log'; level: LogLine['level']; tag: string; message: string }
    | { kind: 'reported'; event: AppEvent }
);

/**
 * Calls `handler` on this thread with a record of everything that happens from now on, in any environment and in the
 * order in which it happens. The records of a JS thread come after what that thread does. The module's functions stay
 * as they are, and nothing is recorded while nobody watches. A handler does not keep the process alive. An environment
 * has one handler: a new one replaces it, null or a reset removes it.
 */
export function onRecord(handler: ((record: DeviceRecord) => void) | null): void;

/**
 * Sets where answers run: on the device's UI thread ('ui', the default), or on the JS thread that gives the answer,
 * before the answering call returns ('caller'). Applies to the whole device. With 'caller', an exception that the
 * module throws while it processes the answer rejects the answer's promise.
 */
export function answerOn(thread: 'ui' | 'caller'): void;

/**
 * Sets in which order the event loops of all environments complete the module's work: first in, first out ('fifo', the
 * default), or in an order that is drawn from `seed`, an integer from 0, by default 1. A device promises no order, and
 * the module delivers results and events in their own order all the same.
 */
export function queueOrder(order: 'fifo' | 'any', seed?: number): void;

/**
 * Sets how the module gets the game's strings. As on a device ('platform', the default): a lone surrogate becomes three
 * bytes that are no valid UTF-8, with which the module ends the process if it writes them as JSON. Of a string that is
 * too long, the character that does not fit is left out, and what follows. A warning on stderr names a string with a
 * lone surrogate, and one that is cut off or contains a NUL. As in Node ('node'): a lone surrogate is replaced, without
 * warnings.
 */
export function strings(like: 'platform' | 'node'): void;

/** The device's time. The module's clock and all its waits use it. */
export const clock: {
    /** Follows the real clock from now on, `rate` times as fast: 60 is a minute per second. Default 1. */
    real(rate?: number): void;
    /** Stops the time. From now on, only `advance` moves it. */
    manual(): void;
    /** Milliseconds since the device booted. */
    now(): number;
    /**
     * Moves the manual time forward by `ms` milliseconds. It stops at each moment at which a thread of the module is
     * due to wake. It wakes one thread at a time, and lets it run until it sleeps again or ends. Several calls run one
     * after another. Resolves when everything that this queued for this environment has been delivered.
     */
    advance(ms: number): Promise<void>;
    /** Milliseconds until a thread of the module wakes or a handler of `after` is due; Infinity if there is neither. */
    next(): number;
    /**
     * Calls `handler` on this thread after `ms` milliseconds of the device's time, or soon if that is 0. `advance`
     * stops there, if this was called before it or in a handler of `onModal`, and awaits the promise that the handler
     * returns; the handler itself must not await `advance`. Handlers run one after another: in the order of their
     * times, then in that of the calls. Returns a function that cancels. A reset cancels. Set and advance the clock in
     * the environment that calls this: it does not see what others do to the clock.
     */
    after(ms: number, handler: () => unknown): () => void;
    /**
     * Calls `handler` with the milliseconds of each step that `advance` takes in this environment, so that a test
     * runner's fake timers can follow. If it returns a promise, the promise is awaited. A step ends wherever a thread
     * of the module wakes. An environment has one handler: a new one replaces it, null or a reset removes it.
     */
    onAdvance(handler: ((ms: number) => unknown) | null): void;
    /** The number of threads of the module that wait until a certain time. */
    sleepers(): number;
    /** How many times as fast as real time the clock moves; 0 if it is manual. */
    rate(): number;
};

/** Sets whether the game counts as a system application. Default false. */
export function setSystemApp(isSystem: boolean): void;

export interface LogLine {
    /** Debug, info, warning, error or fatal. */
    level: 'D' | 'I' | 'W' | 'E' | 'F';
    domain: number;
    tag: string;
    message: string;
}

/**
 * The latest log lines since the last reset, at most 8192, oldest first. If the environment variable GAMEAPI_LOG is a
 * level (D, I, W, E, F), lines of that level and above are also printed to stderr.
 */
export function logs(): LogLine[];

/** A registered processor of application events, as it was configured. */
export interface Processor {
    name: string;
    debugMode: boolean;
    routeInfo: string;
    appId: string;
    /** A batch is reported after `row` events, `size` bytes or `timeout` seconds. */
    triggerCond: { row: number; size: number; timeout: number; onStartup: boolean; onBackground: boolean };
    userIdNames: string[];
    userPropertyNames: string[];
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
    /** The processors of this process in the order of their registration. A reset keeps them. */
    processors(): Processor[];
    /** The latest events since the last reset, at most 65536, oldest first. */
    events(): AppEvent[];
};

/**
 * Makes calls of the module fail. `call` is a function of Node-API, libuv, OpenSSL or the platform. Of the module's
 * next calls of it, `skip` (default 0) pass and then `times` (default 1) fail, each in the way that the function
 * documents. A second `failNext` for the same function replaces the first. Throws an Error if the module calls no such
 * function.
 */
export function failNext(call: string, options?: { skip?: number; times?: number }): void;

/**
 * The functions that `failNext` accepts. For each, `made` counts the module's calls since the first `failNext` after
 * the last reset, and `failed` counts those that were made to fail.
 */
export function faults(): { call: string; made: number; failed: number }[];

/**
 * Returns the device to its initial state. Modals, log lines and events are forgotten, and waiting threads of the
 * module never wake. Time is real, answers run on the UI thread, the game is not a system application, and no call is
 * made to fail. A game that has ended can start again. No environment has a handler, and this one has no listeners for
 * the module's events. Contexts, and promises of `nextModal`, stay usable.
 */
export function reset(): void;
