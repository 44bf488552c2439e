// Two of the platform's global functions.
declare function vp2px(value: number): number;
declare function getContext(component?: Object): import('@kit.AbilityKit').common.Context;
