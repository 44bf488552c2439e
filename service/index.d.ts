import type { Context, DeviceRecord, Modal, ParameterObject } from '../device/index';

/**
 * A game service for the stand-in device. It answers every modal as a real service would, or as rules say, and plays
 * scenarios. Times are milliseconds of the device's time, codes are those of `game-player-extension-module/errors`.
 */

export interface Player {
    playerId: string;
    gamePlayerId: string;
    teamPlayerId: string;
    playerName: string;
    isRealName: boolean;
    isAdult: boolean;
    /** If not, `init` ends the game. */
    hasAgreed: boolean;
    /** The time that a player under age has left; null or absent: no limit. */
    playableMinutes?: number | null;
    /** What the page says when that time is over. */
    endText?: string;
}

/** What the service knows. Plain JSON. */
export interface State {
    /** If not, every request fails with 1002000002. */
    online: boolean;
    players: Player[];
    /** The `playerId` of the player who is signed in; empty if nobody is. */
    currentPlayer: string;
    /** Whether the next `getLocalPlayer` first reports to the game that the player has changed. */
    announcesPlayer: boolean;
    bindings: { thirdOpenId: string; teamPlayerId: string }[];
    /** The roles that the game saved, one for each `roleId`. */
    roles: Record<string, string>[];
    /** If empty, every product can be bought. What is not listed then cannot. The default outcome is 'paid'. */
    products: { productId: string; outcome?: 'paid' | 'pending' | 'cancelled' | 'completed' }[];
    /** `postPurchase` completes a purchase that is paid; it fails for any other. */
    purchases: {
        purchase: string; productId: string; developerPayload?: string; status: 'paid' | 'pending' | 'completed';
    }[];
    /** The account that the player takes in `unionLogin`; empty: the first one. */
    unionAccount: string;
    /** The quick games that may log in; if empty, every one may. */
    quickGames: string[];
}

/** The state that a new service has. */
export function newState(): State;

/** One answer. Without `after` it comes at once, together with the one before it. */
export type Answer = {
    /** Milliseconds after the answer before it, or after the request. */
    after?: number;
} & (
    /** What the service answers on its own, which may be several answers. */
    | { own: true }
    | { result: number; parameters?: ParameterObject }
    | { receive: ParameterObject }
    | { release: number }
    | { error: number; name?: string; message?: string }
);

/** Answers the requests that it matches. Without `answer`, `wait` and `never`, the service answers on its own. */
export interface Rule {
    note?: string;
    when?: {
        method?: string | string[];
        requestType?: number;
        /** Parameters that the Want must have. JSON in a string can be given as an object, of which parts suffice. */
        want?: Record<string, unknown>;
        /** Which of the requests that match, counted from 1. */
        nth?: number | number[];
        /** 3 means every third of them. */
        every?: number;
    };
    answer?: Answer[];
    /** Until somebody answers by hand. */
    wait?: true;
    never?: true;
    /** Before the first answer. */
    delay?: number;
    /** How often the rule is used. */
    times?: number;
    /** The probability that the rule is used, from 0 to 1. The service's seed decides. */
    chance?: number;
    /** The rule is used from this time on, and until that one, since it was added. */
    from?: number;
    until?: number;
}

/** A request that the service got, with the parameters of its Want. */
export interface Request {
    readonly modal: Modal;
    readonly method: string;
    readonly requestType: number;
    readonly parameters: Record<string, unknown>;
    /** Counted from 1 for each method. */
    readonly nth: number;
    /** Whether nobody will answer it unless it is done by hand. */
    readonly isWaiting: boolean;
}

export interface ServiceOptions {
    /** What differs from `newState()`. */
    state?: Partial<State>;
    rules?: Rule[];
    /** Decides what rules with a chance do. Default 1. */
    seed?: number;
    /** Whether a request that no rule answers waits for an answer by hand. Default: none does. */
    byHand?: (request: Request) => boolean;
}

export interface Service {
    /** For each request, with the rule that answers it, if there is one. */
    on(event: 'request', listener: (request: Request, rule: Rule | null) => void): this;
    /** For each request that waits for an answer by hand, as a rule or `byHand` says. */
    on(event: 'waits', listener: (request: Request) => void): this;
    /** After each change of the state. */
    on(event: 'state', listener: () => void): this;
    /** A copy. Assigning changes the keys that are given. */
    get state(): State;
    set state(changes: Partial<State>);
    readonly rules: Rule[];
    /** Whether answers are due later. */
    readonly isBusy: boolean;
    /** Whether a request waits for an answer by hand, as a rule or `byHand` says. */
    readonly isAwaiting: boolean;
    /** Milliseconds until the next answer is due; Infinity if there is none. */
    readonly nextDue: number;
    addRule(rule: Rule): void;
    clearRules(): void;
    /** The requests that only an answer by hand can settle or close, oldest first. Pages are among them. */
    waiting(method?: string): Request[];
    /**
     * Answers the oldest request that waits with this modal ID, or method and number; else the latest that is open.
     * Resolves when all answers were given; rejects if there is no such request.
     */
    answer(which: { modal?: number; method?: string; nth?: number }, answers: Answer[]): Promise<void>;
    /**
     * Signs another player in, or out with ''. A game that waits for an answer learns of it at once; others with their
     * next `getLocalPlayer`.
     */
    switchPlayer(playerId: string): Promise<void>;
    /** Stops answering. What is due later is not given. */
    close(): void;
}

/**
 * Answers all modals from now on, in this environment's `device.onModal`, until `close` or a reset of the device. Pages
 * such as the welcome banner stay open until they are closed by hand.
 */
export function createService(options?: ServiceOptions): Service;

/** One or more actions. They are done in the order of their keys. */
export interface Step {
    note?: string;
    /** Waits for the game's next request that matches. What follows is done before that request is answered. */
    await?: { method: string; want?: Record<string, unknown> };
    advance?: number;
    player?: string;
    state?: Partial<State>;
    rule?: Rule;
    clearRules?: true;
    /** By hand. Without `nth`, the oldest request of the method that waits. */
    answer?: { method: string; nth?: number; with: Answer[] };
    window?: 'shown' | 'hidden';
    systemApp?: boolean;
    fail?: { call: string; skip?: number; times?: number };
}

export interface ExpectedCall {
    method: string;
    want?: Record<string, unknown>;
    /** What the game got; 'pending': nothing. */
    code?: number | 'pending';
    /** How many such calls there are in all. Without it, the call comes after the one before it in the list. */
    times?: number;
}

/**
 * How a game ends: by itself, by an error, not before the steps are over, or by the module, because of any answer, of
 * the answer with this code, or because the time to play is over.
 */
export type ExpectedEnd = 'ends' | 'fails' | 'runs' | 'module' | { module: number | 'timer' };

export interface Scenario {
    $schema?: string;
    version: 1;
    name?: string;
    seed?: number;
    /** Default 'manual': steps move the time, and it jumps to the next answer while a step waits for the game. */
    clock?: 'manual' | 'real';
    /** In seconds of real time. Default 30. */
    timeLimit?: number;
    systemApp?: boolean;
    state?: Partial<State>;
    rules?: Rule[];
    steps?: Step[];
    expect?: {
        calls?: ExpectedCall[];
        /** By method, the codes that the game must have met. */
        codes?: Record<string, number[]>;
        /** Default 'ends'. */
        end?: ExpectedEnd;
    };
}

/** A scenario that cannot be read: the message names its file, the place in it and the reason. */
export class ScenarioError extends Error {}

/** Reads a scenario from its file, or checks one. Throws a ScenarioError. Needs the npm package ajv. */
export function readScenario(source: string | Scenario): Scenario;

export interface Report {
    /** The calls of the module's methods in order. The code is 0 for success, and undefined if there was none. */
    calls: {
        call: number; method: string; want?: Record<string, unknown>; code?: number; how?: string;
        begun: number; ended?: number;
    }[];
    /** By method, the codes that the game met. */
    codes: Record<string, number[]>;
    end: { how: 'ends' | 'fails' | 'runs' | 'module'; code?: number; reason?: string };
    state: State;
    records: DeviceRecord[];
}

/**
 * Plays a scenario with a game: a function that gets the context of a new ability. Begins and ends with a reset of the
 * device. Rejects with an Error that names each expectation that was not met, with what the game threw as its cause.
 */
export function play(source: string | Scenario, game: (context: Context) => unknown): Promise<Report>;
