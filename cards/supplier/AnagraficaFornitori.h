// The supplier card: suppliers with their fiscal, withholding-tax and bank data.
// The form's controls and handlers are built on the framework's card,
// grid and lookup controls.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class AnagraficaFornitori final : public corvina20::Form {
 public:
  AnagraficaFornitori() : Form("AnagraficaFornitori") {}
};

}  // namespace vantor20
