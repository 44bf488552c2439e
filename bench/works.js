'use strict';

// The benchmarks. Each has two or three sides: the module; its floor, which makes the same calls; and for some a bare
// one, which is plain Node. All have the methods that are measured. For one size, `prepare` gives two functions of a
// side. `run` runs one round, and returns a value for each of the benchmark's `figures`. `once` does the work a single
// time, to compare the calls of module and floor. To measure memory, each side has its own process, because a process
// may keep memory that was freed. The benchmarks without `prepare` are those of native_bench.cpp.

const { randomBytes } = require('crypto');
const fs = require('fs');
const path = require('path');
const { promisify } = require('util');

const ROOT = path.dirname(__dirname);
const BUILD = path.join(ROOT, 'out', process.env.GAMEAPI_BUILD || 'release');
const ICON_COUNTS = { [50 * 102400]: 50, [1 << 24]: 1 };
const PENDING = 10000;
const MIB = 1 << 20;
const PLAYER_INVALID = 1002000015;

// A job of another thread, and events that call each listener later.
function makeBare() {
    const [job, listeners] = [promisify(randomBytes), []];
    return {
        bindPlayer: () => job(1),
        listen: (listener) => listeners.push(listener),
        onEventCallback: ({ resultInfo }) => listeners.forEach((listener) => {
            setImmediate(listener, { event: 0, resultInfo });
        }),
    };
}

/** The device and the sides. Only for a process that measures. */
function load() {
    const [device, module] = [require(path.join(ROOT, 'device')), require(ROOT)];
    const binding = require(path.join(ROOT, 'device', 'binding.js'));
    const floor = require(path.join(BUILD, 'bench_floors.node'));
    return { bare: makeBare(), binding, device, floor, module };
}

const us = (begin) => (performance.now() - begin) * 1000;
const median = (values) => values.sort((a, b) => a - b)[values.length >> 1];

// One call, until it returns. Its requests stay pending until a reset drops them.
function timeCalls({ device, floor }, calls, call) {
    const run = (side) => {
        const begin = performance.now();
        for (let i = 0; i < calls; ++i) {
            call(side);
        }
        const figure = us(begin) / calls;
        device.reset();  // drops what the device recorded
        floor.forget();
        return [figure];
    };
    return { run, once: call };
}

// Calls that throw.
const refused = (call) => (parts, _, isQuick) => {
    const context = parts.device.createAbilityContext();
    return timeCalls(parts, isQuick ? 5 : 200, (side) => {
        try {
            call(side, context);
        } catch {
            // Only the calls count.
        }
    });
};

// The call of a method with one object.
const called = (method, makeObject) => (parts, size, isQuick) => {
    const [context, object] = [parts.device.createAbilityContext(), makeObject(size)];
    return timeCalls(parts, isQuick ? 5 : 50, (side) => void side[method](context, object));
};

const stringsOf = (size, ...names) => Object.fromEntries(names.map((name) => [name, 'x'.repeat(size)]));
const purchaseOf = (size) => ({ productType: 1, ...stringsOf(size, 'productId', 'developerPayload', 'reservedInfo') });
const roleOf = (size) => stringsOf(
    size, 'roleId', 'roleName', 'serverId', 'serverName', 'gamePlayerId', 'teamPlayerId', 'thirdOpenId');

// Keeps `inFlight` round trips running. Takes the median time of one, and how many end per second.
function roundTrips({ binding, device }, inFlight, isQuick) {
    const rounds = isQuick ? 2 : inFlight > 1 ? 1 : 50;
    const context = device.createAbilityContext();
    const bind = (side) => side.bindPlayer(context, 'open-1', 'team-1');
    const run = async (side) => {
        const times = [];
        const chain = async () => {
            for (let i = 0; i < rounds; ++i) {
                const begin = performance.now();
                await bind(side);
                times.push(us(begin));
            }
        };
        binding.answerAll({ resultCode: 0 });
        const begin = performance.now();
        await Promise.all(Array.from({ length: inFlight }, chain));
        const throughput = times.length / us(begin) * 1e6;
        device.reset();
        return [median(times), throughput];
    };
    // With its modal open: an answer that overtakes that is more work for the module.
    const once = async (side) => {
        const bound = bind(side);
        await device.modals().at(-1).receive({ resultCode: 0 });
        return bound;
    };
    return { run, once };
}

// Events with `count` listeners, from the call that raises one until the last listener is called.
function events({ bare, floor, module }, count, isQuick) {
    const rounds = isQuick ? 1 : Math.max(1, 50 / count >> 0);
    let [awaited, done] = [0, null];
    const listener = () => () => {
        if (--awaited === 0) {
            done();
        }
    };
    for (let i = 0; i < count; ++i) {
        module.on('playerChanged', listener());
        floor.listen(listener());
        bare.listen(listener());
    }
    const once = (side) => new Promise((resolve) => {
        [awaited, done] = [count, resolve];
        side.onEventCallback({ resultCode: PLAYER_INVALID, resultInfo: 'changed' });
    });
    const run = async (side) => {
        const begin = performance.now();
        for (let i = 0; i < rounds; ++i) {
            await once(side);
        }
        return [us(begin) / rounds];
    };
    return { run, once };
}

let icon = null;  // kept alive: if it were freed during a login, the login would seem to use less memory

// A login with icons of `size` bytes in total, and one without.
function prepareLogin({ device }, size) {
    const count = ICON_COUNTS[size];
    icon = new Uint8Array(size / count).map((_, i) => i * 7);
    const accountIcon = { moduleName: 'entry', id: 1 };
    const [login, empty] = [count, 0].map((length) => ({
        showLoginDialog: false, loginPanelType: 2,
        thirdAccountInfos: Array.from({ length }, (_, i) => ({ accountName: `account-${i}`, accountIcon })),
    }));
    return { login, empty, context: device.createAbilityContext({ modules: { entry: { mediaById: { 1: icon } } } }) };
}

function logins(parts, size) {
    const { context, login } = prepareLogin(parts, size);
    return timeCalls(parts, 1, (side) => void side.unionLogin(context, login));
}

// The peak memory of one login. Its floor is the length of the string that it sends.
function loginPeak({ device, floor, module }, size) {
    const { context, login, empty } = prepareLogin({ device }, size);
    const run = (side) => {
        module.unionLogin(context, empty);
        global.gc();
        fs.writeFileSync('/proc/self/clear_refs', '5');  // the peak starts anew
        const before = process.memoryUsage.rss();
        module.unionLogin(context, login);
        const [, kib] = /^VmHWM:\s+(\d+) kB$/m.exec(fs.readFileSync('/proc/self/status', 'utf8'));
        const { unionLoginParam } = device.modals().pop().want.parameters;
        return [(side === floor ? unionLoginParam.length : kib * 1024 - before) / MIB];
    };
    return { run };
}

// The memory of one pending request, measured over the second 10,000 of them.
function pending({ device }) {
    const [context, purchase] = [device.createAbilityContext(), purchaseOf(16)];
    const ignore = () => {};
    const wave = (side) => {
        for (let i = 0; i < PENDING; ++i) {
            side.prePurchase(context, purchase).then(ignore);
        }
        global.gc();
        return process.memoryUsage.rss();
    };
    return { run: (side) => [(-wave(side) + wave(side)) / PENDING] };
}

const DEFAULTS = { figures: [{ unit: 'us', goal: 1.1 }], sides: ['module', 'floor'], sizes: [1], of: 'call' };
const TIME_AT_MOST_FLOOR = [{ unit: 'us', goal: 1 }];
const ALL_SIDES = [...DEFAULTS.sides, 'bare'];
const STRINGS = { sizes: [16, 256, 4096], of: 'bytes a string' };
const ICONS = { sizes: Object.keys(ICON_COUNTS).map(Number), of: 'bytes of icons' };

const works = [
    { work: 'refused init()', prepare: refused((side) => side.init()) },
    { work: 'refused bindPlayer(ctx)', prepare: refused((side, context) => side.bindPlayer(context)) },
    { work: 'prePurchase', ...STRINGS, prepare: called('prePurchase', purchaseOf) },
    { work: 'savePlayerRole', ...STRINGS, prepare: called('savePlayerRole', roleOf) },
    {
        work: 'round trip', sides: ALL_SIDES, sizes: [1, 1000], of: 'in flight', prepare: roundTrips,
        figures: [{ unit: 'us', goal: 1.1, name: 'p50' }, { unit: '1/s', goal: 0.91, name: 'throughput' }],
    },
    { work: 'event', sides: ALL_SIDES, sizes: [1, 100, 10000], of: 'listeners', prepare: events },
    { work: 'unionLogin', figures: TIME_AT_MOST_FLOOR, ...ICONS, prepare: logins },
    {
        work: 'unionLogin peak memory', figures: [{ unit: 'MiB', goal: 1.9 }], ...ICONS, prepare: loginPeak,
        isMemory: true,
    },
    {
        work: 'memory of a pending request', figures: [{ unit: 'bytes', goal: 1.1 }], sizes: [PENDING], of: 'pending',
        prepare: pending, isMemory: true,
    },
    { work: 'Base64Encode', figures: TIME_AT_MOST_FLOOR, sizes: [1 << 10, 1 << 15, 1 << 20, 1 << 24], of: 'bytes' },
    { work: 'IsValidEnv', sizes: [1, 8, 64], of: 'environments' },
    { work: 'log line', sizes: [32, 256], of: 'bytes of text' },
].map((work) => ({ ...DEFAULTS, ...work }));

module.exports = { BUILD, load, median, works };
