/**
 * Player services for games.
 *
 * A request opens the game service over the game's window. It is settled when the player or the service has finished
 * there: by a promise, or by the callback if the method accepts one and gets one. Errors are `BusinessError`s. A wrong
 * number of arguments throws one, and so do arguments that the platform cannot read. Every other failure rejects the
 * promise or is passed to the callback. Page launches do not report it.
 *
 * All other requests can fail with
 *  - 401, if its context or parameters are unsuitable, or if the window shows no page within five seconds;
 *  - 1002000001, if the platform fails or the game service answers with an unknown code;
 *  - any code of the game service, 1002000002 to 1002000017; `@throws` lists those that belong to one method.
 *
 * Three answers of the game service end the game process, with status 0 and without notice: its order to end,
 * 1002000006 (which is an error for quickGameLogin), and 1002000011 as the answer to init.
 *
 * Strings are UTF-8. They are read up to their first NUL, and truncated to 4096 bytes without splitting a character. A
 * lone surrogate in a string that is sent as JSON ends the game: pass strings that players type through
 * `toWellFormed()`. Numbers are read as 32-bit integers. A missing optional field is sent as an empty string, 0 or
 * false; the game service decides whether to accept it. If a getter throws, the call throws the same exception.
 *
 * Answers and events arrive in the environment that called the method, which is the main thread or a Worker. Nothing
 * arrives after that environment has ended.
 */

import * as errors from './errors';

/**
 * The module. Its types have the same tags. `@since` is the API level of the platform. `@throws` lists what a method
 * throws or its promise rejects with. A callback gets the same errors.
 *
 * @syscap SystemCapability.GamePlayer.Extension
 * @since 12
 */
declare namespace gamePlayer {
    type BusinessError = errors.BusinessError;
    type ErrorCode = errors.ErrorCode;

    /** The context of the game's ability or UI extension, from the platform or the stand-in device. */
    type Context = object;

    /** `T` as given, or its default. It is never inferred from the variable that the result is assigned to. */
    type Given<T> = [T][T extends unknown ? 0 : never];

    /** Called once, with the data or with an error. The data is null if the request was never sent. */
    type ResultCallback<T> = (
        ...result: [error: undefined, data: T] | [error: BusinessError, data: null | undefined]
    ) => void;

    /** Called once. There is no error if the request succeeded. */
    type DoneCallback = (error: BusinessError | null | undefined, data: null | undefined) => void;

    /**
     * The same as the platform's type of this name, whose callbacks are accepted as well. Called once. As usual on the
     * platform, there is no error if the request succeeded, and no data if it failed.
     */
    interface AsyncCallback<T> {
        /** The error's `data` is undefined. It is declared because the platform's `BusinessError` has it. */
        (error: BusinessError & { readonly data: void }, data: T): void;
    }

    /** What the game knows about its own account. An optional field that is left out is not sent. */
    interface ThirdUserInfo {
        /** The account's ID in the game; at most 4096 bytes. */
        thirdOpenId: string;
        isRealName?: boolean;
        isAdult?: boolean;
        /** A code that the game service defines; a 32-bit integer. */
        ageRange?: number;
    }

    /** The role that a player plays. Each string is at most 4096 bytes. */
    interface PlayerRole {
        roleId?: string;
        roleName?: string;
        serverId?: string;
        serverName?: string;
        /** The player's ID in the game service. */
        gamePlayerId?: string;
        teamPlayerId?: string;
        /** The player's account in the game. */
        thirdOpenId?: string;
    }

    /** A product to buy. Each string is at most 4096 bytes. */
    interface PurchaseParameter {
        /** The product's ID in the catalogue. */
        productId: string;
        /** The kind of product in the catalogue; a 32-bit integer. */
        productType?: number;
        /** Any string of the game; passed along with the purchase. */
        developerPayload?: string;
        reservedInfo?: string;
    }

    /** A purchase to complete. */
    interface PurchaseResult {
        /** As the game received it; truncated to 4096 bytes. */
        purchaseData: string;
    }

    /** An icon in the game's resources. The platform's resource objects have this form. */
    interface AccountIcon {
        /** The game's module that contains the icon. */
        moduleName: string;
        /** The resource ID, tried first. */
        id?: number;
        /**
         * Names, tried in turn if the ID finds nothing. "app.media.icon" is the media resource "icon", or else the
         * raw file "app.media.icon". A name without a dot is a raw file.
         */
        params?: readonly string[];
    }

    /** One of the game's own accounts, offered in the login panel. */
    interface ThirdAccountInfo {
        /** At most 4096 bytes. */
        accountName: string;
        /** Required unless `loginPanelType` is 1: an account whose icon cannot be read is left out. */
        accountIcon?: AccountIcon;
    }

    interface UnionLoginParam {
        showLoginDialog?: boolean;
        /** The kind of panel, a code that the game service defines. Panel 1 shows no icons, so none are read. */
        loginPanelType?: number;
        /** In the order in which they are shown. */
        thirdAccountInfos?: readonly ThirdAccountInfo[];
    }

    interface QuickGameLoginParam {
        /** The application ID of the quick game; at most 4096 bytes. */
        gameAppId: string;
    }

    /** The player of this device has changed or is no longer known. */
    interface PlayerChangedEvent {
        /** Always 0. */
        event: number;
        /** Information from the game service. */
        resultInfo: string;
    }

    /** The argument of each event's listeners. */
    interface GameEvents {
        playerChanged: PlayerChangedEvent;
        /** A message for the player. For system applications only. */
        gameAddictionPrevented: string;
    }

    /** An outcome that the game got from the game service by other means. */
    interface EventCallbackResult {
        /** 1002000015 notifies the listeners of "playerChanged"; any other code does nothing. */
        resultCode: number;
        /** At most 4096 bytes. */
        resultInfo?: string;
    }

    /**
     * Initialises the player service. A game calls this first. The answer 1002000011, agreement not agreed, ends the
     * game process.
     *
     * 1002000015 is the only failure of the game service that it reports. It succeeds even if the window never shows
     * a page. With an unsuitable context, the promise form throws a plain `Error` without a code, and the callback is
     * called without an error. A missing context throws a `BusinessError` with code 0.
     *
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function init(context: Context, callback: DoneCallback): void;
    function init(context: Context, callback: AsyncCallback<void>): void;
    /**
     * @throws { BusinessError } 0 - Success
     * @throws { BusinessError } 1002000001 - System internal error.
     * @throws { BusinessError } 1002000015 - The current player information is invalid. Execute the
     *     login process again to obtain the player information.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function init(context: Context): Promise<void>;

    /**
     * Gets the player who is signed in. The result is what the game service sends as the player, a JSON string unless
     * agreed otherwise; undefined if it sends nothing.
     *
     * The answer may limit the time to play. When that time is over, the module shows the game service's page, and
     * ends the game process 15 seconds later.
     *
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function getLocalPlayer<T = string | undefined>(context: Context, callback: ResultCallback<Given<T>>): void;
    function getLocalPlayer<T = string>(context: Context, callback: AsyncCallback<Given<T>>): void;
    /**
     * @throws { BusinessError } 401 - Parameter error.
     * @throws { BusinessError } 1002000001 - System internal error.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function getLocalPlayer<T = string | undefined>(context: Context): Promise<Given<T>>;

    /**
     * Reports to the game service which role the player plays.
     *
     * As with init, 1002000015 is the only failure of the game service that it reports. With an unsuitable context or
     * role, the promise form throws a plain `Error`, and the callback is called without an error. A missing argument
     * throws code 0.
     *
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function savePlayerRole(context: Context, playerRole: PlayerRole, callback: DoneCallback): void;
    function savePlayerRole(context: Context, playerRole: PlayerRole, callback: AsyncCallback<void>): void;
    /**
     * @throws { BusinessError } 0 - Success
     * @throws { BusinessError } 1002000001 - System internal error.
     * @throws { BusinessError } 1002000015 - The current player information is invalid. Execute the
     *     login process again to obtain the player information.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function savePlayerRole(context: Context, playerRole: PlayerRole): Promise<void>;

    /**
     * Lets the player buy a product. The result is what the game service sends as the purchase, a JSON string unless
     * agreed otherwise; undefined if it sends nothing.
     *
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function prePurchase<T = string | undefined>(
        context: Context, purchaseParameter: PurchaseParameter, callback: ResultCallback<Given<T>>
    ): void;
    function prePurchase<T = string>(
        context: Context, purchaseParameter: PurchaseParameter, callback: AsyncCallback<Given<T>>
    ): void;
    /**
     * @throws { BusinessError } 401 - Parameter error.
     * @throws { BusinessError } 1002000001 - System internal error.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function prePurchase<T = string | undefined>(
        context: Context, purchaseParameter: PurchaseParameter
    ): Promise<Given<T>>;

    /**
     * Completes a purchase with the data that the game received for it.
     *
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function postPurchase(context: Context, purchaseResult: PurchaseResult, callback: DoneCallback): void;
    function postPurchase(context: Context, purchaseResult: PurchaseResult, callback: AsyncCallback<void>): void;
    /**
     * @throws { BusinessError } 401 - Parameter error.
     * @throws { BusinessError } 1002000001 - System internal error.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function postPurchase(context: Context, purchaseResult: PurchaseResult): Promise<void>;

    /**
     * Binds the game's own account to the player. Fails with 1002000012 if either of the two is bound already.
     *
     * @param { string } thirdOpenId - the account's ID in the game; at most 4096 bytes.
     * @param { string } teamPlayerId - the player; at most 4096 bytes.
     * @throws { BusinessError } 401 - Parameter error.
     * @throws { BusinessError } 1002000001 - System internal error.
     * @throws { BusinessError } 1002000012 - The thirdOpenId or teamPlayerId has been bound.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function bindPlayer(context: Context, thirdOpenId: string, teamPlayerId: string): Promise<void>;

    /**
     * Removes a binding. Fails with 1002000013 if the two are not bound.
     *
     * @param { string } thirdOpenId - the account's ID in the game; at most 4096 bytes.
     * @param { string } teamPlayerId - the player; at most 4096 bytes.
     * @throws { BusinessError } 401 - Parameter error.
     * @throws { BusinessError } 1002000001 - System internal error.
     * @throws { BusinessError } 1002000013 - The thirdOpenId and teamPlayerId are not bound.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function unbindPlayer(context: Context, thirdOpenId: string, teamPlayerId: string): Promise<void>;

    /**
     * Asks the game service to check what the game knows about its own account. The answer may limit the time to
     * play, as with `getLocalPlayer`.
     *
     * @throws { BusinessError } 401 - Parameter error.
     * @throws { BusinessError } 1002000001 - System internal error.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function verifyLocalPlayer(context: Context, thirdUserInfo: ThirdUserInfo): Promise<void>;

    /**
     * Lets the player log in with the account of the game service or with one of the game's own accounts, which are
     * offered with their icons. The result is what the game service sends, a JSON string unless agreed otherwise;
     * undefined if it sends nothing.
     *
     * Fails with 1002000016 if the player cancels, and with 401, "Total size of icon resource is too large", if the
     * game service says so. A UI extension cannot read icons.
     *
     * @throws { BusinessError } 401 - Parameter error.
     * @throws { BusinessError } 1002000001 - System internal error.
     * @throws { BusinessError } 1002000016 - Union login canceled by user.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function unionLogin<T = string | undefined>(context: Context, unionLoginParam: UnionLoginParam): Promise<Given<T>>;

    /**
     * Shows the welcome banner. The promise never settles.
     *
     * @param { string } greetingInfo - at most 4096 bytes.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function launchWelcomeBanner(context: Context, greetingInfo: string): Promise<never>;

    /**
     * Limits the time to play. After `playableTime`, and up to 15 seconds more, the module shows the game service's
     * page. 15 seconds later it ends the game process. The limit cannot be removed. The promise never settles.
     *
     * @param { number } playableTime - in seconds.
     * @param { string } antiAddictionInfo - the text on the page; at most 4096 bytes.
     * @param { number } requestType - with 14, for quick games, the module closes the page and raises
     *     "gameAddictionPrevented" instead of ending the game process.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function launchAntiAddiction(
        context: Context, playableTime: number, antiAddictionInfo: string, requestType: number
    ): Promise<never>;

    /**
     * Logs in to a quick game. The result is what the game service sends, a JSON string unless agreed otherwise;
     * undefined if it sends nothing.
     *
     * Fails with 1002000006 if the player is under age. The answer may limit the time to play, as with
     * `getLocalPlayer`. When that time is over, "gameAddictionPrevented" is raised and the game continues.
     *
     * @throws { BusinessError } 401 - Parameter error.
     * @throws { BusinessError } 1002000001 - System internal error.
     * @throws { BusinessError } 1002000006 - The user is under age or not real-name.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function quickGameLogin<T = string | undefined>(
        context: Context, quickGameLoginParam: QuickGameLoginParam
    ): Promise<Given<T>>;

    /**
     * Shows a page of the game service. The promise never settles.
     *
     * @param { string } pageInfo - describes the page; at most 4096 bytes.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function launchCommonPage(context: Context, pageInfo: string): Promise<never>;

    /**
     * Sets the trace ID for all later requests of the whole process.
     *
     * @param { string } traceId - at most 4096 bytes.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function syncTraceId(traceId: string): void;

    /**
     * Calls `callback` for every such event of this environment, asynchronously and never from within a call of the
     * module. `this` is the object that `on` was called on. A callback that is already registered is not added again.
     *
     * Throws 401 for an unknown event, and 202 for "gameAddictionPrevented" unless the game is a system
     * application.
     *
     * @throws { BusinessError } 202 - Permission denied, non-system app called system api.
     * @throws { BusinessError } 401 - Parameter error.
     * @throws { BusinessError } 1002000001 - System internal error.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function on<K extends keyof GameEvents>(type: K, callback: (event: GameEvents[K]) => void): void;

    /**
     * Removes all listeners of this environment for the event. Throws as `on` does.
     *
     * @throws { BusinessError } 202 - Permission denied, non-system app called system api.
     * @throws { BusinessError } 401 - Parameter error.
     * @throws { BusinessError } 1002000001 - System internal error.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function off(type: keyof GameEvents): void;
    /**
     * Removes one listener. Removing an unregistered listener is not an error. Throws as `on` does.
     *
     * @throws { BusinessError } 202 - Permission denied, non-system app called system api.
     * @throws { BusinessError } 401 - Parameter error.
     * @throws { BusinessError } 1002000001 - System internal error.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function off<K extends keyof GameEvents>(type: K, callback: (event: GameEvents[K]) => void): void;

    /**
     * Reports one of the game's own operations to analytics.
     *
     * @param { string } apiName - the operation.
     * @param { number } costTime - how long it took, in milliseconds.
     * @param { number } errorCode - how it ended.
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function reportEventOperation(apiName: string, costTime: number, errorCode: number): void;

    /**
     * Passes on an outcome that the game got by other means.
     *
     * @syscap SystemCapability.GamePlayer.Extension
     * @since 12
     */
    function onEventCallback(result: EventCallbackResult): void;
}

export = gamePlayer;
