// The item factory's three tables: which form each item name makes. Names are
// compared upper-cased, in table order, the first match winning.
#pragma once

#include <string_view>

#include "module/Host.h"

namespace vantor20 {

// A new form for the item, or an empty FormPtr when the name is unknown.
// Report forms come with their type property set.
FormPtr CreateCardForm(std::string_view itemName);
FormPtr CreateReportForm(std::string_view itemName);
FormPtr CreateActiveForm(std::string_view itemName);

}  // namespace vantor20
