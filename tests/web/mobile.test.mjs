// The web client on a phone (390 px wide) in Chromium against a real `corvina
// serve`: the menu lies over the page and goes away once an item is chosen,
// the card and its record list show whole (nothing cut or pushed sideways), its tool bar folds
// into one menu that still runs the commands, and a grid wider than the
// screen scrolls inside its own frame.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { createDatabase, startServer, launchBrowser } from './support/corvina.mjs';

const WIDTH = 390;
let db;
let server;
let browser;
let page;

before(async () => {
  db = createDatabase({ users: [['anna', 'Segreta-1']] });
  server = await startServer(db.db);
  browser = await launchBrowser({ viewport: { width: WIDTH, height: 844 } });
  page = browser.page;
  await page.goto(server.url);
  await page.fill('#login-user', 'anna');
  await page.fill('#login-password', 'Segreta-1');
  await page.click('.login-submit');
  await page.locator('.topbar').waitFor();
});

after(async () => {
  await browser?.close();
  await server?.stop();
  db?.remove();
});

const panel = () => page.locator('.panel:not([hidden])');

// What sticks out of the screen sideways: the page's own overflow and every
// visible field or tool whose box is not within 0..WIDTH.
function outside() {
  return page.evaluate((width) => {
    const out = [];
    if (document.documentElement.scrollWidth > width) out.push(`page ${document.documentElement.scrollWidth}px`);
    for (const el of document.querySelectorAll('.panel:not([hidden]) :is(.field, .frame, .frame-title, .grid-box, .record-list, .toolbar > :not([hidden]))')) {
      const r = el.getBoundingClientRect();
      if (r.width === 0 || getComputedStyle(el).display === 'none') continue;
      if (r.left < -0.5 || r.right > width + 0.5) out.push(`${el.dataset.control || el.className} ${Math.round(r.left)}..${Math.round(r.right)}`);
    }
    return out;
  }, WIDTH);
}

async function openFromMenu(item) {
  await page.click('.topbar [aria-label="Mostra o nascondi il menu"]');
  const entry = page.locator(`.menu-item[data-item="${item}"]`);
  await entry.waitFor({ state: 'visible' });
  await entry.click();
  await page.locator(`.tab[data-item="${item}"][aria-selected="true"]`).waitFor();
  await panel().locator('.card-toolbar').waitFor();
}

test('at 390 px the menu closes on a choice, the card shows whole and its tool bar folds into one menu that works', async () => {
  // The menu starts put away, opens over the page, and goes once an item is chosen.
  assert.equal(await page.locator('.sidebar').isVisible(), false);
  await openFromMenu('AnagraficaVettori');
  await page.waitForFunction(() => getComputedStyle(document.querySelector('.sidebar')).visibility === 'hidden');
  // The card opens on its list, which fits the screen too.
  await panel().locator('.record-list tbody tr[data-key]').first().waitFor();

  assert.equal(await panel().locator('[data-tool="new"]').isVisible(), false, 'the record buttons are folded');
  const bar = await panel().locator('.card-toolbar').boundingBox();
  assert.ok(bar.height < 50, `the tool bar keeps to one line (${bar.height}px)`);
  assert.deepEqual(await outside(), []);

  // The folded menu runs the commands, in the card's state.
  await panel().locator('[data-tool="commands"]').click();
  const menu = page.locator('.popup-menu');
  await menu.waitFor();
  const items = await menu.locator('.popup-item').evaluateAll((els) => els.map((e) => [e.textContent, e.disabled]));
  assert.deepEqual(items.slice(0, 6), [['Elenco', false], ['Nuovo', false], ['Modifica', true], ['Salva', true], ['Elimina', true], ['Annulla', true]]);
  const menuBox = await menu.boundingBox();
  assert.ok(menuBox.x >= 0 && menuBox.x + menuBox.width <= WIDTH, 'the menu fits the screen');
  await menu.locator('.popup-item', { hasText: 'Nuovo' }).click();
  await panel().locator('.form-view.mode-new').waitFor();
  assert.deepEqual(await outside(), [], 'the card in new mode shows whole too');
  if (process.env.CORVINA_SHOT) await page.screenshot({ path: process.env.CORVINA_SHOT, fullPage: true });
  await panel().locator('[data-tool="commands"]').click();
  await menu.waitFor();
  await menu.locator('.popup-item', { hasText: 'Annulla' }).click();
  await panel().locator('.form-view.mode-browse').waitFor();
});

test('at 390 px a grid wider than the screen scrolls inside its frame', async () => {
  await openFromMenu('AnagraficaAttivita');
  await panel().locator('[data-tool="commands"]').click();
  await page.locator('.popup-menu .popup-item', { hasText: 'Prima scheda' }).click();
  const grid = panel().locator('[data-control="bdyDettaglio"]');
  await grid.locator('tbody tr').first().waitFor();
  assert.deepEqual(await outside(), []);
  const scroll = await grid.locator('.grid-scroll').evaluate((el) => ({ inner: el.scrollWidth, shown: el.clientWidth }));
  assert.ok(scroll.inner > scroll.shown, `the rows are wider than the frame and scroll in it (${scroll.inner} > ${scroll.shown})`);
});
