// What the browser tests of a card share: one demo database, one `corvina
// serve` and one Chromium page for all the tests of a file (made before the
// first, removed after the last), the log-in that opens a card from the menu,
// and the helpers that act on the card shown: its fields, its grids' cells,
// the message box and the modal form over it.

import { before, after } from 'node:test';
import { createDatabase, startServer, launchBrowser } from './corvina.mjs';

export const USER = 'anna';
export const PASSWORD = 'Segreta-1';

// Registers the file's before/after hooks and returns the session: `db`,
// `server` and `page` are set once the before hook has run, which then hands
// the session to `ready` (so a file may keep its own names for them).
export function cardSession(ready = () => {}) {
  const s = { db: null, server: null, browser: null, page: null };
  before(async () => {
    s.db = createDatabase({ users: [[USER, PASSWORD]] });
    s.server = await startServer(s.db.db);
    s.browser = await launchBrowser();
    s.page = await s.browser.context.newPage();
    ready(s);
  });
  after(async () => {
    await s.browser?.close();
    await s.server?.stop();
    s.db?.remove();
  });

  const panel = () => s.page.locator('.panel:not([hidden])');
  const field = (name) => panel().locator(`[data-control="${name}"] input`);
  const messageBox = () => s.page.locator('dialog.message-box[open]');
  const modalForm = () => s.page.locator('dialog.modal-form[open]');
  const idle = () => s.page.waitForFunction(() => !document.querySelector('.progress:not([hidden])'));

  return {
    s,
    panel,
    field,
    messageBox,
    modalForm,
    idle,
    // Logs in and opens the card `item` from the menu.
    async logInAndOpen(item) {
      await s.page.goto(s.server.url);
      await s.page.fill('#login-user', USER);
      await s.page.fill('#login-password', PASSWORD);
      await s.page.click('.login-submit');
      await s.page.click(`.menu-item[data-item="${item}"]`);
      await panel().locator('.card-toolbar').waitFor();
    },
    // Types `value` into the field `name` and leaves it, as a person does.
    async typeField(name, value) {
      await field(name).fill(value);
      await field(name).press('Tab');
      await idle();
    },
    // Types `value` into the cell of the grid's row `row` (1-based) and visible column `col`.
    async typeCell(grid, row, col, value) {
      await grid.locator(`tbody tr:nth-child(${row}) td:nth-of-type(${col})`).dblclick();
      const editor = grid.locator('input.cell-editor');
      await editor.fill(value);
      await editor.press('Enter');
      await idle();
    },
  };
}
