// Small DOM helpers shared by the client's modules: element creation and the
// few icons the client draws. No framework: every view builds its elements
// once and updates them in place, so focus and half-typed text survive a
// refresh from the server.

const SVG = 'http://www.w3.org/2000/svg';

// h('div', {class: 'x', onclick: f, dataset: {a: 1}}, child, 'text', …)
export function h(tag, props, ...children) {
  const el = document.createElement(tag);
  if (props) {
    for (const [key, value] of Object.entries(props)) {
      if (value === undefined || value === null || value === false) continue;
      if (key === 'class') el.className = value;
      else if (key === 'dataset') Object.assign(el.dataset, value);
      else if (key.startsWith('on') && typeof value === 'function') el.addEventListener(key.slice(2), value);
      else if (key in el && typeof value !== 'string') el[key] = value;
      else el.setAttribute(key, value === true ? '' : value);
    }
  }
  append(el, children);
  return el;
}

function append(el, children) {
  for (const child of children) {
    if (child === null || child === undefined || child === false) continue;
    if (Array.isArray(child)) append(el, child);
    else el.append(child instanceof Node ? child : String(child));
  }
}

// Icons: 16×16 strokes drawn with currentColor (path data per name).
const PATHS = {
  new: 'M4 1.5h5l3.5 3.5v9.5h-8.5zM9 1.5v3.5h3.5M8.25 7.5v5M5.75 10h5',
  edit: 'M2.5 13.5l.8-3.2 7.7-7.7 2.4 2.4-7.7 7.7zM9.8 3.8l2.4 2.4',
  save: 'M2 2h9.5l2.5 2.5V14H2zM4.5 2v4h6V2M4.5 14V9.5h7V14',
  delete: 'M2.5 4h11M6 4V2.5h4V4M4 4l.7 10h6.6L12 4M6.7 6.5v5M9.3 6.5v5',
  cancel: 'M3.5 3.5l9 9M12.5 3.5l-9 9',
  first: 'M3.5 3v10M12.5 3L7 8l5.5 5',
  previous: 'M10.5 3L5 8l5.5 5',
  next: 'M5.5 3l5.5 5-5.5 5',
  last: 'M12.5 3v10M3.5 3L9 8l-5.5 5',
  search: 'M6.8 11.6a4.8 4.8 0 1 0 0-9.6 4.8 4.8 0 0 0 0 9.6zM10.3 10.3l4 4',
  menu: 'M2.5 4h11M2.5 8h11M2.5 12h11',
  list: 'M2 4h1.5M5.5 4h8.5M2 8h1.5M5.5 8h8.5M2 12h1.5M5.5 12h8.5',
  more: 'M8 3.2v.1M8 8v.1M8 12.8v.1',
  calendar: 'M2 3.5h12v10.5H2zM2 6.5h12M5 2v3M11 2v3',
  print: 'M4 6V2h8v4M4 12H2V6.5h12V12h-2M4 9.5h8V14H4z',
  preview: 'M1.5 8s2.5-4.5 6.5-4.5S14.5 8 14.5 8 12 12.5 8 12.5 1.5 8 1.5 8zM8 10a2 2 0 1 0 0-4 2 2 0 0 0 0 4z',
  refresh: 'M13 8a5 5 0 1 1-1.5-3.6M13 2.5v3h-3',
  close: 'M4 4l8 8M12 4l-8 8',
  add: 'M8 3v10M3 8h10',
  remove: 'M3 8h10',
  logout: 'M6 2.5H2.5v11H6M10 5l3 3-3 3M13 8H6',
  user: 'M8 8a3 3 0 1 0 0-6 3 3 0 0 0 0 6zM2.5 14.5c.6-3 2.8-4.5 5.5-4.5s4.9 1.5 5.5 4.5',
  tool: 'M2.5 13.5l6-6M9 2.5a3.5 3.5 0 0 0 4.5 4.5L11 9.5 6.5 5z',
  card: 'M1.5 3h13v10h-13zM4 6.5h4M4 9.5h6',
  report: 'M3.5 1.5h6l3 3v10h-9zM5.5 8h5M5.5 10.5h5M5.5 5.5h2',
  activeform: 'M2 2.5h12v11H2zM2 5.5h12M5 8.5l1.5 1.5L10 7',
  lock: 'M4 7h8v7H4zM5.5 7V5a2.5 2.5 0 0 1 5 0v2',
};

export function icon(name, extraClass = '') {
  const svg = document.createElementNS(SVG, 'svg');
  svg.setAttribute('viewBox', '0 0 16 16');
  svg.setAttribute('aria-hidden', 'true');
  svg.setAttribute('class', `icon ${extraClass}`.trim());
  const path = document.createElementNS(SVG, 'path');
  path.setAttribute('d', PATHS[name] || '');
  svg.append(path);
  return svg;
}

// The four message-box icons (style & 0x70), drawn in colour.
export function messageIcon(kind) {
  const svg = document.createElementNS(SVG, 'svg');
  svg.setAttribute('viewBox', '0 0 32 32');
  svg.setAttribute('aria-hidden', 'true');
  svg.setAttribute('class', `msg-icon msg-icon-${kind}`);
  const shapes = {
    critical: ['<circle cx="16" cy="16" r="14"/>', '<path d="M10.5 10.5l11 11M21.5 10.5l-11 11"/>'],
    question: ['<circle cx="16" cy="16" r="14"/>', '<path d="M12 12.5a4 4 0 1 1 5.5 3.7c-1 .5-1.5 1.2-1.5 2.3v1M16 23.5v.5"/>'],
    exclamation: ['<path d="M16 3L30 28H2z"/>', '<path d="M16 11.5v8M16 23v.5"/>'],
    information: ['<circle cx="16" cy="16" r="14"/>', '<path d="M16 14v9M16 9.5v.5"/>'],
  }[kind] || [];
  svg.innerHTML = `<g class="bg">${shapes[0] || ''}</g><g class="fg">${shapes[1] || ''}</g>`;
  return svg;
}

export function clear(el) {
  while (el.firstChild) el.firstChild.remove();
  return el;
}
