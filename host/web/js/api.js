// The client's side of the HTTP API (docs/api.md): JSON requests with the
// session cookie and, on every POST and DELETE, the X-CSRF-Token received at
// login (or from GET /api/me after a reload). A 401 means the session is gone:
// listeners of onSessionLost bring the login back. Errors keep the server's
// {number, source, description} shape.

let csrf = '';
const lostListeners = [];

export class ApiError extends Error {
  constructor(status, error) {
    super(error?.description || `Errore HTTP ${status}`);
    this.status = status;
    this.error = error || { number: null, source: 'Corvina20.Web', description: this.message };
  }
}

export function setCsrf(token) { csrf = token || ''; }
export function onSessionLost(listener) { lostListeners.push(listener); }

export async function request(method, path, body) {
  const headers = { Accept: 'application/json' };
  if (body !== undefined) headers['Content-Type'] = 'application/json';
  if (method !== 'GET') headers['X-CSRF-Token'] = csrf;
  let response;
  setInflight(+1);
  try {
    response = await fetch(path, {
      method,
      headers,
      body: body === undefined ? undefined : JSON.stringify(body),
      credentials: 'same-origin',
      cache: 'no-store',
    });
  } catch (e) {
    setInflight(-1);
    throw new ApiError(0, { number: null, source: 'Corvina20.Web', description: `Server non raggiungibile (${e.message})` });
  }
  let data = null;
  try {
    data = await response.json();
  } catch {
    data = null;
  }
  setInflight(-1);
  if (response.status === 401 && path !== '/api/login') {
    for (const l of lostListeners) l(data?.error);
  }
  if (!response.ok) throw new ApiError(response.status, data?.error);
  return data;
}

export const get = (path) => request('GET', path);
export const post = (path, body = {}) => request('POST', path, body);
export const del = (path) => request('DELETE', path);

// Module actions run one at a time: a dialog parks the server's UI thread and
// any other action would be refused until it is answered, so every action
// (with the dialogs it raises) waits for the one before it to finish. A modal
// form opens a queue of its own on top: the action that showed it is still
// running (it waits for the form to close), and the form's actions must not
// wait for it.
const queues = [Promise.resolve()];
export function serialize(task) {
  const top = queues.length - 1;
  const run = queues[top].then(task);
  queues[top] = run.catch(() => {});
  return run;
}
export function pushQueue() { queues.push(Promise.resolve()); }
export function popQueue() { if (queues.length > 1) queues.pop(); }

// Requests on the wire, for the progress bar.
let inflight = 0;
const busyListeners = [];
export function onBusy(listener) { busyListeners.push(listener); }
function setInflight(delta) {
  inflight += delta;
  for (const l of busyListeners) l(inflight > 0);
}
