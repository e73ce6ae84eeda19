// corvina20::Error and the conversion of whatever is in flight into one.
#include "corvina20/Error.h"

#include <utility>

namespace corvina20 {

Error::Error(std::int32_t number, std::string source, std::string description)
    : number_(number), source_(std::move(source)), description_(std::move(description)) {}

// Defined here so the type's identity lives in libcorvina20 alone: the module,
// loaded with dlopen, catches the same Error the host throws.
Error::~Error() = default;

Error CurrentError() {
  try {
    throw;
  } catch (const Error& e) {
    return e;
  } catch (const std::exception& e) {
    return Error(kErrHost, "Corvina20", e.what());
  } catch (...) {
    return Error(kErrHost, "Corvina20", "Errore sconosciuto");
  }
}

}  // namespace corvina20
