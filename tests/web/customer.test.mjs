// The customer card in Chromium against a real `corvina serve` on a demo
// database: a new customer typed with a bank row (IBAN parts) and a delivery
// address, the account question answered, the warnings accepted, and the
// saved key and ledger account seen on the card and in the database; then the
// history-snapshot dialog shown modally over the card.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { cardSession } from './support/card.mjs';

let db;
let page;
const { panel, field, messageBox, modalForm, idle, logInAndOpen, typeField, typeCell } = cardSession((s) => {
  ({ db, page } = s);
});

test('a new customer with a bank row and an address: the account question and the warnings answered, the key and account shown', async () => {
  await logInAndOpen('AnagraficaClienti');

  await page.click('.panel:not([hidden]) [data-tool="new"]');
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-new');
  await typeField('txtRagioneSociale1', 'Officine Brambilla S.r.l.');
  await typeField('txtCitta', 'Milano');
  await typeField('cdoDivisa', 'EUR');
  await typeField('txtPartitaIva', '03456780372');
  await typeField('cdoCodiceFiscale', '03456780372');

  await panel().locator('[role="tab"]', { hasText: 'Banche/Indirizzi' }).click();
  const banks = panel().locator('[data-control="bdyBancheCliente"]');
  await banks.locator('button', { hasText: 'Aggiungi riga' }).click();
  await banks.locator('tbody tr').first().waitFor();
  const parts = [[1, 'Banca Popolare Ambrosiana'], [7, 'IT'], [8, '60'], [9, 'X'], [10, '5428'], [11, '11101'], [12, '123456']];
  for (const [col, value] of parts) await typeCell(banks, 1, col, value);
  // The card recomposes the IBAN from its parts; the grid shows it.
  await page.waitForFunction(() => document.querySelector(
    '.panel:not([hidden]) [data-control="bdyBancheCliente"] tbody tr:nth-child(1) td:nth-of-type(13)')?.textContent === 'IT60X0542811101000000123456');

  const addresses = panel().locator('[data-control="bdyIndirizzi"]');
  await addresses.locator('button', { hasText: 'Aggiungi riga' }).click();
  await addresses.locator('tbody tr').first().waitFor();
  await typeCell(addresses, 1, 2, 'Sped. Merce');
  await typeCell(addresses, 1, 3, 'Magazzino Brambilla');
  await typeCell(addresses, 1, 5, 'Via Stephenson 94');

  await page.click('.panel:not([hidden]) [data-tool="save"]');
  await messageBox().waitFor();
  assert.equal(await messageBox().getAttribute('data-number'), '150');
  assert.ok((await messageBox().locator('.message-text').textContent()).includes('Officine Brambilla S.r.l.'));
  await messageBox().locator('button', { hasText: 'Sì' }).click();
  // Any warnings left are accepted.
  for (;;) {
    await Promise.race([
      page.waitForSelector('.panel:not([hidden]) .form-view.mode-browse'),
      messageBox().waitFor(),
    ]);
    if (await messageBox().count() === 0) break;
    assert.equal(await messageBox().getAttribute('data-number'), '386');
    await messageBox().locator('button', { hasText: 'Sì' }).click();
    await messageBox().waitFor({ state: 'detached' });
  }
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-browse');

  await panel().locator('[role="tab"]', { hasText: 'Anagrafica' }).first().click();
  const key = Number(await field('numIdAnagrafica').inputValue());
  assert.ok(key > 0);
  await panel().locator('[role="tab"]', { hasText: 'Contabilità' }).click();
  const account = `14.01.${String(key).padStart(5, '0')}`;
  assert.equal(await field('cdoConto').inputValue(), account);
  assert.deepEqual(db.sql(`SELECT A.Cliente, C.CodConto, B.Iban FROM STDAnagrafiche A JOIN STDAnagraficaClienti C ON C.IdAnagrafica = A.IdAnagrafica JOIN STDBancheClienti B ON B.IdAnagrafica = A.IdAnagrafica WHERE A.IdAnagrafica = ${key}`),
    [{ Cliente: 1, CodConto: account, Iban: 'IT60X0542811101000000123456' }]);
  assert.deepEqual(db.sql(`SELECT TipoIndirizzo, RagioneSociale FROM STDAnagIndirizzi WHERE IdAnagrafica = ${key}`),
    [{ TipoIndirizzo: 1, RagioneSociale: 'Magazzino Brambilla' }]);
  assert.deepEqual(db.sql(`SELECT Descrizione FROM STDPianoDeiConti WHERE CodConto = '${account}'`),
    [{ Descrizione: 'Officine Brambilla S.r.l.' }]);
});

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

// With history snapshots on, saving a customer whose address changed shows
// the snapshot dialog over the card (focus in it, the working date
// proposed); Conferma with a date resumes the save and writes the snapshot,
// Esc closes it by its window and the save goes on without one.
test('the snapshot dialog over the customer card: Conferma writes the snapshot, Esc saves without one', async () => {
  db.script([{ param: 'AbilitaStoricoAnagrafiche', value: 1 }]);
  // The card reads the setting when it opens: the one of the test above is
  // closed and opened anew.
  const tab = page.locator('.tab[data-item="AnagraficaClienti"]');
  await tab.locator('.tab-close').click();
  await tab.waitFor({ state: 'detached' });
  await page.click('.menu-item[data-item="AnagraficaClienti"]');
  await panel().locator('.card-toolbar').waitFor();
  await page.click('.panel:not([hidden]) [data-tool="first"]');
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) [data-control="numIdAnagrafica"] input')?.value);
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
