// The module-wide session reference.
#include "module/modMainModule.h"

namespace vantor20 {

thread_local SessionPtr objApplication;

corvina20::Session& App() {
  if (!objApplication)
    throw Error(91, std::string(kAppName),
                "Variabile oggetto o variabile del blocco With non impostata: sessione non "
                "inizializzata");
  return *objApplication;
}

}  // namespace vantor20
