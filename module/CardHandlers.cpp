// Card handler traps.
#include "module/CardHandlers.h"

#include "module/modCardError.h"
#include "module/modErrorHandling.h"

namespace vantor20 {

bool RunHandler(std::string_view location, const std::function<void()>& body) {
  try {
    body();
    return true;
  } catch (...) {
    CaptureCardError(location);
    ShowCardError();
    return false;
  }
}

void RunInsideTransaction(std::string_view location, const std::function<void()>& body) {
  try {
    body();
  } catch (...) {
    RaiseError(-1, location);
  }
}

}  // namespace vantor20
