// Takes the screenshots of docs/screenshots/ from the real client: a demo
// database, `corvina serve`, Chromium. Run from the repository with
// `node tests/web/screenshots.mjs` after building (see docs/web.md).

import path from 'node:path';
import { mkdirSync } from 'node:fs';
import { createDatabase, startServer, launchBrowser, repo } from './support/corvina.mjs';

const out = path.join(repo, 'docs', 'screenshots');
mkdirSync(out, { recursive: true });

const db = createDatabase({ users: [['demo', 'demo']] });
const server = await startServer(db.db);
const browser = await launchBrowser({ viewport: { width: 1280, height: 760 } });
const { page } = browser;
const shot = async (name) => {
  await page.waitForTimeout(250); // the progress bar and focus rings settle
  await page.screenshot({ path: path.join(out, name) });
  console.log(`docs/screenshots/${name}`);
};

try {
  await page.goto(server.url);
  await page.fill('#login-user', 'demo');
  await shot('login.png');

  await page.fill('#login-password', 'demo');
  await page.click('.login-submit');
  await page.click('.menu-item[data-item="AnagraficaVettori"]');
  await page.waitForSelector('.card-toolbar');
  await page.click('[data-tool="first"]');
  await page.waitForFunction(() => /^Codice/.test(document.querySelector('.panel:not([hidden]) .form-subtitle').textContent));
  await page.evaluate(() => document.activeElement.blur());
  await page.mouse.move(900, 700); // no button left hovered
  await shot('carrier-card.png');

  await page.click('[data-tool="new"]');
  await page.waitForSelector('.form-view.mode-new');
  await page.fill('[data-control="txtRagioneSociale1"] input', 'Trasporti Senza Codici');
  await page.fill('[data-control="txtCitta"] input', 'Lecco');
  await page.click('[data-tool="save"]');
  await page.waitForSelector('dialog.message-box[open]');
  await shot('save-warning.png');
  await page.click('dialog.message-box[open] button[data-answer="6"]');
  await page.waitForSelector('.form-view.mode-browse');

  await page.click('.menu-item[data-item="AnagraficaAttivita"]');
  await page.waitForSelector('.panel:not([hidden]) .record-list'); // a card opens on its list
  await page.click('.panel:not([hidden]) [data-tool="first"]');
  await page.waitForSelector('.panel:not([hidden]) .grid tbody tr');
  await page.click('.panel:not([hidden]) .grid tbody tr:first-child td:nth-child(3)');
  await shot('activity-grid.png');

  await page.click('.menu-item[data-item="AnagraficaClienti"]');
  await page.waitForSelector('.panel:not([hidden]) .record-list tbody tr[data-key]');
  await page.evaluate(() => document.activeElement.blur());
  await page.mouse.move(900, 700);
  await shot('record-list.png');
} finally {
  await browser.close();
  await server.stop();
  db.remove();
}
