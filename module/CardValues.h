// Reading a control's or a field's value the way the card checks need it: a
// blank value (Empty, Null or "") and the text of a value, "" when blank.
// Every card asks the same two questions of its values, so they live here.
#pragma once

#include <string>

#include "module/Host.h"

namespace vantor20 {

inline bool IsBlank(const Variant& v) {
  return v.IsEmpty() || v.IsNull() ||
         (v.Kind() == corvina20::VariantKind::String && v.StringRef().empty());
}

// The value as text, "" when blank.
inline std::string TextOf(const Variant& v) { return IsBlank(v) ? std::string() : v.ToString(); }

// A check box or bit column: Null and Empty count as false.
inline bool FlagOf(const Variant& v) { return !IsBlank(v) && v.ToBool(); }

}  // namespace vantor20
