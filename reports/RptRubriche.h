// The address book report. One form class serves every address book; its
// type, set once by the item factory before the host sees the form, says
// whose: 1 customers, 2 suppliers, 3 agents, 4 carriers, 5 contacts,
// 6 manufacturers.
#pragma once

#include <cstdint>

#include "module/Host.h"

namespace vantor20 {

class RptRubriche final : public corvina20::Form {
 public:
  RptRubriche() : Form("RptRubriche") {}
  void SetTipoRubrica(std::int16_t tipo) {
    tipoRubrica_ = tipo;
    SetProperty("TipoRubrica", Variant(tipo));
  }
  std::int16_t TipoRubrica() const { return tipoRubrica_; }

 private:
  std::int16_t tipoRubrica_ = 0;
};

}  // namespace vantor20
