// The date picker: a month grid under a date field, Monday first, Italian
// names. Keyboard: arrows move by day or week, PageUp/PageDown by month,
// Home goes to today, Enter chooses, Esc closes. Resolves with the Date chosen
// or null.

import { h, icon } from './dom.js';
import { MONTH_NAMES, WEEKDAYS } from './format.js';

const sameDay = (a, b) => a && b && a.getFullYear() === b.getFullYear() && a.getMonth() === b.getMonth() && a.getDate() === b.getDate();

export function openCalendar(anchor, current) {
  return new Promise((resolve) => {
    const today = new Date();
    let cursor = current ? new Date(current) : new Date(today.getFullYear(), today.getMonth(), today.getDate());
    const title = h('span', { class: 'cal-title', 'aria-live': 'polite' });
    const grid = h('div', { class: 'cal-grid', role: 'grid', tabindex: 0 });
    const prev = h('button', { type: 'button', class: 'cal-nav', 'aria-label': 'Mese precedente' }, icon('previous'));
    const next = h('button', { type: 'button', class: 'cal-nav', 'aria-label': 'Mese successivo' }, icon('next'));
    const todayButton = h('button', { type: 'button', class: 'cal-today' }, 'Oggi');
    const popup = h('div', { class: 'calendar', role: 'dialog', 'aria-label': 'Calendario' },
      h('div', { class: 'cal-head' }, prev, title, next), grid, h('div', { class: 'cal-foot' }, todayButton));

    let done = false;
    const finish = (value) => {
      if (done) return;
      done = true;
      popup.remove();
      document.removeEventListener('mousedown', outside, true);
      resolve(value);
    };
    const outside = (e) => { if (!popup.contains(e.target)) finish(null); };

    const draw = () => {
      title.textContent = `${MONTH_NAMES[cursor.getMonth()]} ${cursor.getFullYear()}`;
      const first = new Date(cursor.getFullYear(), cursor.getMonth(), 1);
      const offset = (first.getDay() + 6) % 7;
      const start = new Date(first.getFullYear(), first.getMonth(), 1 - offset);
      const cells = WEEKDAYS.map((d) => h('span', { class: 'cal-weekday', role: 'columnheader' }, d));
      for (let i = 0; i < 42; i++) {
        const day = new Date(start.getFullYear(), start.getMonth(), start.getDate() + i);
        const cls = ['cal-day'];
        if (day.getMonth() !== cursor.getMonth()) cls.push('other');
        if (sameDay(day, today)) cls.push('today');
        if (sameDay(day, current)) cls.push('selected');
        if (sameDay(day, cursor)) cls.push('cursor');
        cells.push(h('button', { type: 'button', class: cls.join(' '), tabindex: -1, role: 'gridcell', 'aria-label': day.toLocaleDateString('it-IT'), onclick: () => finish(day) }, String(day.getDate())));
      }
      grid.replaceChildren(...cells);
    };
    const move = (days, months = 0) => {
      cursor = new Date(cursor.getFullYear(), cursor.getMonth() + months, cursor.getDate() + days);
      draw();
    };
    prev.addEventListener('click', () => move(0, -1));
    next.addEventListener('click', () => move(0, 1));
    todayButton.addEventListener('click', () => finish(new Date(today.getFullYear(), today.getMonth(), today.getDate())));
    popup.addEventListener('keydown', (e) => {
      const keys = { ArrowLeft: [-1], ArrowRight: [1], ArrowUp: [-7], ArrowDown: [7], PageUp: [0, -1], PageDown: [0, 1] };
      if (keys[e.key]) { e.preventDefault(); move(...keys[e.key]); }
      else if (e.key === 'Home') { e.preventDefault(); cursor = new Date(today); draw(); }
      else if (e.key === 'Enter') { e.preventDefault(); finish(new Date(cursor)); }
      else if (e.key === 'Escape' || e.key === 'Tab') { e.preventDefault(); e.stopPropagation(); finish(null); }
    });

    draw();
    // Inside the modal layer when the field is in a dialog, else on the page.
    (anchor.closest('dialog') || document.body).append(popup);
    const r = anchor.getBoundingClientRect();
    const top = r.bottom + 4 + popup.offsetHeight > window.innerHeight ? r.top - popup.offsetHeight - 4 : r.bottom + 4;
    popup.style.left = `${Math.max(4, Math.min(r.left, window.innerWidth - popup.offsetWidth - 4))}px`;
    popup.style.top = `${Math.max(4, top)}px`;
    grid.focus();
    setTimeout(() => document.addEventListener('mousedown', outside, true));
  });
}
