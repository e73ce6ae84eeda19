// The time line of a grid whose rows are periods (the grid declares its
// date-range columns, "dateRange": {from, to}): one bar per row on a common
// axis, the current row highlighted, an open end drawn to the right edge,
// and the troubles of a sequence of periods marked where they are: a gap
// between a period and the next one (the next starts later than the day
// after the end) and an overlap (two periods sharing at least one day, both
// ends included). Read-only: it follows the grid's rows as they are typed.

import { h } from './dom.js';
import { formatDate } from './format.js';

const DAY = 86400000;

// "yyyy-mm-dd…" or a Date-like text → day number; null when blank or unreadable.
function dayOf(value) {
  if (value === null || value === undefined || value === '') return null;
  const m = /^(\d{4})-(\d{2})-(\d{2})/.exec(String(value));
  if (m) return Date.UTC(+m[1], +m[2] - 1, +m[3]) / DAY;
  const it = /^(\d{1,2})\/(\d{1,2})\/(\d{4})/.exec(String(value));
  return it ? Date.UTC(+it[3], +it[2] - 1, +it[1]) / DAY : null;
}

const isoOf = (day) => new Date(day * DAY).toISOString().slice(0, 10);

// Position through the CSSOM: the page's content policy refuses style attributes.
function placed(el, box) {
  Object.assign(el.style, box);
  return el;
}

// The periods of the rows and what is wrong between them, sorted by start.
export function analysePeriods(rows, from, to) {
  const periods = rows.map((row, index) => ({ index, start: dayOf(row[from]), end: dayOf(row[to]) }))
    .filter((p) => p.start !== null);
  const sorted = [...periods].sort((a, b) => a.start - b.start);
  const marks = [];
  for (let i = 0; i + 1 < sorted.length; i++) {
    const a = sorted[i];
    const b = sorted[i + 1];
    if (a.end === null || b.start <= a.end) marks.push({ kind: 'overlap', start: b.start, end: a.end === null ? b.end ?? b.start : Math.min(a.end, b.end ?? a.end), rows: [a.index, b.index] });
    else if (b.start > a.end + 1) marks.push({ kind: 'gap', start: a.end + 1, end: b.start - 1, rows: [a.index, b.index] });
  }
  return { periods, marks };
}

export function createTimeline(range) {
  const el = h('div', { class: 'timeline', role: 'img' });
  function update(rows, current) {
    const { periods, marks } = analysePeriods(rows, range.from, range.to);
    if (!periods.length) {
      el.hidden = true;
      return;
    }
    el.hidden = false;
    const first = Math.min(...periods.map((p) => p.start));
    const known = periods.flatMap((p) => (p.end === null ? [p.start] : [p.start, p.end]));
    // An open end runs to the right edge, a little past the last date known.
    const last = Math.max(...known) + 30;
    const span = Math.max(last - first + 1, 1);
    const x = (day) => `${((day - first) / span) * 100}%`;
    const w = (a, b) => `${Math.max(((b - a + 1) / span) * 100, 0.5)}%`;
    const bars = periods.map((p) => {
      const end = p.end === null ? last : p.end;
      const label = `${formatDate(isoOf(p.start))} – ${p.end === null ? 'aperto' : formatDate(isoOf(p.end))}`;
      return placed(h('div', {
        class: `timeline-bar${p.index === current ? ' current' : ''}${p.end === null ? ' open' : ''}`,
        title: `Riga ${p.index + 1}: ${label}`,
        dataset: { row: p.index },
      }), { left: x(p.start), width: w(p.start, end), top: `${p.index * 14}px` });
    });
    const flags = marks.map((m) => placed(h('div', {
      class: `timeline-mark ${m.kind}`,
      title: m.kind === 'gap'
        ? `Interruzione dal ${formatDate(isoOf(m.start))} al ${formatDate(isoOf(m.end))} (righe ${m.rows[0] + 1} e ${m.rows[1] + 1})`
        : `Sovrapposizione dal ${formatDate(isoOf(m.start))} (righe ${m.rows[0] + 1} e ${m.rows[1] + 1})`,
      dataset: { kind: m.kind },
    }), { left: x(m.start), width: w(m.start, Math.max(m.end, m.start)) }));
    const height = Math.max(...periods.map((p) => p.index)) * 14 + 12;
    el.style.height = `${height + 18}px`;
    el.setAttribute('aria-label', `${periods.length} periodi, ${marks.filter((m) => m.kind === 'gap').length} interruzioni, ${marks.filter((m) => m.kind === 'overlap').length} sovrapposizioni`);
    el.replaceChildren(...bars, ...flags,
      h('span', { class: 'timeline-axis start' }, formatDate(isoOf(first))),
      h('span', { class: 'timeline-axis end' }, formatDate(isoOf(last))));
  }
  return { el, update };
}
