'use strict';

// The methods that open a page of the game service: all that the package's JS knows of each stands here.

const TIME = ['playableTime', 'endText'];
const DATA = ['resultMessage'];

/**
 * By name. type: its request type. result, receive: what the module reads, beside the code, in such an answer with code
 * 0. isPage: nobody waits for its answer.
 */
const REQUESTS = {
    init: { type: 1 },
    getLocalPlayer: { type: 2, receive: [...DATA, ...TIME] },
    savePlayerRole: { type: 3 },
    prePurchase: { type: 4, result: DATA, receive: DATA },
    postPurchase: { type: 5 },
    launchAntiAddiction: { type: 6, isPage: true },
    bindPlayer: { type: 7 },
    unbindPlayer: { type: 8 },
    verifyLocalPlayer: { type: 9, receive: TIME },
    unionLogin: { type: 10, receive: DATA },
    launchWelcomeBanner: { type: 13, isPage: true },
    quickGameLogin: { type: 14, receive: [...DATA, ...TIME] },
    launchCommonPage: { type: 15, isPage: true },
};

const named = new Map(Object.entries(REQUESTS).map(([name, { type }]) => [type, name]));

/** The method whose requests have this type. */
const methodOf = (requestType) => named.get(requestType) || `request ${requestType}`;

module.exports = { REQUESTS, methodOf };
