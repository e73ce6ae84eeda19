// Loads a module library (libvantor20.so) with dlopen and obtains its entry
// object through the exported CorvinaCreateModule; unloads it on destruction.
#pragma once

#include <memory>
#include <string>

#include "corvina20/Items.h"

namespace corvina20 {

class LoadedModule {
 public:
  // Throws corvina20::Error kErrHost naming the library and dlerror() when
  // the library or its entry points cannot be found.
  explicit LoadedModule(const std::string& path);
  ~LoadedModule();
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  IAppModule& Module() { return *module_; }

 private:
  void* handle_ = nullptr;
  IAppModule* module_ = nullptr;
  DestroyModuleFn destroy_ = nullptr;
};

// $CORVINA_MODULE, else the libvantor20.so of this build.
std::string DefaultModulePath();

}  // namespace corvina20
