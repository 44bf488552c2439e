// What each request means to the player, and what a player can do there. An answer is as in a rule of a scenario.

const own = [{ own: true }];
const result = (code) => [{ result: code }];
const leave = ['Leave', [{ release: 0 }]];
const isTooYoung = ['Too young', result(1002000006)];
const isNoRealName = ['Not by real name', result(1002000004)];
const isOffline = ['No network', [{ error: 1002000002, name: 'offline', message: 'no network' }]];

/** A button: its label, the answers, and what changes in the state before. */
const signIns = (state) => state.players.map(({ playerId, playerName }) =>
    [`Sign in as ${playerName}`, own, { currentPlayer: playerId }]);

const accountsIn = ({ unionLoginParam }) => JSON.parse(unionLoginParam ?? '{}').thirdAccountInfos ?? [];

function pending({ tavikExtra }) {
    const { productId } = JSON.parse(tavikExtra);
    const data = JSON.stringify({ purchase: 'pending', productId, status: 'pending' });
    return [{ result: 0, parameters: { resultMessage: data } }];
}

const PAGE = { asks: 'The game shows a page.', buttons: () => [['Close', [{ release: 0 }]]] };

const REQUESTS = {
    init: {
        asks: 'The game starts and asks for the player service.',
        buttons: () => [['Agree', own], ['Do not agree', result(1002000011)], isOffline],
    },
    getLocalPlayer: {
        asks: 'The game asks who is playing.',
        buttons: ({ state }) => [...signIns(state), ['Cancel', result(1002000003)], isNoRealName, isTooYoung, isOffline, leave],
    },
    verifyLocalPlayer: {
        asks: 'The game asks whether its account fits the player.',
        buttons: () => [['Confirm', own], isNoRealName, isTooYoung, isOffline, leave],
    },
    bindPlayer: {
        asks: 'The game binds its account to the player.',
        buttons: () => [['Bind', own], ['Is bound already', result(1002000012)], isOffline, leave],
    },
    unbindPlayer: {
        asks: 'The game takes the binding back.',
        buttons: () => [['Unbind', own], ['Is not bound', result(1002000013)], isOffline, leave],
    },
    savePlayerRole: {
        asks: 'The game saves the role of the player.',
        buttons: () => [['Save', own], isOffline],
    },
    prePurchase: {
        asks: 'The game wants to sell something.',
        buttons: ({ parameters }) =>
            [['Pay', own], ['Pay later', pending(parameters)], ['Cancel', result(1002000001)], isOffline, leave],
    },
    postPurchase: {
        asks: 'The game has handed out what was bought.',
        buttons: () => [['Complete', own], ['Refuse', result(1002000001)], isOffline],
    },
    unionLogin: {
        asks: 'The game offers its accounts for the login.',
        buttons: ({ parameters }) => [
            ...accountsIn(parameters).map(({ accountName }) => [`Take ${accountName}`, own, { unionAccount: accountName }]),
            ['Take the first', own], ['Cancel', result(1002000016)], isOffline, leave,
        ],
    },
    quickGameLogin: {
        asks: 'A quick game asks for its login.',
        buttons: ({ state }) => [...signIns(state), ['Cancel', result(1002000003)], isTooYoung, isOffline, leave],
    },
    launchWelcomeBanner: { ...PAGE, asks: 'The game welcomes the player.' },
    launchCommonPage: PAGE,
    launchAntiAddiction: { ...PAGE, asks: 'The time to play is over.' },
};

/** What the game asks, in words, and the buttons for it. */
export function requestOf(modal, state) {
    const { asks, buttons } = REQUESTS[modal.method] ?? PAGE;
    return { asks, buttons: buttons({ state, parameters: modal.parameters }) };
}
