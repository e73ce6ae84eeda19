// The grid (VxBody): its columns and rows from the form's state, editable in
// place (double-click, Enter, F2 or just typing on a cell; Enter or Tab to
// confirm, Esc to give up), rows added and deleted, rows selected (click,
// Ctrl+click, Shift+click) and its popup menu (right click, the context-menu
// key or the "Azioni" button). Each edit is sent as the grid action of the
// automation: {"grid":name,"row":r,"set":{column:value}}, "add", "delete",
// "select", "popup". Values are converted by the column's kind before they go.
// A grid that follows its current row (state "followsCurrent": the form
// shows other rows beside it for that row) is told the row the user moves
// to with {"grid":name,"current":r}. A grid declaring date-range columns
// ("dateRange") shows its rows as a time line under the table (timeline.js).
// A value the server refuses in a cell (error 380: a code a coded column does
// not know) is told under the grid in the refusal's words, the cell marked
// and made current again with its previous value, until it is accepted
// there or the card changes record or mode.

import { h, icon } from './dom.js';
import { formatValue, editableNumber, formatDate, parseDate } from './format.js';
import { showPopup, visibleItems } from './popup.js';
import { createTimeline } from './timeline.js';

// Text typed in a cell → the JSON value for its column; {error} when it is not one.
// A column with fixed choices shows their captions and takes a caption or a
// value typed; the stored value is the choice's own.
function choiceCaption(value, entries) {
  const e = entries.find((x) => x.value === value || String(x.value) === String(value));
  return e ? e.caption : null;
}

function parseChoice(text, entries) {
  const t = text.trim().toLowerCase();
  const e = entries.find((x) => x.caption.toLowerCase() === t || String(x.value).toLowerCase() === t);
  return e ? { value: e.value } : { error: `scegliere tra ${entries.map((x) => x.caption).join(', ')}` };
}

function parseCell(text, kind, entries) {
  const t = text.trim();
  if (t === '') return { value: null };
  if (entries?.length) return parseChoice(t, entries);
  switch (kind) {
    case 'integer': {
      if (!/^-?\d+$/.test(t.replace(/\./g, ''))) return { error: 'serve un numero intero' };
      return { value: Number(t.replace(/\./g, '')) };
    }
    case 'percent':
    case 'amount': {
      const n = t.includes(',') ? t.replace(/\./g, '').replace(',', '.') : t;
      if (!/^-?\d+(\.\d+)?$/.test(n)) return { error: 'serve un numero (virgola per i decimali)' };
      return { value: Number(n) };
    }
    case 'date': {
      const d = parseDate(t);
      if (!d) return { error: 'serve una data gg/mm/aaaa' };
      const p = (x) => String(x).padStart(2, '0');
      return { value: `${d.getFullYear()}-${p(d.getMonth() + 1)}-${p(d.getDate())}` };
    }
    default: return { value: text };
  }
}

function editText(value, kind, entries) {
  if (value === null || value === undefined) return '';
  if (entries?.length) return choiceCaption(value, entries) ?? String(value);
  if (kind === 'integer') return String(value);
  if (kind === 'percent' || kind === 'amount') return editableNumber(value, 2);
  if (kind === 'date') return formatDate(value);
  return String(value);
}

const NUMERIC = new Set(['integer', 'percent', 'amount']);
// The error a cell raises for a value it refuses.
const CELL_REFUSAL = 380;

export function createGrid(c, ctx) {
  let state = c;
  let columns = [];
  let rows = [];
  let selection = [];
  let active = { row: 0, col: 0 };
  let anchor = 0;
  let editor = null; // {td, input, row, col, original}
  let deferred = null; // a state that came while a cell was being edited
  let refusal = null; // {row, field, text}: the last value the server refused in a cell

  const title = h('h3', { class: 'grid-title' });
  const count = h('span', { class: 'grid-count' });
  const addButton = h('button', { type: 'button', class: 'tool small', title: 'Aggiungi riga (Ins)' }, icon('add'), h('span', null, 'Aggiungi riga'));
  const deleteButton = h('button', { type: 'button', class: 'tool small', title: 'Elimina riga (Ctrl+Canc)' }, icon('remove'), h('span', null, 'Elimina riga'));
  const menuButton = h('button', { type: 'button', class: 'tool small', title: 'Azioni sulle righe (Maiusc+F10)', 'aria-haspopup': 'menu' }, icon('more'), h('span', null, 'Azioni'));
  const headRow = h('tr');
  const body = h('tbody');
  const table = h('table', { class: 'data-table grid', role: 'grid', tabindex: 0, id: ctx.id(c.name) }, h('thead', null, headRow), body);
  const empty = h('p', { class: 'grid-empty' }, 'Nessuna riga');
  const timeline = c.dateRange ? createTimeline(c.dateRange) : null;
  const refusalNote = h('p', { class: 'field-error cell-error', role: 'alert', id: `${ctx.id(c.name)}-error` });
  refusalNote.hidden = true;
  const el = h('section', { class: 'grid-box', dataset: { control: c.name, kind: 'grid' } },
    h('header', { class: 'grid-head' }, title, count, h('div', { class: 'grid-tools' }, addButton, deleteButton, menuButton)),
    h('div', { class: 'grid-scroll' }, table, empty),
    refusalNote,
    timeline ? timeline.el : null);

  const editable = () => ctx.canEditGrid(state);
  const visibleColumns = () => (state.columns || []).filter((col) => col.visible !== false);

  function cellAt(row, col) {
    const tr = body.children[row];
    return tr ? tr.children[col + 1] : null;
  }

  function paintActive() {
    body.querySelectorAll('td.active').forEach((td) => td.classList.remove('active'));
    const td = cellAt(active.row, active.col);
    if (td) {
      td.classList.add('active');
      td.scrollIntoView({ block: 'nearest', inline: 'nearest' });
    }
  }

  function paintRefusal() {
    body.querySelectorAll('td.refused').forEach((td) => {
      td.classList.remove('refused');
      td.removeAttribute('aria-invalid');
      td.removeAttribute('aria-describedby');
      td.removeAttribute('title');
    });
    if (!refusal) return;
    const td = cellAt(refusal.row, columns.findIndex((col) => col.field === refusal.field));
    if (!td) return;
    td.classList.add('refused');
    td.setAttribute('aria-invalid', 'true');
    td.setAttribute('aria-describedby', refusalNote.id);
    td.title = refusal.text;
  }

  // Shows the refusal `next` ({row, field, text}) at its cell; null takes it away.
  function showRefusal(next) {
    refusal = next;
    refusalNote.hidden = !next;
    refusalNote.textContent = next ? next.text : '';
    el.classList.toggle('has-error', !!next);
    paintRefusal();
  }

  function paintSelection() {
    [...body.children].forEach((tr, i) => {
      const on = selection.includes(i);
      tr.classList.toggle('selected', on);
      tr.setAttribute('aria-selected', String(on));
      tr.classList.toggle('current', !!state.followsCurrent && state.current === i);
    });
  }

  // The form shows rows of another grid for this one's current row: tell it.
  function followRow(row) {
    if (!state.followsCurrent || row === state.current || row < 0 || row >= rows.length) return;
    state = { ...state, current: row };
    paintSelection();
    ctx.perform({ grid: state.name, current: row });
  }

  function drawHead() {
    headRow.replaceChildren(h('th', { class: 'rownum', scope: 'col' }, '#'),
      ...columns.map((col) => h('th', { scope: 'col', class: NUMERIC.has(col.kind) ? 'num' : '', title: col.editable ? '' : 'Colonna non modificabile' },
        col.caption || col.field, col.currency ? h('span', { class: 'col-currency' }, col.currency) : null)));
  }

  function drawBody() {
    body.replaceChildren(...rows.map((row, r) => h('tr', { dataset: { row: r } },
      h('th', { class: 'rownum', scope: 'row' }, String(r + 1)),
      ...columns.map((col, ci) => {
        const v = row[col.field];
        const cls = [NUMERIC.has(col.kind) ? 'num' : '', col.editable ? '' : 'readonly-col'].join(' ').trim();
        if (col.kind === 'check') {
          const box = h('input', { type: 'checkbox', tabindex: -1, checked: !!v, 'aria-label': col.caption });
          box.addEventListener('click', (e) => {
            e.preventDefault();
            active = { row: r, col: ci };
            toggleCheck();
          });
          return h('td', { class: `${cls} center`, dataset: { col: ci } }, box);
        }
        const shown = col.entries?.length ? (choiceCaption(v, col.entries) ?? formatValue(v, col.kind)) : formatValue(v, col.kind);
        return h('td', { class: cls, dataset: { col: ci } }, shown);
      }))));
    empty.hidden = rows.length > 0;
    paintSelection();
    paintActive();
    paintRefusal();
  }

  function render() {
    const cols = visibleColumns();
    if (JSON.stringify(cols) !== JSON.stringify(columns)) {
      columns = cols;
      drawHead();
    }
    rows = state.rows || [];
    selection = state.selection || [];
    if (active.row >= rows.length) active.row = Math.max(rows.length - 1, 0);
    if (active.col >= columns.length) active.col = Math.max(columns.length - 1, 0);
    drawBody();
  }

  function sendSelection(next) {
    selection = next;
    paintSelection();
    ctx.perform({ grid: state.name, select: next });
  }

  function select(row, e) {
    if (row < 0 || row >= rows.length) return;
    let next;
    if (e && e.shiftKey) {
      const [a, b] = [Math.min(anchor, row), Math.max(anchor, row)];
      next = Array.from({ length: b - a + 1 }, (_, i) => a + i);
    } else if (e && (e.ctrlKey || e.metaKey)) {
      next = selection.includes(row) ? selection.filter((x) => x !== row) : [...selection, row];
      anchor = row;
    } else {
      next = [row];
      anchor = row;
    }
    if (JSON.stringify(next) !== JSON.stringify(selection)) sendSelection(next);
  }

  function moveTo(row, col, e) {
    if (!rows.length) return;
    const r = Math.max(0, Math.min(rows.length - 1, row));
    const ci = Math.max(0, Math.min(columns.length - 1, col));
    const rowChanged = r !== active.row;
    active = { row: r, col: ci };
    paintActive();
    if (rowChanged || (e && e.shiftKey)) select(r, e && e.shiftKey ? e : null);
    followRow(r);
  }

  function startEdit(initialText = null) {
    const col = columns[active.col];
    const row = rows[active.row];
    if (!col || !row) return;
    if (!editable() || !col.editable) {
      ctx.note(editable() ? `La colonna «${col.caption}» non è modificabile` : 'Premere Modifica per cambiare le righe');
      return;
    }
    if (col.kind === 'check') { toggleCheck(); return; }
    const td = cellAt(active.row, active.col);
    const original = editText(row[col.field], col.kind, col.entries);
    const input = h('input', { type: 'text', class: `cell-editor ${NUMERIC.has(col.kind) ? 'num' : ''}`, value: initialText ?? original, 'aria-label': col.caption, spellcheck: false, autocomplete: 'off' });
    editor = { td, input, row: active.row, col: active.col, original };
    td.replaceChildren(input);
    td.classList.add('editing');
    input.focus();
    if (initialText === null) input.select();
    else input.setSelectionRange(input.value.length, input.value.length);
    input.addEventListener('keydown', (e) => {
      if (e.key === 'Enter') { e.preventDefault(); e.stopPropagation(); finishEdit(true, [1, 0]); }
      else if (e.key === 'Tab') { e.preventDefault(); e.stopPropagation(); finishEdit(true, [0, e.shiftKey ? -1 : 1]); }
      else if (e.key === 'Escape') { e.preventDefault(); e.stopPropagation(); finishEdit(false); }
      else if (e.key === 'ArrowUp' || e.key === 'ArrowDown') { e.preventDefault(); e.stopPropagation(); finishEdit(true, [e.key === 'ArrowUp' ? -1 : 1, 0]); }
    });
    input.addEventListener('blur', () => finishEdit(true, null, false));
  }

  function finishEdit(commit, step = null, refocus = true) {
    if (!editor) return;
    const { input, row, col, original } = editor;
    editor = null;
    const column = columns[col];
    const text = input.value;
    if (commit && text !== original) {
      const parsed = parseCell(text, column.kind, column.entries);
      if (parsed.error) {
        ctx.note(`«${column.caption}»: ${parsed.error}`);
        drawBody();
      } else {
        rows[row] = { ...rows[row], [column.field]: parsed.value };
        drawBody();
        sendCell(row, column, parsed.value);
      }
    } else {
      drawBody();
    }
    if (deferred) {
      const s = deferred;
      deferred = null;
      api.update(s);
    }
    if (step) moveTo(active.row + step[0], active.col + step[1]);
    if (refocus) table.focus();
  }

  // Sends a cell's new value. Refused, the server's state has brought the
  // previous value back: the cell is marked and made current again.
  async function sendCell(row, column, value) {
    const out = await ctx.perform({ grid: state.name, row, set: { [column.field]: value } }, { fieldErrors: true });
    if (out?.error?.number === CELL_REFUSAL) {
      showRefusal({ row, field: column.field, text: out.error.description });
      moveTo(row, columns.findIndex((col) => col.field === column.field));
      table.focus();
    } else if (out && !out.error && refusal?.row === row && refusal.field === column.field) {
      showRefusal(null);
    }
  }

  function toggleCheck() {
    const col = columns[active.col];
    const row = rows[active.row];
    if (!col || !row || col.kind !== 'check') return;
    if (!editable() || !col.editable) { ctx.note('Premere Modifica per cambiare le righe'); return; }
    ctx.perform({ grid: state.name, row: active.row, set: { [col.field]: !row[col.field] } });
  }

  async function addRow() {
    if (!editable()) { ctx.note('Premere Modifica o Nuovo per aggiungere righe'); return; }
    const out = await ctx.perform({ grid: state.name, add: {} });
    const added = out?.result?.added;
    if (Number.isInteger(added)) {
      active = { row: added, col: Math.max(0, columns.findIndex((col) => col.editable)) };
      paintActive();
      table.focus();
    }
  }

  async function deleteRow() {
    if (!editable()) { ctx.note('Premere Modifica per eliminare righe'); return; }
    if (!rows.length) return;
    const row = selection.length === 1 ? selection[0] : active.row;
    const out = await ctx.perform({ grid: state.name, delete: row });
    if (out?.result?.done && refusal) showRefusal(null); // the rows moved
    table.focus();
  }

  async function popup(pos) {
    // The form enables what can run in the card's state as the menu opens,
    // so the items come fresh from the server, not from the last state.
    const out = await ctx.perform({ grid: state.name, menu: true });
    if (!out || out.error) return;
    const items = out.result?.menu;
    if (!items) return;
    const key = await showPopup(items, { ...pos, label: `Azioni: ${state.caption || state.name}` });
    if (key) ctx.perform({ grid: state.name, popup: key });
  }

  body.addEventListener('mousedown', (e) => {
    const td = e.target.closest('td, th.rownum');
    const tr = e.target.closest('tr');
    if (!tr || editor?.td === td) return;
    const r = Number(tr.dataset.row);
    const ci = td && td.dataset.col !== undefined ? Number(td.dataset.col) : active.col;
    active = { row: r, col: ci };
    paintActive();
    if (e.button === 2 && selection.includes(r)) return; // right click keeps a multiple selection
    select(r, e);
    followRow(r);
  });
  body.addEventListener('dblclick', (e) => {
    if (e.target.closest('td') && !editor) startEdit();
  });
  table.addEventListener('contextmenu', (e) => {
    e.preventDefault();
    e.stopPropagation();
    popup({ x: e.clientX, y: e.clientY });
  });
  table.addEventListener('keydown', (e) => {
    if (editor) return;
    const k = e.key;
    if (k === 'ArrowDown') { e.preventDefault(); moveTo(active.row + 1, active.col, e); }
    else if (k === 'ArrowUp') { e.preventDefault(); moveTo(active.row - 1, active.col, e); }
    else if (k === 'ArrowRight') { e.preventDefault(); moveTo(active.row, active.col + 1); }
    else if (k === 'ArrowLeft') { e.preventDefault(); moveTo(active.row, active.col - 1); }
    else if (k === 'Home') { e.preventDefault(); moveTo(e.ctrlKey ? 0 : active.row, 0); }
    else if (k === 'End') { e.preventDefault(); moveTo(e.ctrlKey ? rows.length - 1 : active.row, columns.length - 1); }
    else if (k === 'PageDown') { e.preventDefault(); moveTo(active.row + 10, active.col, e); }
    else if (k === 'PageUp') { e.preventDefault(); moveTo(active.row - 10, active.col, e); }
    else if (k === 'Enter' || k === 'F2') { e.preventDefault(); e.stopPropagation(); startEdit(); }
    else if (k === ' ' && columns[active.col]?.kind === 'check') { e.preventDefault(); toggleCheck(); }
    else if (k === ' ') { e.preventDefault(); select(active.row, { ctrlKey: true }); }
    else if (k === 'Insert') { e.preventDefault(); addRow(); }
    else if (k === 'Delete' && e.ctrlKey) { e.preventDefault(); deleteRow(); }
    else if (k === 'ContextMenu' || (k === 'F10' && e.shiftKey)) {
      e.preventDefault();
      const td = cellAt(active.row, active.col) || table;
      const r = td.getBoundingClientRect();
      popup({ x: r.left, y: r.bottom });
    } else if (k.length === 1 && !e.ctrlKey && !e.altKey && !e.metaKey) {
      e.preventDefault();
      startEdit(k);
    }
  });
  addButton.addEventListener('click', addRow);
  deleteButton.addEventListener('click', deleteRow);
  menuButton.addEventListener('click', () => popup({ anchor: menuButton }));

  const api = {
    el,
    focus: () => table.focus(),
    // Takes the refusal shown at a cell away (another record or mode).
    clearRefusal: () => showRefusal(null),
    update(next) {
      if (editor) { deferred = next; state = next; return; }
      state = next;
      el.hidden = !state.visible;
      title.textContent = state.caption || '';
      const canEdit = editable();
      addButton.disabled = !canEdit;
      deleteButton.disabled = !canEdit || !(state.rows || []).length;
      const hasMenu = visibleItems(state.popup).some((i) => i.caption !== '-');
      menuButton.hidden = !hasMenu;
      el.classList.toggle('is-readonly', !canEdit);
      el.classList.toggle('is-disabled', !state.enabled);
      render();
      if (timeline) timeline.update(rows, state.current);
      const n = rows.length;
      count.textContent = `${n} ${n === 1 ? 'riga' : 'righe'}${selection.length ? `, ${selection.length} selezionat${selection.length === 1 ? 'a' : 'e'}` : ''}`;
    },
  };
  return api;
}
