// A form drawn from its own description (state.controls): the tool bar of its
// card, report panel or active-form panel, then its frames as group boxes, its
// tab pages, its fields and grids in the order the form lists them. The view is
// built once per layout and updated in place from every state the server
// returns, so focus and text being typed survive. In a card, fields bound to
// the record are read-only while browsing: Modifica (or Nuovo) makes them
// editable, as the card's record cycle requires.

import { h, clear } from './dom.js';
import { createField, isField } from './fields.js';
import { createGrid } from './grid.js';
import { createCardToolbar, createPrintToolbar, createActiveToolbar, findRecord, cardPopupAt, MOVE_NOTES } from './toolbar.js';
import { perform } from './actions.js';
import { confirmBox } from './dialogs.js';
import { createRecordList } from './recordlist.js';
import { MODE_CAPTIONS } from './format.js';

const PANELS = new Set(['card', 'printpanel', 'activeformpanel']);
// The error a field raises for a value it refuses.
const FIELD_REFUSAL = 380;

function layoutSignature(state) {
  return JSON.stringify((state.controls || []).map((c) => [c.name, c.kind, c.frame, c.tab, c.pages || null]));
}

export class FormView {
  constructor(state, { caption, note, onChange }) {
    this.formId = state.formId;
    this.item = state.item;
    this.kind = state.kind;
    this.caption = caption;
    this.note = note;
    this.onChange = onChange; // mode or key changed (tab title, status bar)
    this.el = h('div', { class: 'form-view', dataset: { formId: state.formId, item: state.item, form: state.form } });
    this.el.addEventListener('keydown', (e) => this.onKey(e));
    this.el.addEventListener('contextmenu', (e) => {
      if (!this.card || e.target.closest('input, textarea, select, .grid-box, .toolbar')) return;
      e.preventDefault();
      this.cardPopup({ x: e.clientX, y: e.clientY });
    });
    this.signature = '';
    this.update(state);
  }

  // ---- what widgets and tool bars call ----

  perform(action, options) { return perform(this.formId, action, options); }

  get mode() { return this.cardState ? this.cardState.mode : null; }

  context() {
    const prefix = `f${this.formId}-`;
    return {
      id: (name) => prefix + name,
      canEdit: (c) => c.enabled && c.visible && !c.locked && (!this.cardState || this.cardState.mode !== 0 || !c.binding),
      canEditGrid: (g) => g.enabled && !g.locked && (!this.cardState || this.cardState.mode !== 0),
      set: (name, value) => this.setField(name, value),
      perform: (action, options) => this.perform(action, options),
      note: (text) => this.note(text),
    };
  }

  // Sends what was typed into a field. A value the field refuses (error 380)
  // is told under the field, in the words of the refusal, and the focus goes
  // back there to correct it; other errors come as the module's messages.
  async setField(name, value) {
    const out = await perform(this.formId, { set: name, value }, { fieldErrors: true });
    if (out?.error?.number === FIELD_REFUSAL) {
      this.markField(name, out.error.description);
      this.widgets.get(name)?.focus();
    } else if (out) {
      this.markField(name, null);
      this.unmarkNamed(name);
    }
    return out;
  }

  // Shows `text` under the field `name` (null takes it away).
  markField(name, text) {
    const w = this.widgets.get(name);
    if (!w) return;
    let note = w.el.querySelector(':scope > .field-error');
    if (!text) {
      if (w.clearRefusal) { w.clearRefusal(); return; }
      note?.remove();
      w.el.classList.remove('has-error');
      w.input?.removeAttribute('aria-invalid');
      w.input?.removeAttribute('aria-describedby');
      return;
    }
    if (!note) {
      note = h('p', { class: 'field-error', role: 'alert', id: `f${this.formId}-${name}-error` });
      w.el.append(note);
    }
    note.textContent = text;
    w.el.classList.add('has-error');
    w.input?.setAttribute('aria-invalid', 'true');
    w.input?.setAttribute('aria-describedby', note.id);
  }

  clearFieldMarks() {
    for (const name of this.widgets.keys()) {
      this.markField(name, null);
      this.unmarkNamed(name);
    }
  }

  // Marks the fields a check's message names by their caption ("Non sono
  // stati indicati né la partita IVA né il codice fiscale" marks Partita Iva
  // and Codice Fiscale), so the user sees where to look. Only where it can
  // tell: captions of five characters or more, matched as whole words; the
  // message itself is shown as the module wrote it.
  markNamedFields(text) {
    const words = (t) => ` ${String(t || '').toLowerCase().replace(/[^\p{L}\p{N}]+/gu, ' ').trim()} `;
    const said = words(text);
    const found = [];
    for (const c of this.state?.controls || []) {
      const w = this.widgets.get(c.name);
      const caption = words(c.caption);
      if (w?.input && caption.trim().length >= 5 && said.includes(caption)) found.push({ w, caption });
    }
    // "Codice" is not named where the text says "codice fiscale".
    for (const { w, caption } of found) {
      if (found.some((o) => o.caption !== caption && o.caption.includes(caption))) continue;
      w.el.classList.add('is-named');
      w.el.dataset.named = String(text).split(/\r?\n/)[0];
    }
  }

  unmarkNamed(name) {
    const w = this.widgets.get(name);
    if (!w) return;
    w.el.classList.remove('is-named');
    delete w.el.dataset.named;
  }

  // Sends the field being typed into, if changed, before a command runs.
  commitPending() {
    const active = document.activeElement;
    if (!active || !this.el.contains(active)) return;
    for (const w of this.widgets.values()) {
      if (w.input === active && w.commit) w.commit();
    }
  }

  // A card opens on its record list; a record opened, a command pressed or
  // an edit begun shows the card.
  showCard() {
    this.el.classList.remove('showing-list');
    if (this.cardBar) this.cardBar.el.querySelector('[data-tool="list"]')?.setAttribute('aria-pressed', 'false');
  }

  showList() {
    if (!this.list || this.cardState?.mode !== 0) return;
    this.el.classList.add('showing-list');
    this.cardBar.el.querySelector('[data-tool="list"]')?.setAttribute('aria-pressed', 'true');
    this.list.show();
    this.list.focus();
  }

  async press(button) {
    this.showCard();
    this.commitPending();
    if (button === 'delete') {
      const ok = await confirmBox('Eliminare la scheda mostrata?', { title: 'Elimina', yes: 'Elimina', no: 'Annulla' });
      if (!ok) return;
    }
    const out = await this.perform({ press: button });
    const result = out?.result;
    if (!result || result.done) {
      if (result && button === 'save') this.note('Scheda salvata');
      if (result && button === 'new') this.focusFirst();
      if (result && button === 'edit') this.focusFirst();
      return;
    }
    if (MOVE_NOTES[button]) this.note(MOVE_NOTES[button]);
    else if (button === 'save') this.note('Salvataggio non eseguito');
    else if (button === 'delete') this.note('Eliminazione non eseguita');
  }

  async find(text) {
    await findRecord(this, text);
    if (this.cardState?.key != null) this.showCard();
  }

  async cardPopup(pos) {
    if (!this.cardState) return;
    const key = await cardPopupAt(this.cardState.popup, pos);
    if (key) this.perform({ popup: key });
  }

  // ---- keyboard ----

  onKey(e) {
    // Keys typed in a message box are not the form's; a form that is itself
    // shown in a modal window takes its own.
    if (e.defaultPrevented || (e.target.closest?.('dialog') || null) !== this.el.closest('dialog')) return;
    const inText = e.target.matches('input:not([readonly]):not([type=checkbox]):not([type=radio]), textarea, select');
    const inGrid = !!e.target.closest('.grid');
    // Enter moves to the next field, as in the desktop forms.
    if (e.key === 'Enter' && e.target.matches('.field input:not([type=checkbox]):not([type=radio])') && !e.altKey && !e.ctrlKey) {
      e.preventDefault();
      const w = [...this.widgets.values()].find((x) => x.input === e.target);
      if (w && w.commit) w.commit();
      this.focusNext(e.target, e.shiftKey ? -1 : 1);
      return;
    }
    if (this.cardBar) {
      const c = this.cardState;
      const browsing = c.mode === 0;
      const keys = {
        F2: browsing && 'edit',
        F3: browsing && 'new',
        F8: browsing && 'delete',
        F9: !browsing && 'save',
      };
      if (e.key === 's' && e.ctrlKey && !browsing) { e.preventDefault(); this.press('save'); return; }
      if (keys[e.key] !== undefined) {
        e.preventDefault();
        if (keys[e.key]) this.press(keys[e.key]);
        return;
      }
      if (e.key === 'f' && e.ctrlKey) { e.preventDefault(); if (browsing) this.cardBar.focusFind(); return; }
      if (e.key === 'Escape' && !browsing) {
        e.preventDefault();
        this.commitPending();
        confirmBox('Annullare le modifiche non salvate?', { title: 'Annulla', yes: 'Annulla le modifiche', no: 'Continua' })
          .then((ok) => ok && this.press('cancel'));
        return;
      }
      if (browsing && !inText && !inGrid) {
        if (e.key === 'PageUp') { e.preventDefault(); this.press('previous'); return; }
        if (e.key === 'PageDown') { e.preventDefault(); this.press('next'); return; }
        if (e.key === 'Home' && e.ctrlKey) { e.preventDefault(); this.press('first'); return; }
        if (e.key === 'End' && e.ctrlKey) { e.preventDefault(); this.press('last'); return; }
      }
      if (e.key === 'F6' && browsing) { e.preventDefault(); this.showList(); return; }
    }
    if (this.printBar && e.key === 'p' && e.ctrlKey) { e.preventDefault(); this.printBar.print(); return; }
    if (this.activeBar && e.key === 'F5') { e.preventDefault(); this.activeBar.refresh(); }
  }

  focusables() {
    return [...this.el.querySelectorAll('.form-body input, .form-body select, .form-body .grid')]
      .filter((x) => !x.disabled && x.offsetParent !== null && x.tabIndex >= 0 && !(x.type === 'radio' && !x.checked && x.closest('.option-group')?.querySelector(':checked')));
  }

  focusNext(from, delta) {
    const list = this.focusables();
    const i = list.indexOf(from);
    const next = list[i + delta];
    if (next) next.focus();
  }

  focusFirst() {
    if (this.cardBar && this.cardState?.mode === 0) { this.cardBar.focusFind(); return; }
    const list = this.focusables().filter((x) => !x.readOnly);
    (list[0] || this.focusables()[0])?.focus();
  }

  // ---- building and updating ----

  build(state) {
    clear(this.el);
    this.widgets = new Map();
    this.cardBar = null;
    this.printBar = null;
    this.activeBar = null;
    const controls = state.controls || [];
    const ctx = this.context();

    for (const c of controls) {
      if (c.kind === 'card' && !this.cardBar) { this.cardBar = createCardToolbar(this); this.el.append(this.cardBar.el); }
      if (c.kind === 'printpanel' && !this.printBar) { this.printBar = createPrintToolbar(this); this.el.append(this.printBar.el, this.printBar.extra); }
      if (c.kind === 'activeformpanel' && !this.activeBar) { this.activeBar = createActiveToolbar(this); this.el.append(this.activeBar.el); }
    }
    this.list = null;
    if (this.cardBar) {
      this.list = createRecordList(this);
      this.el.append(this.list.el);
    }
    const body = h('div', { class: 'form-body' });
    this.el.append(body);
    if (!controls.some((c) => !PANELS.has(c.kind))) {
      body.append(h('p', { class: 'form-empty' }, 'Questa maschera non ha campi da mostrare.'));
      return;
    }

    // Containers: every frame's inner grid and every tab page.
    const frames = new Map();
    const pages = [];
    const childCount = new Map();
    for (const c of controls) if (c.frame) childCount.set(c.frame, (childCount.get(c.frame) || 0) + 1);
    const hasGrid = new Set(controls.filter((c) => c.kind === 'grid' && c.frame).map((c) => c.frame));

    for (const c of controls) {
      if (c.kind === 'frame') {
        const inner = h('div', { class: 'frame-grid' });
        const titleId = `f${this.formId}-${c.name}-title`;
        const box = h('section', { class: 'frame', role: 'group', 'aria-labelledby': titleId, dataset: { control: c.name, kind: 'frame' } },
          h('h2', { class: 'frame-title', id: titleId }, c.caption), inner);
        if ((childCount.get(c.name) || 0) > 8 || hasGrid.has(c.name)) box.classList.add('wide');
        frames.set(c.name, { box, inner, c });
      }
    }
    const tabsControl = controls.find((c) => c.kind === 'tabs');
    let tabsWidget = null;
    if (tabsControl) {
      tabsWidget = this.createTabs(tabsControl);
      pages.push(...tabsWidget.pages);
    }

    // Loose fields next to each other share one grid, like a frame without border.
    const looseIn = new Map();
    const place = (c, el, isBlock) => {
      let target = body;
      if (c.frame && frames.has(c.frame) && c.name !== c.frame) target = frames.get(c.frame).inner;
      else if (c.tab >= 0 && pages[c.tab]) target = pages[c.tab];
      if (target.classList.contains('frame-grid') || isBlock) {
        if (isBlock && target.classList.contains('frame-grid')) el.classList.add('span-all');
        target.append(el);
        if (isBlock) looseIn.delete(target);
        return;
      }
      let loose = looseIn.get(target);
      if (!loose || loose !== target.lastElementChild) {
        loose = h('div', { class: 'frame-grid loose wide' });
        target.append(loose);
        looseIn.set(target, loose);
      }
      loose.append(el);
    };

    for (const c of controls) {
      if (PANELS.has(c.kind)) continue;
      if (c.kind === 'frame') { place(c, frames.get(c.name).box, true); continue; }
      if (c.kind === 'tabs') {
        if (c === tabsControl) { place(c, tabsWidget.el, true); this.widgets.set(c.name, tabsWidget); }
        continue;
      }
      if (c.kind === 'grid') {
        const g = createGrid(c, ctx);
        this.widgets.set(c.name, g);
        place(c, g.el, true);
        continue;
      }
      if (isField(c.kind)) {
        const w = createField(c, ctx);
        this.widgets.set(c.name, w);
        place(c, w.el, false);
      }
    }
    this.frames = frames;
  }

  createTabs(c) {
    const list = h('div', { class: 'tab-list', role: 'tablist', 'aria-label': c.caption || 'Pagine' });
    const pages = [];
    const buttons = [];
    (c.pages || []).forEach((caption, i) => {
      const id = `f${this.formId}-${c.name}-${i}`;
      const b = h('button', { type: 'button', role: 'tab', id: `${id}-tab`, 'aria-controls': id, tabindex: -1 }, caption);
      const page = h('div', { class: 'tab-page', role: 'tabpanel', id, 'aria-labelledby': `${id}-tab` });
      b.addEventListener('click', () => choose(i, true));
      b.addEventListener('keydown', (e) => {
        const n = buttons.length;
        if (e.key === 'ArrowRight') { e.preventDefault(); choose((i + 1) % n, true); buttons[(i + 1) % n].focus(); }
        if (e.key === 'ArrowLeft') { e.preventDefault(); choose((i - 1 + n) % n, true); buttons[(i - 1 + n) % n].focus(); }
      });
      buttons.push(b);
      pages.push(page);
      list.append(b);
    });
    let shown = -1;
    const choose = (i, byUser) => {
      if (i === shown) return;
      shown = i;
      buttons.forEach((b, j) => { b.setAttribute('aria-selected', String(j === i)); b.tabIndex = j === i ? 0 : -1; });
      pages.forEach((p, j) => { p.hidden = j !== i; });
      if (byUser) this.perform({ set: c.name, value: i });
    };
    const el = h('div', { class: 'tabs-control', dataset: { control: c.name, kind: 'tabs' } }, list, ...pages);
    return {
      el,
      pages,
      focus: () => buttons[Math.max(shown, 0)]?.focus(),
      update(next) {
        el.hidden = !next.visible;
        buttons.forEach((b, j) => { b.disabled = !next.enabled; b.hidden = (next.hiddenPages || []).includes(j); });
        const i = Number.isInteger(next.value) ? next.value : 0;
        choose(Math.min(Math.max(i, 0), pages.length - 1), false);
      },
    };
  }

  update(state) {
    const signature = layoutSignature(state);
    let built = false;
    if (signature !== this.signature) {
      this.signature = signature;
      this.build(state);
      built = true;
    }
    this.state = state;
    const controls = state.controls || [];
    const previous = this.cardState;
    this.cardState = controls.find((c) => c.kind === 'card') || null;
    if (this.cardBar) this.cardBar.update(this.cardState);
    if (this.activeBar) this.activeBar.update(controls.find((c) => c.kind === 'activeformpanel'));
    this.el.classList.toggle('mode-browse', this.cardState?.mode === 0);
    this.el.classList.toggle('mode-new', this.cardState?.mode === 1);
    this.el.classList.toggle('mode-edit', this.cardState?.mode === 2);
    for (const c of controls) {
      const w = this.widgets.get(c.name);
      if (w) w.update(c);
    }
    for (const { box, inner, c } of (this.frames || new Map()).values()) {
      const live = controls.find((x) => x.name === c.name) || c;
      // A frame whose fields are all hidden takes no room.
      box.hidden = !live.visible || ![...inner.children].some((x) => !x.hidden);
      box.classList.toggle('is-disabled', !live.enabled);
    }
    // A card opened without a record opens on its list; one opened on a
    // record (by another card) shows it.
    // (After this update has been applied, and only if no record came meanwhile.)
    if (built && this.list && this.cardState?.mode === 0 && this.cardState?.key == null) {
      setTimeout(() => { if (this.cardState?.mode === 0 && this.cardState?.key == null) this.showList(); });
    }
    if (this.cardState && this.cardState.mode !== 0) this.showCard();
    if (!previous || previous.mode !== this.cardState?.mode || previous.key !== this.cardState?.key) {
      // Another record or mode: what was refused before no longer applies.
      if (previous) this.clearFieldMarks();
      this.onChange?.(this);
    }
  }

  status() {
    if (!this.cardState) return null;
    return { mode: this.cardState.mode, modeCaption: MODE_CAPTIONS[this.cardState.mode], key: this.cardState.key };
  }
}
