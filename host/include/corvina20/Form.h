// The base of every form the module gives the host: a named object the host
// shows in its workspace. Forms publish the few values a host or a test may
// read by name (a report's type, for instance) as properties; their controls
// come with the controls layer. Not for: business logic (that is the module's).
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "corvina20/Variant.h"

namespace corvina20 {

class Form {
 public:
  explicit Form(std::string name);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  // The form's class name, e.g. "AnagraficaVettori".
  const std::string& Name() const { return name_; }

  // A published property; Empty when the form has none by that name.
  Variant Property(std::string_view name) const;

 protected:
  void SetProperty(std::string name, Variant value);

 private:
  std::string name_;
  std::map<std::string, Variant, std::less<>> properties_;
};

using FormPtr = std::shared_ptr<Form>;

}  // namespace corvina20
