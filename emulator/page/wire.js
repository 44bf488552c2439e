// The connection to the emulator. All addresses are relative: the page's own contains the token.

/** Calls `onRecords` with batches of records and `onStatus` with the state of clock and process. Reconnects by itself. */
export function connect({ onRecords, onStatus, onLink }) {
    const source = new EventSource('events');
    source.addEventListener('open', () => onLink(true));
    source.addEventListener('error', () => onLink(false));
    source.addEventListener('message', ({ data }) => onRecords(JSON.parse(data)));
    source.addEventListener('status', ({ data }) => onStatus(JSON.parse(data)));
}

/** Has the emulator do something. Rejects with an Error that says why it does not. */
export async function post(command, value = null) {
    const response = await fetch(command, {
        method: 'POST', headers: { 'Content-Type': 'application/json' }, body: JSON.stringify(value),
    });
    const answer = await response.json();
    if (!response.ok) {
        throw new Error(answer.error);
    }
    return answer;
}

/** The run so far as a scenario: JSON text. */
export async function fetchScenario() {
    const response = await fetch('scenario');
    const text = await response.text();
    if (!response.ok) {
        throw new Error(JSON.parse(text).error);
    }
    return text;
}
