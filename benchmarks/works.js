'use strict';

// What is measured from JS. A work is done by two sides, the module and its floor; `prepare` makes them for one size.
// A side does the work once and returns its figures, one for each of the work's `figures`. Requests are left pending
// where only the call counts: a reset forgets them.

const fs = require('fs');
const path = require('path');

const ROOT = path.dirname(__dirname);
const ICON_ID = 1;
const ICON_COUNTS = { [50 * 102400]: 50, [1 << 24]: 1 };
const PENDING = 10000;
const MIB = 1 << 20;
const PLAYER_INVALID = 1002000015;

// In the process that measures; the one that only reads the list loads nothing.
function load() {
    const build = process.env.GAMEAPI_BUILD || 'release';
    const [device, game] = [require(path.join(ROOT, 'device')), require(ROOT)];
    const { answerAll } = require(path.join(ROOT, 'device', 'binding.js'));
    return { answerAll, device, game, floors: require(path.join(ROOT, 'out', build, 'bench_floors.node')) };
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

// Calls that throw.
const refused = (call) => (_, isQuick) => {
    const { game, device, floors } = load();
    const calls = isQuick ? 5 : 200;
    const context = device.createAbilityContext();
    return {
        module() {
            const time = perCall(calls, () => caught(() => call(game, context)));
            device.reset();  // of what the device recorded
            return [time];
        },
        floor: () => [perCall(calls, () => caught(floors.refuse))]
    };
};

// The call of a method with one object, up to its return.
const called = (method, makeObject) => (size, isQuick) => {
    const { game, device, floors } = load();
    const calls = isQuick ? 5 : 50;
    const [context, object] = [device.createAbilityContext(), makeObject(size)];
    return {
        module() {
            const time = perCall(calls, () => game[method](context, object));
            device.reset();
            return [time];
        },
        floor() {
            const time = perCall(calls, () => floors[method](object));
            floors.forget();
            return [time];
        }
    };
};

const purchaseOf = (size) => ({
    productId: text(size), productType: 1, developerPayload: text(size), reservedInfo: text(size)
});
const roleOf = (size) => Object.fromEntries(['roleId', 'roleName', 'serverId', 'serverName', 'gamePlayerId',
    'teamPlayerId', 'thirdOpenId'].map((name) => [name, text(size)]));

// Round trips, `inFlight` of them at any time: the median time of one, and how many end in a second.
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

function tripsBothWays(inFlight, isQuick) {
    const { answerAll, game, device, floors } = load();
    const rounds = isQuick ? 2 : inFlight > 1 ? 3 : 50;
    const context = device.createAbilityContext();
    return {
        async module() {
            answerAll({ resultCode: 0 });
            const figures = await trips(() => game.bindPlayer(context, 'open-1', 'team-1'), inFlight, rounds);
            device.reset();
            return figures;
        },
        floor: () => trips(floors.trip, inFlight, rounds)
    };
}

// Events to `count` listeners, from the call that raises one to the last listener.
function events(count, isQuick) {
    const { game, floors } = load();
    const rounds = isQuick ? 1 : Math.max(1, 50 / count >> 0);
    let [awaited, done] = [0, null];
    const listener = () => () => {
        if (--awaited === 0) {
            done();
        }
    };
    for (let i = 0; i < count; ++i) {
        game.on('playerChanged', listener());
        floors.listen(listener());
    }
    const time = async (raise) => {
        const begin = performance.now();
        for (let i = 0; i < rounds; ++i) {
            awaited = count;
            await new Promise((resolve) => {
                done = resolve;
                raise();
            });
        }
        return [us(begin) / rounds];
    };
    return {
        module: () => time(() => game.onEventCallback({ resultCode: PLAYER_INVALID, resultInfo: 'changed' })),
        floor: () => time(() => floors.raise('changed'))
    };
}

let icon = null;  // kept: freed meanwhile, it would hide as much of what a login takes

// A login with icons of `size` bytes in all.
function prepareLogin(size) {
    const count = ICON_COUNTS[size];
    icon = new Uint8Array(size / count).map((_, i) => i * 7);
    const accountIcon = { moduleName: 'entry', id: ICON_ID };
    const { game, device, floors } = load();
    const context = device.createAbilityContext({ modules: { entry: { mediaById: { [ICON_ID]: icon } } } });
    floors.setIcon(icon);
    const loginOf = (length) => ({
        showLoginDialog: false, loginPanelType: 2,
        thirdAccountInfos: Array.from({ length }, (_, i) => ({ accountName: `account-${i}`, accountIcon }))
    });
    const run = (length = count) => game.unionLogin(context, loginOf(length));
    return { device, floors, run, runFloor: () => floors.unionLogin(loginOf(count)) };
}

function logins(size) {
    const { device, floors, run, runFloor } = prepareLogin(size);
    return {
        module() {
            const time = perCall(1, run);
            device.reset();
            return [time];
        },
        floor() {
            const time = perCall(1, runFloor);
            floors.forget();
            return [time];
        }
    };
}

function kibOf(field) {
    const status = fs.readFileSync('/proc/self/status', 'utf8');
    return Number(new RegExp(`^${field}:\\s+(\\d+) kB$`, 'm').exec(status)[1]);
}

// The most memory that one login takes, against the length of its text.
function loginPeak(size) {
    const { device, run } = prepareLogin(size);
    run(0);
    global.gc();
    fs.writeFileSync('/proc/self/clear_refs', '5');
    const before = kibOf('VmRSS');
    run();
    const peak = kibOf('VmHWM') - before;
    const { unionLoginParam } = device.modals().pop().want.parameters;
    return { module: () => [peak / 1024], floor: () => [unionLoginParam.length / MIB] };
}

// The memory of a request that waits, of the second 10,000 of them.
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
    const { game, device, floors } = load();
    const [context, purchase] = [device.createAbilityContext(), purchaseOf(16)];
    return {
        module: waiting(() => game.prePurchase(context, purchase)),
        floor: waiting(() => floors.wait(JSON.stringify(purchase)))
    };
}

const time = (goal, more = {}) => [{ unit: 'us', goal, ...more }];

module.exports = [
    { work: 'refused init()', figures: time(2), sizes: [1], of: 'call', prepare: refused((game) => game.init()) },
    {
        work: 'refused bindPlayer(ctx)', figures: time(2), sizes: [1], of: 'call',
        prepare: refused((game, context) => game.bindPlayer(context))
    },
    {
        work: 'prePurchase', figures: time(1.5), sizes: [16, 256, 4096], of: 'bytes a text',
        prepare: called('prePurchase', purchaseOf)
    },
    {
        work: 'savePlayerRole', figures: time(1.5), sizes: [16, 256, 4096], of: 'bytes a text',
        prepare: called('savePlayerRole', roleOf)
    },
    {
        work: 'round trip', sizes: [1, 1000], of: 'in flight', prepare: tripsBothWays,
        figures: [{ unit: 'us', goal: 1.5, name: 'p50' }, { unit: '1/s', goal: 0.6, name: 'throughput' }]
    },
    { work: 'event', figures: time(1.3), sizes: [1, 100, 10000], of: 'listeners', prepare: events },
    {
        work: 'unionLogin', figures: time(1.15), sizes: Object.keys(ICON_COUNTS).map(Number), of: 'bytes of icons',
        prepare: logins
    },
    {
        work: 'unionLogin peak memory', figures: [{ unit: 'MiB', goal: 3 }],
        sizes: Object.keys(ICON_COUNTS).map(Number), of: 'bytes of icons', prepare: loginPeak, isMemory: true
    },
    {
        work: 'memory of a pending request', figures: [{ unit: 'bytes', goal: 1.3 }], sizes: [PENDING], of: 'pending',
        prepare: pending, isMemory: true
    }
];
