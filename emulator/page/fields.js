// The fields of forms. `onValue` gets what the user enters.

import { html } from './html.js';

/** A handler for the events of a field, which calls `onValue` with its value. */
export const withValue = (onValue) => ({ target }) => onValue(target.value);

export const Checkbox = ({ label, checked, onValue }) => html`<label>
    <input type="checkbox" checked=${checked} onChange=${({ target }) => onValue(target.checked)} /> ${label}</label>`;

export const Select = ({ label, options, value, onValue }) => html`<label>${label} <select value=${value}
    onChange=${withValue(onValue)}>${options.map((name) => html`<option>${name}</option>`)}</select></label>`;

export const TextArea = ({ label, onValue, ...rest }) => html`<label class="wide">${label}
    <textarea ...${rest} onInput=${withValue(onValue)}></textarea></label>`;
