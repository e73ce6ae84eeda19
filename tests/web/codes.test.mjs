// Codes typed where the card keeps them as plain text, in Chromium against a
// real `corvina serve` on a demo database: the customer card's province field
// and the provinces and nations typed into the cells of its address and bank
// grids are refused at the field or at the cell in the lookup's words, keep
// their previous value, and are taken as stored once right.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { cardSession } from './support/card.mjs';

let page;
const { panel, field, logInAndOpen, typeField, typeCell } = cardSession((s) => {
  ({ page } = s);
});

const fieldRefusal = (name) => panel().locator(`[data-control="${name}"] .field-error`);
const valueIs = (name, value) => page.waitForFunction(([n, v]) =>
  document.querySelector(`.panel:not([hidden]) [data-control="${n}"] input`)?.value === v, [name, value]);
const cell = (grid, row, col) => grid.locator(`tbody tr:nth-child(${row}) td:nth-of-type(${col})`);

// The grid's refusal note reads `text`, and only the cell (row, col) is marked.
async function refusedAt(grid, row, col, text) {
  const note = grid.locator('.cell-error');
  await note.waitFor({ state: 'visible' });
  assert.equal(await note.textContent(), text);
  assert.equal(await grid.locator('td.refused').count(), 1);
  assert.equal(await cell(grid, row, col).getAttribute('aria-invalid'), 'true');
  assert.equal(await cell(grid, row, col).getAttribute('title'), text);
}

async function accepted(grid) {
  await grid.locator('.cell-error').waitFor({ state: 'hidden' });
  assert.equal(await grid.locator('td.refused').count(), 0);
}

test('a province field refuses a code that does not exist and takes one that does', async () => {
  await logInAndOpen('AnagraficaClienti');
  await page.click('.panel:not([hidden]) [data-tool="new"]');
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-new');
  await typeField('txtProvincia', 'MI');
  await valueIs('txtProvincia', 'MI');

  await typeField('txtProvincia', 'zz');
  await fieldRefusal('txtProvincia').waitFor();
  assert.equal(await fieldRefusal('txtProvincia').textContent(), 'Prov.: la provincia «zz» non esiste');
  assert.equal(await field('txtProvincia').inputValue(), 'MI', 'the refused code is not kept');
  assert.equal(await field('txtProvincia').getAttribute('aria-invalid'), 'true');

  await typeField('txtProvincia', 'bo');
  await fieldRefusal('txtProvincia').waitFor({ state: 'detached' });
  await valueIs('txtProvincia', 'BO');
});

test('codes typed into grid cells are checked as a coded field checks them, the refusal shown at the cell', async () => {
  // The customer of the test before is still being typed (mode Nuovo).
  await panel().locator('[role="tab"]', { hasText: 'Banche/Indirizzi' }).click();
  const addresses = panel().locator('[data-control="bdyIndirizzi"]');
  await addresses.locator('button', { hasText: 'Aggiungi riga' }).click();
  await addresses.locator('tbody tr').first().waitFor();
  await typeCell(addresses, 1, 3, 'Magazzino Nord');

  // Province (column 8): the catalogue says the column holds provinces.
  await typeCell(addresses, 1, 8, 'XX');
  await refusedAt(addresses, 1, 8, 'Prov: la provincia «XX» non esiste');
  assert.equal(await cell(addresses, 1, 8).textContent(), '', 'the cell keeps its previous value');
  assert.equal(await cell(addresses, 1, 3).textContent(), 'Magazzino Nord');
  // The refused cell is the current one again: typing corrects it.
  assert.ok((await cell(addresses, 1, 8).getAttribute('class')).includes('active'));
  await page.keyboard.type('to');
  await page.keyboard.press('Enter');
  await accepted(addresses);
  await page.waitForFunction(() => document.querySelector(
    '.panel:not([hidden]) [data-control="bdyIndirizzi"] tbody tr:nth-child(1) td:nth-of-type(8)')?.textContent === 'TO');

  // Nation (column 9): a coded column of its own lookup.
  await typeCell(addresses, 1, 9, 'QQ');
  await refusedAt(addresses, 1, 9, 'Naz.: la nazione «QQ» non esiste o non è più valida');
  await typeCell(addresses, 1, 9, 'de');
  await accepted(addresses);
  await page.waitForFunction(() => document.querySelector(
    '.panel:not([hidden]) [data-control="bdyIndirizzi"] tbody tr:nth-child(1) td:nth-of-type(9)')?.textContent === 'DE');

  // The bank grid's nation (column 6) likewise; a blank cell stays allowed.
  const banks = panel().locator('[data-control="bdyBancheCliente"]');
  await banks.locator('button', { hasText: 'Aggiungi riga' }).click();
  await banks.locator('tbody tr').first().waitFor();
  await typeCell(banks, 1, 6, 'ZZ');
  await refusedAt(banks, 1, 6, 'Naz.: la nazione «ZZ» non esiste o non è più valida');
  await typeCell(banks, 1, 1, 'Banca di Prova');
  assert.equal(await banks.locator('td.refused').count(), 1, 'another cell accepted leaves the refusal');
  await typeCell(banks, 1, 6, 'IT');
  await accepted(banks);

  // Leaving the record takes any refusal away.
  await typeCell(banks, 1, 5, 'YY');
  await refusedAt(banks, 1, 5, 'Prov: la provincia «YY» non esiste');
  await page.click('.panel:not([hidden]) [data-tool="cancel"]');
  const box = page.locator('dialog.message-box[open]');
  if (await box.count()) await box.locator('button', { hasText: /Sì|OK/ }).first().click();
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-browse, .panel:not([hidden]) .record-list:not([hidden])');
  assert.equal(await banks.locator('td.refused').count(), 0);
  assert.equal(await banks.locator('.cell-error').isHidden(), true);
});
