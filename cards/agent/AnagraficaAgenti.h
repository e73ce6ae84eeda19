// The sales agent card: agents with their mandates and commission shares.
// The form's controls and handlers are built on the framework's card,
// grid and lookup controls.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class AnagraficaAgenti final : public corvina20::Form {
 public:
  AnagraficaAgenti() : Form("AnagraficaAgenti") {}
};

}  // namespace vantor20
