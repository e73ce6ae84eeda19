// The loader card, numbered over its own table.
// The form's controls and handlers are built on the framework's card,
// grid and lookup controls.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class AnagraficaCaricatori final : public corvina20::Form {
 public:
  AnagraficaCaricatori() : Form("AnagraficaCaricatori") {}
};

}  // namespace vantor20
