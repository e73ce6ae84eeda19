// The sales agent card: one STDAnagrafiche row with its STDAnagraficaAgenti
// row (registration number, category, area manager, paying supplier,
// commission settings), the agent's mandates (bdyMandati) and, for the
// mandate current in that grid, the commission shares that split it among
// agents (bdyMandatiQuote). An agent is a party whose Agente flag is set; the
// card adds that role on save (taking over an existing party of another role
// when the user agrees) and removes it on delete.
//
// The handlers live in three files: AnagraficaAgenti.cpp (the controls and
// their layout), AnagraficaAgentiEventi.cpp (record cycle, the two grids,
// the save of mandates and shares) and AnagraficaAgentiControlli.cpp (the
// checks before an action, "ControlliOK"). The rules on periods and share
// totals are in MandateChecks.
#pragma once

#include <cstdint>
#include <string>

#include "module/Host.h"

namespace vantor20 {

class AnagraficaAgenti final : public corvina20::Form {
 public:
  AnagraficaAgenti();

  corvina20::Card& crdAnagraficaAgenti;
  corvina20::Tabs& sstAgente;
  // Party record (STDAnagrafiche.*)
  corvina20::NumberField& numIdAnagrafica;
  corvina20::TextField& txtRagioneSociale1;
  corvina20::TextField& txtRagioneSociale2;
  corvina20::TextField& txtIndirizzo;
  corvina20::TextField& txtCap;
  corvina20::TextField& txtCitta;
  corvina20::TextField& txtProvincia;
  corvina20::VxCode& cdoNazione;
  corvina20::TextField& txtTelefono;
  corvina20::TextField& txtTelefono2;
  corvina20::TextField& txtPortatile;
  corvina20::TextField& txtFax;
  corvina20::TextField& txtE_mail;
  corvina20::TextField& txtInternet;
  corvina20::VxCode& cdoLingua;
  corvina20::TextField& txtPartitaIva;
  corvina20::TextField& cdoCodiceFiscale;
  // Agent data (STDAnagraficaAgenti)
  corvina20::TextField& txtMatricola;
  corvina20::VxCode& cdoCatAgente;
  corvina20::VxCode& cdoCapoArea;
  corvina20::VxCode& cdoIdFornitore;
  corvina20::VxCode& cdoIdAgenteConsolidamento;
  corvina20::NumberField& percProvvStd;
  corvina20::NumberField& percPercProvvCapoArea;
  corvina20::NumberField& percProvvSmistamento;
  corvina20::CheckBox& chkProvvSuFatturato;
  corvina20::CheckBox& chkProvvAlNettoCapoArea;
  corvina20::CheckBox& chkProvvAgente2Righe;
  corvina20::ChoiceField& cboTipoLiquidazioneProvvigione;
  corvina20::DateField& dteFineValidita;
  // Mandates and commission shares
  corvina20::VxBody& bdyMandati;
  corvina20::VxBody& bdyMandatiQuote;
  // The shares of the current mandate added up as they are typed (read only).
  corvina20::NumberField& percTotaleQuote;

  void Load() override;

 private:
  // ---- record cycle and grids (AnagraficaAgentiEventi.cpp) ----
  void WireEvents();
  void OnInizialize(bool& ok, std::string& key, std::string& display);
  void OnActionInside(int operation);
  void OnActionAfter(int operation);
  void OnBeginTrans();
  // The current mandate changed (or the mandates were loaded again, which
  // reloads every share of the record shown): the share grid shows the
  // current mandate's shares and the total follows.
  void OnMandateChanged();
  // Reads every share row of the agent shown, with the receiving agent's name.
  void LoadShares();
  // The IdValidita of the current mandate, 0 when there is none.
  // (The mandates' cursor is left on it.)
  std::int32_t CurrentMandate();
  void ShowShareTotal();
  // Removes the shares of mandate `idValidita` from the share grid.
  void DropShares(std::int32_t idValidita);
  // Writes new mandates (their provisional ids become the generated ones,
  // in the shares too), then every share of every mandate.
  void SaveMandatesAndShares(const Variant& key);
  // Taking over an existing party that is not an agent yet.
  void OfferTakeOver(const char* field, const Variant& value);
  std::int32_t CurrentId() const;

  // ---- checks before an action (AnagraficaAgentiControlli.cpp) ----
  void OnActionBefore(int operation, bool& cancel);
  void CheckDelete(bool& cancel);
  // "ControlliOK": true when the save may go on.
  bool ControlliOK();
  void CheckMandates(std::string& errors);

  bool manualId_ = false;
  bool takenOver_ = false;           // the new agent is an existing party taken over
  std::int32_t replacedId_ = 0;      // the party shown before "new", when linking is on
  std::int32_t nextProvisional_ = -1;  // ids of mandates not saved yet: -1, -2, …
  std::int32_t droppedMandate_ = 0;  // the mandate row being deleted
  corvina20::RecordsetPtr mandatesLoaded_;  // the mandate rows the shares were loaded for
};

}  // namespace vantor20
