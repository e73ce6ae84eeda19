// The history-snapshot dialog in Chromium: with snapshots on, saving a
// customer whose address changed shows the dialog over the card (focus in
// it, the working date proposed); Conferma with a date resumes the save and
// writes the snapshot, Esc closes it by its window and the save goes on
// without one.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { createDatabase, startServer, launchBrowser } from './support/corvina.mjs';

const USER = 'anna';
const PASSWORD = 'Segreta-1';

let db;
let server;
let browser;
let page;

before(async () => {
  db = createDatabase({ users: [[USER, PASSWORD]], actions: [{ param: 'AbilitaStoricoAnagrafiche', value: 1 }] });
  server = await startServer(db.db);
  browser = await launchBrowser();
  page = await browser.context.newPage();
});

after(async () => {
  await browser?.close();
  await server?.stop();
  db?.remove();
});

const panel = () => page.locator('.panel:not([hidden])');
const field = (name) => panel().locator(`[data-control="${name}"] input`);
const messageBox = () => page.locator('dialog.message-box[open]');
const modalForm = () => page.locator('dialog.modal-form[open]');
const idle = () => page.waitForFunction(() => !document.querySelector('.progress:not([hidden])'));
const snapshots = (id) => db.sql(`SELECT IdRiga, date(DataAnagrafica) AS Data, Indirizzo FROM STDAnagraficheStorico WHERE IdAnagrafica = ${id} ORDER BY IdRiga`);

// Edits the shown customer's address and saves, accepting the warnings,
// until the snapshot dialog shows.
async function saveNewAddress(address) {
  await page.click('.panel:not([hidden]) [data-tool="edit"]');
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-edit');
  await field('txtIndirizzo').fill(address);
  await field('txtIndirizzo').press('Tab');
  await idle();
  await page.click('.panel:not([hidden]) [data-tool="save"]');
  for (;;) {
    await Promise.race([modalForm().waitFor(), messageBox().waitFor()]);
    if (await modalForm().count()) return;
    await messageBox().locator('button', { hasText: 'Sì' }).click();
    await messageBox().waitFor({ state: 'detached' });
  }
}

test('the snapshot dialog over the customer card: Conferma writes the snapshot, Esc saves without one', async () => {
  await page.goto(server.url);
  await page.fill('#login-user', USER);
  await page.fill('#login-password', PASSWORD);
  await page.click('.login-submit');
  await page.click('.menu-item[data-item="AnagraficaClienti"]');
  await panel().locator('.card-toolbar').waitFor();
  await page.click('.panel:not([hidden]) [data-tool="first"]');
  await idle();
  const id = Number(await field('numIdAnagrafica').inputValue());
  const before = snapshots(id);

  await saveNewAddress('Via Nuova 1');
  assert.equal(await modalForm().getAttribute('data-form'), 'SalvaStoricoAnagrafiche');
  // The focus is in the dialog, on the date, which proposes the working date.
  assert.equal(await page.evaluate(() => document.activeElement?.closest('dialog')?.dataset.form), 'SalvaStoricoAnagrafiche');
  const date = modalForm().locator('[data-control="dteDataStoricizzazione"] input');
  assert.match(await date.inputValue(), /^\d\d\/\d\d\/\d{4}$/);
  await date.fill('15/03/2026');
  await date.press('Tab');
  await idle();
  await modalForm().locator('[data-control="cmdConferma"]').click();
  await modalForm().waitFor({ state: 'detached' });
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-browse');
  const after = snapshots(id);
  assert.equal(after.length, before.length + 1);
  assert.deepEqual(after.at(-1), { IdRiga: before.length ? before.at(-1).IdRiga + 1 : 1, Data: '2026-03-15', Indirizzo: after.at(-1).Indirizzo });
  assert.notEqual(after.at(-1).Indirizzo, 'Via Nuova 1', 'the snapshot keeps the address before the change');

  await saveNewAddress('Via Seconda 2');
  await page.keyboard.press('Escape');
  await modalForm().waitFor({ state: 'detached' });
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-browse');
  assert.equal(snapshots(id).length, before.length + 1);
  assert.deepEqual(db.sql(`SELECT Indirizzo FROM STDAnagrafiche WHERE IdAnagrafica = ${id}`), [{ Indirizzo: 'Via Seconda 2' }]);
});
