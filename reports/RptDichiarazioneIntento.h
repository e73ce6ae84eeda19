// The declaration of intent: fills the document model and writes it to file.
// The form's controls and handlers are built on the framework's card,
// grid and lookup controls.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class RptDichiarazioneIntento final : public corvina20::Form {
 public:
  RptDichiarazioneIntento() : Form("RptDichiarazioneIntento") {}
};

}  // namespace vantor20
