'use strict';

// What the module promises for each asynchronous method: the one table that the suites, the model and the generator
// share. Written from the documents, not from the module's code.

const IDS = { thirdOpenId: 'string', teamPlayerId: 'string' };

/**
 * type: its request type. least, most: how many arguments it takes. callbackAt: the count whose last one is a callback.
 * rest: valid arguments after the context. record: the key under which an object is sent as JSON, and its fields. sent:
 * the arguments that are sent unchanged. A kind with "?" is sent only if the game gave the field.
 * page: for launches without a result, the name in the log. readsFirst: it reads its arguments before the context.
 * failsAs: the name in analytics of a failed call.
 *
 * How it handles answers: hidden: a failure is reported as a success. data: a success carries the result message.
 * stays: a received success leaves the page open. timed: it may start the anti-addiction timer. stores: the answers
 * whose parameters become the data. ends: a successful result ends an open request. closes: any release closes the
 * page.
 */
const METHODS = {
    init: { type: 1, least: 1, callbackAt: 2, rest: [], hidden: true },
    getLocalPlayer: {
        type: 2, least: 1, callbackAt: 2, rest: [],
        data: true, stays: true, timed: true, stores: ['receive'], ends: true, closes: true,
    },
    savePlayerRole: {
        type: 3, least: 2, callbackAt: 3, rest: [{ roleId: 'role-1' }], hidden: true,
        record: ['tavikExtra', {
            roleId: 'string', roleName: 'string', serverId: 'string', serverName: 'string', gamePlayerId: 'string',
            teamPlayerId: 'string', thirdOpenId: 'string',
        }],
    },
    prePurchase: {
        type: 4, least: 2, callbackAt: 3, rest: [{ productId: 'product-1' }], data: true, stores: ['receive', 'result'],
        record: ['tavikExtra',
            { productId: 'string', productType: 'int', developerPayload: 'string', reservedInfo: 'string' }],
    },
    postPurchase: {
        type: 5, least: 2, callbackAt: 3, rest: [{ purchaseData: 'data-1' }],
        record: ['tavikExtra', { purchaseData: 'string' }],
    },
    bindPlayer: { type: 7, least: 3, most: 3, rest: ['open-1', 'team-1'], sent: IDS },
    unbindPlayer: { type: 8, least: 3, most: 3, rest: ['open-1', 'team-1'], sent: IDS },
    verifyLocalPlayer: {
        type: 9, least: 2, most: 2, rest: [{ thirdOpenId: 'open-1' }],
        record: ['thirdUserInfo', { thirdOpenId: 'string', isRealName: 'flag?', isAdult: 'flag?', ageRange: 'int?' }],
        stays: true, timed: true, stores: ['receive'], ends: true, closes: true,
    },
    unionLogin: {
        type: 10, least: 2, most: 2, rest: [{}], failsAs: 'unbindPlayer',
        record: ['unionLoginParam', { showLoginDialog: 'flag', loginPanelType: 'int?', thirdAccountInfos: 'accounts' }],
        data: true, stays: true, stores: ['receive'], closes: true,
    },
    quickGameLogin: {
        type: 14, least: 2, most: 2, rest: [{ gameAppId: 'app-1' }],
        record: ['quickGameLoginParam', { gameAppId: 'string' }],
        data: true, stays: true, timed: true, stores: ['receive'], closes: true,
    },
    launchWelcomeBanner: {
        type: 13, rest: ['hello'], sent: { greetingInfo: 'string' }, page: 'LaunchWelcomeBanner', closes: true,
    },
    launchCommonPage: {
        type: 15, rest: ['page'], sent: { pageInfo: 'string' }, page: 'LaunchCommonPage', closes: true,
        readsFirst: true,
    },
    // The timer opens its page. The caller chooses the request type for the page's answers.
    launchAntiAddiction: { type: 6, rest: [60, 'text', 14], page: 'LaunchAntiAddiction' },
};

const those = (isWanted) => Object.fromEntries(Object.entries(METHODS).filter(([name, row]) => isWanted(row, name)));

/** The methods that open a modal when they are called: the requests, and the page launches. */
const CALLS = those((_, name) => name !== 'launchAntiAddiction');
const REQUESTS = those(({ page }) => !page);

/** How a request type handles answers. An unknown type has no flag. */
const rulesOf = (type) => Object.values(CALLS).find((row) => row.type === type) || {};

module.exports = { CALLS, METHODS, REQUESTS, rulesOf };
