/**
 * Player services for games.
 *
 * A request opens the game service over the game's window, and is answered when the player or the service is
 * done there. It is answered by a promise or, where a callback is offered and given, by that callback. Errors are
 * `BusinessError`s: thrown if the number of arguments is wrong, otherwise rejected with or passed to the callback.
 * Page launches report no failure at all.
 *
 * Every other request can end with 401, if its context or parameters will not do or if the window shows no page within
 * five seconds; with 1002000001, if the platform fails or the game service answers with a code without a meaning;
 * and with any code of the game service, 1002000002 to 1002000017. Three of its answers end the game process, with
 * status 0 and without any notice: its order to do so, 1002000006 (to quickGameLogin it is an error), and
 * 1002000011 as the answer to init.
 *
 * Texts are UTF-8, read up to their first NUL, and cut at 4096 bytes, at a whole character. Numbers are read as
 * 32-bit integers. Optional fields that are missing are sent empty, as 0 or as false; whether they will do is for
 * the game service to say. A getter that throws makes the call throw the same.
 *
 * All methods belong to the environment, the main thread or a Worker, that calls them: answers and events arrive
 * there, and nothing arrives once it has ended.
 */

import * as errors from './errors';

declare namespace gamePlayer {
    type BusinessError = errors.BusinessError;
    type ErrorCode = errors.ErrorCode;

    /** The context of the game's ability or UI extension, as the platform (or the stand-in device) gives it. */
    type Context = object;

    /** `T` as it was given, or its default; never guessed from what a result is assigned to. */
    type Given<T> = [T][T extends unknown ? 0 : never];

    /** Called once: with the data, or with an error. The data is null if the request never went out. */
    type ResultCallback<T> = (
        ...result: [error: undefined, data: T] | [error: BusinessError, data: null | undefined]
    ) => void;

    /** Called once: without an error when the request is done. */
    type DoneCallback = (error: BusinessError | null | undefined, data: null | undefined) => void;

    /** What the game knows of its own account. A fact that is left out is not sent at all. */
    interface ThirdUserInfo {
        /** The account's identifier in the game; at most 4096 bytes. */
        thirdOpenId: string;
        isRealName?: boolean;
        isAdult?: boolean;
        /** A code that the game service defines; a 32-bit integer. */
        ageRange?: number;
    }

    /** The role that a player plays. Each text is at most 4096 bytes. */
    interface PlayerRole {
        roleId?: string;
        roleName?: string;
        serverId?: string;
        serverName?: string;
        /** The player in the game service. */
        gamePlayerId?: string;
        teamPlayerId?: string;
        /** The player's account in the game. */
        thirdOpenId?: string;
    }

    /** A product to be bought. Each text is at most 4096 bytes. */
    interface PurchaseParameter {
        /** As the product catalogue names it. */
        productId: string;
        /** The catalogue's kind of product; a 32-bit integer. */
        productType?: number;
        /** A text of the game's own that travels with the purchase. */
        developerPayload?: string;
        reservedInfo?: string;
    }

    /** A purchase to be completed. */
    interface PurchaseResult {
        /** As the game received it; what is longer than 4096 bytes is cut. */
        purchaseData: string;
    }

    /** An icon among the resources of the game, such as the resource objects of the platform. */
    interface AccountIcon {
        /** The module of the game that holds it. */
        moduleName: string;
        /** The resource identifier, tried first. */
        id?: number;
        /**
         * Names, tried in turn if the identifier finds nothing: "app.media.icon" is the media resource "icon", or
         * else the raw file "app.media.icon"; a name without a dot is a raw file.
         */
        params?: readonly string[];
    }

    /** One of the game's own accounts, to be offered in the login panel. */
    interface ThirdAccountInfo {
        /** At most 4096 bytes. */
        accountName: string;
        /** Needed unless `loginPanelType` is 1: an account whose icon cannot be read is left out. */
        accountIcon?: AccountIcon;
    }

    interface UnionLoginParam {
        showLoginDialog?: boolean;
        /** The kind of panel, a code that the game service defines. The panel 1 shows no icons: none is read. */
        loginPanelType?: number;
        /** In the order in which they are shown. */
        thirdAccountInfos?: readonly ThirdAccountInfo[];
    }

    interface QuickGameLoginParam {
        /** The application identifier of the quick game; at most 4096 bytes. */
        gameAppId: string;
    }

    /** The player of this device is another one now, or is not known any more. */
    interface PlayerChangedEvent {
        /** Always 0. */
        event: number;
        /** What the game service tells of it. */
        resultInfo: string;
    }

    /** What the listeners of each event are called with. */
    interface GameEvents {
        playerChanged: PlayerChangedEvent;
        /** A text for the player. For system applications only. */
        gameAddictionPrevented: string;
    }

    /** An outcome that the game got from the game service by other means. */
    interface EventCallbackResult {
        /** 1002000015 tells the listeners of "playerChanged"; any other code does nothing. */
        resultCode: number;
        /** At most 4096 bytes. */
        resultInfo?: string;
    }

    /**
     * Initialises the player service; the first call of a game. The answer 1002000011, agreement not agreed, ends
     * the game process.
     *
     * It reports no failure of the game service but 1002000015, and it succeeds even if the window never shows a
     * page. A context that will not do makes the promise form throw a plain `Error` without a code; the callback
     * is called without an error. A missing context throws a `BusinessError` with code 0.
     */
    function init(context: Context, callback: DoneCallback): void;
    function init(context: Context): Promise<void>;

    /**
     * Asks for the player who is signed in. Gives what the game service sends as the player, a JSON text unless
     * agreed otherwise; undefined if it sends nothing.
     *
     * The answer may limit the time to play. When that is over, the module shows the game service's page and ends
     * the game process 15 seconds later.
     */
    function getLocalPlayer<T = string | undefined>(context: Context, callback: ResultCallback<Given<T>>): void;
    function getLocalPlayer<T = string | undefined>(context: Context): Promise<Given<T>>;

    /**
     * Tells the game service which role the player plays.
     *
     * As with init, no failure of the game service but 1002000015 is reported, a context or role that will not do
     * makes the promise form throw a plain `Error`, and a missing argument throws code 0.
     */
    function savePlayerRole(context: Context, playerRole: PlayerRole, callback: DoneCallback): void;
    function savePlayerRole(context: Context, playerRole: PlayerRole): Promise<void>;

    /**
     * Has the player buy a product. Gives what the game service sends as the purchase, a JSON text unless agreed
     * otherwise; undefined if it sends nothing.
     */
    function prePurchase<T = string | undefined>(
        context: Context, purchaseParameter: PurchaseParameter, callback: ResultCallback<Given<T>>
    ): void;
    function prePurchase<T = string | undefined>(context: Context, purchaseParameter: PurchaseParameter): Promise<Given<T>>;

    /** Completes a purchase with the data that the game received of it. */
    function postPurchase(context: Context, purchaseResult: PurchaseResult, callback: DoneCallback): void;
    function postPurchase(context: Context, purchaseResult: PurchaseResult): Promise<void>;

    /**
     * Binds the game's own account to the player. Each text is at most 4096 bytes. Fails with 1002000012 if one of
     * the two is bound already.
     */
    function bindPlayer(context: Context, thirdOpenId: string, teamPlayerId: string): Promise<void>;

    /** Takes such a binding back. Fails with 1002000013 if the two are not bound. */
    function unbindPlayer(context: Context, thirdOpenId: string, teamPlayerId: string): Promise<void>;

    /**
     * Has the game service check what the game knows of its account. The answer may limit the time to play, as
     * that of `getLocalPlayer`.
     */
    function verifyLocalPlayer(context: Context, thirdUserInfo: ThirdUserInfo): Promise<void>;

    /**
     * Has the player log in with the account of the game service or with one of the game's own, which are offered
     * with their icons. Gives what the game service sends, a JSON text unless agreed otherwise; undefined if it
     * sends nothing.
     *
     * Fails with 1002000016 if the player gives up, and with 401, "Total size of icon resource is too large", if
     * the game service says so. From a UI extension no icon can be read.
     */
    function unionLogin<T = string | undefined>(context: Context, unionLoginParam: UnionLoginParam): Promise<Given<T>>;

    /** Shows the welcome banner. The promise never settles. `greetingInfo` is at most 4096 bytes. */
    function launchWelcomeBanner(context: Context, greetingInfo: string): Promise<never>;

    /**
     * Limits the time to play: after `playableTime` seconds, and up to 15 more, the game service's page is shown
     * with the text `antiAddictionInfo`, at most 4096 bytes. 15 seconds later the game process ends; with the
     * `requestType` 14, of quick games, the page closes and "gameAddictionPrevented" is raised instead. Nothing
     * takes the limit back. The promise never settles.
     */
    function launchAntiAddiction(
        context: Context, playableTime: number, antiAddictionInfo: string, requestType: number
    ): Promise<never>;

    /**
     * Logs in to a quick game. Gives what the game service sends, a JSON text unless agreed otherwise; undefined
     * if it sends nothing.
     *
     * Fails with 1002000006 if the player is under age. The answer may limit the time to play, as that of
     * `getLocalPlayer`; when that is over, "gameAddictionPrevented" is raised and the game goes on.
     */
    function quickGameLogin<T = string | undefined>(context: Context, quickGameLoginParam: QuickGameLoginParam): Promise<Given<T>>;

    /** Shows a page that `pageInfo` describes, at most 4096 bytes. The promise never settles. */
    function launchCommonPage(context: Context, pageInfo: string): Promise<never>;

    /** Names the trace that the requests of the whole process belong to from now on; at most 4096 bytes. */
    function syncTraceId(traceId: string): void;

    /**
     * Calls `callback` for every such event of this environment, later and never from within a call of the module,
     * with the `this` that `on` was called with. A callback that listens already is not added again.
     *
     * Throws 401 for an unknown event, and 202 for "gameAddictionPrevented" unless the game is a system
     * application.
     */
    function on<K extends keyof GameEvents>(type: K, callback: (event: GameEvents[K]) => void): void;

    /** Removes all listeners of this environment for the event. Throws as `on` does. */
    function off(type: keyof GameEvents): void;
    /** Removes one; that it does not listen is no error. Throws as `on` does. */
    function off<K extends keyof GameEvents>(type: K, callback: (event: GameEvents[K]) => void): void;

    /** Reports to analytics that an operation of the game's own took `costTime` ms and ended with `errorCode`. */
    function reportEventOperation(apiName: string, costTime: number, errorCode: number): void;

    /** Hands an outcome over that the game got by other means. */
    function onEventCallback(result: EventCallbackResult): void;
}

export = gamePlayer;
