// The contact card in Chromium against a real `corvina serve` on a demo
// database: a contact converted into a customer from the card's popup menu
// (message 918, the item then disabled) and opened on the customer card with
// its new ledger account; a duplicate opened from the duplicates grid in a
// tab of its own.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { cardSession, USER, PASSWORD } from './support/card.mjs';

let db;
let server;
let page;
const { panel, field, messageBox } = cardSession((s) => {
  ({ db, server, page } = s);
});

// Every test works logged in; the first one logs in.
let loggedIn = false;
async function logIn() {
  if (loggedIn) return;
  await page.goto(server.url);
  await page.fill('#login-user', USER);
  await page.fill('#login-password', PASSWORD);
  await page.click('.login-submit');
  loggedIn = true;
}

const menu = () => page.locator('.popup-menu');

// Opens `item` from the menu and shows the record found by `text`.
async function openRecord(item, text, id) {
  await page.click(`.menu-item[data-item="${item}"]`);
  // The item's own tab is shown before anything is typed into it.
  await page.locator(`.tab[aria-selected="true"][data-item="${item}"]`).waitFor();
  await panel().locator('.card-toolbar').waitFor();
  await panel().locator('.find-input').fill(text);
  await panel().locator('.find-input').press('Enter');
  await page.waitForFunction((want) => document.querySelector('.panel:not([hidden]) .form-subtitle')?.textContent === want, `Codice ${id}`);
}

// The card's popup menu: its items as [caption, enabled].
async function cardMenu() {
  await panel().locator('[data-tool="popup"]').click();
  await menu().waitFor();
  const items = [];
  for (const b of await menu().locator('.popup-item').all()) items.push([await b.textContent(), await b.isEnabled()]);
  return items;
}

test('a contact converted into a customer from the popup menu, then opened on the customer card', async () => {
  await logIn();
  await openRecord('AnagraficaContatti', 'Caruso', 31);
  assert.deepEqual(await cardMenu(), [['Converti In Cliente', true], ['Sincronizza Contatto In Outlook', true]]);
  await menu().locator('.popup-item', { hasText: 'Converti In Cliente' }).click();
  await messageBox().waitFor();
  assert.equal(await messageBox().getAttribute('data-number'), '918');
  assert.equal(await messageBox().locator('.message-text').textContent(), 'Il contatto è stato convertito in cliente.');
  await messageBox().locator('button', { hasText: 'OK' }).click();
  await messageBox().waitFor({ state: 'detached' });
  await page.waitForFunction(() => !document.querySelector('.progress:not([hidden])'));
  // The card is shown again with the contact converted before its menu is read.
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) [data-control="ckbConvertitoInCliente"] input')?.checked);

  // The item stays, disabled; the card shows the contact as converted.
  assert.deepEqual(await cardMenu(), [['Converti In Cliente', false], ['Sincronizza Contatto In Outlook', true]]);
  await page.keyboard.press('Escape');
  assert.equal(await panel().locator('[data-control="ckbConvertitoInCliente"] input').isChecked(), true);
  assert.deepEqual(db.sql('SELECT A.Cliente, A.Contatto, C.CodConto FROM STDAnagrafiche A JOIN STDAnagraficaClienti C ON C.IdAnagrafica = A.IdAnagrafica WHERE A.IdAnagrafica = 31'),
    [{ Cliente: 1, Contatto: 1, CodConto: '14.01.00031' }]);

  await openRecord('AnagraficaClienti', 'Caruso', 31);
  assert.equal(await field('txtRagioneSociale1').inputValue(), 'Caruso Antonio');
  await panel().locator('[role="tab"]', { hasText: 'Contabilità' }).click();
  assert.equal(await field('cdoConto').inputValue(), '14.01.00031');
});

test('"Apri Anagrafica" on the duplicates grid opens the duplicate in a tab of its own', async () => {
  await logIn();
  // Contact 90 has the VAT number of contact 30.
  await openRecord('AnagraficaContatti', 'Nuova Edilizia Fontana', 30);
  await panel().locator('[role="tab"]', { hasText: 'Anagrafiche Doppie' }).click();
  const grid = panel().locator('[data-control="bdyAnagraficheDoppie"]');
  await grid.locator('tbody tr').first().waitFor();
  await grid.locator('tbody tr:nth-child(1) td').first().click({ button: 'right' });
  await menu().waitFor();
  await menu().locator('.popup-item', { hasText: 'Apri Anagrafica' }).click();
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) .form-subtitle')?.textContent === 'Codice 90');
  assert.equal(await field('txtRagioneSociale1').inputValue(), 'Edilizia Fontana Nuova S.r.l.');
  assert.equal(await page.locator('.tab[data-item="AnagraficaContatti"]').count(), 2);
});
