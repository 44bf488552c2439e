'use strict';

// A game as it is on a device: it imports the module, gets the context of its window, and knows of nothing else. The
// emulator runs it.

const player = require('game-player-extension-module');
const { ErrorCode, isBusinessError } = require('game-player-extension-module/errors');

const ATTEMPTS = 3;
const context = globalThis.getContext();

/** Signs the player in. Without a network it tries again, since the player may be on a train. */
async function signIn() {
    for (let attempt = 1; ; ++attempt) {
        try {
            return JSON.parse(await player.getLocalPlayer(context));
        } catch (error) {
            if (error.code !== ErrorCode.NETWORK || attempt === ATTEMPTS) {
                throw error;
            }
            console.log('No network. Trying again.');
        }
    }
}

/** Sells gems. Returns how many the player has bought. */
async function sellGems() {
    try {
        const purchaseData = await player.prePurchase(context, { productId: 'gems-60', developerPayload: 'level-4' });
        await player.postPurchase(context, { purchaseData });
        return 60;
    } catch (error) {
        if (!isBusinessError(error)) {
            throw error;
        }
        return 0;
    }
}

async function main() {
    player.syncTraceId('arcade-1');
    player.on('playerChanged', ({ resultInfo }) => console.log(`News: ${resultInfo}.`));
    await player.init(context);
    const { gamePlayerId, playerName } = await signIn();
    console.log(`Welcome, ${playerName}!`);
    player.launchWelcomeBanner(context, JSON.stringify({ playerName }));
    await player.savePlayerRole(context, { roleId: 'R-1', roleName: 'Knight', gamePlayerId });
    for (let offer = 1; offer <= 3; ++offer) {
        console.log(`Offer ${offer}: ${await sellGems()} gems`);
    }
    player.off('playerChanged');
}

main().catch((error) => {
    console.log(`The game cannot go on: ${error.message}`);
    process.exitCode = 1;
});
