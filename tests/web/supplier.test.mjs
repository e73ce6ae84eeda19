// The supplier card in Chromium against a real `corvina serve` on a demo
// database: a new supplier whose bank row is chosen in the bank search opened
// from the card's tool bar ("&Abilita Ricerca Banca"), its IBAN completed and
// the account question answered, then the rows written; and the bank grid's
// own "Ricerca Banca" on the supplier saved, searching by ABI and CAB.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { cardSession } from './support/card.mjs';

let db;
let page;
const { panel, field, messageBox, modalForm, idle, logInAndOpen, typeField, typeCell } = cardSession((s) => {
  ({ db, page } = s);
});

const menu = () => page.locator('.popup-menu');
const banks = () => panel().locator('[data-control="BdyBancheFornitore"]');
const cellText = (grid, row, col) => grid.locator(`tbody tr:nth-child(${row}) td:nth-of-type(${col})`).textContent();

// In the bank search dialog: searches `text`, picks the listed branch `row`
// (1-based) and hands it to the card with Seleziona.
async function chooseBranch(text, row) {
  await modalForm().waitFor();
  assert.equal(await modalForm().getAttribute('data-form'), 'SceltaBanche');
  const search = modalForm().locator('[data-control="txtRicerca"] input');
  await search.fill(text);
  await search.press('Tab');
  await idle();
  const list = modalForm().locator('[data-control="bdyBanche"]');
  await list.locator(`tbody tr:nth-child(${row})`).waitFor();
  await list.locator(`tbody tr:nth-child(${row}) td`).first().click();
  await idle();
  await modalForm().locator('[data-control="cmdSeleziona"]').click();
  await modalForm().waitFor({ state: 'detached' });
  await idle();
}

test('a new supplier with its bank chosen in the bank search: the account question answered, the rows written', async () => {
  await logInAndOpen('AnagraficaFornitori');

  await page.click('.panel:not([hidden]) [data-tool="new"]');
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-new');
  await typeField('txtRagioneSociale1', 'Carpenterie Felsinee S.r.l.');
  await typeField('txtCitta', 'Bologna');
  await typeField('txtPartitaIva', '04512370133');
  await panel().locator('[role="tab"]', { hasText: 'Contabilità' }).click();
  await typeField('cdoDivisa', 'EUR');

  // The tool bar item searches for the bank grid's current row; on an empty
  // grid the branch becomes a new row.
  await panel().locator('[role="tab"]', { hasText: 'Banche/Indirizzi' }).click();
  await panel().locator('[data-tool="popup"]').click();
  await menu().waitFor();
  const search = menu().locator('.popup-item[data-key="&Abilita Ricerca Banca"]');
  assert.equal(await search.textContent(), 'Abilita Ricerca Banca', 'the accelerator mark is not shown');
  await search.click();
  await chooseBranch('bologna', 2);
  await banks().locator('tbody tr').first().waitFor();
  assert.equal(await cellText(banks(), 1, 1), 'UniCredit');
  assert.equal(await cellText(banks(), 1, 2), 'Bologna Rizzoli');
  assert.equal(await cellText(banks(), 1, 10), '02008');
  assert.equal(await cellText(banks(), 1, 11), '02400');

  for (const [col, value] of [[7, 'IT'], [8, '04'], [9, 'S'], [12, '4471920']]) await typeCell(banks(), 1, col, value);
  // The IBAN is recomposed from the branch's ABI and CAB and the parts typed.
  await page.waitForFunction(() => document.querySelector(
    '.panel:not([hidden]) [data-control="BdyBancheFornitore"] tbody tr:nth-child(1) td:nth-of-type(13)')?.textContent === 'IT04S0200802400000004471920');

  await page.click('.panel:not([hidden]) [data-tool="save"]');
  await messageBox().waitFor();
  assert.equal(await messageBox().getAttribute('data-number'), '150');
  await messageBox().locator('button', { hasText: 'Sì' }).click();
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-browse');
  assert.equal(await messageBox().count(), 0, 'no warning and no error');

  const rows = db.sql(`SELECT A.IdAnagrafica, A.Fornitore, A.IdBancaDefault, F.CodConto, B.IdBanca, B.Descrizione,
      B.Agenzia, B.Indirizzo, B.Citta, B.CodNazione, B.Iban
    FROM STDAnagrafiche A JOIN STDAnagraficaFornitori F ON F.IdAnagrafica = A.IdAnagrafica
    JOIN STDBancheFornitori B ON B.IdAnagrafica = A.IdAnagrafica WHERE A.PartitaIva = '04512370133'`);
  assert.equal(rows.length, 1);
  const key = rows[0].IdAnagrafica;
  assert.deepEqual(rows[0], {
    IdAnagrafica: key, Fornitore: 1, IdBancaDefault: null, CodConto: `40.01.${String(key).padStart(5, '0')}`,
    IdBanca: rows[0].IdBanca, Descrizione: 'UniCredit', Agenzia: 'Bologna Rizzoli', Indirizzo: 'Via Rizzoli 2',
    Citta: 'Bologna', CodNazione: 'IT', Iban: 'IT04S0200802400000004471920',
  });
  await panel().locator('[role="tab"]', { hasText: 'Anagrafica' }).first().click();
  assert.equal(Number(await field('numIdAnagrafica').inputValue()), key);
});

test('the bank grid\'s own "Ricerca Banca" on the supplier saved fills a second row by ABI and CAB', async () => {
  await page.click('.panel:not([hidden]) [data-tool="edit"]');
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-edit');
  const id = Number(await panel().locator('[data-control="numIdAnagrafica"] input').inputValue());
  await panel().locator('[role="tab"]', { hasText: 'Banche/Indirizzi' }).click();
  await banks().locator('button', { hasText: 'Aggiungi riga' }).click();
  // The saved bank is row 1; the added row shows once the server answers.
  await banks().locator('tbody tr').nth(1).waitFor();
  const row = await banks().locator('tbody tr').count();
  assert.equal(row, 2);
  await banks().locator(`tbody tr:nth-child(${row}) td`).first().click({ button: 'right' });
  await menu().waitFor();
  await menu().locator('.popup-item', { hasText: 'Ricerca Banca' }).click();
  await chooseBranch('05034 11100', 1);
  assert.equal(await cellText(banks(), row, 1), 'Banco BPM');
  assert.equal(await cellText(banks(), row, 2), 'Bergamo Porta Nuova');

  await page.click('.panel:not([hidden]) [data-tool="save"]');
  // The new row has no IBAN yet: nothing to warn about.
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-browse');
  assert.equal(await messageBox().count(), 0);
  assert.deepEqual(db.sql(`SELECT Descrizione, Agenzia, Citta, CodAbi, CodCab FROM STDBancheFornitori
      WHERE IdAnagrafica = ${id} ORDER BY IdBanca`),
    [{ Descrizione: 'UniCredit', Agenzia: 'Bologna Rizzoli', Citta: 'Bologna', CodAbi: '02008', CodCab: '02400' },
      { Descrizione: 'Banco BPM', Agenzia: 'Bergamo Porta Nuova', Citta: 'Bergamo', CodAbi: '05034', CodCab: '11100' }]);
});
