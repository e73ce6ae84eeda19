// The common card pattern of the minor registries (carriers, manufacturers,
// loaders): the party fields of a card, the allocation of a new id as a
// maximum + 1 when the card enters new mode, and the fiscal-code and
// VAT-number checks before a save, governed by "ControlloCFBloccante". Each
// card derives from it, names its table, key and location strings, and adds
// its own fields and rules.
#pragma once

#include <cstdint>
#include <string>

#include "corvina20/Card.h"
#include "module/Host.h"

namespace vantor20 {

class MinorPartyCard : public corvina20::Form {
 public:
  // `form` names the form ("AnagraficaVettori"); the card control is
  // "crd" + form. The party fields are bound to `table`, whose key column is
  // `keyColumn`.
  MinorPartyCard(const std::string& form, const std::string& table, const std::string& keyColumn);

  corvina20::Card& crd;
  corvina20::Frame& frmAnagrafica;
  corvina20::Frame& frmRecapiti;
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
  corvina20::VxCode& cdoLingua;
  corvina20::TextField& txtTelefono;
  corvina20::TextField& txtTelefono2;
  corvina20::TextField& txtPortatile;
  corvina20::TextField& txtFax;
  corvina20::TextField& txtInternet;
  corvina20::TextField& txtE_mail;
  corvina20::DateField& dteFineValidita;

 protected:
  // The location string of a card event: "<form>.crd<form>_<event>".
  std::string Location(const char* event) const;
  // "Max(<key>) as IdLibera" + 1 over `table`: the card's own numbering.
  std::int32_t NextFreeId(const std::string& table, const std::string& key) const;
  // The id steps of a card numbered over its own table: at save time in new
  // mode the id is taken again (the one shown at "new" may have gone to
  // another workstation meanwhile) into the record and the id field.
  void AllocateIdAtSave();
  // After "new": the next free id is shown; after a save: the saved one.
  void ShowIdAfter(int operation);
  // Reads "IdAnagraficaManuale": whether the user types the id.
  void ReadManualId();
  // The checks of a save, in their fixed order: a typed key (when the
  // user types the keys, CheckManualKey: refused at once), fiscal code
  // (blocking under "ControlloCFBloccante", else a warning), Italian VAT
  // number, either held by another party of any role
  // (CheckDuplicateField(5, field, value, own id), no role check: messages
  // 135 and 142), both missing; the warnings are put to the user with
  // question 386. Sets `cancel` when the save must not go on.
  void CheckIdentityBeforeSave(bool& cancel);
  // The id shown, 0 when none.
  std::int32_t ShownId() const;
  // The key the duplicate checks leave out: the id shown when the card's
  // records are parties of STDAnagrafiche, else 0 (no party is this record:
  // a manufacturer's or a loader's number is not a party key).
  std::int32_t OwnPartyId() const;

  const std::string formName_;
  const std::string table_;
  const std::string keyColumn_;
  bool manualId_ = false;
};

}  // namespace vantor20
