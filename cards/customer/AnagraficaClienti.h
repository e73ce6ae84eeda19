// The customer card: one STDAnagrafiche row with its STDAnagraficaClienti
// row, edited together with the customer's banks, other addresses, reference
// persons, notes, history snapshots, CRM profiling and attachments. A
// customer is a party whose Cliente flag is set; the card adds that role on
// save (taking over an existing party of another role when the user agrees)
// and removes it on delete, leaving the party to its other roles.
//
// The card's handlers live in three files: AnagraficaClienti.cpp (the
// controls and their layout), AnagraficaClientiEventi.cpp (the record cycle,
// grids and popup items) and AnagraficaClientiControlli.cpp (the checks
// before an action, in their fixed order).
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "cards/customer/HistorySnapshot.h"
#include "cards/party/PartyCard.h"
#include "cards/party/PartyForm.h"
#include "module/Host.h"

namespace vantor20 {

class AnagraficaClienti final : public PartyForm {
 public:
  AnagraficaClienti();

  corvina20::Card& crdAnagraficaClienti;
  corvina20::Tabs& sstCliente;
  // Party record (STDAnagrafiche.*)
  corvina20::NumberField& numIdAnagrafica;
  corvina20::TextField& txtRagioneSociale1;
  corvina20::TextField& txtRagioneSociale2;
  corvina20::TextField& txtIndirizzo;
  corvina20::TextField& txtCap;
  corvina20::TextField& txtCitta;
  corvina20::TextField& txtProvincia;
  corvina20::VxCode& cdoNazione;
  corvina20::TextField& cdoCodiceFiscale;
  corvina20::TextField& txtPartitaIva;
  corvina20::VxCode& cdoDivisa;
  // Customer data (STDAnagraficaClienti)
  corvina20::CheckBox& ckbConsumatoreFinale;
  corvina20::CheckBox& ckbInSospensione;
  corvina20::CheckBox& ckbSoggettoSplitPayment;
  corvina20::CheckBox& ckbSoggettoB2B;
  corvina20::CheckBox& ckbEntePubblico;
  corvina20::CheckBox& ckbEscludiDaElenco;
  corvina20::TextField& txtCodiceDestinatario;
  corvina20::CheckBox& ckbInfragruppo;
  corvina20::CheckBox& ckbClienteBL;
  corvina20::VxCode& cdoCodIvaBeniBL;
  corvina20::VxCode& cdoCodIvaServiziBL;
  corvina20::CheckBox& ckbClienteEsente;
  corvina20::VxCode& cdoCodIvaEsente;
  corvina20::TextField& txtLetInt;
  corvina20::DateField& dteLetInt;
  corvina20::TextField& txtNsNrAutorizz;
  corvina20::DateField& dteNsDataAutorizz;
  corvina20::DateField& dteValiditaAutorizDa;
  corvina20::DateField& dteValiditaAutorizA;
  corvina20::CheckBox& ckbSoggettoConai;
  corvina20::NumberField& percEsenzConai;
  corvina20::CheckBox& percEsenzConaiModificabile;
  corvina20::DateField& dteDataConai;
  corvina20::CheckBox& ckbSoggettoARitenutaAccontoAttiva;
  corvina20::NumberField& PercentualeRitenutaAccontoAttiva;
  corvina20::VxCode& cdoConto;
  corvina20::VxCode& cdoCodContropartita;
  corvina20::VxCode& cdoSezionale;
  corvina20::VxCode& cdoCodContoAnaComDefault;
  corvina20::CheckBox& ckbInvioMail;
  corvina20::ChoiceField& cboTipoDocumentoDaGenerare;
  corvina20::ChoiceField& cboPosNote;
  corvina20::ChoiceField& cboMeseEscluso1;
  corvina20::ChoiceField& cboMeseEscluso2;
  corvina20::NumberField& numGgEscluso;
  // Grids
  corvina20::VxBody& bdyBancheCliente;
  corvina20::VxBody& bdyIndirizzi;
  corvina20::VxBody& bdyRiferimenti;
  corvina20::VxBody& bdyNoteCliente;
  corvina20::VxBody& bdyStoricizzazione;
  corvina20::VxBody& bdyProfilazione;
  corvina20::VxBody& bdyAllegati;
  corvina20::Label& lblAnagraficheDoppie;
  corvina20::VxBody& bdyAnagraficheDoppie;
  corvina20::VxBody& bdyAnagraficheDoppie2;

  void Load() override;

 private:
  // ---- record cycle (AnagraficaClientiEventi.cpp) ----
  void WireEvents();
  void OnInizialize(bool& ok, std::string& key, std::string& display);
  void OnActionInside(int operation);
  void OnActionAfter(int operation);
  void OnBeginTrans();
  void OnPopupItem(const std::string& key);
  void OnDuplicatesPopup(corvina20::VxBody& grid, const std::string& key);
  // Writes the excluded due-date periods and GgScadenza into the customer row.
  void WriteExcludedPeriods(const RecordsetPtr& customer);
  // Writes the keys of the rows marked Default into IdBancaDefault and the
  // two default-address columns of the customer `key` (after the grids).
  void WriteDefaults(const Variant& key);
  // Taking over an existing party that is not a customer yet.
  void OfferTakeOver(const char* field, const Variant& value);
  void ShowExcludedMonths();
  std::int32_t CurrentId() const;
  // Applies the settings that show, hide, lock and mask controls.
  void ApplySettings();

  // ---- checks before an action (AnagraficaClientiControlli.cpp) ----
  void OnActionBefore(int operation, bool& cancel);
  void CheckNewRecord(bool& cancel);
  void CheckDelete(bool& cancel);
  void CheckSave(bool& cancel);
  void CheckExemptionAndConai(std::string& errors);
  void CheckAccount(std::string& errors, bool& cancel);
  void CheckSalesRegister(std::string& warnings);
  void CheckElectronicInvoicing(std::string& warnings);
  void CheckIdentity(std::string& errors, std::string& warnings);
  void CheckDuplicates(std::string& warnings);
  void CheckBlackList(std::string& warnings);
  // The id the record will have when saved (the next free one for a new
  // customer whose id is not typed).
  std::int32_t IdForSave() const;

  PartyCardSettings settings_;   // read at initialise
  PartyCardState state_;         // from the checks to the operation
  std::int32_t replacedId_ = 0;  // the party shown before "new", when linking is on
};

}  // namespace vantor20
