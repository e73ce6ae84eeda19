// The carrier card: transport companies named on document tails.
// The form's controls and handlers are built on the framework's card,
// grid and lookup controls.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class AnagraficaVettori final : public corvina20::Form {
 public:
  AnagraficaVettori() : Form("AnagraficaVettori") {}
};

}  // namespace vantor20
