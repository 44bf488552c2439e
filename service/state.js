'use strict';

/** The state of a new service: two players, of whom Lin is signed in. All of it is plain JSON. */
function newState() {
    return {
        online: true,
        players: [
            {
                playerId: 'p1', gamePlayerId: 'G-1001', teamPlayerId: 'T-1001', playerName: 'Lin',
                isRealName: true, isAdult: true, hasAgreed: true, playableMinutes: null, endText: '',
            },
            {
                playerId: 'p2', gamePlayerId: 'G-2002', teamPlayerId: 'T-2002', playerName: 'Mei',
                isRealName: true, isAdult: false, hasAgreed: true, playableMinutes: 90, endText: 'Enough for today.',
            },
        ],
        currentPlayer: 'p1',
        announcesPlayer: false,
        bindings: [],
        roles: [],
        products: [],
        purchases: [],
        unionAccount: '',
        quickGames: [],
    };
}

const copyOf = (value) => JSON.parse(JSON.stringify(value));

/** A state with the keys of `changes` instead of those of `state`. An unknown key throws a TypeError. */
function changeState(state, changes) {
    for (const key of Object.keys(changes)) {
        if (!Object.hasOwn(newState(), key)) {
            throw new TypeError(`the state has no '${key}': possible is ${Object.keys(newState()).join(', ')}`);
        }
    }
    const changed = copyOf({ ...state, ...changes });
    const { currentPlayer, players } = changed;
    if (currentPlayer !== '' && !players.some(({ playerId }) => playerId === currentPlayer)) {
        throw new TypeError(`currentPlayer is '${currentPlayer}', but no player has this playerId`);
    }
    return changed;
}

module.exports = { changeState, copyOf, newState };
