import type { Context } from '../lib/index';

// Where the platform's globals are declared, its own `getContext` is among them: there this one accepts no call.
type Component = typeof globalThis extends { vp2px: unknown } ? [never] : [component?: object];

declare global {
    /** Returns the context of the game's window, in the emulator as on a device. */
    function getContext(...component: Component): Context;
}
