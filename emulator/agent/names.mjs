// For `import`: the same names as in names.js. Node runs this on a thread of its own.

import names from './names.js';

export const { resolve } = names;
