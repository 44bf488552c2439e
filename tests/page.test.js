'use strict';

// The emulator's page in a real browser.

const assert = require('node:assert/strict');
const fs = require('node:fs');
const { after, before } = require('node:test');
const { chromium } = require('playwright-core');
const { LOAD, emulate, openGame, printed, sampleGame, testEmulator } = require('./support/emulator');
const { LIMIT_MS } = require('./support/files');

/* global document */

const FLAGS = ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
    '--disable-component-update', '--disable-sync'];
let browser;
before(async () => {
    browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: FLAGS });
});
after(() => browser.close());

/** A test with a page on a game. Errors of the page, and what its policy blocks, fail the test. */
function testPage(title, { source = sampleGame(), args = [], view = {} }, body) {
    testEmulator(title, async () => {
        const { child, ...opened } = await openGame(source, ...args);
        const page = await browser.newPage({ viewport: { width: 1280, height: 900 }, ...view });
        page.setDefaultTimeout(LIMIT_MS);
        const problems = [];
        page.on('pageerror', (error) => problems.push(error.message));
        page.on('console', (message) => message.type() === 'error' && problems.push(message.text()));
        try {
            await page.goto(opened.address);
            const press = (name) => page.getByRole('button', { name, exact: true }).click();
            const sees = (text) => page.getByText(text).first().waitFor();
            const says = (text) => printed(child, (out) => out.includes(text));
            await body({ page, press, sees, says, child, ...opened });
            assert.deepEqual(problems.filter((problem) => !problem.includes('status of 400')), []);
        } finally {
            await page.close();
        }
    });
}

const [AGREES, SIGNS_IN] = ['The game starts and asks for the player service.', 'The game asks who is playing.'];

testPage('a player signs in, cancels and answers late; all plays again', {
    args: ['--manual-clock'],
}, async ({ page, press, sees, says, child, folder }) => {
    await press('Agree');
    await sees(SIGNS_IN);
    await press('Sign in as Mei');
    await says('"playerName":"Mei"');
    await press('Cancel');
    await says('met 1002000001');
    await page.getByText('Any other answer').click();
    await page.getByRole('combobox', { name: 'Answer' }).selectOption('error');
    await page.getByLabel('Code').fill('1002000012');
    await page.getByRole('spinbutton', { name: 'After' }).fill('2.5');
    await page.getByLabel('twice').check();
    await press('Answer');
    await sees('next is due in 2.5 s');
    await press('To the next');
    await says('met 1002000012');
    await sees('The game has ended.');
    const [download] = await Promise.all([page.waitForEvent('download'), press('Save as scenario')]);
    const saved = `${folder}/saved.json`;
    await download.saveAs(saved);
    const byHand = child.text.out.split('\n').slice(1);
    const again = await emulate(['--headless', '--scenario', saved, 'game.js'], folder);
    assert.equal(again.code, 0, again.stdout + fs.readFileSync(saved, 'utf8'));
    assert.deepEqual(again.stdout.split('\n').slice(0, byHand.length - 1), byHand.slice(0, -1));
});

testPage('a page that comes back shows what happened, and two pages the same', {}, async ({
    page, press, sees, address,
}) => {
    await press('Agree');
    await sees(SIGNS_IN);
    const entries = page.getByRole('option');
    const shown = await entries.allTextContents();
    await page.reload();
    await sees(SIGNS_IN);
    assert.deepEqual((await entries.allTextContents()).slice(0, shown.length), shown);
    const second = await browser.newPage();
    await second.goto(address);
    await second.getByRole('button', { name: 'Sign in as Lin' }).click();
    await sees('The game wants to sell something.');
    await press('Restart');
    await second.getByText(AGREES).waitFor();
    await second.close();
});

const HOSTILE = '<img src=x onerror="document.title=1"></pre><script>document.title=2</script>';

testPage('hostile strings are shown as text', {
    source: `${LOAD}
        console.log(${JSON.stringify(HOSTILE)});
        game.prePurchase(context, { productId: ${JSON.stringify(HOSTILE)} });`,
}, async ({ page, sees }) => {
    await sees('The game wants to sell something.');
    assert.ok((await page.getByLabel('Output of the game').textContent()).includes(HOSTILE));
    assert.ok((await page.getByRole('definition').allTextContents()).some((text) => text.includes('onerror=')));
    assert.deepEqual([await page.title(), await page.locator('img').count()], ['Game emulator', 0]);
});

testPage('players, codes, faults, state and the timeline by keyboard', {
    view: { colorScheme: 'dark' },
}, async ({ page, press, says }) => {
    await page.getByText('Error codes met').click();
    await page.getByText('Faults').click();
    await page.getByRole('combobox', { name: 'The next call of' }).selectOption('CloseModalUIExtension');
    await press('Make it fail');
    await press('No network');
    await says('got');
    await page.getByRole('radio', { name: 'Nobody' }).check();
    await press('Cancel');
    await page.getByRole('cell', { name: 'met' }).filter({ hasText: '✓' }).first().waitFor();
    const met = await page.locator('td.met').evaluateAll((cells) =>
        cells.map((cell) => `${cell.parentElement.firstChild.textContent} ${cell.title}`));
    assert.deepEqual(met, ['init SUCCESS 0', 'getLocalPlayer NOT_SIGNED_IN 1002000003']);
    await page.getByText('State and rules').click();
    await page.getByLabel('A rule for requests').fill('{ "whn": {} }');
    await press('Add the rule');
    await page.getByRole('alert').getByText('unknown key \'whn\'').waitFor();
    await page.getByRole('searchbox').fill('settled');
    await page.getByRole('searchbox').fill('getLocalPlayer rejected');
    await page.getByRole('listbox').press('Home');
    assert.match(await page.getByLabel('Details').textContent(), /"code": 1002000003/);
});

testPage('a game that hangs is reported, and restarted; 360 pixels are wide enough', {
    source: `${LOAD} game.init(context).then(() => { for (;;); });`,
    view: { viewport: { width: 360, height: 700 } },
}, async ({ page, press, sees }) => {
    await press('Agree');
    await sees('The game hangs');
    await page.getByText('Faults').click();
    assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), 360);
    await press('Restart');
    await sees('The game runs as process');
    await sees(AGREES);
});

testPage('100,000 entries stay usable', {
    source: `${LOAD}
        const flood = (n) => {
            for (let i = 0; i < 1000; ++i) {
                game.syncTraceId(String(n + i));
            }
            return n < 110000 ? setImmediate(flood, n + 1000) : console.log('flooded');
        };
        flood(0);
        game.init(context);
        setInterval(() => {}, 1000);`,
}, async ({ page, says }) => {
    await says('flooded');
    await page.reload();
    await page.getByText(/[1-9]\d+ earlier records left out/).waitFor();
    await page.getByRole('button', { name: 'Agree', exact: true }).waitFor();
    assert.ok(await page.getByRole('option').count() < 100);
    await page.getByRole('listbox').press('End');
    await page.getByLabel('Details').getByText('syncTraceId').waitFor();
});
