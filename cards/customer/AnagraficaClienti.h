// The customer card: the party record, customer data, save checks, history snapshots and bank rows.
// The form's controls and handlers are built on the framework's card,
// grid and lookup controls.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class AnagraficaClienti final : public corvina20::Form {
 public:
  AnagraficaClienti() : Form("AnagraficaClienti") {}
};

}  // namespace vantor20
