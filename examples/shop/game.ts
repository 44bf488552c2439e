// A small game in strict TypeScript: it logs its player in, sells gems, and stops when the time to play is over.

import gamePlayer from 'game-player-extension-module';
import { ErrorCode, isBusinessError } from 'game-player-extension-module/errors';

export interface Player {
    readonly playerId: string;
}

export type Purchase = 'bought' | 'refused' | 'try again';

const TRY_AGAIN: readonly ErrorCode[] = [ErrorCode.NETWORK, ErrorCode.SYSTEM_INTERNAL];

export class Game {
    player: Player | null = null;
    gems = 0;
    isOver = false;

    constructor(private readonly context: object) {
        gamePlayer.on('playerChanged', this.logOut);
    }

    readonly logOut = (): void => {
        this.player = null;
    };

    /** Returns the player, or null if the player may not play. */
    async logIn(): Promise<Player | null> {
        try {
            await gamePlayer.init(this.context);
            const data = await gamePlayer.getLocalPlayer(this.context);
            this.player = data === undefined ? null : (JSON.parse(data) as Player);
        } catch (error) {
            if (!isBusinessError(error)) {
                throw error;
            }
            this.player = null;
        }
        return this.player;
    }

    async buyGems(count: number): Promise<Purchase> {
        try {
            const order = await gamePlayer.prePurchase(this.context, { productId: `gems-${count}` });
            if (order === undefined) {
                return 'refused';
            }
            await gamePlayer.postPurchase(this.context, { purchaseData: order });
        } catch (error) {
            if (!isBusinessError(error)) {
                throw error;
            }
            return TRY_AGAIN.includes(error.code) ? 'try again' : 'refused';
        }
        this.gems += count;
        return 'bought';
    }
}
