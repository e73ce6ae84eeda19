// The VAT activity-code card with its yearly pro-rata and ceiling rows.
// The form's controls and handlers are built on the framework's card,
// grid and lookup controls.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class AnagraficaAttivita final : public corvina20::Form {
 public:
  AnagraficaAttivita() : Form("AnagraficaAttivita") {}
};

}  // namespace vantor20
