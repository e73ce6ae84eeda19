// One widget per field kind of a form's description (state.controls):
// text (maximum length, accepted characters), date (with a calendar), integer,
// percentage, amount (with its currency), check box, options, combo, lookup
// (code, search list, description), label and button. A widget is built once
// and updated in place from each new state; what the user types is sent as
// {"set":name,"value":…} when the field changes (not on every key), and a
// field being typed into keeps its text when a state arrives meanwhile.

import { h, icon } from './dom.js';
import { formatNumber, editableNumber, formatDate, parseDate, dateToText, fieldCaption } from './format.js';
import { openCalendar } from './calendar.js';
import { pickList } from './dialogs.js';

// Grid spans (of the frame's auto-filled columns, 56px at least) by kind and length.
export function spanOf(c) {
  switch (c.kind) {
    case 'text': {
      const n = c.maxLength || 0;
      if (n === 0) return 6;
      if (n <= 3) return 1;
      if (n <= 12) return 2;
      if (n <= 30) return 3;
      if (n <= 60) return 4;
      return 6;
    }
    case 'date': case 'integer': case 'percent': return 2;
    case 'amount': case 'check': case 'combo': return 3;
    case 'lookup': return 6;
    case 'option': case 'label': return 6;
    case 'button': return 2;
    default: return 3;
  }
}

function fieldShell(c, ctx, input, { labelFirst = true, extra = null } = {}) {
  const label = h('label', { class: 'field-label', for: ctx.id(c.name) }, c.caption || fieldCaption(c.name));
  const wrap = h('div', { class: `field kind-${c.kind} span-${spanOf(c)}`, dataset: { control: c.name, kind: c.kind } },
    labelFirst ? label : null,
    h('div', { class: 'field-box' }, input, extra),
    labelFirst ? null : label);
  return wrap;
}

function applyCommon(wrap, input, c, ctx) {
  wrap.hidden = !c.visible;
  const editable = ctx.canEdit(c);
  input.disabled = !c.enabled;
  if ('readOnly' in input) input.readOnly = !editable;
  wrap.classList.toggle('is-locked', !!c.locked);
  wrap.classList.toggle('is-readonly', c.enabled && !editable);
  wrap.classList.toggle('is-disabled', !c.enabled);
  if (c.locked) input.title = 'Campo bloccato: non modificabile';
  else input.removeAttribute('title');
  return editable;
}

// Keeps only the accepted characters; a lower-case letter whose upper case is
// accepted is taken in upper case (VAT numbers accept capitals only).
function filterAccepted(text, accepted) {
  let out = '';
  let dropped = false;
  for (const ch of text) {
    if (accepted.includes(ch)) out += ch;
    else if (accepted.includes(ch.toUpperCase())) out += ch.toUpperCase();
    else dropped = true;
  }
  return { out, dropped };
}

// A text input whose shown text depends on focus (numbers are formatted
// when not being edited). `toEdit` and `toDisplay` map the value to text.
function textLike(c, ctx, { toEdit, toDisplay, filter = null, inputMode = 'text', adornment = null, after = null }) {
  const input = h('input', { type: 'text', id: ctx.id(c.name), name: c.name, autocomplete: 'off', spellcheck: false, inputmode: inputMode });
  const extra = [];
  if (adornment) extra.push(adornment);
  if (after) extra.push(after);
  const wrap = fieldShell(c, ctx, input, { extra });
  let value = c.value;
  let shown = ''; // the text this widget last put in the input
  const render = () => {
    shown = document.activeElement === input ? toEdit(value) : toDisplay(value);
    input.value = shown;
  };
  const commit = () => {
    if (input.readOnly || input.disabled) return;
    if (input.value === shown) return;
    shown = input.value;
    ctx.set(c.name, input.value);
  };
  input.addEventListener('focus', () => {
    if (input.value !== shown) return;
    shown = toEdit(value);
    input.value = shown;
    if (!input.readOnly) input.select();
  });
  input.addEventListener('blur', () => {
    if (input.value === shown) { shown = toDisplay(value); input.value = shown; }
  });
  input.addEventListener('change', commit);
  if (filter) {
    input.addEventListener('input', () => {
      const { out, dropped } = filter(input.value);
      if (out !== input.value) {
        const pos = input.selectionStart - (input.value.length - out.length);
        input.value = out;
        input.setSelectionRange(Math.max(pos, 0), Math.max(pos, 0));
      }
      if (dropped) {
        wrap.classList.remove('refused');
        void wrap.offsetWidth; // restarts the animation
        wrap.classList.add('refused');
        ctx.note(`Carattere non ammesso in «${c.caption || c.name}»`);
      }
    });
  }
  return {
    el: wrap,
    input,
    commit,
    focus: () => input.focus(),
    update(next) {
      c = next;
      applyCommon(wrap, input, c, ctx);
      if (c.kind === 'text') input.maxLength = c.maxLength > 0 ? c.maxLength : 524288;
      const typing = document.activeElement === input && input.value !== shown;
      value = c.value;
      if (!typing) render();
    },
  };
}

function textField(c, ctx) {
  const filter = c.accepted ? (t) => filterAccepted(t, c.accepted) : null;
  const w = textLike(c, ctx, { toEdit: (v) => v ?? '', toDisplay: (v) => v ?? '', filter });
  if (c.accepted) w.input.dataset.accepted = c.accepted;
  return w;
}

function numberField(c, ctx) {
  const decimals = () => c.decimals ?? (c.kind === 'integer' ? 0 : 2);
  const allowed = c.kind === 'integer' ? '0123456789-' : '0123456789,.-';
  let adornment = null;
  if (c.kind === 'percent') adornment = h('span', { class: 'adornment' }, '%');
  if (c.kind === 'amount') adornment = h('span', { class: 'adornment currency' }, c.currency || '');
  const w = textLike(c, ctx, {
    toEdit: (v) => editableNumber(v, decimals()),
    toDisplay: (v) => formatNumber(v, decimals(), c.kind !== 'integer'),
    filter: (t) => {
      let out = '';
      let dropped = false;
      for (const ch of t) if (allowed.includes(ch)) out += ch; else dropped = true;
      return { out, dropped };
    },
    inputMode: c.kind === 'integer' ? 'numeric' : 'decimal',
    adornment,
  });
  w.input.classList.add('num');
  const base = w.update;
  w.update = (next) => {
    c = next;
    if (adornment && c.kind === 'amount') {
      adornment.textContent = c.currency || '';
      adornment.hidden = !c.currency;
    }
    base(next);
  };
  return w;
}

function dateField(c, ctx) {
  const button = h('button', { type: 'button', class: 'field-button', tabindex: -1, title: 'Calendario (Alt+↓)', 'aria-label': 'Apri il calendario' }, icon('calendar'));
  const w = textLike(c, ctx, { toEdit: formatDate, toDisplay: formatDate, after: button });
  w.input.maxLength = 10;
  const open = async () => {
    if (w.input.readOnly || w.input.disabled) return;
    const chosen = await openCalendar(w.input, parseDate(w.input.value));
    w.input.focus();
    if (chosen) {
      w.input.value = dateToText(chosen);
      w.commit();
    }
  };
  button.addEventListener('click', open);
  w.input.addEventListener('keydown', (e) => {
    if ((e.altKey && e.key === 'ArrowDown') || e.key === 'F4') { e.preventDefault(); open(); }
  });
  const base = w.update;
  w.update = (next) => {
    base(next);
    button.disabled = w.input.readOnly || w.input.disabled;
    w.input.placeholder = button.disabled ? '' : 'gg/mm/aaaa';
  };
  return w;
}

function lookupField(c, ctx) {
  const button = h('button', { type: 'button', class: 'field-button', tabindex: -1, title: 'Elenco di ricerca (F4)', 'aria-label': `Cerca ${c.caption}` }, icon('search'));
  const description = h('span', { class: 'lookup-description', dataset: { role: 'description' } });
  const w = textLike(c, ctx, { toEdit: (v) => v ?? '', toDisplay: (v) => v ?? '', after: button });
  w.el.querySelector('.field-box').append(description);
  if (c.mask) w.input.placeholder = c.mask.replace(/#/g, '9');
  const open = async () => {
    if (w.input.readOnly || w.input.disabled) return;
    // What was typed becomes the search text; the field goes back to its
    // value so that leaving it for the list does not send half a code.
    const typed = w.input.value !== (c.value ?? '') ? w.input.value : '';
    w.input.value = c.value ?? '';
    const row = await pickList({
      title: `Ricerca: ${c.caption || c.lookup}`,
      initial: typed,
      current: c.value,
      placeholder: 'Codice o descrizione',
      search: async (text) => (await ctx.perform({ lookup: c.name, search: text }))?.result?.rows || [],
    });
    w.input.focus();
    if (row) {
      const code = row[Object.keys(row)[0]];
      w.input.value = String(code ?? '');
      w.commit();
    }
  };
  button.addEventListener('click', open);
  w.input.addEventListener('keydown', (e) => {
    if (e.key === 'F4' || (e.altKey && e.key === 'ArrowDown')) { e.preventDefault(); open(); }
  });
  const base = w.update;
  w.update = (next) => {
    c = next;
    base(next);
    description.textContent = c.description || '';
    button.disabled = w.input.readOnly || w.input.disabled;
  };
  return w;
}

function checkField(c, ctx) {
  const input = h('input', { type: 'checkbox', id: ctx.id(c.name), name: c.name });
  const wrap = fieldShell(c, ctx, input, { labelFirst: false });
  wrap.classList.add('inline');
  input.addEventListener('click', (e) => {
    if (!ctx.canEdit(c)) e.preventDefault(); // read-only check boxes keep their state
  });
  input.addEventListener('change', () => ctx.set(c.name, input.checked));
  return {
    el: wrap,
    focus: () => input.focus(),
    update(next) {
      c = next;
      applyCommon(wrap, input, c, ctx);
      input.checked = !!c.value;
      input.setAttribute('aria-readonly', String(!ctx.canEdit(c)));
    },
  };
}

function sameValue(a, b) {
  return a === b || (a != null && b != null && String(a) === String(b));
}

function comboField(c, ctx) {
  const select = h('select', { id: ctx.id(c.name), name: c.name });
  const wrap = fieldShell(c, ctx, select);
  let entries = [];
  select.addEventListener('change', () => {
    const i = Number(select.value);
    ctx.set(c.name, i < 0 ? null : entries[i].value);
  });
  select.addEventListener('mousedown', (e) => { if (!ctx.canEdit(c)) e.preventDefault(); });
  select.addEventListener('keydown', (e) => {
    if (!ctx.canEdit(c) && !['Tab', 'Enter', 'Escape'].includes(e.key)) e.preventDefault();
  });
  return {
    el: wrap,
    focus: () => select.focus(),
    update(next) {
      c = next;
      applyCommon(wrap, select, c, ctx);
      const fresh = JSON.stringify(c.entries || []);
      if (fresh !== JSON.stringify(entries)) {
        entries = c.entries || [];
        select.replaceChildren(h('option', { value: '-1' }, ''), ...entries.map((e, i) => h('option', { value: String(i) }, e.caption)));
      }
      const i = entries.findIndex((e) => sameValue(e.value, c.value));
      select.value = String(i);
    },
  };
}

function optionField(c, ctx) {
  const group = h('div', { class: 'option-group', role: 'radiogroup', id: ctx.id(c.name) });
  const wrap = h('fieldset', { class: `field kind-option span-${spanOf(c)}`, dataset: { control: c.name, kind: c.kind } },
    h('legend', { class: 'field-label' }, c.caption || fieldCaption(c.name)), group);
  group.setAttribute('aria-label', c.caption || c.name);
  let entries = null;
  let radios = [];
  return {
    el: wrap,
    focus: () => (radios.find((r) => r.checked) || radios[0])?.focus(),
    update(next) {
      c = next;
      wrap.hidden = !c.visible;
      const fresh = JSON.stringify(c.entries || []);
      if (fresh !== JSON.stringify(entries)) {
        entries = c.entries || [];
        radios = entries.map((e, i) => {
          const r = h('input', { type: 'radio', name: `${ctx.id(c.name)}`, value: String(i), id: `${ctx.id(c.name)}-${i}` });
          r.addEventListener('click', (ev) => { if (!ctx.canEdit(c)) ev.preventDefault(); });
          r.addEventListener('change', () => { if (r.checked) ctx.set(c.name, entries[i].value); });
          return r;
        });
        group.replaceChildren(...entries.map((e, i) => h('label', { class: 'option' }, radios[i], e.caption)));
      }
      const editable = ctx.canEdit(c);
      radios.forEach((r, i) => {
        r.disabled = !c.enabled;
        r.checked = sameValue(entries[i].value, c.value);
        r.setAttribute('aria-readonly', String(!editable));
      });
      wrap.classList.toggle('is-readonly', c.enabled && !editable);
      wrap.classList.toggle('is-disabled', !c.enabled);
    },
  };
}

function labelField(c) {
  const el = h('div', { class: `field kind-label span-${spanOf(c)}`, dataset: { control: c.name, kind: 'label' } });
  return {
    el,
    focus: () => {},
    update(next) {
      el.hidden = !next.visible;
      el.textContent = next.caption || (next.value ?? '');
      el.classList.toggle('is-disabled', !next.enabled);
    },
  };
}

// A form's own command button: pressing it runs the form's handler.
function buttonField(c, ctx) {
  const b = h('button', { type: 'button', class: 'form-button', id: ctx.id(c.name), dataset: { control: c.name, kind: 'button' } }, c.caption);
  const el = h('div', { class: `field kind-button span-${spanOf(c)}` }, b);
  b.addEventListener('click', () => ctx.perform({ click: c.name }));
  return {
    el,
    focus: () => b.focus(),
    update(next) {
      el.hidden = !next.visible;
      b.textContent = next.caption;
      b.disabled = !next.enabled;
    },
  };
}

const FACTORIES = {
  text: textField,
  date: dateField,
  integer: numberField,
  percent: numberField,
  amount: numberField,
  check: checkField,
  option: optionField,
  combo: comboField,
  lookup: lookupField,
  label: labelField,
  button: buttonField,
};

export function isField(kind) { return kind in FACTORIES; }
export function createField(c, ctx) { return FACTORIES[c.kind](c, ctx); }
