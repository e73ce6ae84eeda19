// The manufacturer card, with a key numbering of its own.
// The form's controls and handlers are built on the framework's card,
// grid and lookup controls.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class AnagraficaCostruttori final : public corvina20::Form {
 public:
  AnagraficaCostruttori() : Form("AnagraficaCostruttori") {}
};

}  // namespace vantor20
