// The parts of Node that the tests use. In your own game, use @types/node instead of this file.

declare module 'node:test' {
    export function test(title: string, body: () => void | Promise<void>): void;
    export function afterEach(body: () => void): void;
}

declare module 'node:assert/strict' {
    const assert: {
        equal(actual: unknown, expected: unknown, message?: string): void;
        deepEqual(actual: unknown, expected: unknown, message?: string): void;
        ok(value: unknown, message?: string): asserts value;
        rejects(promise: Promise<unknown>, error: RegExp | object): Promise<void>;
    };
    export default assert;
}
