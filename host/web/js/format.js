// How values look in the client: Italian numbers (decimal comma, dot for
// thousands), dates as dd/mm/yyyy, and the captions of the card's modes. The
// server receives what the user typed (it converts Italian text itself), so
// these functions only format for display and parse what the date picker needs.

const MONTHS = ['gennaio', 'febbraio', 'marzo', 'aprile', 'maggio', 'giugno', 'luglio',
  'agosto', 'settembre', 'ottobre', 'novembre', 'dicembre'];
export const MONTH_NAMES = MONTHS;
export const WEEKDAYS = ['lu', 'ma', 'me', 'gi', 've', 'sa', 'do'];

export const MODE_CAPTIONS = { 0: 'Consultazione', 1: 'Nuovo', 2: 'Modifica' };

// 1234.5 → "1.234,50" with `decimals` digits; null/undefined → "".
export function formatNumber(value, decimals = 0, grouping = true) {
  if (value === null || value === undefined || value === '') return '';
  const n = Number(value);
  if (!Number.isFinite(n)) return String(value);
  return n.toLocaleString('it-IT', {
    minimumFractionDigits: decimals,
    maximumFractionDigits: Math.max(decimals, 0),
    useGrouping: grouping,
  });
}

// The value as the user edits it: no thousands dots, decimal comma.
export function editableNumber(value, decimals = 0) {
  if (value === null || value === undefined || value === '') return '';
  return formatNumber(value, decimals, false);
}

// "2025-03-07" or "2025-03-07 10:00:00" → "07/03/2025"; anything else as it is.
export function formatDate(value) {
  if (!value) return '';
  const m = /^(\d{4})-(\d{2})-(\d{2})/.exec(String(value));
  return m ? `${m[3]}/${m[2]}/${m[1]}` : String(value);
}

// "7/3/2025", "07/03/2025" or "2025-03-07" → Date (local); null when not a date.
export function parseDate(text) {
  const t = String(text || '').trim();
  let d, mo, y;
  let m = /^(\d{1,2})[/.-](\d{1,2})[/.-](\d{2}|\d{4})$/.exec(t);
  if (m) [d, mo, y] = [Number(m[1]), Number(m[2]), Number(m[3])];
  else if ((m = /^(\d{4})-(\d{2})-(\d{2})/.exec(t))) [y, mo, d] = [Number(m[1]), Number(m[2]), Number(m[3])];
  else return null;
  if (y < 100) y += 2000;
  const date = new Date(y, mo - 1, d);
  if (date.getFullYear() !== y || date.getMonth() !== mo - 1 || date.getDate() !== d) return null;
  return date;
}

export function dateToText(date) {
  const p = (n) => String(n).padStart(2, '0');
  return `${p(date.getDate())}/${p(date.getMonth() + 1)}/${date.getFullYear()}`;
}

// A cell or a read-only value for display by the control's kind.
export function formatValue(value, kind, decimals) {
  if (value === null || value === undefined) return '';
  switch (kind) {
    case 'date': return formatDate(value);
    case 'integer': return formatNumber(value, 0, false); // codes and years: no thousands dots
    case 'percent': return formatNumber(value, decimals ?? 2);
    case 'amount': return formatNumber(value, decimals ?? 2);
    case 'check': return value ? 'Sì' : 'No';
    default:
      if (typeof value === 'boolean') return value ? 'Sì' : 'No';
      return String(value);
  }
}

// "CodNazione" → "Cod Nazione": captions for columns that only have a field name.
export function fieldCaption(field) {
  return String(field).replace(/_/g, ' ').replace(/([a-zà-ù])([A-Z])/g, '$1 $2');
}
