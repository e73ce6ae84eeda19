// The plug-in contract between the host and a module: the module's entry
// object implements IAppModule; for every item the user opens the host passes
// an item object, and the module attaches the form it made to it. The module
// library exports `CorvinaCreateModule` / `CorvinaDestroyModule` (C linkage)
// so the host can load it with dlopen.
#pragma once

#include <string_view>

#include "corvina20/Form.h"
#include "corvina20/Session.h"

namespace corvina20 {

// One interface per item kind; each offers the one operation a module calls.
// The form is passed by reference: the item takes it and may replace it. An
// empty FormPtr means "no form".
class CardItem {
 public:
  virtual ~CardItem();
  virtual void AttachItemForm(std::string_view itemName, FormPtr& form) = 0;
};

class ReportItem {
 public:
  virtual ~ReportItem();
  virtual void AttachItemForm(std::string_view itemName, FormPtr& form) = 0;
};

class ActiveFormItem {
 public:
  virtual ~ActiveFormItem();
  virtual void AttachItemForm(std::string_view itemName, FormPtr& form) = 0;
};

class BatchItem {
 public:
  virtual ~BatchItem();
  virtual void AttachItemForm(std::string_view itemName, FormPtr& form) = 0;
};

class IAppModule {
 public:
  virtual ~IAppModule();
  // Called once before any Create*; the module keeps the session.
  virtual void Init(SessionPtr& application) = 0;
  virtual void CreateCardItem(std::string_view itemName, CardItem& item) = 0;
  virtual void CreateReportItem(std::string_view itemName, ReportItem& item) = 0;
  virtual void CreateActiveFormItem(std::string_view itemName, ActiveFormItem& item) = 0;
  virtual void CreateBatchItem(std::string_view itemName, BatchItem& item) = 0;
};

// The entry points a module library exports.
extern "C" {
using CreateModuleFn = IAppModule* (*)();
using DestroyModuleFn = void (*)(IAppModule*);
}
inline constexpr const char* kCreateModuleSymbol = "CorvinaCreateModule";
inline constexpr const char* kDestroyModuleSymbol = "CorvinaDestroyModule";

}  // namespace corvina20
