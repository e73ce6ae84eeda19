// The record-cycle steps the customer and supplier cards take alike: binding
// the card and its grids when it initialises, with the settings both read;
// giving a new party its key and opening its automatic ledger account inside
// the save; removing the role and its own rows inside the delete; and what a
// card carries from its checks to the operation. Not for: each card's own
// checks, fields and popup items, which stay in its folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cards/customer/HistorySnapshot.h"
#include "module/Host.h"

namespace vantor20 {

// What distinguishes the two party roles in the steps below.
struct PartyCardRole {
  const char* flag;                 // the role's flag of STDAnagrafiche ("Cliente", "Fornitore")
  const char* satellite;            // the role's row ("STDAnagraficaClienti")
  const char* controlAccountKey;    // the setting of the control account ("CodContoClienti")
  const char* controlAccountName;   // how message 153 names it ("il Conto Clienti")
  int side;                         // the accounts' side (kSideCustomers, kSideSuppliers)
  std::vector<const char*> ownTables;  // the rows that go with the role on delete
};

// The settings a party card reads when it initialises.
struct PartyCardSettings {
  bool manualId = false;        // "IdAnagraficaManuale": the user types the key
  std::string controlAccount;   // the role's control account
  std::string maskConto;        // "MaskConto"
  bool creaAutomPC = false;     // "CreaAutomPC": accounts are opened automatically
  bool historyEnabled = false;  // "AbilitaStoricoAnagrafiche"
};

// What the checks before a save or delete hand to the operation; the card
// clears it after a save or delete.
struct PartyCardState {
  bool takenOver = false;      // the new record is an existing party taken over
  bool openAccount = false;    // open the ledger account formed at save
  bool deleteAccount = false;  // the delete also removes the party's account
  RememberedValues remembered; // the snapshot fields at "edit"
  SnapshotChoice snapshot;     // what the snapshot dialog answered
};

// A grid of a party card and the table it shows, linked by `link`; `order`
// "" keeps the rows as stored.
struct PartyGrid {
  corvina20::VxBody& grid;
  const char* table;
  const char* key;
  const char* order = "";
  const char* link = "IdAnagrafica";
};

// The initialise steps of a party card `form`: `card` edits STDAnagrafiche
// (key IdAnagrafica) with `role.satellite`, showing only the role's records
// and leaving the party row to its other roles on delete; each grid is bound
// and linked; the settings are read; numIdAnagrafica is locked unless the key
// is typed, txtPartitaIva takes letters and digits of either case, and
// cdoConto and cdoCodContropartita get the account mask. With automatic
// accounts on and the control account or the mask missing, message 153
// (information) names what is missing. Returns the settings read.
// REQUIRES: `form` holds numIdAnagrafica, txtPartitaIva, cdoConto and
// cdoCodContropartita. Raises the database's error.
PartyCardSettings InitializePartyCard(corvina20::Form& form, corvina20::Card& card, const PartyCardRole& role,
                                      const std::vector<PartyGrid>& grids);

// Inside the save of a new record whose key is neither typed nor taken over:
// the next free key, taken again now (the one shown at "new" may have gone to
// another workstation meanwhile), into the record and numIdAnagrafica.
// Nothing for an edit. Raises NextFreeIdAnagrafica's error.
void AssignKeyAtSave(corvina20::Card& card, corvina20::Control& numIdAnagrafica, const PartyCardSettings& settings,
                     bool takenOver);

// Inside the save, when the checks chose to: opens the automatic account of
// the record's key under the control account, named `name`, writes it into
// the role's row and shows it in `cdoConto`. A failure raises the database's
// error with message 156 in front of its description.
void OpenAccountAtSave(corvina20::Card& card, const PartyCardRole& role, const PartyCardSettings& settings,
                       corvina20::Control& cdoConto, const std::string& name);

// Inside the delete: removes the role from the record's party (the party row
// goes when no role is left, its addresses and references with it), the
// role's own rows, and `account` when `deleteAccount`. Returns the party's
// key. Raises the database's error.
std::int32_t DeletePartyRole(corvina20::Card& card, const PartyCardRole& role, const Variant& account,
                             bool deleteAccount);

// The history step of a save, after its checks: when history is kept, the
// card is editing and a watched field of `form` changed since "edit", the
// snapshot dialog opens for `idAnagrafica` (its answer kept in
// state.snapshot); confirmed, a snapshot row of side `tipoCliFor` with the
// remembered values is added to `history`, saved with the card. Returns false
// when the save must stop: the date chosen is taken (reported as error 235
// from `location`). Cancelled, or nothing to keep: true.
bool SnapshotAtSave(const corvina20::Form& form, corvina20::Card& card, corvina20::VxBody& history,
                    const PartyCardSettings& settings, PartyCardState& state, std::int32_t idAnagrafica,
                    const std::vector<SnapshotField>& fields, std::int16_t tipoCliFor, std::string_view location);

}  // namespace vantor20
