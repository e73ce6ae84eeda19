// Out-of-line destructors and the Form base: they anchor the interfaces'
// type information in libcorvina20, shared by the host and the module.
#include "corvina20/Items.h"

#include <utility>

namespace corvina20 {

CardItem::~CardItem() = default;
ReportItem::~ReportItem() = default;
ActiveFormItem::~ActiveFormItem() = default;
BatchItem::~BatchItem() = default;
IAppModule::~IAppModule() = default;
Session::~Session() = default;

Form::Form(std::string name) : name_(std::move(name)) {}
Form::~Form() = default;

Variant Form::Property(std::string_view name) const {
  auto it = properties_.find(name);
  return it == properties_.end() ? Variant() : it->second;
}

void Form::SetProperty(std::string name, Variant value) {
  properties_[std::move(name)] = std::move(value);
}

}  // namespace corvina20
