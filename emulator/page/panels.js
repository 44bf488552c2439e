// What surrounds the game: the clock, players, the service's state, faults, and the codes that the game met.

import { Checkbox, Select, TextArea, withValue } from './fields.js';
import { html, useState } from './html.js';

const RATES = [[1, '1×'], [10, '10×'], [60, '60×'], [0, 'By hand']];
const STEPS = [['+1 s', 1000], ['+15 s', 15000], ['+1 min', 60000]];
const FLAGS = [['isAdult', 'of age'], ['isRealName', 'real name'], ['hasAgreed', 'has agreed']];
const EXAMPLE = { when: { method: 'prePurchase', every: 3 }, answer: [{ after: 2000, result: 1002000002 }] };

const seconds = (ms) => `${(ms / 1000).toFixed(1)} s`;

function Panel({ title, children, isOpen = true }) {
    return html`<details class="panel" open=${isOpen}><summary>${title}</summary>${children}</details>`;
}

export function ClockPanel({ status: { rate = 1, now = 0, next = null, hand }, run, act }) {
    const passed = Math.max(0, now - (run.begun ?? now));
    const due = next === null ? 'nothing is due' : `next is due in ${seconds(Math.max(next, 0))}`;
    const advance = (ms) => act('step', { advance: ms });
    const isManual = rate === 0;
    return html`<${Panel} title="Clock">
        <p><output>${seconds(passed)}</output> since the start; ${due}</p>
        <div class="buttons" role="group" aria-label="Speed of the clock">${RATES.map(([one, label]) => html`
            <button aria-pressed=${rate === one} onClick=${() => act('clock', { rate: one })}>${label}</button>`)}
        </div>
        <div class="buttons" role="group" aria-label="Move the clock">
            ${STEPS.map(([label, ms]) => html`
                <button disabled=${!isManual} onClick=${() => advance(ms)}>${label}</button>`)}
            <button disabled=${!isManual || !(next >= 0)} onClick=${() => advance(Math.ceil(next))}>To the next</button>
        </div>
        <${Checkbox} label="I answer; otherwise the service does" checked=${hand === null}
            onValue=${(isMine) => act('hand', isMine ? null : [])} />
    <//>`;
}

function PlayerFields({ player, onChange }) {
    const setMinutes = (text) => onChange({ playableMinutes: text === '' ? null : Number(text) });
    return html`
        ${FLAGS.map(([key, label]) => html`
            <${Checkbox} label=${label} checked=${player[key]} onValue=${(isSet) => onChange({ [key]: isSet })} />`)}
        ${!player.isAdult && html`<label>minutes left <input type="number" min="0"
            value=${player.playableMinutes ?? ''} onChange=${withValue(setMinutes)} /></label>`}`;
}

export function PlayersPanel({ run: { state }, act }) {
    const change = (changes) => act('step', { state: changes });
    const changePlayer = (changed, changes) => change({
        players: state.players.map((player) => (player === changed ? { ...player, ...changes } : player)),
    });
    const signIn = ({ playerId, playerName }) => html`<label><input type="radio" name="player"
        checked=${state.currentPlayer === playerId} onChange=${() => act('step', { player: playerId })} /> ${playerName}
    </label>`;
    return html`<${Panel} title="Players"><fieldset><legend>Who is signed in</legend>
            ${state.players.map((player) => html`<div class="player">${signIn(player)}
                <${PlayerFields} player=${player} onChange=${(changes) => changePlayer(player, changes)} /></div>`)}
            <div class="player">${signIn({ playerId: '', playerName: 'Nobody' })}</div>
        </fieldset>
        <${Checkbox} label="the service is online" checked=${state.online} onValue=${(online) => change({ online })} />
    <//>`;
}

/** A text field for JSON, with a button that sends it as the step `name`. */
function JsonField({ name, label, value, button, act }) {
    const [text, setText] = useState(null);
    const shown = text ?? JSON.stringify(value, null, 2);
    const submit = async () => {
        await act('step', { [name]: JSON.parse(shown) });
        setText(null);
    };
    return html`<${TextArea} label=${label} rows="6" spellcheck="false" value=${shown} onValue=${setText} />
        <div class="buttons"><button onClick=${() => act(submit)}>${button}</button></div>`;
}

export function StatePanel({ run, act }) {
    return html`<${Panel} title="State and rules" isOpen=${false}>
        <${JsonField} name="state" label="State of the service" value=${run.state} button="Set the state" act=${act} />
        <button onClick=${() => act('step', { state: run.first })}>Back to the first state</button>
        <${JsonField} name="rule" label="A rule for requests" value=${EXAMPLE} button="Add the rule" act=${act} />
        <button onClick=${() => act('step', { clearRules: true })}>Remove all rules</button>
    <//>`;
}

export function FaultPanel({ run, act }) {
    const [call, setCall] = useState('CreateModalUIExtension');
    const [skip, setSkip] = useState(0);
    return html`<${Panel} title="Faults" isOpen=${false}>
        <${Select} label="The next call of" options=${run.faults} value=${call} onValue=${setCall} />
        <label>after <input type="number" min="0" value=${skip}
            onInput=${withValue((text) => setSkip(Number(text)))} /> good ones</label>
        <div class="buttons">
            <button onClick=${() => act('step', { fail: { call, skip } })}>Make it fail</button>
            <button onClick=${() => act('step', { window: 'hidden' })}>Take the window away</button>
            <button onClick=${() => act('step', { window: 'shown' })}>Show the window</button>
            <button onClick=${() => act('step', { systemApp: true })}>Make it a system app</button>
        </div>
    <//>`;
}

const CodeCell = ({ title, isMet }) => html`<td class=${isMet ? 'met' : ''} title=${title}>
    ${isMet ? '✓' : '–'}<span class="hidden">${isMet ? 'met' : 'never met'}</span></td>`;

export function CodesPanel({ run: { codes, methods, met } }) {
    const all = Object.entries(codes);
    return html`<${Panel} title="Error codes met and never met" isOpen=${false}><div class="scroll" tabindex="0"><table>
        <thead><tr><th scope="col">Method</th>
            ${all.map(([name, code]) => html`<th scope="col" title=${name}>${code % 1000000}</th>`)}</tr></thead>
        <tbody>${methods.map((method) => html`<tr><th scope="row">${method}</th>${all.map(([name, code]) => html`
            <${CodeCell} title="${name} ${code}" isMet=${met.get(method)?.has(code)} />`)}</tr>`)}</tbody>
    </table></div><//>`;
}
