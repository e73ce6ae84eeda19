// The loader card: the firms that load the goods shipped with a sales
// document (ATTDocCoda.IdCaricatore). Loaders live in STDAnagraficaCaricatori,
// keyed by IdAnagrafica but numbered over their own table only, apart from the
// parties of STDAnagrafiche. The card shows the common party fields and notes,
// checks fiscal code and VAT number as the carrier card does, and refuses to
// delete a loader that a sales document still names.
#pragma once

#include "cards/minor/MinorPartyCard.h"

namespace vantor20 {

class AnagraficaCaricatori final : public MinorPartyCard {
 public:
  AnagraficaCaricatori();

  corvina20::Frame& frmCaricatore;
  corvina20::TextField& txtNote;

 private:
  void OnInizialize(bool& ok, std::string& keyField, std::string& displayField);
  void OnActionBefore(int operation, bool& cancel);
  void OnActionInside(int operation);
  void OnActionAfter(int operation);
};

}  // namespace vantor20
