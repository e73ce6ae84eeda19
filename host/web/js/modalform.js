// A modal form of the module drawn over the page: the form's own controls in
// a <dialog> shown modally (the page behind is inert, so the focus stays in
// it), updated from each state the server returns. Esc closes it by its
// window, which the module takes as a cancel. The settling of its actions,
// and what happens when it closes, is actions.js's.

import { h } from './dom.js';
import { FormView } from './form.js';

// "SalvaStoricoAnagrafiche" → "Salva Storico Anagrafiche".
function captionOf(name) { return String(name || '').replace(/([a-z])([A-Z])/g, '$1 $2'); }

let seq = 0;

// modal: {formId, form, state}; cancel() closes it by its window. Its view
// acts on it as any form view does. Returns {view, remove()}.
export function showModalForm(modal, { cancel }) {
  const id = `modal-form-${++seq}`;
  const caption = captionOf(modal.form);
  const view = new FormView(modal.state, { caption, note: () => {}, onChange: () => {} });
  const dialog = h('dialog', { class: 'modal modal-form', 'aria-labelledby': id, dataset: { formId: modal.formId, form: modal.form } },
    h('header', { class: 'modal-title' }, h('h2', { id }, caption)),
    h('div', { class: 'modal-form-body' }, view.el));
  dialog.addEventListener('cancel', (e) => {
    e.preventDefault();
    cancel();
  });
  document.body.append(dialog);
  dialog.showModal();
  view.focusFirst();
  return {
    view,
    remove() {
      dialog.close();
      dialog.remove();
    },
  };
}
