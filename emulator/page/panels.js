// What surrounds the game: the clock, players, the service's state, faults, and the codes that the game met.

import { html, useState } from './html.js';

const RATES = [1, 10, 60];
const METHODS = [
    'init', 'getLocalPlayer', 'verifyLocalPlayer', 'bindPlayer', 'unbindPlayer', 'savePlayerRole', 'unionLogin',
    'quickGameLogin', 'prePurchase', 'postPurchase', 'launchWelcomeBanner', 'launchCommonPage', 'launchAntiAddiction',
];

const seconds = (ms) => `${(ms / 1000).toFixed(1)} s`;

function Panel({ title, children, isOpen = true }) {
    return html`<details class="panel" open=${isOpen}><summary>${title}</summary>${children}</details>`;
}

export function ClockPanel({ status, run, act }) {
    const { rate = 1, now = 0, next, hand } = status;
    const passed = Math.max(0, now - (run.begun ?? now));
    const advance = (ms) => act('step', { advance: ms });
    const isManual = rate === 0;
    return html`<${Panel} title="Clock">
        <p><output>${seconds(passed)}</output> since the start; ${next === null || next === undefined
            ? 'nothing is due' : `next is due in ${seconds(Math.max(next, 0))}`}</p>
        <div class="buttons" role="group" aria-label="Speed of the clock">
            ${RATES.map((one) => html`<button aria-pressed=${rate === one} onClick=${() => act('clock', { rate: one })}>${one}×</button>`)}
            <button aria-pressed=${isManual} onClick=${() => act('clock', { rate: 0 })}>By hand</button>
        </div>
        <div class="buttons" role="group" aria-label="Move the clock">
            ${[['1 s', 1000], ['15 s', 15000], ['1 min', 60000]].map(([label, ms]) =>
                html`<button disabled=${!isManual} onClick=${() => advance(ms)}>+${label}</button>`)}
            <button disabled=${!isManual || !(next >= 0)} onClick=${() => advance(Math.ceil(next))}>To the next</button>
        </div>
        <label><input type="checkbox" checked=${hand === null} onChange=${({ target }) => act('hand', target.checked ? null : [])} />
            I answer; otherwise the service does</label>
    <//>`;
}

const FLAGS = [['isAdult', 'of age'], ['isRealName', 'real name'], ['hasAgreed', 'has agreed']];

export function PlayersPanel({ run: { state }, act }) {
    const change = (changes) => act('step', { state: changes });
    const changePlayer = (playerId, changes) => change({
        players: state.players.map((player) => (player.playerId === playerId ? { ...player, ...changes } : player)),
    });
    return html`<${Panel} title="Players"><fieldset><legend>Who is signed in</legend>
        ${[...state.players, { playerId: '', playerName: 'Nobody' }].map(({ playerId, playerName, ...player }) => html`
            <div class="player"><label><input type="radio" name="player" checked=${state.currentPlayer === playerId}
                onChange=${() => act('step', { player: playerId })} /> ${playerName}</label>
            ${playerId && FLAGS.map(([key, label]) => html`<label><input type="checkbox" checked=${player[key]}
                onChange=${({ target }) => changePlayer(playerId, { [key]: target.checked })} /> ${label}</label>`)}
            ${playerId && !player.isAdult && html`<label>minutes left <input type="number" min="0"
                value=${player.playableMinutes ?? ''} onChange=${({ target }) => changePlayer(playerId, {
                    playableMinutes: target.value === '' ? null : Number(target.value) })} /></label>`}</div>`)}
        </fieldset>
        <label><input type="checkbox" checked=${state.online} onChange=${({ target }) => change({ online: target.checked })} />
            the service is online</label>
    <//>`;
}

/** A text field for JSON, with a button that hands over what it says. */
function JsonField({ label, value, button, onValue, act }) {
    const [text, setText] = useState(null);
    const given = JSON.stringify(value, null, 2);
    return html`<label class="wide">${label}
        <textarea rows="6" spellcheck="false" value=${text ?? given} onInput=${({ target }) => setText(target.value)}></textarea></label>
        <div class="buttons"><button onClick=${() => act(async () => {
            await onValue(JSON.parse(text ?? given));
            setText(null);
        })}>${button}</button></div>`;
}

const EXAMPLE = { when: { method: 'prePurchase', every: 3 }, answer: [{ after: 2000, result: 1002000002 }] };

export function StatePanel({ run, act }) {
    const step = (value) => act('step', value);
    return html`<${Panel} title="State and rules" isOpen=${false}>
        <${JsonField} label="State of the service" value=${run.state} button="Set the state" act=${act} onValue=${(state) => step({ state })} />
        <button onClick=${() => step({ state: run.first })}>Back to the first state</button>
        <${JsonField} label="A rule for requests" value=${EXAMPLE} button="Add the rule" act=${act} onValue=${(rule) => step({ rule })} />
        <button onClick=${() => step({ clearRules: true })}>Remove all rules</button>
    <//>`;
}

export function FaultPanel({ run, act }) {
    const [call, setCall] = useState('CreateModalUIExtension');
    const [skip, setSkip] = useState(0);
    return html`<${Panel} title="Faults" isOpen=${false}>
        <label>The next call of <select value=${call} onChange=${({ target }) => setCall(target.value)}>
            ${run.faults.map((name) => html`<option>${name}</option>`)}</select></label>
        <label>after <input type="number" min="0" value=${skip} onInput=${({ target }) => setSkip(Number(target.value))} /> good ones</label>
        <div class="buttons"><button onClick=${() => act('step', { fail: { call, skip } })}>Make it fail</button>
        <button onClick=${() => act('step', { window: 'hidden' })}>Take the window away</button>
        <button onClick=${() => act('step', { window: 'shown' })}>Show the window</button>
        <button onClick=${() => act('step', { systemApp: true })}>Make it a system app</button></div>
    <//>`;
}

export function CodesPanel({ run }) {
    const codes = Object.entries(run.codes);
    const isMet = (method, code) => run.met.get(method)?.has(code) ?? false;
    return html`<${Panel} title="Error codes met and never met" isOpen=${false}><div class="scroll" tabindex="0"><table>
        <thead><tr><th scope="col">Method</th>${codes.map(([name, code]) => html`<th scope="col" title=${name}>${code % 1000000}</th>`)}</tr></thead>
        <tbody>${METHODS.map((method) => html`<tr><th scope="row">${method}</th>
            ${codes.map(([name, code]) => html`<td class=${isMet(method, code) ? 'met' : ''} title="${name} ${code}">
                ${isMet(method, code) ? '✓' : '–'}<span class="hidden">${isMet(method, code) ? 'met' : 'never met'}</span></td>`)}</tr>`)}
        </tbody></table></div><//>`;
}
