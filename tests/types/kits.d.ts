// What the games here import from the platform, in the platform's own words.
declare module '@kit.BasicServicesKit' {
    export interface BusinessError<T = void> extends Error { code: number; data: T; }
    export interface AsyncCallback<T, E = void> { (err: BusinessError<E>, data: T): void; }
}
declare module '@kit.AbilityKit' {
    export namespace common { class Context { filesDir: string; } }
}
