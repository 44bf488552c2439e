// Everything that happened: a strip with a lane for each party, and the same entries as a list. Both draw only what is
// visible, so that 100,000 entries stay usable.

import { withValue } from './fields.js';
import { html, useEffect, useLayoutEffect, useRef, useState } from './html.js';
import { LANES } from './model.js';

const ROW = 24;  // pixels; as in style.css
const LANE = 18;
const SPANS = [1, 5, 15, 60, 300, 1800, 7200];  // seconds in the strip's width
const WIDEST = SPANS.length - 1;
const MOVES = { ArrowDown: 1, ArrowUp: -1, PageDown: 10, PageUp: -10, Home: -Infinity, End: Infinity };  // by key

/** The index of the first entry from `low` on whose `key` is not below `value`. */
function indexOf(entries, key, value, low = 0) {
    for (let high = entries.length; low < high;) {
        const middle = (low + high) >> 1;
        [low, high] = entries[middle][key] < value ? [middle + 1, high] : [low, middle];
    }
    return low;
}

const colorOf = (element, name) => getComputedStyle(element).getPropertyValue(name);

/** Draws the entries from the index `first` and the time `begin` on; a call as a bar as long as it waited. */
function draw(canvas, entries, first, begin, span) {
    const scale = devicePixelRatio;
    const width = canvas.clientWidth;
    Object.assign(canvas, { width: width * scale, height: LANES.length * LANE * scale });
    const context = canvas.getContext('2d');
    context.scale(scale, scale);
    const [ink, accent] = [colorOf(canvas, '--ink'), colorOf(canvas, '--accent')];
    const taken = new Set();  // one mark for each pixel of a lane
    for (let i = indexOf(entries, 'time', begin, first); i < entries.length && entries[i].time <= begin + span; ++i) {
        const { lane, time, record } = entries[i];
        const x = Math.floor((time - begin) / span * width);
        const y = LANES.indexOf(lane) * LANE;
        const length = (record.took ?? 0) / span * width;
        if (!taken.has(x + y * width) || length > 1) {
            taken.add(x + y * width);
            context.fillStyle = record.took === undefined ? ink : accent;
            context.fillRect(x - length, y + 4, Math.max(2, length), LANE - 8);
        }
    }
}

// Of the current run alone: the time of another process may go back.
function Strip({ entries, run, selected, onSelect }) {
    const canvas = useRef(null);
    const [zoom, setZoom] = useState(3);
    const span = SPANS[zoom] * 1000;
    const end = selected ? selected.time + span / 2 : (entries.at(-1)?.time ?? 0);
    const begin = end - span;
    const first = indexOf(entries, 'n', run.n);
    useEffect(() => draw(canvas.current, entries, first, begin, span));
    const pick = ({ offsetX }) => {
        const time = begin + offsetX / canvas.current.clientWidth * span;
        onSelect(entries[Math.min(indexOf(entries, 'time', time, first), entries.length - 1)]);
    };
    return html`<div class="strip"><ul aria-hidden="true">${LANES.map((lane) => html`<li>${lane}</li>`)}</ul>
        <canvas ref=${canvas} onClick=${pick} role="img"
            aria-label="The last ${SPANS[zoom]} seconds by lane; the list has the same entries"></canvas>
        <div class="buttons">
            <button disabled=${zoom === 0} aria-label="Zoom in" onClick=${() => setZoom(zoom - 1)}>+</button>
            <button disabled=${zoom === WIDEST} aria-label="Zoom out" onClick=${() => setZoom(zoom + 1)}>−</button>
            <span>${SPANS[zoom]} s</span></div></div>`;
}

/** A list box that draws only its visible rows. It follows the end until the user selects or scrolls. */
function List({ entries, selected, onSelect }) {
    const box = useRef(null);
    const [top, setTop] = useState(0);
    const [follows, setFollows] = useState(true);
    useLayoutEffect(() => {
        if (follows && !selected) {
            box.current.scrollTop = box.current.scrollHeight;
        }
    }, [entries.length]);
    const height = box.current?.clientHeight ?? 0;
    const visible = Math.ceil(height / ROW);
    const first = Math.max(0, Math.min(Math.floor(top / ROW), entries.length - visible));
    const rows = entries.slice(first, first + visible + 1);
    const onScroll = ({ target }) => {
        setTop(target.scrollTop);
        setFollows(target.scrollTop + target.clientHeight >= target.scrollHeight - ROW);
    };
    const onKeyDown = (event) => {
        const move = MOVES[event.key];
        if (event.key === 'Escape') {
            onSelect(null);
        } else if (move && entries.length > 0) {
            event.preventDefault();
            const from = selected ? entries.indexOf(selected) : entries.length;
            const to = Math.max(0, Math.min(entries.length - 1, from + move));
            onSelect(entries[to]);
            box.current.scrollTop = to * ROW - height / 2;
        }
    };
    return html`<div class="list" ref=${box} onScroll=${onScroll} onKeyDown=${onKeyDown} tabindex="0" role="listbox"
        aria-label="Timeline" aria-activedescendant=${selected && `entry-${selected.n}`}>
        <div style=${{ height: `${entries.length * ROW}px` }}>
        <div style=${{ transform: `translateY(${first * ROW}px)` }}>
        ${rows.map((entry) => html`<div class="entry ${entry.lane}" key=${entry.n} id="entry-${entry.n}" role="option"
            aria-selected=${entry === selected} onClick=${() => onSelect(entry === selected ? null : entry)}>
            <time>${entry.clock}</time><b>${entry.lane}</b><span>${entry.text.slice(0, 300)}</span></div>`)}
        </div></div></div>`;
}

// What is filtered is kept from one drawing to the next: only new entries are looked at.
function useFiltered(model, lanes, text) {
    const cache = useRef({});
    const key = JSON.stringify([lanes, text]);
    if (cache.current.key !== key || cache.current.source !== model.entries) {
        cache.current = { key, source: model.entries, list: [], seen: 0 };
    }
    const { list, seen } = cache.current;
    const isWanted = ({ lane, text: line }) => lanes.includes(lane) && line.toLowerCase().includes(text.toLowerCase());
    model.entries.slice(seen).filter(isWanted).forEach((entry) => list.push(entry));
    cache.current.seen = model.entries.length;
    return list;
}

export function Timeline({ model, act }) {
    const { leftOut } = model;
    const [lanes, setLanes] = useState(LANES.filter((lane) => lane !== 'log'));
    const [text, setText] = useState('');
    const [selected, onSelect] = useState(null);
    const entries = useFiltered(model, lanes, text);
    const toggle = (lane) => setLanes(lanes.includes(lane) ? lanes.filter((one) => one !== lane) : [...lanes, lane]);
    const clear = () => act(async () => {
        model.clear();
        onSelect(null);
        await act('clear');
    });
    return html`<section class="timeline" aria-label="Timeline of the run">
        <div class="buttons" role="group" aria-label="Lanes">
            ${LANES.map((lane) => html`
                <button aria-pressed=${lanes.includes(lane)} onClick=${() => toggle(lane)}>${lane}</button>`)}
            <label>Filter <input type="search" value=${text} onInput=${withValue(setText)} /></label>
            <button onClick=${clear}>Clear</button>
            <span>${entries.length} entries${leftOut > 0 ? `; ${leftOut} earlier records left out` : ''}</span>
        </div>
        <${Strip} entries=${entries} run=${model.run} selected=${selected} onSelect=${onSelect} />
        <div class="both"><${List} entries=${entries} selected=${selected} onSelect=${onSelect} />
            ${selected && html`<pre class="details" tabindex="0" aria-label="Details">
                ${JSON.stringify(selected.record, null, 2)}</pre>`}</div>
    </section>`;
}
