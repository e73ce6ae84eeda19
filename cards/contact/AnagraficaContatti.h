// The contact card: CRM prospects, their duplicates and their conversion into customers.
// The form's controls and handlers are built on the framework's card,
// grid and lookup controls.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class AnagraficaContatti final : public corvina20::Form {
 public:
  AnagraficaContatti() : Form("AnagraficaContatti") {}
};

}  // namespace vantor20
