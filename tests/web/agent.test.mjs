// The agent card in Chromium against a real `corvina serve` on a demo
// database: the demo agent with three mandates shown with its time line,
// clicking a mandate shows that mandate's shares and their total, a share
// typed changes the total before any save, a total of 99.99 is refused with
// error 235 from "ControlliOK", and a gap typed between two periods is marked
// on the time line at once.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { cardSession } from './support/card.mjs';

let db;
let page;
const { panel, field, messageBox, idle, logInAndOpen, typeCell } = cardSession((s) => {
  ({ db, page } = s);
});
const errorBox = () => page.locator('dialog.error-box[open]');
const mandates = () => panel().locator('[data-control="bdyMandati"]');
const shares = () => panel().locator('[data-control="bdyMandatiQuote"]');
const total = () => field('percTotaleQuote').inputValue();

test('mandates with their time line; the shares and their total follow the mandate clicked and the typing', async () => {
  await logInAndOpen('AnagraficaAgenti');
  await panel().locator('.find-input').fill('Fabbri');
  await panel().locator('.find-input').press('Enter');
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) [data-control="numIdAnagrafica"] input')?.value === '36');

  await panel().locator('[role="tab"]', { hasText: 'Mandati e Quote' }).click();
  await mandates().locator('tbody tr').nth(2).waitFor();
  // Three consecutive periods: three bars, no gap, no overlap.
  assert.equal(await mandates().locator('.timeline-bar').count(), 3);
  assert.equal(await mandates().locator('.timeline-mark').count(), 0);
  // The first mandate is current: its one share of 100.
  assert.equal(await shares().locator('tbody tr').count(), 1);
  assert.match(await total(), /^100,0000$/);

  // Clicking the last mandate shows its three shares.
  await mandates().locator('tbody tr:nth-child(3) td').first().click();
  await idle();
  await page.waitForFunction(() => document.querySelectorAll('.panel:not([hidden]) [data-control="bdyMandatiQuote"] tbody tr').length === 3);
  assert.match(await total(), /^100,0000$/);
  assert.equal(await mandates().locator('.timeline-bar.current').getAttribute('data-row'), '2');

  // Editing: 20 becomes 19,99 and the total says so before any save.
  await page.click('.panel:not([hidden]) [data-tool="edit"]');
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-edit');
  await typeCell(shares(), 3, 3, '19,99');
  await page.waitForFunction(() => document.querySelector('.panel:not([hidden]) [data-control="percTotaleQuote"] input')?.value === '99,9900');

  await page.click('.panel:not([hidden]) [data-tool="save"]');
  await errorBox().waitFor();
  const text = await errorBox().textContent();
  assert.ok(text.includes('Il totale delle quote di ciascun Mandato deve essere pari a 100.'), text);
  // The number shows; the trace for support starts folded and unfolds.
  assert.equal(await errorBox().locator('.error-number').textContent(), 'Errore n. 235');
  const details = errorBox().locator('details.error-source');
  assert.equal(await details.getAttribute('open'), null);
  await details.locator('summary').click();
  assert.notEqual((await details.locator('pre').textContent()).trim(), '');
  await errorBox().locator('button').first().click();
  await errorBox().waitFor({ state: 'detached' });
  assert.ok(await page.locator('.panel:not([hidden]) .form-view.mode-edit').count());

  // A gap typed between the first two periods is marked on the time line.
  await typeCell(mandates(), 1, 2, '30/11/2023');
  await mandates().locator('.timeline-mark.gap').waitFor();
  await page.click('.panel:not([hidden]) [data-tool="cancel"]');
  const confirm = page.locator('dialog[open] button', { hasText: 'Annulla le modifiche' });
  await Promise.race([page.waitForSelector('.panel:not([hidden]) .form-view.mode-browse'), confirm.waitFor()]);
  if (await confirm.count()) await confirm.click();
  await page.waitForSelector('.panel:not([hidden]) .form-view.mode-browse');
  assert.deepEqual(db.sql('SELECT PercQuota FROM STDAnagraficaAgentiMandatiQuote WHERE IdAnagrafica = 36 AND IdAgente = 24'),
    [{ PercQuota: 20 }]);
});
