// Opening an item as the host does: the module is asked for the form by the
// item's kind and name, the form's card (if any) is started on the session's
// connection, and the form's Load runs. The workspace, the web host and the
// tests all open items this way.
#pragma once

#include <memory>
#include <string>

#include "corvina20/Card.h"
#include "corvina20/Items.h"
#include "items/HostItem.h"

namespace corvina20 {

struct OpenedItem {
  std::string name;
  std::string kind;  // "card", "report" or "activeform"
  HostItem item;
  Card* card = nullptr;  // the form's card control, when it has one

  Form* GetForm() const { return item.GetForm().get(); }
};

// Raises kErrHost for an unknown kind; an item the module does not serve
// comes back without a form (GetForm() null).
std::unique_ptr<OpenedItem> OpenModuleItem(IAppModule& module, const std::string& kind,
                                           const std::string& name, const ConnectionPtr& connection);

// A form the module made itself (one it shows modally) opened the same way:
// attached under its own name with `kind`, its card started, its Load raised.
// REQUIRES: form not null.
std::unique_ptr<OpenedItem> OpenForm(FormPtr form, const std::string& kind,
                                     const ConnectionPtr& connection);

}  // namespace corvina20
