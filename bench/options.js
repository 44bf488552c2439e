'use strict';

// The options of the command. A bad one ends the process, so `bench/run` loads this file before it builds.

const { parseArgs } = require('util');

const USAGE = 'usage: bench/run [--json FILE] [--only WORD] [--quick]';

try {
    const options = { json: { type: 'string' }, only: { type: 'string' }, quick: { type: 'boolean' } };
    const { values } = parseArgs({ options });
    if (Object.values(values).includes('')) {
        throw new Error('An option has an empty value');
    }
    module.exports = values;
} catch (error) {
    const [problem] = error.message.split(/\.\s/);  // what follows is more than a line
    process.stderr.write(`bench: ${problem}; ${USAGE}\n`);
    process.exit(2);
}
