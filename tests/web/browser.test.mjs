// The web client in Chromium against a real `corvina serve` on a temporary
// database: logging in (and being refused), the carrier card's save warning
// answered from the browser, the refusal to delete a carrier named on a sales
// document, a value refused under the field, a coded field's check, and a
// lookup's search list. Each test asserts on what the user sees and, where a save is
// involved, on the rows in the database.

import { test, before, after, beforeEach, afterEach } from 'node:test';
import assert from 'node:assert/strict';
import { createDatabase, startServer, launchBrowser } from './support/corvina.mjs';

const USER = 'anna';
const PASSWORD = 'Segreta-1';
const IN_USE = { id: 500, name: 'Trasporti In Uso S.r.l.' };

let db;
let server;
let browser;
let page;
let faults; // script errors and refused resources seen by the page

before(async () => {
  // A carrier named as second carrier on the tail of a sales document.
  db = createDatabase({
    users: [[USER, PASSWORD]],
    actions: [
      { query: `INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Citta, Vettore) VALUES (${IN_USE.id}, '${IN_USE.name}', 'Bergamo', 1)` },
      { query: 'INSERT INTO ATTDocTeste (IdDoc, TipoDocumento, IdAnagrafica) VALUES (9001, \'DDT\', 1)' },
      { query: `INSERT INTO ATTDocCoda (IdDoc, IdVettore2) VALUES (9001, ${IN_USE.id})` },
    ],
  });
  server = await startServer(db.db);
  browser = await launchBrowser();
});

after(async () => {
  await browser?.close();
  await server?.stop();
  db?.remove();
});

beforeEach(async () => {
  // Every test starts logged out, in a page of its own.
  await browser.context.clearCookies();
  if (page) await page.close();
  page = await browser.context.newPage();
  faults = [];
  page.on('pageerror', (e) => faults.push(`script: ${e.message}`));
  page.on('console', (m) => {
    if (m.type() === 'error' && /Content Security Policy|Refused to/.test(m.text())) faults.push(`csp: ${m.text()}`);
  });
});

afterEach(() => {
  assert.deepEqual(faults, [], 'the page ran without script errors or refused resources');
});

async function logIn(user = USER, password = PASSWORD) {
  await page.goto(server.url);
  await page.fill('#login-user', user);
  await page.fill('#login-password', password);
  await page.click('.login-submit');
}

async function openCarriers() {
  await page.click('.menu-item[data-item="AnagraficaVettori"]');
  await page.waitForSelector('.panel:not([hidden]) .card-toolbar');
  return page.locator('.panel:not([hidden])');
}

const field = (name) => page.locator(`.panel:not([hidden]) [data-control="${name}"] input`);
const messageBox = () => page.locator('dialog.message-box[open]');
const subtitle = () => page.locator('.panel:not([hidden]) .form-subtitle');

test('a wrong login is refused and tells why; the right one shows the menu by kind, and survives a reload', async () => {
  await logIn(USER, 'sbagliata');
  await page.locator('.login-error').waitFor();
  assert.equal(await page.locator('.login-error').textContent(), 'Utente o password errati.');
  assert.equal(await page.locator('.shell').count(), 0);
  assert.deepEqual(await browser.context.cookies(), []);

  await page.fill('#login-password', PASSWORD);
  await page.click('.login-submit');
  await page.locator('.menu-item').first().waitFor();
  assert.equal(await page.locator('.user-name').textContent(), USER);
  assert.deepEqual(await page.locator('.menu-group-title').evaluateAll((els) => els.map((e) => e.firstChild.textContent)),
    ['Schede', 'Stampe', 'Maschere attive']);
  assert.equal(await page.locator('.menu-item[data-item="AnagraficaVettori"]').textContent(), 'Vettori');
  assert.equal(await page.locator('.menu-item[data-item="CheckAnagrafiche"]').getAttribute('data-kind'), 'activeform');

  // After a reload the session and the open form are still there, and a
  // state-changing request still carries the CSRF token (GET /api/me).
  await openCarriers();
  await page.reload();
  await page.locator('.tab[data-item="AnagraficaVettori"]').waitFor();
  await page.click('.panel:not([hidden]) [data-tool="first"]');
  await page.waitForFunction(() => /^Codice \d+/.test(document.querySelector('.panel:not([hidden]) .form-subtitle').textContent));
  assert.notEqual(await field('txtRagioneSociale1').inputValue(), '');
});

test('a carrier without fiscal code and VAT number: the warning asks, No keeps the card, Yes saves it', async () => {
  await logIn();
  await openCarriers();
  await page.click('[data-tool="new"]');
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) .form-view').classList.contains('mode-new'));
  const proposed = await field('numIdAnagrafica').inputValue();
  assert.match(proposed, /^\d+$/);
  assert.equal(await field('numIdAnagrafica').getAttribute('readonly'), '', 'the code is locked: the card numbers it');

  await field('txtRagioneSociale1').fill('Trasporti Senza Codici');
  await field('txtCitta').fill('Lecco');
  await page.click('[data-tool="save"]');

  const box = messageBox();
  await box.waitFor();
  assert.equal(await box.getAttribute('data-number'), '386');
  assert.equal(await box.getAttribute('data-icon'), 'question');
  const text = await box.locator('.message-text').textContent();
  assert.ok(text.includes('Non sono stati indicati né la partita IVA né il codice fiscale.'), text);
  assert.ok(text.includes('Si desidera continuare comunque?'), text);
  assert.deepEqual(await box.locator('.buttons button').allTextContents(), ['Sì', 'No']);

  await box.locator('button', { hasText: 'No' }).click();
  await box.waitFor({ state: 'detached' });
  await page.waitForFunction(() => !document.querySelector('.progress:not([hidden])'));
  assert.match(await subtitle().textContent(), /^Nuova scheda/);
  assert.equal(await field('txtRagioneSociale1').inputValue(), 'Trasporti Senza Codici', 'what was typed stays');
  // The fields the warning names are marked; the others are not.
  const named = await page.locator('.panel:not([hidden]) .field.is-named').evaluateAll((els) => els.map((e) => e.dataset.control));
  assert.deepEqual(named.sort(), ['cdoCodiceFiscale', 'txtPartitaIva']);
  assert.deepEqual(db.sql("SELECT IdAnagrafica FROM STDAnagrafiche WHERE RagioneSociale = 'Trasporti Senza Codici'"), []);

  await page.keyboard.press('F9');
  await messageBox().waitFor();
  await messageBox().locator('button', { hasText: 'Sì' }).click();
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) .form-view').classList.contains('mode-browse'));
  const saved = await field('numIdAnagrafica').inputValue();
  assert.equal(await subtitle().textContent(), `Codice ${saved}`);
  assert.equal(await field('txtCitta').inputValue(), 'Lecco');
  assert.deepEqual(db.sql(`SELECT RagioneSociale, Citta, Vettore FROM STDAnagrafiche WHERE IdAnagrafica = ${Number(saved)}`),
    [{ RagioneSociale: 'Trasporti Senza Codici', Citta: 'Lecco', Vettore: 1 }]);
  assert.equal(await page.locator('.tab.dirty').count(), 0);
});

test('a carrier named on a sales document is not deleted: message 147 names "Ciclo Attivo"', async () => {
  await logIn();
  await openCarriers();
  await page.fill('.find-input', 'In Uso');
  await page.press('.find-input', 'Enter');
  await page.waitForFunction((id) => document.querySelector('.panel:not([hidden]) .form-subtitle').textContent === `Codice ${id}`, IN_USE.id);
  assert.equal(await field('txtRagioneSociale1').inputValue(), IN_USE.name);

  await page.click('[data-tool="delete"]');
  const confirm = page.locator('dialog.confirm-box[open]');
  await confirm.waitFor();
  await confirm.locator('button', { hasText: 'Elimina' }).click();

  const box = messageBox();
  await box.waitFor();
  assert.equal(await box.getAttribute('data-number'), '147');
  assert.equal(await box.getAttribute('data-icon'), 'information');
  assert.equal(await box.locator('.message-text').textContent(), 'Impossibile eliminare l\'anagrafica: risulta utilizzata per Ciclo Attivo.');
  assert.deepEqual(await box.locator('.buttons button').allTextContents(), ['OK']);
  await page.keyboard.press('Enter');
  await box.waitFor({ state: 'detached' });
  assert.equal(await subtitle().textContent(), `Codice ${IN_USE.id}`);
  assert.deepEqual(db.sql(`SELECT Vettore FROM STDAnagrafiche WHERE IdAnagrafica = ${IN_USE.id}`), [{ Vettore: 1 }]);
});

test('a value refused while typing is told under the field in the user\'s words; a coded field takes only a code that exists; edits can be cancelled', async () => {
  await logIn();
  await openCarriers();
  await page.click('[data-tool="last"]');
  await page.waitForFunction(() => /^Codice \d+/.test(document.querySelector('.panel:not([hidden]) .form-subtitle').textContent));
  await page.keyboard.press('F2');
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) .form-view').classList.contains('mode-edit'));
  assert.equal(await page.locator('.tab.dirty').count(), 1);

  const refusal = (name) => page.locator(`.panel:not([hidden]) [data-control="${name}"] .field-error`);
  const refusalReads = (name, text) => page.waitForFunction(([n, t]) =>
    document.querySelector(`.panel:not([hidden]) [data-control="${n}"] .field-error`)?.textContent === t, [name, text]);

  // Well written but not in the calendar, then badly written: each told under
  // the field by its caption, no message box, the focus back on the field.
  await field('dteFineValidita').fill('31/02/2024');
  await field('dteFineValidita').press('Tab');
  await refusalReads('dteFineValidita', 'Fine Validità: il giorno 31/02/2024 non esiste nel calendario');
  assert.equal(await page.locator('dialog[open]').count(), 0);
  assert.equal(await field('dteFineValidita').inputValue(), '', 'the refused date is not kept');
  assert.equal(await field('dteFineValidita').getAttribute('aria-invalid'), 'true');
  assert.equal(await page.evaluate(() => document.activeElement.name), 'dteFineValidita');
  await field('dteFineValidita').fill('3 marzo');
  await field('dteFineValidita').press('Enter');
  await refusalReads('dteFineValidita', 'Fine Validità: la data va scritta gg/mm/aaaa');
  await field('dteFineValidita').fill('31/03/2024');
  await field('dteFineValidita').press('Enter');
  await refusal('dteFineValidita').waitFor({ state: 'detached' });
  assert.equal(await field('dteFineValidita').inputValue(), '31/03/2024');

  // A language code that does not exist is refused at the field with the
  // lookup's words; a right one, typed in small letters, is taken as stored
  // and its description fills in.
  const language = page.locator('.panel:not([hidden]) [data-control="cdoLingua"]');
  const before = await field('cdoLingua').inputValue();
  await field('cdoLingua').fill('xyz');
  await field('cdoLingua').press('Enter');
  await refusalReads('cdoLingua', 'Lingua: la lingua «xyz» non esiste');
  assert.equal(await field('cdoLingua').inputValue(), before);
  await field('cdoLingua').fill('eng');
  await field('cdoLingua').press('Enter');
  await refusal('cdoLingua').waitFor({ state: 'detached' });
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) [data-control="cdoLingua"] .lookup-description').textContent === 'Inglese');
  assert.equal(await field('cdoLingua').inputValue(), 'ENG');
  assert.equal(await language.getAttribute('class').then((c) => c.includes('has-error')), false);

  await page.click('[data-tool="cancel"]');
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) .form-view').classList.contains('mode-browse'));
  assert.equal(await page.locator('.tab.dirty').count(), 0);
});

test('the carrier list sorts and filters on the server, opens a record, and the card\'s moves follow it', async () => {
  await logIn();
  await openCarriers();
  const list = page.locator('.panel:not([hidden]) .record-list');
  await list.waitFor();
  const rows = list.locator('tbody tr[data-key]');
  const keys = () => rows.evaluateAll((trs) => trs.map((tr) => Number(tr.dataset.key)));
  const carriers = db.sql('SELECT IdAnagrafica AS k FROM STDAnagrafiche WHERE Vettore = 1 ORDER BY IdAnagrafica').map((r) => r.k);
  await page.waitForFunction((n) => document.querySelectorAll('.panel:not([hidden]) .record-list tbody tr[data-key]').length === n, carriers.length);
  assert.deepEqual(await keys(), carriers, 'carriers only, by code');
  assert.deepEqual(await list.locator('thead .list-sort').allTextContents(), ['Codice ▲', 'Ragione Sociale', 'Partita Iva', 'Città', 'Prov.']);

  // By name, then reversed: the server's order.
  const byName = db.sql('SELECT IdAnagrafica AS k FROM STDAnagrafiche WHERE Vettore = 1 ORDER BY RagioneSociale COLLATE NOCASE, IdAnagrafica').map((r) => r.k);
  await list.locator('.list-sort[data-field="RagioneSociale"]').click();
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) .record-list th[aria-sort="ascending"] .list-sort')?.dataset.field === 'RagioneSociale');
  assert.deepEqual(await keys(), byName);
  await list.locator('.list-sort[data-field="RagioneSociale"]').click();
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) .record-list th[aria-sort="descending"]'));
  assert.deepEqual(await keys(), [...byName].reverse());

  // A column filter, then the search box (a town).
  await list.locator('.list-filter[data-field="Citta"]').fill('berg');
  await page.waitForFunction((k) => {
    const trs = [...document.querySelectorAll('.panel:not([hidden]) .record-list tbody tr[data-key]')];
    return trs.length === 1 && trs[0].dataset.key === String(k);
  }, IN_USE.id);
  await list.locator('.list-filter[data-field="Citta"]').fill('');
  await list.locator('.list-search').fill('bergamo');
  await page.waitForFunction((k) => {
    const trs = [...document.querySelectorAll('.panel:not([hidden]) .record-list tbody tr[data-key]')];
    return trs.length === 1 && trs[0].dataset.key === String(k);
  }, IN_USE.id);
  // Enter opens the record in the card.
  await page.keyboard.press('ArrowDown');
  await page.keyboard.press('Enter');
  await page.waitForFunction((k) => document.querySelector('.panel:not([hidden]) .form-subtitle').textContent === `Codice ${k}`, IN_USE.id);
  assert.equal(await list.isVisible(), false);
  assert.equal(await field('txtRagioneSociale1').inputValue(), IN_USE.name);

  // Back to the list, cleared and reversed by name: a double click opens the
  // first row, and Next goes to the second row of the list, not of the codes.
  await page.click('.panel:not([hidden]) [data-tool="list"]');
  await list.locator('.list-search').fill('');
  await page.waitForFunction((n) => document.querySelectorAll('.panel:not([hidden]) .record-list tbody tr[data-key]').length === n, carriers.length);
  const shown = await keys();
  assert.deepEqual(shown, [...byName].reverse());
  await rows.first().dblclick();
  await page.waitForFunction((k) => document.querySelector('.panel:not([hidden]) .form-subtitle').textContent === `Codice ${k}`, shown[0]);
  await page.click('.panel:not([hidden]) [data-tool="next"]');
  await page.waitForFunction((k) => document.querySelector('.panel:not([hidden]) .form-subtitle').textContent === `Codice ${k}`, shown[1]);
});

test('a lookup\'s search list finds by description and fills code and description', async () => {
  await logIn();
  await openCarriers();
  await page.click('[data-tool="new"]');
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) .form-view').classList.contains('mode-new'));
  await field('cdoNazione').focus();
  await page.keyboard.press('F4');
  const list = page.locator('dialog.pick-list[open]');
  await list.waitFor();
  await list.locator('tbody tr').nth(1).waitFor();
  const all = await list.locator('tbody tr').count();
  await list.locator('.pick-search').fill('regno');
  await page.waitForFunction(() => document.querySelectorAll('dialog.pick-list[open] tbody tr').length === 1);
  assert.ok(all > 1, 'the list opens with every country');
  assert.deepEqual(await list.locator('tbody tr td').allTextContents(), ['GB', 'Regno Unito']);
  await page.keyboard.press('Enter');
  await list.waitFor({ state: 'detached' });
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) [data-control="cdoNazione"] .lookup-description').textContent === 'Regno Unito');
  assert.equal(await field('cdoNazione').inputValue(), 'GB');

  // Closing a card with unsaved changes asks first.
  await page.click('.tab[data-item="AnagraficaVettori"] .tab-close');
  const confirm = page.locator('dialog.confirm-box[open]');
  await confirm.waitFor();
  await confirm.locator('button', { hasText: 'Chiudi senza salvare' }).click();
  await page.locator('.tab').waitFor({ state: 'detached' });
  assert.equal(await page.locator('.welcome').isVisible(), true);
});

test('a grid: rows added and deleted in edit mode, rows selected, its popup menu; cancel leaves the database as it was', async () => {
  await logIn();
  await page.click('.menu-item[data-item="AnagraficaAttivita"]');
  const grid = page.locator('.panel:not([hidden]) [data-control="bdyDettaglio"]');
  // The card opens on its list; the first record shows the card and its grid.
  await page.locator('.panel:not([hidden]) .record-list').waitFor();
  await page.click('.panel:not([hidden]) [data-tool="first"]');
  await grid.locator('tbody tr').nth(1).waitFor();
  const before = db.sql('SELECT Anno, PlafondDisponibile FROM COGParametriIvaAttivitaRighe ORDER BY Anno');
  assert.equal(await grid.locator('tbody tr').count(), 2);
  assert.equal(await grid.locator('tbody tr:first-child td:nth-of-type(1)').textContent(), '2024', 'a year has no thousands dot');
  assert.equal(await grid.locator('button', { hasText: 'Aggiungi riga' }).isVisible(), false, 'browsing: rows are read-only');
  // While browsing the grid's computations cannot run: the menu shows them disabled.
  await grid.locator('tbody tr:first-child td').first().click({ button: 'right' });
  const browsingMenu = page.locator('.popup-menu');
  await browsingMenu.waitFor();
  assert.deepEqual(await browsingMenu.locator('.popup-item').evaluateAll((els) => els.map((e) => [e.textContent, e.disabled])),
    [['Calcola ProRata', true], ['Calcola Plafond Annuale', true]]);
  await page.keyboard.press('Escape');
  await browsingMenu.waitFor({ state: 'detached' });

  await page.click('.panel:not([hidden]) [data-tool="edit"]');
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-edit');
  await grid.locator('button', { hasText: 'Aggiungi riga' }).click();
  await page.waitForFunction(() => document.querySelectorAll('.panel:not([hidden]) [data-control="bdyDettaglio"] tbody tr').length === 3);

  await grid.locator('tbody tr:nth-child(3) td').first().click();
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) [data-control="bdyDettaglio"] .grid-count').textContent === '3 righe, 1 selezionata');
  await grid.locator('button', { hasText: 'Elimina riga' }).click();
  await page.waitForFunction(() => document.querySelectorAll('.panel:not([hidden]) [data-control="bdyDettaglio"] tbody tr').length === 2);

  // Ctrl+click adds to the selection; the popup menu offers the grid's items.
  await grid.locator('tbody tr:nth-child(1) td').first().click();
  await grid.locator('tbody tr:nth-child(2) td').first().click({ modifiers: ['Control'] });
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) [data-control="bdyDettaglio"] .grid-count').textContent === '2 righe, 2 selezionate');
  await grid.locator('tbody tr:nth-child(2) td').first().click({ button: 'right' });
  const menu = page.locator('.popup-menu');
  await menu.waitFor();
  assert.deepEqual(await menu.locator('.popup-item').evaluateAll((els) => els.map((e) => [e.textContent, e.disabled])),
    [['Calcola ProRata', false], ['Calcola Plafond Annuale', false]]);
  await menu.locator('.popup-item', { hasText: 'Calcola Plafond Annuale' }).click();
  await menu.waitFor({ state: 'detached' });
  await page.waitForFunction(() => !document.querySelector('.progress:not([hidden])'));
  assert.equal(await page.locator('dialog[open]').count(), 0, 'no error');

  await page.click('.panel:not([hidden]) [data-tool="cancel"]');
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-browse');
  assert.deepEqual(db.sql('SELECT Anno, PlafondDisponibile FROM COGParametriIvaAttivitaRighe ORDER BY Anno'), before);
});

test('a grid cell typed in edit mode is saved with the card', async () => {
  await logIn();
  await page.click('.menu-item[data-item="AnagraficaAttivita"]');
  const grid = page.locator('.panel:not([hidden]) [data-control="bdyDettaglio"]');
  // The card opens on its list; the first record shows the card and its grid.
  await page.locator('.panel:not([hidden]) .record-list').waitFor();
  await page.click('.panel:not([hidden]) [data-tool="first"]');
  await grid.locator('tbody tr').nth(1).waitFor();
  const year = Number(await grid.locator('tbody tr:first-child td:nth-of-type(1)').textContent());
  await page.keyboard.press('F2');
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-edit');
  // The second column is the pro-rata percentage.
  await grid.locator('tbody tr:first-child td:nth-of-type(2)').dblclick();
  const editor = grid.locator('input.cell-editor');
  await editor.fill('55,5');
  await editor.press('Enter');
  await page.waitForFunction(() => !document.querySelector('.progress:not([hidden])'));
  await page.keyboard.press('F9');
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-browse');
  assert.deepEqual(db.sql(`SELECT PercProRata FROM COGParametriIvaAttivitaRighe WHERE Anno = ${year} ORDER BY CodAttivita LIMIT 1`), [{ PercProRata: 55.5 }]);
});

test('a dialog still waiting when the page is reloaded comes back, and its answer lands', async () => {
  await logIn();
  await openCarriers();
  await page.click('[data-tool="new"]');
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-new');
  await field('txtRagioneSociale1').fill('Trasporti Dopo Ricarica');
  await page.click('[data-tool="save"]');
  await messageBox().waitFor();

  await page.reload();
  const box = messageBox();
  await box.waitFor();
  assert.equal(await box.getAttribute('data-number'), '386');
  await box.locator('button', { hasText: 'Sì' }).click();
  await page.locator('.tab[data-item="AnagraficaVettori"]').waitFor();
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-browse');
  assert.equal(await field('txtRagioneSociale1').inputValue(), 'Trasporti Dopo Ricarica');
  assert.deepEqual(db.sql("SELECT Vettore FROM STDAnagrafiche WHERE RagioneSociale = 'Trasporti Dopo Ricarica'"), [{ Vettore: 1 }]);
});

test('a session that ends brings the login back with a notice', async () => {
  await logIn();
  await openCarriers();
  // The session ends behind the page's back (as on expiry).
  await page.evaluate(async () => {
    const me = await (await fetch('/api/me')).json();
    await fetch('/api/logout', { method: 'POST', headers: { 'X-CSRF-Token': me.csrf, 'Content-Type': 'application/json' }, body: '{}' });
  });
  await page.click('[data-tool="first"]');
  await page.locator('.login-error').waitFor();
  assert.equal(await page.locator('.login-error').textContent(), 'La sessione è scaduta: accedere di nuovo.');
});

// Last: the address stays refused for a minute afterwards.
test('repeated wrong logins are refused for a while, even with the right password', async () => {
  await page.goto(server.url);
  const error = page.locator('.login-error');
  let refused = false;
  for (let i = 0; i < 6 && !refused; i++) {
    await page.fill('#login-user', USER);
    await page.fill('#login-password', `sbagliata-${i}`);
    await page.click('.login-submit');
    await page.waitForFunction(() => !document.querySelector('.login-submit').disabled && !document.querySelector('.login-error').hidden);
    refused = (await error.textContent()).startsWith('Troppi tentativi');
  }
  assert.ok(refused, 'the limit of failed logins is reached');
  await page.fill('#login-password', PASSWORD);
  await page.click('.login-submit');
  await page.waitForFunction(() => !document.querySelector('.login-submit').disabled);
  assert.equal(await error.textContent(), 'Troppi tentativi di accesso: riprovare fra un minuto');
  assert.equal(await page.locator('.shell').count(), 0);
});
