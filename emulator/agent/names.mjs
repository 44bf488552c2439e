// For `import`: the same names as in names.js. Node runs this on a thread of its own.

import names from './names.js';

export function resolve(name, context, next) {
    const own = names.ownName(name);
    return own ? next(own, { ...context, parentURL: import.meta.url }) : next(name, context);
}
