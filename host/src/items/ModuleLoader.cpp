// dlopen-based module loading.
#include "items/ModuleLoader.h"

#include <dlfcn.h>

#include <cstdlib>

#include "corvina20/Error.h"

namespace corvina20 {

LoadedModule::LoadedModule(const std::string& path) {
  handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr)
    throw Error(kErrHost, "Corvina20.Items",
                "Impossibile caricare il modulo " + path + ": " + dlerror());
  auto create = reinterpret_cast<CreateModuleFn>(dlsym(handle_, kCreateModuleSymbol));
  destroy_ = reinterpret_cast<DestroyModuleFn>(dlsym(handle_, kDestroyModuleSymbol));
  if (create == nullptr || destroy_ == nullptr) {
    dlclose(handle_);
    throw Error(kErrHost, "Corvina20.Items",
                "Il modulo " + path + " non espone i punti di ingresso " + kCreateModuleSymbol +
                    "/" + kDestroyModuleSymbol);
  }
  module_ = create();
}

LoadedModule::~LoadedModule() {
  if (module_ != nullptr) destroy_(module_);
  // The library stays mapped: forms it created may still be alive in the host.
}

std::string DefaultModulePath() {
  if (const char* p = std::getenv("CORVINA_MODULE"); p != nullptr && *p != '\0') return p;
  return CORVINA_DEFAULT_MODULE;
}

}  // namespace corvina20
