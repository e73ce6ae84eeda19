// The cash-register card: the tills whose daily receipts are posted in the
// receipts register. A cash register is a party of STDAnagrafiche kept as a
// final-consumer customer (its satellite row in STDAnagraficaClienti) and
// marked with CassaCorrispettivi; the card shows only what a till needs: its
// name, the ledger account and counter-account, the currency, the end of
// validity and, when intra-group journals are kept, the intra-group mark.
// Not for: the customer's own data (the customer card).
#pragma once

#include <string>

#include "module/Host.h"

namespace vantor20 {

class CasseCorrispettivi final : public corvina20::Form {
 public:
  CasseCorrispettivi();

  corvina20::Card& crdCasseCorrispettivi;
  corvina20::Frame& frmCassa;
  corvina20::NumberField& numIdAnagrafica;
  corvina20::TextField& txtRagioneSociale1;
  corvina20::VxCode& cdoCodConto;
  corvina20::VxCode& cdoCodContropartita;
  corvina20::VxCode& cdoDivisa;
  corvina20::DateField& dteFineValidita;
  corvina20::CheckBox& ckbInfragruppo;

  // Offers ckbInfragruppo only when "GestisciPNInfragruppo" is set.
  void Load() override;

 private:
  std::string Location(const char* event) const;
  void OnInizialize(bool& ok, std::string& keyField, std::string& displayField);
  void OnActionBefore(int operation, bool& cancel);
  void OnActionInside(int operation);
  void OnActionAfter(int operation);
  void CheckBeforeSave(bool& cancel);

  bool manualId_ = false;  // "IdAnagraficaManuale": the user types the id
};

}  // namespace vantor20
