// Dictionary messages, message lists and the captured card error.
#include "module/modCardError.h"

#include "module/modErrorHandling.h"
#include "module/modMainModule.h"

namespace vantor20 {

thread_local std::int32_t LastErrorNumber = 0;
thread_local std::string LastErrorDescription;
thread_local std::string LastErrorText;

std::string FillMessage(std::int32_t number, const std::vector<std::string>& args) {
  std::string message;
  try {
    corvina20::MervoStatus dictionary;
    std::int32_t n = number;
    message = dictionary.GetMessage(n);
  } catch (...) {
    return {};
  }
  for (const std::string& arg : args) {
    // Always the first "%s" left in the text: an argument that itself holds
    // "%s" takes the next argument, as the dictionary's own filling does.
    std::size_t at = message.find("%s");
    if (at == std::string::npos) break;
    message = message.substr(0, at) + arg + message.substr(at + 2);
  }
  return message;
}

void AddCardMessage(std::int32_t number, std::string& list, const std::vector<std::string>& args) {
  std::string message = FillMessage(number, args);
  if (message.empty()) return;
  list += message;
  list += "\r\n";
}

int ShowMessage(std::int32_t number, int style, const std::vector<std::string>& args) {
  try {
    corvina20::MessageRequest request;
    request.number = number;
    request.text = FillMessage(number, args);
    request.style = style;
    return App().ShowMessage(request);
  } catch (...) {
    return 0;
  }
}

int AskMessage(std::int32_t number, const std::string& list) {
  try {
    corvina20::MessageRequest request;
    request.number = number;
    // The findings first, then the question about them.
    request.text = list + "\r\n" + FillMessage(number, {});
    request.style = corvina20::kStyleYesNo + corvina20::kStyleQuestion;
    return App().ShowMessage(request);
  } catch (...) {
    return 0;
  }
}

void CaptureCardError(std::string_view procedure) {
  ClearCardError();
  try {
    Error current = corvina20::CurrentError();
    LastErrorNumber = current.Number();
    LastErrorDescription = current.Description();
    // With no procedure name the source stands in for it, still inside the
    // trace: the text keeps its head line either way.
    LastErrorText = FormatErrorText(current.Number(), current.Source(),
                                    procedure.empty() ? std::string_view(current.Source()) : procedure);
  } catch (...) {
    // Nothing to capture.
  }
}

void ShowCardError(bool show, std::int16_t style) {
  if (!show) return;
  try {
    corvina20::MessageRequest request;
    request.text = LastErrorDescription;
    request.style = style == -1 ? corvina20::kStyleError : style;
    request.error = corvina20::ErrorReport{LastErrorNumber, LastErrorText, LastErrorDescription};
    App().ShowMessage(request);
  } catch (...) {
    // Showing an error must not raise another one.
  }
  ClearCardError();
}

void ClearCardError() {
  LastErrorNumber = 0;
  LastErrorDescription.clear();
  LastErrorText.clear();
}

}  // namespace vantor20
