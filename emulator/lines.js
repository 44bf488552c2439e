'use strict';

/** Calls `handler` with the JSON value of each line that a stream brings; `rest` came before. Errors end the stream. */
function onLines(stream, handler, rest = '') {
    stream.setEncoding('utf8').on('error', () => {}).on('data', (text) => {
        const lines = (rest + text).split('\n');
        rest = lines.pop();
        lines.forEach((line) => handler(JSON.parse(line)));
    });
}

module.exports = { onLines };
