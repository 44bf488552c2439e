import { html, render, useEffect, useState } from './html.js';
import { Model } from './model.js';
import { ClockPanel, CodesPanel, FaultPanel, PlayersPanel, StatePanel } from './panels.js';
import { Timeline } from './timeline.js';
import { GameWindow } from './window.js';
import { connect, fetchScenario, post } from './wire.js';

const model = new Model();

function save(text) {
    const link = document.createElement('a');
    link.href = URL.createObjectURL(new Blob([text], { type: 'application/json' }));
    link.download = 'scenario.json';
    link.click();
    URL.revokeObjectURL(link.href);
}

const ENDS = {
    ends: 'The game has ended.', fails: 'The game has failed.', runs: 'The game was stopped.',
    module: 'The module has ended the game.',
};

function describe({ link, run, status }) {
    if (!link) {
        return ['bad', 'The emulator does not respond.'];
    }
    if (run.end) {
        return [run.end.how === 'ends' ? '' : 'bad', `${ENDS[run.end.how]} ${run.end.reason ?? ''}`];
    }
    if (status.problem) {
        return ['bad', `The game hangs: ${status.problem}. Restart it.`];
    }
    return ['good', `The game runs as process ${run.pid}.`];
}

function Header({ act, ...props }) {
    const [tone, text] = describe(props);
    return html`<header>
        <h1>${props.run.game || 'Game emulator'}</h1>
        <p class="status ${tone}" role="status">${text} ${props.run.doing}</p>
        <button onClick=${() => act('restart')}>Restart</button>
        <button onClick=${() => act('stop')}>Stop</button>
        <button class="main" onClick=${() => act(async () => save(await fetchScenario()))}>Save as scenario</button>
    </header>`;
}

function App() {
    const [, setVersion] = useState(0);
    const [status, setStatus] = useState({});
    const [link, setLink] = useState(false);
    const [problem, setProblem] = useState('');
    useEffect(() => {
        let frame = 0;
        const draw = () => {
            frame ||= requestAnimationFrame(() => {
                frame = 0;
                setVersion((version) => version + 1);
            });
        };
        connect({
            onRecords(records) {
                model.add(records);
                draw();
            },
            onStatus: setStatus,
            onLink: setLink,
        });
    }, []);
    /** Sends a command to the emulator, or runs a function, and shows what goes wrong. */
    const act = async (command, value) => {
        try {
            setProblem('');
            await (typeof command === 'function' ? command() : post(command, value));
        } catch (error) {
            setProblem(error.message);
        }
    };
    const { run } = model;
    const props = { act, run, status };
    return html`
        <${Header} ...${props} link=${link} />
        <p class="problem" role="alert">
            ${problem && html`${problem} <button onClick=${() => setProblem('')}>Dismiss</button>`}</p>
        <main>
            <${GameWindow} ...${props} open=${model.open} />
            <div class="panels">
                <${ClockPanel} ...${props} />
                ${run.state && html`<${PlayersPanel} ...${props} />`}
                ${run.state && html`<${StatePanel} ...${props} />`}
                <${FaultPanel} ...${props} />
                <${CodesPanel} ...${props} />
            </div>
            <${Timeline} model=${model} count=${model.entries.length} act=${act} />
        </main>`;
}

render(html`<${App} />`, document.body);
