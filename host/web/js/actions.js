// Runs the module's actions and carries their outcome to the screen. An action
// answers {events, result, dialog, error, state}: errors among the events are
// shown in the error window, a waiting dialog is shown and its answer posted
// (POST /api/dialog), which may bring the next dialog, until the action is
// over; then the form is drawn again from the state and the action's own error,
// if any, is shown. Actions run one at a time (api.serialize).

import * as api from './api.js';
import { messageBox, errorBox } from './dialogs.js';

let applyState = () => {};
export function onState(handler) { applyState = handler; }

const BUSY_KEY = 'corvina.dialogForm';

async function showEvents(events) {
  for (const event of events || []) {
    if (event && event.error) await errorBox(event.error);
  }
}

// Follows an outcome to its end; returns the last outcome.
export async function settle(outcome, formId) {
  let out = outcome;
  for (;;) {
    await showEvents(out.events);
    if (out.dialog) {
      sessionStorage.setItem(BUSY_KEY, String(formId ?? ''));
      const answer = await messageBox(out.dialog);
      const body = { answer };
      if (formId != null) body.formId = formId;
      out = await api.post('/api/dialog', body);
      continue;
    }
    sessionStorage.removeItem(BUSY_KEY);
    if (out.state) applyState(out.state);
    if (out.error) await errorBox(out.error);
    return out;
  }
}

// The form a dialog left waiting before a reload (null when unknown).
export function dialogFormAfterReload() {
  const v = sessionStorage.getItem(BUSY_KEY);
  return v ? Number(v) : null;
}

async function guarded(formId, send) {
  try {
    return await settle(await send(), formId);
  } catch (e) {
    if (e instanceof api.ApiError && e.status !== 401) await errorBox(e.error);
    else if (!(e instanceof api.ApiError)) await errorBox({ number: null, source: 'Corvina20.Web (client)', description: String(e?.message || e) });
    return null;
  }
}

// One action on an open form, e.g. {"press":"save"}; resolves with the final
// outcome (null when the request failed and was reported).
export function perform(formId, action) {
  return api.serialize(() => guarded(formId, () => api.post(`/api/forms/${formId}/actions`, action)));
}

// Opens an item; resolves with the outcome (state null when the item has no form).
export function openItem(name, kind) {
  return api.serialize(() => guarded(null, () => api.post('/api/forms', { open: name, kind })));
}

// Answers a dialog found waiting after a reload (GET /api/me).
export function resumeDialog(dialog, formId) {
  return api.serialize(() => guarded(formId, () => Promise.resolve({ events: [], dialog, state: null, error: null })));
}

export function closeForm(formId) {
  return api.serialize(async () => {
    try {
      await api.del(`/api/forms/${formId}`);
    } catch (e) {
      // A form the server no longer has (expired, restarted) is closed anyway.
      if (e.status !== 404 && e.status !== 401) await errorBox(e.error);
    }
  });
}
