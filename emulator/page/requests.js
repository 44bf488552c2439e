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

const close = () => [['Close', [{ release: 0 }]]];

/** What the game asks, in words, and the buttons. */
const REQUESTS = {
    init: ['The game starts and asks for the player service.',
        () => [['Agree', own], ['Do not agree', result(1002000011)], isOffline]],
    getLocalPlayer: ['The game asks who is playing.', ({ state }) =>
        [...signIns(state), ['Cancel', result(1002000003)], isNoRealName, isTooYoung, isOffline, leave]],
    verifyLocalPlayer: ['The game asks whether its account fits the player.',
        () => [['Confirm', own], isNoRealName, isTooYoung, isOffline, leave]],
    bindPlayer: ['The game binds its account to the player.',
        () => [['Bind', own], ['Is bound already', result(1002000012)], isOffline, leave]],
    unbindPlayer: ['The game takes the binding back.',
        () => [['Unbind', own], ['Is not bound', result(1002000013)], isOffline, leave]],
    savePlayerRole: ['The game saves the role of the player.', () => [['Save', own], isOffline]],
    unionLogin: ['The game offers its accounts for the login.', ({ parameters }) => [
        ...accountsIn(parameters).map(({ accountName }) => [`Take ${accountName}`, own, { unionAccount: accountName }]),
        ['Take the first', own], ['Cancel', result(1002000016)], isOffline, leave,
    ]],
    quickGameLogin: ['A quick game asks for its login.', ({ state }) =>
        [...signIns(state), ['Cancel', result(1002000003)], isTooYoung, isOffline, leave]],
    prePurchase: ['The game wants to sell something.', ({ parameters }) =>
        [['Pay', own], ['Pay later', pending(parameters)], ['Cancel', result(1002000001)], isOffline, leave]],
    postPurchase: ['The game has handed out what was bought.',
        () => [['Complete', own], ['Refuse', result(1002000001)], isOffline]],
    launchWelcomeBanner: ['The game welcomes the player.', close],
    launchCommonPage: ['The game shows a page.', close],
    launchAntiAddiction: ['The time to play is over.', close],
};

const anyOther = (method) => [`The game calls ${method}.`, () => [['Answer', own], isOffline, leave]];

/** What a modal asks, in words, and the buttons for it. */
export function requestOf(modal, state) {
    const [asks, buttons] = REQUESTS[modal.method] ?? anyOther(modal.method);
    return { asks, buttons: buttons({ state, parameters: modal.parameters }) };
}
