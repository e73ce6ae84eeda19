// Runs the module's actions and carries their outcome to the screen. An action
// answers {events, result, dialog, error, state}: errors among the events are
// shown in the error window, a waiting dialog is shown and its answer posted
// (POST /api/dialog), which may bring the next dialog, until the action is
// over; then the form is drawn again from the state and the action's own error,
// if any, is shown. Actions run one at a time (api.serialize).
//
// A modal form the module shows ("modal" in the outcome) is drawn over the
// page and the action that showed it waits until the form closes; the form's
// own actions settle here too, and the one whose events say the form closed
// ({"closed":id,"modal":true}) hands its outcome (the suspended action's
// result, or its next dialog) back to the waiting action.

import * as api from './api.js';
import { messageBox, errorBox } from './dialogs.js';
import { showModalForm } from './modalform.js';

let applyState = () => {};
export function onState(handler) { applyState = handler; }

// A form the module opened during an action ({"opened":…,"formId":N}, not
// modal: "Apri Anagrafica", a card opened from another): shown once the
// action is over.
let showOpened = async () => {};
export function onOpened(handler) { showOpened = handler; }

// The text of every message and error the module shows for a form, told
// before it is shown (the form marks the fields it names).
let tellMessage = () => {};
export function onMessage(handler) { tellMessage = handler; }

const BUSY_KEY = 'corvina.dialogForm';

async function showEvents(events, formId) {
  for (const event of events || []) {
    if (event && event.error) {
      tellMessage(formId, event.error.description);
      await errorBox(event.error);
    }
  }
}

// The modal forms on screen: formId → {view, finish(outcome)}.
const modals = new Map();

// Shows a modal form and resolves with the outcome that closed it.
function openModal(modal) {
  return new Promise((resolve) => {
    api.pushQueue();
    const shown = showModalForm(modal, { cancel: () => closeModal(modal.formId) });
    modals.set(modal.formId, {
      view: shown.view,
      finish: (out) => {
        modals.delete(modal.formId);
        shown.remove();
        api.popQueue();
        resolve(out);
      },
    });
  });
}

// Follows an outcome to its end; returns the last outcome. With
// `fieldErrors` the action's own refusal of a typed value (error 380) is left
// to the caller, which shows it under the field.
export async function settle(outcome, formId, { fieldErrors = false } = {}) {
  let out = outcome;
  const opened = [];
  for (;;) {
    for (const e of out.events || []) {
      if (e && e.opened != null && e.formId != null && !e.modal) opened.push(e.formId);
    }
    const closed = (out.events || []).find((e) => e && e.modal === true && e.closed != null && modals.has(e.closed));
    if (closed) {
      // The rest belongs to the action that showed the form.
      modals.get(closed.closed).finish(out);
      return out;
    }
    if (out.modal && modals.has(out.modal.formId)) {
      // The modal form stays open: its own action is over.
      await showEvents(out.events, formId);
      if (out.modal.state) modals.get(out.modal.formId).view.update(out.modal.state);
      if (out.error && !(fieldErrors && out.error.number === 380)) await errorBox(out.error);
      return out;
    }
    if (out.modal) {
      await showEvents(out.events, formId);
      out = await openModal(out.modal);
      continue;
    }
    await showEvents(out.events, formId);
    if (out.dialog) {
      tellMessage(formId, out.dialog.text);
      sessionStorage.setItem(BUSY_KEY, String(formId ?? ''));
      const answer = await messageBox(out.dialog);
      const body = { answer };
      if (formId != null) body.formId = formId;
      out = await api.post('/api/dialog', body);
      continue;
    }
    sessionStorage.removeItem(BUSY_KEY);
    if (out.state) applyState(out.state);
    if (out.error && !(fieldErrors && out.error.number === 380)) {
      tellMessage(formId, out.error.description);
      await errorBox(out.error);
    }
    for (const id of opened) await showOpened(id);
    return out;
  }
}

// The form a dialog left waiting before a reload (null when unknown).
export function dialogFormAfterReload() {
  const v = sessionStorage.getItem(BUSY_KEY);
  return v ? Number(v) : null;
}

async function guarded(formId, send, options) {
  try {
    return await settle(await send(), formId, options);
  } catch (e) {
    if (e instanceof api.ApiError && e.status !== 401) await errorBox(e.error);
    else if (!(e instanceof api.ApiError)) await errorBox({ number: null, source: 'Corvina20.Web (client)', description: String(e?.message || e) });
    return null;
  }
}

// One action on an open form, e.g. {"press":"save"}; resolves with the final
// outcome (null when the request failed and was reported).
export function perform(formId, action, options = {}) {
  return api.serialize(() => guarded(formId, () => api.post(`/api/forms/${formId}/actions`, action), options));
}

// Opens an item; resolves with the outcome (state null when the item has no form).
export function openItem(name, kind) {
  return api.serialize(() => guarded(null, () => api.post('/api/forms', { open: name, kind })));
}

// Answers a dialog found waiting after a reload (GET /api/me).
export function resumeDialog(dialog, formId) {
  return api.serialize(() => guarded(formId, () => Promise.resolve({ events: [], dialog, state: null, error: null })));
}

// Closes a modal form by its window (Esc): unconfirmed, as the module sees it.
export function closeModal(formId) {
  return api.serialize(() => guarded(formId, () => api.del(`/api/forms/${formId}`)));
}

// Shows again a modal form found waiting after a reload (GET /api/me).
export function resumeModal(modal, formId) {
  return api.serialize(() => guarded(formId, async () => {
    const read = await api.get(`/api/forms/${modal.formId}`);
    return { events: [], modal: { ...modal, state: read.state }, dialog: null, state: null, error: null };
  }));
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
