// The client's shell: the login, then the module's menu (GET /api/items) on
// the left, the open forms as tabs (several at once, closable), a status bar
// with the card's mode and the last notice. The session survives a reload:
// GET /api/me gives the CSRF token again (and a dialog still waiting), and the
// forms that were open are read back (GET /api/forms/{id}), with a modal form
// still waiting over them.

import * as api from './api.js';
import { h, icon, clear } from './dom.js';
import { FormView } from './form.js';
import { openItem, closeForm, onState, onOpened, onMessage, resumeDialog, resumeModal, dialogFormAfterReload } from './actions.js';
import { confirmBox, messageBox } from './dialogs.js';
import { MODE_CAPTIONS } from './format.js';

const FORMS_KEY = 'corvina.forms';
const ACTIVE_KEY = 'corvina.active';
const KIND_ICONS = { card: 'card', report: 'report', activeform: 'activeform' };

const app = {
  user: null,
  groups: [],
  captions: new Map(), // item name → caption
  views: new Map(), // formId → {view, tab, panel}
  active: null,
};

const root = document.getElementById('app');

// ---- login ---------------------------------------------------------------

function showLogin(message = '') {
  app.user = null;
  sessionStorage.removeItem(FORMS_KEY);
  sessionStorage.removeItem(ACTIVE_KEY);
  app.views.clear();
  const user = h('input', { id: 'login-user', name: 'user', autocomplete: 'username', required: true, spellcheck: false });
  const password = h('input', { id: 'login-password', name: 'password', type: 'password', autocomplete: 'current-password', required: true });
  const error = h('p', { class: 'login-error', role: 'alert', hidden: !message }, message);
  const submit = h('button', { type: 'submit', class: 'primary login-submit' }, 'Accedi');
  const form = h('form', { class: 'login-card', 'aria-labelledby': 'login-title' },
    h('div', { class: 'brand' }, h('span', { class: 'brand-mark' }, 'C'), h('div', null, h('h1', { id: 'login-title' }, 'Corvina'), h('p', null, 'Anagrafiche · Vantor20'))),
    h('label', { for: 'login-user' }, 'Utente'), user,
    h('label', { for: 'login-password' }, 'Password'), password,
    error, submit);
  form.addEventListener('submit', async (e) => {
    e.preventDefault();
    submit.disabled = true;
    error.hidden = true;
    try {
      const me = await api.post('/api/login', { user: user.value.trim(), password: password.value });
      api.setCsrf(me.csrf);
      await showShell(me.user);
    } catch (err) {
      error.textContent = err.status === 401 ? 'Utente o password errati.' : err.message;
      error.hidden = false;
      password.value = '';
      password.focus();
    } finally {
      submit.disabled = false;
    }
  });
  root.replaceChildren(h('main', { class: 'login-page' }, form, h('p', { class: 'login-foot' }, 'Corvina — host di riferimento del modulo Vantor20')));
  document.title = 'Accesso — Corvina';
  user.focus();
}

// ---- shell ---------------------------------------------------------------

let ui = null;

function note(text) {
  if (!ui) return;
  ui.notice.textContent = text;
  ui.notice.classList.remove('flash');
  void ui.notice.offsetWidth;
  ui.notice.classList.add('flash');
}

// The width under which the menu lies over the forms (as in app.css).
const narrow = () => window.matchMedia('(max-width: 900px)').matches;

function buildShell() {
  const filter = h('input', { type: 'search', class: 'menu-filter', placeholder: 'Filtra il menu', 'aria-label': 'Filtra il menu', 'aria-keyshortcuts': 'Alt+M' });
  const menu = h('nav', { class: 'menu', 'aria-label': 'Menu del modulo' });
  const sidebar = h('aside', { class: 'sidebar' }, h('div', { class: 'menu-search' }, icon('search'), filter), menu);
  const tabs = h('div', { class: 'tabstrip', role: 'tablist', 'aria-label': 'Maschere aperte' });
  const panels = h('div', { class: 'panels' });
  const welcome = h('div', { class: 'welcome' },
    h('h2', null, 'Benvenuto'),
    h('p', null, 'Scegliere una voce dal menu a sinistra per aprire la sua maschera. Si possono tenere aperte più maschere insieme: ognuna ha la sua linguetta.'),
    h('ul', { class: 'shortcuts' },
      ...[['F3', 'Nuova scheda'], ['F2', 'Modifica'], ['F9 / Ctrl+S', 'Salva'], ['Esc', 'Annulla le modifiche'], ['F8', 'Elimina'], ['PagSu / PagGiù', 'Scheda precedente / successiva'], ['Ctrl+F', 'Cerca una scheda'], ['F4', 'Elenco di ricerca di un campo codificato'], ['Invio', 'Campo successivo'], ['Alt+M', 'Menu'], ['Alt+W', 'Chiudi la maschera']]
        .map(([k, t]) => h('li', null, h('kbd', null, k), h('span', null, t)))));
  const workspace = h('section', { class: 'workspace' }, tabs, panels);
  // On a narrow screen a touch on the forms puts the menu away.
  workspace.addEventListener('pointerdown', () => ui?.shell.classList.remove('menu-open'));
  const userName = h('span', { class: 'user-name' });
  const logout = h('button', { type: 'button', class: 'topbar-button', title: 'Esci' }, icon('logout'), h('span', null, 'Esci'));
  const toggle = h('button', { type: 'button', class: 'topbar-button icon-only', title: 'Mostra o nascondi il menu', 'aria-label': 'Mostra o nascondi il menu' }, icon('menu'));
  const progress = h('div', { class: 'progress', hidden: true, role: 'progressbar', 'aria-label': 'Attendere' });
  const mode = h('span', { class: 'status-mode' });
  const key = h('span', { class: 'status-key' });
  const notice = h('span', { class: 'status-notice', role: 'status', 'aria-live': 'polite' });
  const shell = h('div', { class: 'shell' },
    h('header', { class: 'topbar' }, toggle, h('span', { class: 'brand-mark small' }, 'C'), h('span', { class: 'app-title' }, 'Corvina', h('small', null, 'Anagrafiche Vantor20')),
      h('span', { class: 'spacer' }), h('span', { class: 'user' }, icon('user'), userName), logout),
    progress,
    h('div', { class: 'main' }, sidebar, workspace),
    h('footer', { class: 'statusbar' }, mode, key, notice));
  panels.append(welcome);
  // A wide screen keeps the menu beside the forms (the button hides it); a
  // narrow one lays it over them, opened by the button and closed again as
  // soon as an item is chosen.
  toggle.addEventListener('click', () => {
    if (narrow()) shell.classList.toggle('menu-open');
    else shell.classList.toggle('menu-hidden');
  });
  logout.addEventListener('click', doLogout);
  filter.addEventListener('input', () => drawMenu(filter.value));
  filter.addEventListener('keydown', (e) => {
    if (e.key === 'Enter') {
      const first = menu.querySelector('.menu-item:not([hidden])');
      if (first) first.click();
    } else if (e.key === 'ArrowDown') {
      e.preventDefault();
      menu.querySelector('.menu-item')?.focus();
    }
  });
  menu.addEventListener('keydown', (e) => {
    const items = [...menu.querySelectorAll('.menu-item')];
    const i = items.indexOf(document.activeElement);
    if (e.key === 'ArrowDown' && i >= 0) { e.preventDefault(); items[Math.min(i + 1, items.length - 1)].focus(); }
    if (e.key === 'ArrowUp' && i >= 0) { e.preventDefault(); (i === 0 ? filter : items[i - 1]).focus(); }
  });
  tabs.addEventListener('keydown', (e) => {
    const list = [...tabs.querySelectorAll('[role=tab]')];
    const i = list.indexOf(document.activeElement);
    if (i < 0) return;
    if (e.key === 'ArrowRight') { e.preventDefault(); list[(i + 1) % list.length].focus(); }
    if (e.key === 'ArrowLeft') { e.preventDefault(); list[(i - 1 + list.length) % list.length].focus(); }
    if (e.key === 'Delete') { e.preventDefault(); requestClose(Number(list[i].dataset.formId)); }
  });
  api.onBusy((busy) => {
    clearTimeout(progress.timer);
    if (busy) progress.timer = setTimeout(() => { progress.hidden = false; }, 150);
    else progress.hidden = true;
  });
  return { shell, filter, menu, tabs, panels, welcome, userName, mode, key, notice };
}

function drawMenu(filterText = '') {
  const wanted = filterText.trim().toLowerCase();
  clear(ui.menu);
  for (const group of app.groups) {
    const items = group.items.filter((i) => !wanted || i.caption.toLowerCase().includes(wanted) || i.name.toLowerCase().includes(wanted));
    if (!items.length) continue;
    const list = h('ul', { class: 'menu-items' }, ...items.map((item) => h('li', null,
      h('button', {
        type: 'button',
        class: 'menu-item',
        title: item.name,
        dataset: { item: item.name, kind: group.kind },
        onclick: () => {
          ui.shell.classList.remove('menu-open');
          open(item.name, group.kind);
        },
      }, icon(KIND_ICONS[group.kind] || 'card'), h('span', null, item.caption)))));
    ui.menu.append(h('section', { class: 'menu-group', dataset: { kind: group.kind } },
      h('h2', { class: 'menu-group-title' }, group.caption, h('span', { class: 'count' }, String(items.length))), list));
  }
  if (!ui.menu.children.length) ui.menu.append(h('p', { class: 'menu-empty' }, 'Nessuna voce trovata'));
  markOpenItems();
}

function markOpenItems() {
  const open = new Set([...app.views.values()].map((v) => v.view.item));
  const active = app.views.get(app.active)?.view.item;
  for (const b of ui.menu.querySelectorAll('.menu-item')) {
    b.classList.toggle('open', open.has(b.dataset.item));
    b.classList.toggle('current', b.dataset.item === active);
  }
}

async function showShell(user) {
  app.user = user;
  ui = buildShell();
  ui.userName.textContent = user;
  root.replaceChildren(ui.shell);
  document.title = 'Corvina — Anagrafiche';
  try {
    const items = await api.get('/api/items');
    app.groups = items.groups || [];
  } catch (e) {
    app.groups = [];
    note(e.message);
  }
  for (const g of app.groups) for (const i of g.items) app.captions.set(i.name, i.caption);
  drawMenu();
  updateStatus();
}

// ---- forms as tabs -----------------------------------------------------------

function saveOpenForms() {
  const list = [...app.views.values()].map(({ view }) => ({ id: view.formId, item: view.item, kind: view.kind }));
  sessionStorage.setItem(FORMS_KEY, JSON.stringify(list));
  if (app.active != null) sessionStorage.setItem(ACTIVE_KEY, String(app.active));
}

function addView(state) {
  const caption = app.captions.get(state.item) || state.item;
  const view = new FormView(state, { caption, note, onChange: (v) => { refreshTab(v.formId); updateStatus(); } });
  const id = `form-${state.formId}`;
  const close = h('button', { type: 'button', class: 'tab-close', tabindex: -1, title: 'Chiudi (Alt+W)', 'aria-label': `Chiudi ${caption}` }, icon('close'));
  const tab = h('div', { class: 'tab', role: 'tab', id: `${id}-tab`, tabindex: -1, 'aria-controls': id, dataset: { formId: state.formId, item: state.item } },
    icon(KIND_ICONS[state.kind] || 'card'), h('span', { class: 'tab-caption' }, caption), h('span', { class: 'tab-dirty', title: 'Modifiche non salvate' }), close);
  const panel = h('section', { class: 'panel', role: 'tabpanel', id, 'aria-labelledby': `${id}-tab`, hidden: true },
    h('header', { class: 'form-title' }, h('h1', null, caption), h('span', { class: 'form-subtitle' })), view.el);
  tab.addEventListener('click', (e) => { if (!close.contains(e.target)) activate(state.formId); });
  tab.addEventListener('auxclick', (e) => { if (e.button === 1) requestClose(state.formId); });
  tab.addEventListener('keydown', (e) => { if (e.key === 'Enter' || e.key === ' ') { e.preventDefault(); activate(state.formId); } });
  close.addEventListener('click', () => requestClose(state.formId));
  ui.tabs.append(tab);
  ui.panels.append(panel);
  app.views.set(state.formId, { view, tab, panel });
  refreshTab(state.formId);
  return view;
}

function refreshTab(formId) {
  const entry = app.views.get(formId);
  if (!entry) return;
  const s = entry.view.status();
  const dirty = s && s.mode !== 0;
  entry.tab.classList.toggle('dirty', !!dirty);
  const sub = entry.panel.querySelector('.form-subtitle');
  if (s) sub.textContent = s.mode === 1 ? `Nuova scheda${s.key != null ? ` (codice proposto ${s.key})` : ''}` : s.key != null ? `Codice ${s.key}` : 'Nessuna scheda';
  else sub.textContent = { report: 'Stampa', activeform: 'Maschera attiva' }[entry.view.kind] || '';
  sub.dataset.mode = s ? s.mode : '';
}

function activate(formId) {
  app.active = formId;
  for (const [id, { tab, panel }] of app.views) {
    const on = id === formId;
    tab.setAttribute('aria-selected', String(on));
    tab.tabIndex = on ? 0 : -1;
    panel.hidden = !on;
  }
  ui.welcome.hidden = app.views.size > 0;
  markOpenItems();
  updateStatus();
  saveOpenForms();
}

function updateStatus() {
  const entry = app.views.get(app.active);
  const s = entry?.view.status();
  ui.mode.textContent = s ? MODE_CAPTIONS[s.mode] : entry ? entry.view.caption : 'Pronto';
  ui.mode.dataset.mode = s ? s.mode : '';
  ui.key.textContent = s && s.key != null ? `Codice ${s.key}` : '';
}

async function open(name, kind) {
  const existing = [...app.views.values()].find(({ view }) => view.item === name);
  if (existing) {
    activate(existing.view.formId);
    existing.view.focusFirst();
    return;
  }
  const out = await openItem(name, kind);
  if (!out) return;
  if (!out.state) {
    await messageBox({ number: null, style: 64, text: `«${app.captions.get(name) || name}» non è installato in questo host.` });
    return;
  }
  const view = app.views.get(out.state.formId)?.view || addView(out.state);
  activate(view.formId);
  view.focusFirst();
}

async function requestClose(formId) {
  const entry = app.views.get(formId);
  if (!entry) return;
  const s = entry.view.status();
  if (s && s.mode !== 0) {
    const ok = await confirmBox(`La scheda «${entry.view.caption}» ha modifiche non salvate. Chiuderla e perderle?`, { title: 'Chiudi', yes: 'Chiudi senza salvare', no: 'Annulla' });
    if (!ok) return;
  }
  await closeForm(formId);
  entry.tab.remove();
  entry.panel.remove();
  app.views.delete(formId);
  if (app.active === formId) {
    const last = [...app.views.keys()].pop();
    app.active = null;
    if (last != null) activate(last);
    else { ui.welcome.hidden = false; updateStatus(); }
  }
  markOpenItems();
  saveOpenForms();
}

async function doLogout() {
  const dirty = [...app.views.values()].some(({ view }) => { const s = view.status(); return s && s.mode !== 0; });
  if (dirty && !(await confirmBox('Ci sono schede con modifiche non salvate. Uscire e perderle?', { title: 'Esci', yes: 'Esci', no: 'Annulla' }))) return;
  try {
    await api.post('/api/logout');
  } catch {
    // The session may already be over: the login comes back anyway.
  }
  showLogin();
}

// A save check's warning or error marks the fields it names.
onMessage((formId, text) => app.views.get(formId)?.view.markNamedFields(text));

onState((state) => {
  const entry = app.views.get(state.formId);
  if (entry) entry.view.update(state);
});

// A form the module opened from another (a party opened from its duplicates)
// becomes a tab of its own, shown at once.
onOpened(async (formId) => {
  if (!app.views.has(formId)) {
    const read = await api.get(`/api/forms/${formId}`);
    if (!read.state) return;
    addView(read.state);
  }
  activate(formId);
  app.views.get(formId)?.view.focusFirst();
});

api.onSessionLost(() => {
  if (app.user) showLogin('La sessione è scaduta: accedere di nuovo.');
});

document.addEventListener('keydown', (e) => {
  if (!ui || !app.user || document.querySelector('dialog[open]')) return;
  if (e.altKey && !e.ctrlKey && (e.key === 'm' || e.key === 'M')) {
    e.preventDefault();
    if (narrow()) ui.shell.classList.add('menu-open');
    ui.filter.focus();
    ui.filter.select();
  }
  if (e.altKey && !e.ctrlKey && (e.key === 'w' || e.key === 'W') && app.active != null) { e.preventDefault(); requestClose(app.active); }
  // With nothing focused (after a click on an empty spot) the keys still reach the form shown.
  if (!e.defaultPrevented && (e.target === document.body || e.target === document.documentElement)) app.views.get(app.active)?.view.onKey(e);
});

// ---- start ---------------------------------------------------------------

async function start() {
  let me;
  try {
    me = await api.get('/api/me');
  } catch {
    showLogin();
    return;
  }
  api.setCsrf(me.csrf);
  await showShell(me.user);
  const stored = JSON.parse(sessionStorage.getItem(FORMS_KEY) || '[]');
  const wasActive = Number(sessionStorage.getItem(ACTIVE_KEY));
  if (me.dialog) await resumeDialog(me.dialog, dialogFormAfterReload());
  for (const f of stored) {
    try {
      const out = await api.get(`/api/forms/${f.id}`);
      if (out.state) addView(out.state);
    } catch {
      // The server no longer has this form (it was closed, or the server restarted).
    }
  }
  if (app.views.size) activate(app.views.has(wasActive) ? wasActive : [...app.views.keys()].pop());
  else saveOpenForms();
  // A modal form still waiting (its action suspended) comes back over the page.
  if (me.modal) resumeModal(me.modal, me.modal.formId);
}

start();
