// Reporting a card's check lists.
#include "module/CardErrorList.h"

#include "module/Host.h"
#include "module/modCardError.h"
#include "module/modMainModule.h"

namespace vantor20 {

void ReportErrorList(std::string_view location, const std::string& errors) {
  try {
    // A fresh error of the module: the trace's head names the application,
    // the next line the handler.
    throw corvina20::Error(kErrCheckList, std::string(kAppName), errors);
  } catch (...) {
    CaptureCardError(location);
    ShowCardError();
  }
}

bool ConfirmCheckLists(std::string_view location, const std::string& errors,
                       const std::string& warnings) {
  if (!errors.empty()) {
    ReportErrorList(location, errors);
    return false;
  }
  if (warnings.empty()) return true;
  return AskMessage(kQuestionWarnings, warnings) == corvina20::kAnswerYes;
}

}  // namespace vantor20
