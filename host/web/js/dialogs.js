// Modal windows: the module's message boxes (icon and buttons from the
// message-box style, answer codes 1 OK, 2 Cancel, 6 Yes, 7 No…), the error
// window (number, description, the call trace folded), confirmations of the
// client's own and pick lists (lookup search lists, find results). A modal
// shown on another (an error raised while a search list is open) stacks on top.

import { h, messageIcon, icon } from './dom.js';
import { fieldCaption, formatNumber } from './format.js';

const ICONS = { 16: ['critical', 'Errore'], 32: ['question', 'Domanda'], 48: ['exclamation', 'Attenzione'], 64: ['information', 'Informazione'] };

// style & 0x0F → buttons [answer, caption, access key]
const BUTTONS = {
  0: [[1, 'OK', 'o']],
  1: [[1, 'OK', 'o'], [2, 'Annulla', 'a']],
  2: [[3, 'Interrompi', 'i'], [4, 'Riprova', 'r'], [5, 'Ignora', 'g']],
  3: [[6, 'Sì', 's'], [7, 'No', 'n'], [2, 'Annulla', 'a']],
  4: [[6, 'Sì', 's'], [7, 'No', 'n']],
  5: [[4, 'Riprova', 'r'], [2, 'Annulla', 'a']],
};

// Builds a <dialog>, shows it modally and resolves with what `wire` decides.
function modal(className, build) {
  return new Promise((resolve) => {
    const dialog = h('dialog', { class: `modal ${className}` });
    let done = false;
    const close = (value) => {
      if (done) return;
      done = true;
      dialog.close();
      dialog.remove();
      resolve(value);
    };
    build(dialog, close);
    document.body.append(dialog);
    dialog.showModal();
    const initial = dialog.querySelector('[autofocus]');
    if (initial) initial.focus();
  });
}

function titleBar(text, id) {
  return h('header', { class: 'modal-title' }, h('h2', { id }, text));
}

let seq = 0;

// A module's message: resolves with the answer code of the button pressed.
export function messageBox({ number, text, style }) {
  const [kind, title] = ICONS[style & 0x70] || [null, 'Messaggio'];
  const buttons = BUTTONS[style & 0x0f] || BUTTONS[0];
  const defaultIndex = Math.min((style & 0x300) >> 8, buttons.length - 1);
  const escape = buttons.find(([a]) => a === 2) || (buttons.length === 1 ? buttons[0] : null);
  const id = `msg-${++seq}`;
  return modal('message-box', (dialog, close) => {
    dialog.setAttribute('aria-labelledby', id);
    dialog.dataset.number = number ?? '';
    dialog.dataset.icon = kind || '';
    const row = h('div', { class: 'buttons' });
    buttons.forEach(([answer, caption, key], i) => {
      const b = h('button', { type: 'button', class: i === defaultIndex ? 'primary' : '', dataset: { answer, key }, onclick: () => close(answer) }, caption);
      if (i === defaultIndex) b.autofocus = true;
      row.append(b);
    });
    dialog.append(
      titleBar(title, id),
      h('div', { class: 'modal-body' }, kind ? messageIcon(kind) : null, h('p', { class: 'message-text' }, text)),
      h('footer', { class: 'modal-footer' }, h('span', { class: 'message-number' }, number != null ? `Messaggio n. ${number}` : ''), row),
    );
    dialog.addEventListener('cancel', (e) => {
      e.preventDefault();
      if (escape) close(escape[0]);
    });
    dialog.addEventListener('keydown', (e) => {
      if (e.ctrlKey || e.altKey || e.metaKey || e.key.length !== 1) return;
      const match = buttons.find(([, , key]) => key === e.key.toLowerCase());
      if (match) {
        e.preventDefault();
        close(match[0]);
      }
    });
  });
}

// An error that reached the user: number, description, and the trace.
export function errorBox(error) {
  const id = `err-${++seq}`;
  return modal('error-box', (dialog, close) => {
    dialog.setAttribute('aria-labelledby', id);
    dialog.dataset.number = error?.number ?? '';
    const ok = h('button', { type: 'button', class: 'primary', autofocus: true, onclick: () => close() }, 'OK');
    dialog.append(
      titleBar('Errore', id),
      h('div', { class: 'modal-body' },
        messageIcon('critical'),
        h('div', { class: 'error-content' },
          h('p', { class: 'error-number' }, error?.number != null ? `Errore n. ${error.number}` : 'Errore'),
          h('p', { class: 'message-text error-description' }, error?.description || 'Errore sconosciuto'),
          error?.source ? h('details', { class: 'error-source' }, h('summary', null, 'Dettagli tecnici (origine)'), h('pre', null, error.source)) : null)),
      h('footer', { class: 'modal-footer' }, h('span'), h('div', { class: 'buttons' }, ok)),
    );
    dialog.addEventListener('cancel', (e) => {
      e.preventDefault();
      close();
    });
  });
}

// A question of the client's own: true for the first button.
export function confirmBox(text, { title = 'Conferma', yes = 'Sì', no = 'No' } = {}) {
  const id = `cfm-${++seq}`;
  return modal('message-box confirm-box', (dialog, close) => {
    dialog.setAttribute('aria-labelledby', id);
    dialog.append(
      titleBar(title, id),
      h('div', { class: 'modal-body' }, messageIcon('question'), h('p', { class: 'message-text' }, text)),
      h('footer', { class: 'modal-footer' }, h('span'), h('div', { class: 'buttons' },
        h('button', { type: 'button', class: 'primary', autofocus: true, onclick: () => close(true) }, yes),
        h('button', { type: 'button', onclick: () => close(false) }, no))),
    );
    dialog.addEventListener('cancel', (e) => {
      e.preventDefault();
      close(false);
    });
  });
}

// Columns of rows that come without a description: the first is the code, the
// second its description (the lookup catalogue's order), the others by name.
function columnsOf(row) {
  return Object.keys(row || {}).map((key, i) => ({
    key,
    caption: i === 0 ? 'Codice' : i === 1 ? 'Descrizione' : fieldCaption(key),
    align: typeof row[key] === 'number' ? 'num' : '',
    format: (v) => (typeof v === 'boolean' ? (v ? 'Sì' : 'No') : typeof v === 'number' ? formatNumber(v, Number.isInteger(v) ? 0 : 2) : v ?? ''),
  }));
}

// A list to pick a row from, with a search box that asks `search(text)` for
// rows (debounced). columns: [{key, caption, align, format}], or null to take
// them from the rows. Resolves with the row chosen, or null.
export function pickList({ title, columns = null, search, initial = '', placeholder = 'Cerca…', rows: firstRows = null, emptyText = 'Nessun risultato', current = null }) {
  const id = `pick-${++seq}`;
  return modal('pick-list', (dialog, close) => {
    dialog.setAttribute('aria-labelledby', id);
    let rows = [];
    let active = -1;
    let timer = null;
    let generation = 0;
    let searched = null; // the text the rows shown were searched for
    const input = h('input', { type: 'search', class: 'pick-search', placeholder, value: initial, autofocus: true, 'aria-label': placeholder });
    let cols = columns || [];
    const head = h('tr', null, cols.map((c) => h('th', { class: c.align || '' }, c.caption)));
    const body = h('tbody');
    const status = h('p', { class: 'pick-status', 'aria-live': 'polite' });
    const table = h('table', { class: 'data-table pick-table' }, h('thead', null, head), body);
    const choose = () => {
      if (active >= 0 && rows[active]) close(rows[active]);
    };
    const highlight = (i) => {
      active = i;
      [...body.children].forEach((tr, j) => tr.classList.toggle('active', j === i));
      const tr = body.children[i];
      if (tr) tr.scrollIntoView({ block: 'nearest' });
    };
    const show = (list) => {
      rows = list;
      if (!columns && rows.length) {
        cols = columnsOf(rows[0]);
        head.replaceChildren(...cols.map((c) => h('th', { class: c.align || '' }, c.caption)));
      }
      body.replaceChildren(...rows.map((row, i) => h('tr', {
        onclick: () => highlight(i),
        ondblclick: () => { highlight(i); choose(); },
      }, cols.map((c) => h('td', { class: c.align || '' }, c.format ? c.format(row[c.key]) : (row[c.key] ?? ''))))));
      status.textContent = rows.length ? `${rows.length} ${rows.length === 1 ? 'riga' : 'righe'}` : emptyText;
      // The row of the value the field holds, when listed; else the first.
      const first = cols[0]?.key;
      const mine = current == null ? -1 : rows.findIndex((r) => first && String(r[first]) === String(current));
      highlight(rows.length ? Math.max(mine, 0) : -1);
    };
    const run = async () => {
      clearTimeout(timer);
      timer = null;
      const mine = ++generation;
      searched = input.value.trim();
      status.textContent = 'Ricerca in corso…';
      try {
        const list = await search(input.value.trim());
        if (mine === generation) show(list || []);
      } catch (e) {
        if (mine === generation) status.textContent = e.message;
      }
    };
    input.addEventListener('input', () => {
      clearTimeout(timer);
      timer = setTimeout(run, 250);
    });
    dialog.addEventListener('keydown', (e) => {
      if (e.key === 'ArrowDown') { e.preventDefault(); highlight(Math.min(active + 1, rows.length - 1)); }
      else if (e.key === 'ArrowUp') { e.preventDefault(); highlight(Math.max(active - 1, 0)); }
      else if (e.key === 'PageDown') { e.preventDefault(); highlight(Math.min(active + 10, rows.length - 1)); }
      else if (e.key === 'PageUp') { e.preventDefault(); highlight(Math.max(active - 10, 0)); }
      else if (e.key === 'Enter') {
        e.preventDefault();
        // Enter on new text searches it first; on the rows shown it chooses.
        if (document.activeElement === input && input.value.trim() !== searched) run();
        else choose();
      }
    });
    dialog.addEventListener('cancel', (e) => { e.preventDefault(); close(null); });
    dialog.append(
      titleBar(title, id),
      h('div', { class: 'modal-body pick-body' },
        h('div', { class: 'pick-searchbar' }, icon('search'), input),
        h('div', { class: 'pick-scroll' }, table),
        status),
      h('footer', { class: 'modal-footer' }, h('span', { class: 'hint' }, '↑↓ per scegliere, Invio per confermare'), h('div', { class: 'buttons' },
        h('button', { type: 'button', class: 'primary', onclick: choose }, 'Scegli'),
        h('button', { type: 'button', onclick: () => close(null) }, 'Annulla'))),
    );
    if (firstRows) { searched = input.value.trim(); show(firstRows); }
    else queueMicrotask(run);
  });
}
