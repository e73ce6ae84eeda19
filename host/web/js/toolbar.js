// The tool bars shown above a form: the card's (new, edit, save, delete,
// cancel, first/previous/next/last, find by key or name, the card's popup
// menu), a report's option panel (print, preview) and an active form's tools.
// Buttons are enabled by the card's mode: browsing moves and finds, new and
// edit save or cancel.

import { h, icon, clear } from './dom.js';
import { showPopup, visibleItems } from './popup.js';
import { pickList } from './dialogs.js';

function tool(name, caption, shortcut, onclick, { iconOnly = false } = {}) {
  return h('button', {
    type: 'button',
    class: `tool${iconOnly ? ' icon-only' : ''}`,
    title: shortcut ? `${caption} (${shortcut})` : caption,
    'aria-label': caption,
    'aria-keyshortcuts': shortcut || undefined,
    dataset: { tool: name },
    onclick,
  }, icon(name), iconOnly ? null : h('span', null, caption));
}

const MOVE_NOTES = {
  first: 'Nessuna scheda da mostrare',
  previous: 'Questa è la prima scheda',
  next: 'Questa è l\'ultima scheda',
  last: 'Nessuna scheda da mostrare',
};

export function createCardToolbar(view) {
  const press = (button) => () => view.press(button);
  const buttons = {
    list: tool('list', 'Elenco', 'F6', () => view.showList()),
    new: tool('new', 'Nuovo', 'F3', press('new')),
    edit: tool('edit', 'Modifica', 'F2', press('edit')),
    save: tool('save', 'Salva', 'F9', press('save')),
    delete: tool('delete', 'Elimina', 'F8', press('delete')),
    cancel: tool('cancel', 'Annulla', 'Esc', press('cancel')),
    first: tool('first', 'Prima scheda', 'Ctrl+Home', press('first'), { iconOnly: true }),
    previous: tool('previous', 'Scheda precedente', 'PagSu', press('previous'), { iconOnly: true }),
    next: tool('next', 'Scheda successiva', 'PagGiù', press('next'), { iconOnly: true }),
    last: tool('last', 'Ultima scheda', 'Ctrl+End', press('last'), { iconOnly: true }),
  };
  const findInput = h('input', { type: 'search', class: 'find-input', placeholder: 'Cerca codice o nome', 'aria-label': 'Cerca una scheda per codice o nome', 'aria-keyshortcuts': 'Control+F' });
  const findButton = h('button', { type: 'button', class: 'tool icon-only', title: 'Cerca (Invio)', 'aria-label': 'Cerca' }, icon('search'));
  const find = () => view.find(findInput.value.trim());
  findInput.addEventListener('keydown', (e) => {
    if (e.key === 'Enter') { e.preventDefault(); find(); }
  });
  findButton.addEventListener('click', find);
  const menuButton = h('button', { type: 'button', class: 'tool', title: 'Altre azioni della scheda', 'aria-haspopup': 'menu', dataset: { tool: 'popup' } }, icon('more'), h('span', null, 'Azioni'));
  menuButton.addEventListener('click', () => view.cardPopup({ anchor: menuButton }));

  // On a narrow screen the buttons fold into one menu (app.css hides them
  // and shows this one); the menu offers what the buttons offer, in their state.
  const commandsButton = h('button', { type: 'button', class: 'tool commands-button', title: 'Comandi della scheda', 'aria-haspopup': 'menu', dataset: { tool: 'commands' } }, icon('menu'), h('span', null, 'Comandi'));
  commandsButton.addEventListener('click', async () => {
    const order = ['list', '-', 'new', 'edit', 'save', 'delete', 'cancel', '-', 'first', 'previous', 'next', 'last'];
    const items = order.map((k) => (k === '-' ? { key: '', caption: '-' }
      : { key: k, caption: buttons[k].getAttribute('aria-label'), enabled: !buttons[k].disabled }));
    if (!popupGroup.hidden) items.push({ key: '', caption: '-' }, { key: 'popup', caption: 'Azioni della scheda…' });
    const key = await showPopup(items, { anchor: commandsButton, label: 'Comandi della scheda' });
    if (key === 'popup') view.cardPopup({ anchor: commandsButton });
    else if (key) buttons[key].click();
  });

  const popupGroup = h('div', { class: 'tool-group popup-group' }, menuButton);
  const el = h('div', { class: 'toolbar card-toolbar', role: 'toolbar', 'aria-label': 'Comandi della scheda' },
    h('div', { class: 'tool-group commands-group' }, commandsButton),
    h('div', { class: 'tool-group record-group' }, buttons.list, buttons.new, buttons.edit, buttons.save, buttons.delete, buttons.cancel),
    h('div', { class: 'tool-group move-group' }, buttons.first, buttons.previous, buttons.next, buttons.last),
    h('div', { class: 'tool-group find-group' }, findInput, findButton),
    popupGroup);

  return {
    el,
    focusFind: () => { findInput.focus(); findInput.select(); },
    update(card) {
      const browsing = card.mode === 0;
      const hasRecord = card.key !== null && card.key !== undefined;
      const on = card.enabled !== false;
      buttons.new.disabled = !on || !browsing;
      buttons.list.disabled = !browsing;
      buttons.edit.disabled = !on || !browsing || !hasRecord;
      buttons.delete.disabled = !on || !browsing || !hasRecord;
      buttons.save.disabled = !on || browsing;
      buttons.cancel.disabled = !on || browsing;
      for (const m of ['first', 'previous', 'next', 'last']) buttons[m].disabled = !on || !browsing;
      findInput.disabled = !browsing;
      findButton.disabled = !browsing;
      popupGroup.hidden = !visibleItems(card.popup).some((i) => i.caption !== '-');
    },
  };
}

export { MOVE_NOTES };

// A card's find: one record found is shown at once; several are listed.
export async function findRecord(view, text) {
  if (!text) { view.note('Scrivere un codice o una parte del nome da cercare'); return; }
  const found = (await view.perform({ find: text }))?.result?.found;
  if (!found) return;
  if (found.length === 0) { view.note(`Nessuna scheda trovata per «${text}»`); return; }
  let chosen = found[0];
  if (found.length > 1) {
    chosen = await pickList({
      title: `Schede trovate per «${text}»`,
      columns: [{ key: 'key', caption: 'Codice', align: 'num' }, { key: 'display', caption: 'Nome' }],
      rows: found,
      initial: text,
      placeholder: 'Codice o nome',
      search: async (t) => (t ? (await view.perform({ find: t }))?.result?.found || [] : found),
    });
  }
  if (chosen) await view.perform({ load: chosen.key });
}

export function createPrintToolbar(view) {
  const result = h('div', { class: 'report-request', hidden: true, 'aria-live': 'polite' });
  const run = async (key) => {
    const out = await view.perform({ tool: key });
    if (!out || out.error) return;
    const report = out.result?.report;
    clear(result);
    result.hidden = false;
    if (!report) {
      result.append(h('p', null, 'Stampa annullata.'));
      return;
    }
    const values = Object.entries(report.values || {});
    result.append(
      h('h3', null, key === 'ID_Preview' ? 'Anteprima richiesta' : 'Stampa richiesta'),
      h('dl', { class: 'report-facts' },
        h('dt', null, 'Modello'), h('dd', { class: 'report-name' }, report.name),
        h('dt', null, 'Selezione'), h('dd', null, h('code', null, report.selection || '(tutte le righe)')),
        report.captions?.length ? [h('dt', null, 'Intestazioni'), h('dd', null, report.captions.join(' · '))] : null,
        values.length ? [h('dt', null, 'Valori'), h('dd', null, values.map(([k, v]) => `${k}: ${v}`).join(' · '))] : null),
      h('p', { class: 'hint' }, 'Il documento si produce con il motore di stampa dell\'host.'));
  };
  const el = h('div', { class: 'toolbar print-toolbar', role: 'toolbar', 'aria-label': 'Stampa' },
    h('div', { class: 'tool-group' },
      tool('print', 'Stampa', 'Ctrl+P', () => run('ID_Print')),
      tool('preview', 'Anteprima', null, () => run('ID_Preview'))));
  return { el, extra: result, update() {}, print: () => run('ID_Print') };
}

export function createActiveToolbar(view) {
  const group = h('div', { class: 'tool-group' });
  const refresh = tool('refresh', 'Aggiorna', 'F5', () => view.perform({ tool: 'ID_Refresh' }));
  const el = h('div', { class: 'toolbar active-toolbar', role: 'toolbar', 'aria-label': 'Comandi' }, group, h('div', { class: 'tool-group' }, refresh));
  let signature = '';
  return {
    el,
    refresh: () => view.perform({ tool: 'ID_Refresh' }),
    update(panel) {
      const tools = panel.tools || [];
      const sig = JSON.stringify(tools.map((t) => [t.key, t.caption]));
      if (sig !== signature) {
        signature = sig;
        group.replaceChildren(...tools.map((t) => (t.caption === '-'
          ? h('span', { class: 'tool-separator', role: 'separator' })
          : h('button', { type: 'button', class: 'tool', dataset: { tool: t.key }, onclick: () => view.perform({ tool: t.key }) }, icon('tool'), h('span', null, t.caption)))));
      }
      for (const t of tools) {
        const b = group.querySelector(`[data-tool="${CSS.escape(t.key)}"]`);
        if (b) b.disabled = t.enabled === false || panel.enabled === false;
      }
    },
  };
}

export function cardPopupAt(items, pos) {
  return showPopup(items, { ...pos, label: 'Azioni della scheda' });
}
