// The contact card: a CRM prospect kept as a party of STDAnagrafiche whose
// Contatto flag is set, with its contact data in STDAnagraficaContatti, its
// reference persons, its CRM activities and profiling, its attachments and
// the panel of its duplicates. The card converts a contact into a customer
// through the host and adds or removes the contact role on save and delete,
// leaving the party to its other roles.
//
// The handlers live in two files: AnagraficaContatti.cpp (the controls and
// their layout) and AnagraficaContattiEventi.cpp (the record cycle, the
// checks before an action, the popup items and the conversion).
#pragma once

#include <cstdint>
#include <string>

#include "cards/party/PartyForm.h"
#include "module/Host.h"

namespace vantor20 {

class AnagraficaContatti final : public PartyForm {
 public:
  AnagraficaContatti();

  corvina20::Card& crdAnagraficaContatti;
  corvina20::Tabs& sstContatti;
  corvina20::Tabs& sstCRM;
  corvina20::NumberField& numIdAnagrafica;
  corvina20::TextField& txtRagioneSociale1;
  corvina20::TextField& txtRagioneSociale2;
  corvina20::TextField& cdoCodiceFiscale;
  corvina20::TextField& txtPartitaIva;
  corvina20::VxCode& cdoCodContropartita;
  corvina20::CheckBox& ckbSoggettoARitenutaAccontoAttiva;
  corvina20::NumberField& PercentualeRitenutaAccontoAttiva;
  corvina20::CheckBox& ckbConvertitoInCliente;
  corvina20::DateField& dteDataConversione;
  corvina20::CheckBox& ckbInvioMail;
  corvina20::VxBody& bdyRiferimenti;
  corvina20::VxBody& bdyAttivita;
  corvina20::VxBody& bdyProfilazione;
  corvina20::VxBody& bdyAllegati;
  corvina20::Label& lblAnagraficheDoppie;
  corvina20::VxBody& bdyAnagraficheDoppie;
  corvina20::VxBody& bdyAnagraficheDoppie2;

  void Load() override;

  // Print defaults for the report `nomeStampa` opened from this card: for the
  // contacts' labels ("RptEtichetteContatti", any case) with a record shown,
  // the host's print default "FORM_CHIAMANTE_STAMPA_ETICHETTE" becomes
  // ("AnagraficaContatti", the shown IdAnagrafica), so the labels start from
  // this contact. Any other report, or no record: nothing.
  void ImpostaDefaultPerStampe(const std::string& nomeStampa);

 private:
  // ---- record cycle (AnagraficaContattiEventi.cpp) ----
  void WireEvents();
  void OnInizialize(bool& ok, std::string& key, std::string& display);
  void OnActionBefore(int operation, bool& cancel);
  void OnActionInside(int operation);
  void OnActionAfter(int operation);
  void OnBeginTrans();
  void OnReposition();
  void OnPopupItem(const std::string& key);
  void OnActivitiesPopup(const std::string& key);
  void OnDuplicatesPopup(corvina20::VxBody& grid, const std::string& key);
  void CheckSave(bool& cancel);
  void CheckDelete(bool& cancel);
  // Fills the duplicates panel from the card's current values; true when
  // duplicates were found.
  bool ShowDuplicates();
  void ConvertiInCliente();
  void SincronizzaOutlook();
  void LoadActivities();
  std::int32_t CurrentId() const;

  // Card-wide settings, read at initialise.
  bool manualId_ = false;
  std::string codContoClienti_;
  std::string maskConto_;
  bool creaAutomPC_ = false;

  std::int32_t replacedId_ = 0;  // the party shown before "new", when linking is on
};

}  // namespace vantor20
