// What the page shows, derived from the emulator's records alone.

const KEPT = 100000;
const OUTPUT_LINES = 200;

export const LANES = ['game', 'module', 'service', 'events', 'analytics', 'log'];

const decode = (event) => Object.fromEntries(event.params);
const DID = { answer: 'answered by hand', clock: 'set the clock', hand: 'changed who answers', step: '' };

/** For each kind of record, its lane and a line of text. */
const ENTRIES = {
    start: ({ game, pid }) => ['game', `${game} starts as process ${pid}`],
    call: ({ method, arguments: values }) => ['game', `${method}(${values.join(', ')})`],
    settled: ({ method, how, code, took }) =>
        ['game', `${method} ${how}${code ? ` with ${code}` : ''} after ${took} ms`],
    failed: ({ text }) => ['game', text],
    end: ({ how, code, reason }) => ['game', `the game ${{
        ends: 'ended by itself', fails: `failed: ${reason}`, runs: 'was stopped',
        module: `was ended by the module: ${code ?? 'the time to play was over'}`,
    }[how]}`],
    opened: ({ method, modal }) => ['module', `opens modal ${modal} for ${method}`],
    closed: ({ method, modal }) => ['module', `closes modal ${modal} of ${method}`],
    ended: ({ reason }) =>
        ['module', `ends the game because of ${reason === 'timer' ? 'the time to play' : 'an answer'}`],
    answered: ({ method, how, code }) => ['service', `${how} ${code} to ${method}`],
    waits: ({ modal }) => ['service', `modal ${modal} waits for an answer by hand`],
    rule: ({ modal, rule }) => ['service', `a rule answers modal ${modal}${rule.note ? `: ${rule.note}` : ''}`],
    did: ({ command, value }) => ['service', `${DID[command]} ${JSON.stringify(value)}`.trim()],
    step: ({ doing }) => (doing ? ['service', doing] : []),
    played: () => ['service', 'all steps are done'],
    heard: ({ type, data }) => ['events', `${type}: ${data ?? ''}`],
    reported: ({ event }) => {
        const { api_name: name, error_code: code } = decode(event);
        return ['analytics', `${event.name} ${name ?? ''} ${code ?? ''}`];
    },
    log: ({ level, message }) => ['log', `${level} ${message}`],
    output: ({ stream, text }) => ['log', `${stream}: ${text}`],
    'left out': ({ count }) => ['log', `${count} lines of the log were left out: the game floods it`],
};

/** Everything of one run begins anew with its process. */
const newRun = () => ({
    n: 0, game: '', pid: 0, end: null, codes: {}, methods: [], faults: [], state: null, first: null, begins: new Map(),
    modals: new Map(), met: new Map(), output: [], doing: '', begun: null,
});

export class Model {
    entries = [];
    leftOut = 0;
    run = newRun();
    #time = 0;
    #received = 0;

    /** Takes the next records, oldest first. */
    add(records) {
        records.forEach((record) => this.#take(record));
        this.#received += records.length;
        if (this.entries.length > 1.1 * KEPT) {
            this.#received -= this.entries.length - KEPT;
            this.entries = this.entries.slice(-KEPT);
        }
        this.leftOut = records.at(-1).n - this.#received;
    }

    clear() {
        this.entries = [];
    }

    /** The modals that the player sees, oldest first. */
    get open() {
        return this.run.end ? [] : [...this.run.modals.values()];
    }

    #take(record) {
        TAKE[record.kind]?.(this, record);
        this.#time = record.time || this.#time;
        this.run.begun ??= record.time || null;
        const [lane, text] = ENTRIES[record.kind]?.(record) ?? [];
        if (lane) {
            const clock = (this.#time - (this.run.begun ?? this.#time)) / 1000;
            this.entries.push({ n: record.n, time: this.#time, clock: clock.toFixed(3), lane, text, record });
        }
    }
}

/** What a record changes in the model. */
const TAKE = {
    start: (model, { n, game, pid }) => { model.run = { ...newRun(), n, game, pid }; },
    ready: ({ run }, { state, codes, methods, faults }) =>
        Object.assign(run, { state, first: state, codes, methods, faults }),
    state: ({ run }, { state }) => Object.assign(run, { state }),
    call: ({ run }, { call, time }) => run.begins.set(call, time),
    settled({ run }, record) {
        record.took = record.time - (run.begins.get(record.call) ?? record.time);
        if (record.code !== undefined) {
            run.met.set(record.method, (run.met.get(record.method) ?? new Set()).add(record.code));
        }
    },
    opened: ({ run }, { modal, method, parameters }) =>
        run.modals.set(modal, { modal, method, parameters, isAnswered: false }),
    closed: ({ run }, { modal }) => run.modals.delete(modal),
    answered: ({ run }, { modal }) => Object.assign(run.modals.get(modal) ?? {}, { isAnswered: true }),
    step: ({ run }, { doing }) => Object.assign(run, { doing }),
    output({ run }, { text }) {
        run.output = (run.output.join('\n') + text).split('\n').slice(-OUTPUT_LINES);
    },
    end: ({ run }, record) => Object.assign(run, { end: record }),
};
