// The manufacturer card: the makers of the articles the company sells, kept
// in STDAnagraficaCostruttori with a key numbering of their own
// (IdAnagraficaCostruttore), apart from the parties of STDAnagrafiche. The
// card shows the common party fields, the manufacturer's category and notes,
// and checks fiscal code and VAT number as the carrier card does.
// Not for: the parties' roles (a manufacturer holds none).
#pragma once

#include "cards/minor/MinorPartyCard.h"

namespace vantor20 {

class AnagraficaCostruttori final : public MinorPartyCard {
 public:
  AnagraficaCostruttori();

  corvina20::Frame& frmCostruttore;
  corvina20::VxCode& cdoCatCostruttori;
  corvina20::TextField& txtNote;

 private:
  void OnInizialize(bool& ok, std::string& keyField, std::string& displayField);
  void OnActionBefore(int operation, bool& cancel);
  void OnActionInside(int operation);
  void OnActionAfter(int operation);
};

}  // namespace vantor20
