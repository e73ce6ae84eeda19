// Popup menus (a card's or a grid's context menu, a tool bar's drop-down):
// items {key, caption, enabled, visible}, "-" as caption for a separator.
// Opens at the mouse or under a button; arrows, Enter and Esc work; resolves
// with the key chosen or null.

import { h } from './dom.js';

// A module's caption may mark its keyboard accelerator with "&" ("&Abilita
// Ricerca Banca"); the menu shows the text without it ("&&" is a real "&").
export function menuCaption(caption) {
  return String(caption).replace(/&(&?)/g, (m, amp) => amp);
}

export function visibleItems(items) {
  const shown = (items || []).filter((i) => i.visible !== false);
  // No separator at either end or twice in a row.
  return shown.filter((item, i) => item.caption !== '-' || (i > 0 && i < shown.length - 1 && shown[i - 1].caption !== '-'));
}

export function showPopup(items, { x, y, anchor = null, label = 'Menu' }) {
  const list = visibleItems(items);
  return new Promise((resolve) => {
    if (!list.some((i) => i.caption !== '-')) { resolve(null); return; }
    const menu = h('div', { class: 'popup-menu', role: 'menu', 'aria-label': label, tabindex: -1 });
    const entries = [];
    for (const item of list) {
      if (item.caption === '-') { menu.append(h('div', { class: 'popup-separator', role: 'separator' })); continue; }
      const b = h('button', { type: 'button', role: 'menuitem', class: 'popup-item', disabled: item.enabled === false, dataset: { key: item.key }, tabindex: -1 }, menuCaption(item.caption));
      b.addEventListener('click', () => finish(item.key));
      entries.push(b);
      menu.append(b);
    }
    const previousFocus = document.activeElement;
    let done = false;
    function finish(key) {
      if (done) return;
      done = true;
      menu.remove();
      document.removeEventListener('mousedown', outside, true);
      window.removeEventListener('blur', cancel);
      if (previousFocus && previousFocus.focus) previousFocus.focus();
      resolve(key);
    }
    const cancel = () => finish(null);
    const outside = (e) => { if (!menu.contains(e.target)) finish(null); };
    const enabled = () => entries.filter((b) => !b.disabled);
    const focusAt = (delta) => {
      const list2 = enabled();
      if (!list2.length) return;
      const i = list2.indexOf(document.activeElement);
      list2[(i + delta + list2.length) % list2.length].focus();
    };
    menu.addEventListener('keydown', (e) => {
      if (e.key === 'ArrowDown') { e.preventDefault(); focusAt(1); }
      else if (e.key === 'ArrowUp') { e.preventDefault(); focusAt(-1); }
      else if (e.key === 'Escape' || e.key === 'Tab') { e.preventDefault(); e.stopPropagation(); finish(null); }
    });
    (anchor?.closest('dialog') || document.body).append(menu);
    let left = x;
    let top = y;
    if (anchor) {
      const r = anchor.getBoundingClientRect();
      left = r.left;
      top = r.bottom + 2;
    }
    left = Math.max(4, Math.min(left, window.innerWidth - menu.offsetWidth - 4));
    if (top + menu.offsetHeight > window.innerHeight - 4) top = Math.max(4, top - menu.offsetHeight - (anchor ? anchor.offsetHeight + 4 : 0));
    menu.style.left = `${left}px`;
    menu.style.top = `${top}px`;
    (enabled()[0] || menu).focus();
    setTimeout(() => {
      document.addEventListener('mousedown', outside, true);
      window.addEventListener('blur', cancel);
    });
  });
}
