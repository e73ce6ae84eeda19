// The cash-register card: registers kept as final-consumer customers.
// The form's controls and handlers are built on the framework's card,
// grid and lookup controls.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class CasseCorrispettivi final : public corvina20::Form {
 public:
  CasseCorrispettivi() : Form("CasseCorrispettivi") {}
};

}  // namespace vantor20
