// The address-label report. Its type, set once by the item factory, says
// whose labels: 1 customers, 2 suppliers, 3 contacts, 4 customers taken from
// documents, 5 suppliers taken from documents.
#pragma once

#include <cstdint>

#include "module/Host.h"

namespace vantor20 {

class RptEtichetteAnagrafiche final : public corvina20::Form {
 public:
  RptEtichetteAnagrafiche() : Form("RptEtichetteAnagrafiche") {}
  void SetTipoEtichetta(std::int16_t tipo) {
    tipoEtichetta_ = tipo;
    SetProperty("TipoEtichetta", Variant(tipo));
  }
  std::int16_t TipoEtichetta() const { return tipoEtichetta_; }

 private:
  std::int16_t tipoEtichetta_ = 0;
};

}  // namespace vantor20
