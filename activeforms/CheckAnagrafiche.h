// The master-data checks: consistency of customers and suppliers.
// The form's controls and handlers are built on the framework's card,
// grid and lookup controls.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class CheckAnagrafiche final : public corvina20::Form {
 public:
  CheckAnagrafiche() : Form("CheckAnagrafiche") {}
};

}  // namespace vantor20
