'use strict';

// The benchmarks that run from JS. Each has up to three sides, which `prepare` creates for one size: the module, its floor,
// which makes the same calls, and a bare one without the device. Calling a side runs one round and returns a value for each
// of the benchmark's `figures`. `once` runs the module or the floor a single time, to compare their calls. Where only the
// call is measured, its requests stay pending until a reset drops them.

const fs = require('fs');
const path = require('path');

const ROOT = path.dirname(__dirname);
const ICON_ID = 1;
const ICON_COUNTS = { [50 * 102400]: 50, [1 << 24]: 1 };
const PENDING = 10000;
const MIB = 1 << 20;
const PLAYER_INVALID = 1002000015;

// Called only in the process that measures. The process that only reads the list loads nothing.
function load() {
    const out = path.join(ROOT, 'out', process.env.GAMEAPI_BUILD || 'release');
    const [device, module] = [require(path.join(ROOT, 'device')), require(ROOT)];
    const { answerAll } = require(path.join(ROOT, 'device', 'binding.js'));
    const floor = require(path.join(out, 'bench_floors.node'));
    return { answerAll, bare: require(path.join(out, 'bench_bare.node')), device, floor, module };
}

const us = (begin) => (performance.now() - begin) * 1000;
const median = (values) => values.sort((a, b) => a - b)[values.length >> 1];
const text = (length) => 'x'.repeat(length);

function perCall(calls, call) {
    const begin = performance.now();
    for (let i = 0; i < calls; ++i) {
        call();
    }
    return us(begin) / calls;
}

function caught(call) {
    try {
        call();
    } catch (error) {
        return error;
    }
    throw new Error('a call that was to be refused was not');
}

// The sides of a benchmark of one call, until it returns: `call(side)` for module and floor, `callBare` for the bare one.
function oneCall({ bare, device, floor, module }, calls, call, callBare) {
    const time = (run) => {
        const figure = perCall(calls, run);
        device.reset();  // drops what the device recorded
        floor.forget();
        bare.forget();
        return [figure];
    };
    return {
        module: () => time(() => call(module)), floor: () => time(() => call(floor)), bare: () => time(callBare),
        once: { module: () => call(module), floor: () => call(floor) }
    };
}

// Calls that throw.
const refused = (call) => (_, isQuick) => {
    const parts = load();
    const context = parts.device.createAbilityContext();
    return oneCall(parts, isQuick ? 5 : 200, (side) => void caught(() => call(side, context)),
        () => caught(parts.bare.refuse));
};

// The call of a method with one object.
const called = (method, makeObject) => (size, isQuick) => {
    const parts = load();
    const [context, object] = [parts.device.createAbilityContext(), makeObject(size)];
    return oneCall(parts, isQuick ? 5 : 50, (side) => void side[method](context, object),
        () => parts.bare[method](object));
};

const purchaseOf = (size) => ({
    productId: text(size), productType: 1, developerPayload: text(size), reservedInfo: text(size)
});
const roleOf = (size) => Object.fromEntries(['roleId', 'roleName', 'serverId', 'serverName', 'gamePlayerId',
    'teamPlayerId', 'thirdOpenId'].map((name) => [name, text(size)]));

// Keeps `inFlight` round trips running. Returns the median time of one, and how many end per second.
async function trips(start, inFlight, rounds) {
    const times = [];
    const chain = async () => {
        for (let i = 0; i < rounds; ++i) {
            const begin = performance.now();
            await start();
            times.push(us(begin));
        }
    };
    const begin = performance.now();
    await Promise.all(Array.from({ length: inFlight }, chain));
    return [median(times), times.length / us(begin) * 1e6];
}

function tripsAllWays(inFlight, isQuick) {
    const { answerAll, bare, device, floor, module } = load();
    const rounds = isQuick ? 2 : inFlight > 1 ? 1 : 50;
    const context = device.createAbilityContext();
    const bind = (side) => side.bindPlayer(context, 'open-1', 'team-1');
    const measure = async (side) => {
        answerAll({ resultCode: 0 });
        const figures = await trips(() => bind(side), inFlight, rounds);
        device.reset();
        return figures;
    };
    // With its modal open: an answer that overtakes that is more work for the module.
    const once = async (side) => {
        const bound = bind(side);
        await device.modals().at(-1).receive({ resultCode: 0 });
        return bound;
    };
    return {
        module: () => measure(module), floor: () => measure(floor), bare: () => trips(bare.trip, inFlight, rounds),
        once: { module: () => once(module), floor: () => once(floor) }
    };
}

// Events with `count` listeners, from the call that raises one until the last listener is called.
function events(count, isQuick) {
    const { bare, floor, module } = load();
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
    const heard = (raise) => new Promise((resolve) => {
        [awaited, done] = [count, resolve];
        raise();
    });
    const time = async (raise) => {
        const begin = performance.now();
        for (let i = 0; i < rounds; ++i) {
            await heard(raise);
        }
        return [us(begin) / rounds];
    };
    const raiseBy = (side) => () => side.onEventCallback({ resultCode: PLAYER_INVALID, resultInfo: 'changed' });
    return {
        module: () => time(raiseBy(module)), floor: () => time(raiseBy(floor)),
        bare: () => time(() => bare.raise('changed')),
        once: { module: () => heard(raiseBy(module)), floor: () => heard(raiseBy(floor)) }
    };
}

let icon = null;  // kept alive: if it were freed during a login, the login would seem to use less memory

// A login with icons of `size` bytes in total.
function prepareLogin(size) {
    const count = ICON_COUNTS[size];
    icon = new Uint8Array(size / count).map((_, i) => i * 7);
    const accountIcon = { moduleName: 'entry', id: ICON_ID };
    const parts = load();
    const context = parts.device.createAbilityContext({ modules: { entry: { mediaById: { [ICON_ID]: icon } } } });
    parts.bare.setIcon(icon);
    const loginOf = (length) => ({
        showLoginDialog: false, loginPanelType: 2,
        thirdAccountInfos: Array.from({ length }, (_, i) => ({ accountName: `account-${i}`, accountIcon }))
    });
    return { ...parts, context, loginOf, login: loginOf(count) };
}

function logins(size) {
    const { context, login, ...parts } = prepareLogin(size);
    return oneCall(parts, 1, (side) => void side.unionLogin(context, login), () => parts.bare.unionLogin(login));
}

function kibOf(field) {
    const status = fs.readFileSync('/proc/self/status', 'utf8');
    return Number(new RegExp(`^${field}:\\s+(\\d+) kB$`, 'm').exec(status)[1]);
}

// The peak memory of one login, compared with the length of the string that it sends.
function loginPeak(size) {
    const { context, device, login, loginOf, module } = prepareLogin(size);
    module.unionLogin(context, loginOf(0));
    global.gc();
    fs.writeFileSync('/proc/self/clear_refs', '5');
    const before = kibOf('VmRSS');
    module.unionLogin(context, login);
    const peak = kibOf('VmHWM') - before;
    const { unionLoginParam } = device.modals().pop().want.parameters;
    return { module: () => [peak / 1024], floor: () => [unionLoginParam.length / MIB] };
}

// The memory of one pending request, measured over the second 10,000 of them.
const waiting = (start) => () => {
    const ignore = () => {};
    const wave = () => {
        for (let i = 0; i < PENDING; ++i) {
            start().then(ignore);
        }
        global.gc();
        return process.memoryUsage.rss();
    };
    return [(-wave() + wave()) / PENDING];
};

function pending() {
    const { bare, device, floor, module } = load();
    const [context, purchase] = [device.createAbilityContext(), purchaseOf(16)];
    return {
        module: waiting(() => module.prePurchase(context, purchase)),
        floor: waiting(() => floor.prePurchase(context, purchase)),
        bare: waiting(() => bare.wait(JSON.stringify(purchase)))
    };
}

const time = (goal, more = {}) => [{ unit: 'us', goal, ...more }];

module.exports = [
    { work: 'refused init()', figures: time(1.1), sizes: [1], of: 'call', prepare: refused((side) => side.init()) },
    {
        work: 'refused bindPlayer(ctx)', figures: time(1.1), sizes: [1], of: 'call',
        prepare: refused((side, context) => side.bindPlayer(context))
    },
    {
        work: 'prePurchase', figures: time(1.1), sizes: [16, 256, 4096], of: 'bytes a string',
        prepare: called('prePurchase', purchaseOf)
    },
    {
        work: 'savePlayerRole', figures: time(1.1), sizes: [16, 256, 4096], of: 'bytes a string',
        prepare: called('savePlayerRole', roleOf)
    },
    {
        work: 'round trip', sizes: [1, 1000], of: 'in flight', prepare: tripsAllWays,
        figures: [{ unit: 'us', goal: 1.1, name: 'p50' }, { unit: '1/s', goal: 0.91, name: 'throughput' }]
    },
    { work: 'event', figures: time(1.1), sizes: [1, 100, 10000], of: 'listeners', prepare: events },
    {
        work: 'unionLogin', figures: time(1), sizes: Object.keys(ICON_COUNTS).map(Number), of: 'bytes of icons',
        prepare: logins
    },
    {
        work: 'unionLogin peak memory', figures: [{ unit: 'MiB', goal: 1.9 }],
        sizes: Object.keys(ICON_COUNTS).map(Number), of: 'bytes of icons', prepare: loginPeak,
        isMemory: ['module', 'floor']
    },
    {
        work: 'memory of a pending request', figures: [{ unit: 'bytes', goal: 1.1 }], sizes: [PENDING], of: 'pending',
        prepare: pending, isMemory: ['module', 'floor', 'bare']
    }
];
