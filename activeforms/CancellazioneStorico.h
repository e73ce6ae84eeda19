// The deletion of history snapshots of parties' fiscal data.
// The form's controls and handlers are built on the framework's card,
// grid and lookup controls.
#pragma once

#include "module/Host.h"

namespace vantor20 {

class CancellazioneStorico final : public corvina20::Form {
 public:
  CancellazioneStorico() : Form("CancellazioneStorico") {}
};

}  // namespace vantor20
