// The connection to the emulator. All addresses are relative: the page's own contains the token.

/** Calls `onRecords` with batches of records, `onStatus` with the state of clock and process. Reconnects by itself. */
export function connect({ onRecords, onStatus, onLink }) {
    const source = new EventSource('events');
    source.addEventListener('open', () => onLink(true));
    source.addEventListener('error', () => onLink(false));
    source.addEventListener('message', ({ data }) => onRecords(JSON.parse(data)));
    source.addEventListener('status', ({ data }) => onStatus(JSON.parse(data)));
}

/** The text of a response. Rejects with an Error that has the emulator's reason if it refuses. */
async function request(name, options) {
    const response = await fetch(name, options);
    const text = await response.text();
    if (!response.ok) {
        throw new Error(JSON.parse(text).error);
    }
    return text;
}

/** Sends a command to the emulator. */
export const post = (command, value = null) => request(command, {
    method: 'POST', headers: { 'Content-Type': 'application/json' }, body: JSON.stringify(value),
});

/** The run so far as a scenario: JSON text. */
export const fetchScenario = () => request('scenario');
