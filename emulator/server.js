'use strict';

const { createHash, randomBytes } = require('node:crypto');
const fs = require('node:fs');
const http = require('node:http');
const path = require('node:path');

const MAX_BODY_BYTES = 64 << 10;
const BATCH = 1000;  // records in one event
const STATUS_MS = 500;
const TAKEN = ['EADDRINUSE', 'EACCES'];  // the errors of a port that cannot be used
const CURE = 'choose another with --port, or leave it out';

const PAGE = path.join(__dirname, 'page');
const TYPES = { '.html': 'text/html', '.js': 'text/javascript', '.mjs': 'text/javascript', '.css': 'text/css' };

/** The files of the page: its own, and those of the npm packages. */
function findFiles() {
    const files = new Map(fs.readdirSync(PAGE).map((name) => [name, path.join(PAGE, name)]));
    try {
        const preact = path.dirname(require.resolve('preact/package.json'));
        files.set('preact.mjs', path.join(preact, 'dist', 'preact.mjs'));
        files.set('hooks.mjs', path.join(preact, 'hooks', 'dist', 'hooks.mjs'));
        files.set('htm.mjs', path.join(path.dirname(require.resolve('htm')), 'htm.mjs'));
    } catch (cause) {
        throw new Error('the page needs the npm packages preact and htm: run npm install preact htm', { cause });
    }
    return files;
}

/** The policy for the page: scripts are files of ours, but for the import map, which is named by its hash. */
function policyOf(html) {
    const [, map] = /<script type="importmap">([^]*?)<\/script>/.exec(html);
    const hash = createHash('sha256').update(map).digest('base64');
    return `default-src 'none'; script-src 'self' 'sha256-${hash}'; style-src 'self'; connect-src 'self'; ` +
        "img-src data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";
}

/** An answer to a request that cannot be served. */
class Refusal extends Error {
    constructor(status, message) {
        super(message);
        this.status = status;
    }
}

async function readBody(request) {
    if (!/^application\/json\b/.test(request.headers['content-type'] ?? '')) {
        throw new Refusal(415, 'commands are application/json');
    }
    let text = '';
    for await (const chunk of request.setEncoding('utf8')) {
        text += chunk;
        if (text.length > MAX_BODY_BYTES) {
            throw new Refusal(413, `a command has at most ${MAX_BODY_BYTES} bytes`);
        }
    }
    try {
        return JSON.parse(text);
    } catch {
        throw new Refusal(400, 'the command is no JSON');
    }
}

/** Serves the page of a game on 127.0.0.1, under an address that contains a secret. */
class Server {
    #runs;
    #token = randomBytes(16).toString('hex');
    #files = findFiles();
    #headers = {
        'Cache-Control': 'no-store', 'Referrer-Policy': 'no-referrer', 'X-Content-Type-Options': 'nosniff',
        'Cross-Origin-Resource-Policy': 'same-origin',
        'Content-Security-Policy': policyOf(fs.readFileSync(path.join(PAGE, 'index.html'), 'utf8')),
    };

    #server = http.createServer((request, response) => this.#answer(request, response));
    #hosts = [];  // those that a request may name

    constructor(runs) {
        this.#runs = runs;
    }

    async listen(port) {
        await new Promise((resolve, reject) => {
            this.#server.once('error', reject).listen(port, '127.0.0.1', resolve);
        }).catch((error) => {
            const isTaken = TAKEN.includes(error.code);
            throw isTaken ? new Error(`port ${port} cannot be used (${error.code}): ${CURE}`) : error;
        });
        this.#hosts = ['127.0.0.1', 'localhost'].map((name) => `${name}:${this.#server.address().port}`);
        return `http://${this.#hosts[0]}/${this.#token}/`;
    }

    async #answer(request, response) {
        try {
            await this.#route(request, response, this.#check(request));
        } catch (error) {
            const status = error instanceof Refusal ? error.status : 400;
            this.#send(response, 'application/json', JSON.stringify({ error: error.message }), status);
        }
    }

    /** The path under the token. Refuses other hosts, pages of other origins, and who does not know the token. */
    #check({ headers: { host, origin }, url }) {
        if (!this.#hosts.includes(host) || (origin !== undefined && origin !== `http://${host}`)) {
            throw new Refusal(403, 'this is for the page of this machine only');
        }
        const [, token, name] = /^\/([^/?]*)\/([^?]*)/.exec(url) ?? [];
        if (token !== this.#token) {
            throw new Refusal(403, 'the address lacks its token: take the one that the emulator printed');
        }
        return name;
    }

    async #route(request, response, name) {
        if (request.method === 'POST') {
            const answer = await this.#handle(name, await readBody(request));
            return this.#send(response, 'application/json', JSON.stringify(answer ?? null));
        }
        if (request.method !== 'GET') {
            throw new Refusal(405, 'GET and POST are possible');
        }
        if (name === 'events') {
            return this.#subscribe(request, response);
        }
        if (name === 'scenario') {
            return this.#send(response, 'application/json', this.#runs.scenario());
        }
        const file = this.#files.get(name === '' ? 'index.html' : name);
        if (!file) {
            throw new Refusal(404, `there is no ${name}`);
        }
        return this.#send(response, TYPES[path.extname(file)], fs.readFileSync(file));
    }

    #handle(name, value) {
        const own = {
            restart: () => this.#runs.restart(),
            stop: () => this.#runs.stop(),
            clear: () => this.#runs.stream.clear(),
        };
        if (Object.hasOwn(own, name)) {
            return own[name]();
        }
        if (!['answer', 'clock', 'hand', 'step'].includes(name)) {
            throw new Refusal(404, `there is no command ${name}`);
        }
        return this.#runs.command(name, value);
    }

    #send(response, type, body, status = 200) {
        response.writeHead(status, { ...this.#headers, 'Content-Type': `${type}; charset=utf-8` }).end(body);
    }

    // Server-sent events (HTML standard, 9.2): the browser comes back with the number of the last record that it has.
    #subscribe(request, response) {
        const { stream } = this.#runs;
        response.writeHead(200, { 'Content-Type': 'text/event-stream', 'Cache-Control': 'no-store' });
        const waiting = stream.after(Number(request.headers['last-event-id'] ?? 0));
        const flush = () => {
            while (waiting.length > 0 && !response.writableNeedDrain) {
                const batch = waiting.splice(0, BATCH);
                response.write(`id: ${batch.at(-1).n}\ndata: ${JSON.stringify(batch)}\n\n`);
            }
        };
        const unsubscribe = stream.subscribe((record) => {
            waiting.push(record);
            setImmediate(flush);
        });
        response.on('drain', flush);
        const timer = setInterval(() => this.#reportStatus(response), STATUS_MS);
        response.on('close', () => {
            clearInterval(timer);
            unsubscribe();
        });
        response.write('retry: 500\n\n');
        flush();
        void this.#reportStatus(response);
    }

    async #reportStatus(response) {
        const status = await this.#runs.command('status').catch((error) => ({ problem: error.message }));
        response.write(`event: status\ndata: ${JSON.stringify(status)}\n\n`);
    }
}

/** Starts the server. Resolves with the address of the page. */
const serve = (runs, { port }) => new Server(runs).listen(port);

module.exports = { serve };
