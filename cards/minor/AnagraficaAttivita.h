// The VAT activity-code card: each activity the company carries on for VAT
// (COGParametriIvaAttivita) with its yearly rows (COGParametriIvaAttivitaRighe)
// of pro-rata percentage and export ceiling, shown in the grid bdyDettaglio.
// Two commands of the grid's menu fill the selected years from the VAT
// settlements and from the journal (AnagraficaAttivitaCalcoli.h).
// Not for: the settlements or the journal themselves.
#pragma once

#include <string>

#include "module/Host.h"

namespace vantor20 {

class AnagraficaAttivita final : public corvina20::Form {
 public:
  AnagraficaAttivita();

  corvina20::Card& crdAnagraficaAttivita;
  corvina20::Frame& frmAttivita;
  corvina20::TextField& txtCodAttivita;
  corvina20::TextField& txtDescrizione;
  corvina20::TextField& txtCodiceAteco;
  // The grid's amounts are in the base currency; this label says which.
  corvina20::Label& lblDivisa;
  corvina20::VxBody& bdyDettaglio;

 private:
  std::string Location(const char* event) const;
  void OnInizialize(bool& ok, std::string& keyField, std::string& displayField);
  void OnActionBefore(int operation, bool& cancel);
  void OnActionAfter(int operation);
  // The checks of a save; false after telling the user what is wrong.
  bool CheckBeforeSave();
  // Fills the selected years (the current row when none is selected).
  void Compute(const std::string& key);
  void ComputeProRata(const std::string& codAttivita, int anno);
  void ComputeCeiling(const std::string& codAttivita, int anno);
  // PlafondResiduo of the current row from its ceiling and use.
  void UpdateResidual();
};

}  // namespace vantor20
