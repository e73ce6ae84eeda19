// History snapshots of a party's fiscal data, as the customer and supplier
// cards keep them: the values of the watched fields are remembered when
// editing begins; at save, when one of them changed, the snapshot dialog
// asks for the date from which the old values stop holding, and a row of
// STDAnagraficheStorico with the remembered values is added to the card's
// history grid, saved inside the card's transaction.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "module/Host.h"

namespace vantor20 {

// A watched control and the STDAnagraficheStorico column that keeps its
// value ("" for a watched field the snapshot does not store, as the postal
// code); dates are written only when filled.
struct SnapshotField {
  const char* control;
  const char* column;
  bool date;
};

// The watched fields of the customer card, in the card's order.
const std::vector<SnapshotField>& CustomerSnapshotFields();

// The watched fields of the supplier card, in the card's order (the
// exemption of a supplier is ckbFornitoreEsente; no Conai, no letter of
// intent number); snapshots of its rows carry TipoCliFor 2.
const std::vector<SnapshotField>& SupplierSnapshotFields();

// What the snapshot dialog answered (its closing event's four values).
struct SnapshotChoice {
  std::string message;       // a dictionary text when the date is taken
  std::int16_t idRiga = 0;   // the new row's IdRiga
  bool confirmed = false;
  corvina20::DateTime date;
};

using RememberedValues = std::map<std::string, Variant>;

// The current values of the watched controls of `form`.
RememberedValues RememberSnapshotFields(const corvina20::Form& form,
                                        const std::vector<SnapshotField>& fields);

// True when a watched control's value differs from the remembered one.
// Nothing remembered (editing began with history off): false.
bool SnapshotFieldsChanged(const corvina20::Form& form, const std::vector<SnapshotField>& fields,
                           const RememberedValues& remembered);

// Opens the snapshot dialog modally on party `idAnagrafica` and returns what
// it answered; closed without an answer, it counts as cancelled.
SnapshotChoice AskSnapshotDate(std::int32_t idAnagrafica);

// A new record started while `history` (the card's history grid) still
// shows the previous party's rows: warning 1468 is put with question 386;
// Yes empties the grid and answers true, any other answer false (the card
// cancels "new"). An empty grid answers true without a question.
bool ConfirmNewOverHistory(corvina20::VxBody& history);

// Adds the snapshot row to `grid` (bound to STDAnagraficheStorico): the
// party, the chosen IdRiga and date, the remembered values and `tipoCliFor`
// (1 customer side, 2 supplier side).
void AddSnapshotRow(corvina20::VxBody& grid, std::int32_t idAnagrafica, const SnapshotChoice& choice,
                    const std::vector<SnapshotField>& fields, const RememberedValues& remembered,
                    std::int16_t tipoCliFor);

}  // namespace vantor20
