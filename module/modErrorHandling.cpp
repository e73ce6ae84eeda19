// Error traces and re-raising.
#include "module/modErrorHandling.h"

#include "module/modMainModule.h"

namespace vantor20 {

std::string FormatErrorText(std::int32_t number, std::string_view source,
                            std::string_view procedure) {
  std::string result;
  bool fresh = source.find("\r\n") == std::string_view::npos || source == kAppName;
  if (fresh) {
    result = "Errore ( " + std::to_string(number) + " ) - Componente ( " + std::string(source) + " )";
  } else {
    result = std::string(source);
  }
  result += "\r\n";
  result += kAppName;
  result += ".";
  result += procedure;
  return result;
}

void RaiseError(std::int32_t number, std::string_view procedure, std::string_view description) {
  Error current = corvina20::CurrentError();
  std::int32_t n = number == -1 ? current.Number() : number;
  std::string d = description.empty() ? current.Description() : std::string(description);
  throw Error(n, FormatErrorText(n, current.Source(), procedure), d);
}

std::string TranslateFromDict(std::string_view text, std::string_view arg1, std::string_view arg2,
                              std::string_view arg3, std::string_view arg4,
                              std::string_view arg5) {
  try {
    corvina20::MervoStatus dictionary;
    return dictionary.TranslateFromDict(text, arg1, arg2, arg3, arg4, arg5);
  } catch (...) {
    return {};
  }
}

}  // namespace vantor20
