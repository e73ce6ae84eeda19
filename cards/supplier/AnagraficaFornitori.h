// The supplier card: one STDAnagrafiche row with its STDAnagraficaFornitori
// row, edited together with the supplier's banks, other addresses, reference
// persons, notes and history snapshots. A supplier is a party whose
// Fornitore flag is set; the card adds that role on save (taking over an
// existing party of another role when the user agrees) and removes it on
// delete, leaving the party to its other roles.
//
// The card's handlers live in three files: AnagraficaFornitori.cpp (the
// controls and their layout), AnagraficaFornitoriEventi.cpp (the record
// cycle, the field dependencies, the take-over and the public procedures)
// and AnagraficaFornitoriControlli.cpp (the checks before an action, in
// their fixed order). The controls are reached by name (Ctl): the form
// holds as members only the card and the grids.
#pragma once

#include <cstdint>
#include <string>

#include "cards/customer/HistorySnapshot.h"
#include "cards/party/BankSearch.h"
#include "cards/party/PartyCard.h"
#include "cards/party/PartyForm.h"
#include "module/Host.h"

namespace vantor20 {

class AnagraficaFornitori final : public PartyForm {
 public:
  AnagraficaFornitori();

  corvina20::Card& crdAnagraficaFornitori;
  corvina20::Tabs& sstFornitore;
  corvina20::VxBody& BdyBancheFornitore;
  corvina20::VxBody& bdyIndirizzi;
  corvina20::VxBody& bdyRiferimenti;
  corvina20::VxBody& bdyNoteFornitore;
  corvina20::VxBody& bdyStoricizzazione;
  corvina20::VxBody& bdyAllegati;

  void Load() override;

  // ---- public procedures (the host and other items call them) ----
  // The VAT-number check of the save (check 6): true when txtPartitaIva is
  // empty, the nation is foreign, or the number passes the Italian check.
  bool ControllaPartitaIva_Pub();
  // Opens the supplier label report "RptEtichetteFornitori" for the shown
  // supplier, the card recorded as caller ("FORM_CHIAMANTE_STAMPA_ETICHETTE")
  // with its "IDANAGRAFICA".
  void ImpostaDefaultPerStampe();
  // The branch chosen in the bank search, put in the current row of
  // BdyBancheFornitore (a row is added when the grid has none).
  void objUsSceltaBanche_BancaSelezionata(const BankBranch& bank);
  // The history-snapshot dialog closed: the history grid is read again.
  void prModaleStoricizzazione_ChiusuraModale();

 private:
  template <class T = corvina20::Control>
  T& Ctl(const char* name) const {
    return dynamic_cast<T&>(*FindControl(name));
  }
  bool Ticked(const char* name) const;
  bool Blank(const char* name) const;
  std::string Text(const char* name) const;

  // ---- record cycle (AnagraficaFornitoriEventi.cpp) ----
  void WireEvents();
  void OnInizialize(bool& ok, std::string& key, std::string& display);
  void OnActionInside(int operation);
  void OnActionAfter(int operation);
  void OnBeginTrans();
  void OnPopupItem(const std::string& key);
  void OfferTakeOver(const char* field, const Variant& value);
  void FillFromNation();
  void ApplyDependencies();
  void ShowRecordExtras();
  std::int32_t CurrentId() const;

  // ---- checks before an action (AnagraficaFornitoriControlli.cpp) ----
  void OnActionBefore(int operation, bool& cancel);
  void CheckNewRecord(bool& cancel);
  void CheckDelete(bool& cancel);
  void CheckSave(bool& cancel);
  void CheckAccount(std::string& errors, bool& cancel);
  void CheckSubcontractor(std::string& errors);
  void CheckIdentity(std::string& errors, std::string& warnings, bool& stop);
  void CheckRows(std::string& errors, std::string& warnings);

  PartyCardSettings settings_;  // read at initialise
  PartyCardState state_;        // from the checks to the operation
};

}  // namespace vantor20
