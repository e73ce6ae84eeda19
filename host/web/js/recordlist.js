// A card's record list: the page a card opens on. Rows come from the server
// a page at a time ({"list":…}: read by key set, so the millionth row costs
// what the first does), with a search box (code, name, VAT number, fiscal
// code, town, phone), a filter under each column and a sort by clicking a
// column's title (again to reverse it). Enter or a double click opens the
// record in the card; the card's moves then follow the list's order and
// filter, which the server keeps from the list's first page. Not for: the
// card's fields (form.js) or a lookup's search list (dialogs.js).

import { h, clear } from './dom.js';
import { formatNumber } from './format.js';

const PAGE = 50;

export function createRecordList(view) {
  const query = { search: '', filters: {}, sort: '', descending: false };
  let columns = [];
  let rows = [];
  let next = null;
  let active = 0;
  let timer = null;

  const search = h('input', { type: 'search', class: 'list-search', placeholder: 'Cerca codice, nome, partita IVA, codice fiscale, città, telefono', 'aria-label': 'Cerca nell\'elenco' });
  const count = h('span', { class: 'list-count', role: 'status' });
  const head = h('thead');
  const body = h('tbody');
  const table = h('table', { class: 'data-table record-list-table', tabindex: 0, 'aria-label': 'Elenco delle schede' }, head, body);
  const more = h('button', { type: 'button', class: 'form-button list-more', hidden: true }, 'Altre schede');
  const el = h('section', { class: 'record-list', 'aria-label': 'Elenco' },
    h('div', { class: 'list-tools' }, search, count),
    h('div', { class: 'grid-scroll list-scroll' }, table),
    more);

  async function load(append = false) {
    const request = { search: query.search, filters: query.filters, sort: query.sort, descending: query.descending, limit: PAGE };
    if (append) request.after = next;
    const out = await view.perform({ list: request });
    const list = out?.result?.list;
    if (!list) return;
    columns = list.columns;
    rows = append ? rows.concat(list.rows) : list.rows;
    next = list.next;
    if (!append) active = 0;
    render();
  }
  // Typing waits for a pause, so a word is one request, not one per letter.
  const later = () => { clearTimeout(timer); timer = setTimeout(() => load(false), 250); };

  function renderHead() {
    const titles = h('tr', null, ...columns.map((c) => {
      const sorted = (query.sort || columns[0]?.field) === c.field;
      const b = h('button', { type: 'button', class: 'list-sort', dataset: { field: c.field } }, c.caption,
        sorted ? h('span', { class: 'sort-mark', 'aria-hidden': 'true' }, query.descending ? ' ▼' : ' ▲') : null);
      b.addEventListener('click', () => {
        if (sorted) query.descending = !query.descending;
        else { query.sort = c.field; query.descending = false; }
        load(false);
      });
      return h('th', { scope: 'col', 'aria-sort': sorted ? (query.descending ? 'descending' : 'ascending') : 'none' }, b);
    }));
    const filters = h('tr', { class: 'list-filters' }, ...columns.map((c) => {
      const input = h('input', { type: 'search', class: 'list-filter', dataset: { field: c.field }, 'aria-label': `Filtra ${c.caption}`, placeholder: 'Filtro', value: query.filters[c.field] || '' });
      input.addEventListener('input', () => {
        if (input.value.trim()) query.filters[c.field] = input.value;
        else delete query.filters[c.field];
        later();
      });
      return h('th', null, input);
    }));
    // The filters keep their focus and text while the titles are redrawn.
    const focused = head.querySelector('.list-filter:focus')?.dataset.field;
    clear(head);
    head.append(titles, filters);
    if (focused) {
      const input = head.querySelector(`.list-filter[data-field="${focused}"]`);
      input.focus();
      input.setSelectionRange(input.value.length, input.value.length);
    }
  }

  function render() {
    renderHead();
    clear(body);
    rows.forEach((r, i) => {
      const tr = h('tr', { dataset: { key: String(r.key), row: String(i) }, class: i === active ? 'active' : '' },
        ...r.values.map((v) => h('td', { class: typeof v === 'number' ? 'num' : '' }, v == null ? '' : typeof v === 'number' && !Number.isInteger(v) ? formatNumber(v, 2, true) : String(v))));
      tr.addEventListener('click', () => { active = i; paint(); });
      tr.addEventListener('dblclick', () => open(i));
      body.append(tr);
    });
    if (!rows.length) body.append(h('tr', { class: 'list-empty' }, h('td', { colspan: String(columns.length || 1) }, 'Nessuna scheda')));
    count.textContent = rows.length === 1 ? '1 scheda' : `${rows.length}${next ? '+' : ''} schede`;
    more.hidden = !next;
  }

  function paint() {
    for (const tr of body.querySelectorAll('tr[data-row]')) tr.classList.toggle('active', Number(tr.dataset.row) === active);
    body.querySelector('tr.active')?.scrollIntoView({ block: 'nearest' });
  }

  async function open(i) {
    const row = rows[i];
    if (!row) return;
    const out = await view.perform({ load: row.key });
    if (out?.result?.done) view.showCard();
  }

  search.addEventListener('input', () => { query.search = search.value; later(); });
  search.addEventListener('keydown', (e) => {
    if (e.key === 'ArrowDown') { e.preventDefault(); table.focus(); }
    if (e.key === 'Enter') { e.preventDefault(); clearTimeout(timer); load(false); }
  });
  table.addEventListener('keydown', (e) => {
    if (e.target.matches('input')) return;
    if (e.key === 'ArrowDown') { e.preventDefault(); active = Math.min(active + 1, rows.length - 1); paint(); }
    else if (e.key === 'ArrowUp') { e.preventDefault(); active = Math.max(active - 1, 0); paint(); }
    else if (e.key === 'Enter') { e.preventDefault(); open(active); }
  });
  more.addEventListener('click', () => load(true));

  return {
    el,
    // Reads the list again (its first page) when shown.
    show() { load(false); },
    focus() { search.focus(); },
  };
}
