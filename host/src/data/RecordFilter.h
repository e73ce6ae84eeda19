// The Filter of a recordset: "Column op value" comparisons joined by AND/OR
// (AND binds tighter), with parentheses; op is = <> < > <= >= or LIKE; value a
// number, 'text' ('' for a quote), #date# (yyyy-mm-dd or dd/mm/yyyy) or Null.
// Text compares without regard to case, as the desktop hosts' filters do.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "corvina20/Recordset.h"
#include "corvina20/Variant.h"

namespace corvina20::data {

class RecordFilter {
 public:
  virtual ~RecordFilter();
  // Throws corvina20::Error kErrHost for a malformed filter or an unknown column.
  static std::unique_ptr<RecordFilter> Parse(std::string_view filter,
                                             const std::vector<FieldInfo>& fields);
  virtual bool Matches(const std::vector<Variant>& row) const = 0;
};

}  // namespace corvina20::data
