// The game's window: its output, with the modal over it that the player sees.

import { Checkbox, Select, TextArea, withValue } from './fields.js';
import { html, useState } from './html.js';
import { requestOf } from './requests.js';

const KINDS = ['result', 'receive', 'error', 'release'];

/** Reads JSON; a text that is none is an Error that names the field. */
function parse(name, text) {
    try {
        return JSON.parse(text);
    } catch (error) {
        throw new Error(`${name}: ${error.message}`);
    }
}

/** A form for any answer: each code, any data, now or later, once or twice. */
function AnyAnswer({ codes, onAnswer, act }) {
    const [kind, setKind] = useState('result');
    const [code, setCode] = useState('0');
    const [data, setData] = useState('{ "resultCode": 0, "resultMessage": "{}" }');
    const [after, setAfter] = useState('0');
    const [twice, setTwice] = useState(false);
    const submit = (event) => {
        event.preventDefault();
        void act(() => {
            const one = { [kind]: kind === 'receive' ? parse('data', data) : Number(code) };
            return onAnswer([{ ...one, after: Number(after) * 1000 }, ...(twice ? [one] : [])]);
        });
    };
    return html`<details><summary>Any other answer</summary><form onSubmit=${submit}>
        <${Select} label="Answer" options=${KINDS} value=${kind} onValue=${setKind} />
        ${kind === 'receive'
            ? html`<${TextArea} label="Data, as JSON" rows="3" value=${data} onValue=${setData} />`
            : html`<label>Code
                <input list="codes" inputmode="numeric" value=${code} onInput=${withValue(setCode)} /></label>
                <datalist id="codes">${Object.entries(codes).map(([name, value]) =>
                    html`<option value=${value}>${name}</option>`)}</datalist>`}
        <label>After <input type="number" min="0" step="0.1" value=${after} onInput=${withValue(setAfter)} /> s</label>
        <${Checkbox} label="twice" checked=${twice} onValue=${setTwice} />
        <button>Answer</button>
    </form></details>`;
}

const HIDDEN = ['ability.want.params.uiExtensionType'];

function WantValues({ parameters }) {
    return html`<dl>${Object.entries(parameters).filter(([key]) => !HIDDEN.includes(key)).map(([key, value]) =>
        html`<dt>${key}</dt><dd>${typeof value === 'string' ? value : JSON.stringify(value)}</dd>`)}</dl>`;
}

function Modal({ modal, run, act }) {
    const { asks, buttons } = requestOf(modal, run.state);
    const answer = async (answers, state) => {
        if (state) {
            await act('step', { state });
        }
        await act('answer', { modal: modal.modal, with: answers });
    };
    return html`<section class="modal" aria-label="Request ${modal.method}">
        <h2>${modal.method} <small>modal ${modal.modal}${modal.isAnswered ? ', answered' : ''}</small></h2>
        <p>${asks}</p>
        <${WantValues} parameters=${modal.parameters} />
        <div class="buttons">${buttons.map(([label, answers, state]) =>
            html`<button onClick=${() => answer(answers, state)}>${label}</button>`)}</div>
        <${AnyAnswer} codes=${run.codes} onAnswer=${answer} act=${act} />
    </section>`;
}

/** The newest modal is on top, unless another one was brought to the front. */
export function GameWindow({ run, open, act }) {
    const [front, setFront] = useState(0);
    const top = open.find(({ modal }) => modal === front) ?? open.at(-1);
    const below = open.filter((modal) => modal !== top);
    return html`<section class="window" aria-label="The game's window">
        <pre class="screen" tabindex="0" aria-label="Output of the game">${run.output.join('\n')}</pre>
        ${top && run.state
            ? html`<${Modal} key=${top.modal} modal=${top} run=${run} act=${act} />`
            : html`<p class="idle">${run.end ? 'The game has ended.' : 'No request is open.'}</p>`}
        ${below.length > 0 && html`<div class="buttons"><span class="idle">Below it</span>
            ${below.map(({ method, modal }) => html`<button onClick=${() => setFront(modal)}>${method}</button>`)}
        </div>`}
    </section>`;
}
