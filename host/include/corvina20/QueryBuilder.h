// The host's query builder: the module gives a select list, tables and joins,
// conditions with comparison codes, grouping and ordering, and gets a
// recordset. Condition values are always bound parameters, so a value holding
// an apostrophe or "--" is compared exactly as written. The select list and
// the table texts are T-SQL and go through the connection's translator.
//
// Comparison codes (the `comparison` argument of AddCondition), defined once here:
//   1  equal                 field = value   (a Null value: field IS NULL)
//   2  different             field <> value  (a Null value: field IS NOT NULL)
//   3  less than             field < value
//   4  greater or equal      field >= value  (validity filters, "from" dates)
//   5  greater than          field > value
//   6  less or equal         field <= value  (date limits: "up to" a date)
//   7  contains              field LIKE '%value%', the value's own % and _
//                            taken literally (the looser "exact" search)
//   8  starts with           field LIKE 'value%', same escaping
// Text comparisons follow the backend's collation; on SQLite, LIKE ignores the
// case of ASCII letters and = is exact. Any other code raises kErrHost.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "corvina20/Connection.h"
#include "corvina20/Recordset.h"
#include "corvina20/Variant.h"

namespace corvina20 {

enum Comparison : int {
  kCompareEqual = 1,
  kCompareDifferent = 2,
  kCompareLess = 3,
  kCompareGreaterOrEqual = 4,
  kCompareGreater = 5,
  kCompareLessOrEqual = 6,
  kCompareContains = 7,
  kCompareStartsWith = 8,
};

enum class JoinKind { Inner, Left };

class QueryBuilder {
 public:
  // REQUIRES: connection not null.
  explicit QueryBuilder(ConnectionPtr connection);

  // Appends to the select list; pieces are joined with a comma, so the list
  // may be given in several parts. Nothing given means "*".
  void AddFields(std::string_view fields);
  // The first table, with its alias if any ("STDAnagrafiche AS T ").
  void SetTable(std::string_view table);
  // Joins `table` on leftField = rightField.
  void AddJoin(JoinKind kind, std::string_view table, std::string_view leftField,
               std::string_view rightField);
  // Adds "field <op> ?" with `value` bound; conditions are joined by AND in
  // the order given. Raises kErrHost for an unknown comparison code.
  void AddCondition(std::string_view field, int comparison, const Variant& value);
  // As AddCondition, but a row whose field is null passes too (validity
  // dates: no end date means valid without limit).
  void AddConditionOrNull(std::string_view field, int comparison, const Variant& value);
  // Adds a fixed condition written in T-SQL ("Vettore = NULL or Vettore = 0"),
  // parenthesised and joined by AND with the others, with `params` bound to
  // its "?" in order. User values go only through `params`.
  void AddConditionText(std::string_view condition, const std::vector<Variant>& params = {});
  // Appends to GROUP BY / ORDER BY (comma-joined pieces).
  void AddGroupBy(std::string_view fields);
  void AddOrderBy(std::string_view fields);
  // Keeps only the first n rows (TOP n); 0 means all.
  void SetTop(int n);

  // The T-SQL text with "?" placeholders, and the values bound to them.
  std::string SqlText() const;
  const std::vector<Variant>& Parameters() const { return params_; }

  // Runs the query. Raises kErrDatabase on failure (kErrHost without a table).
  RecordsetPtr Open(LockType lock = LockType::Immediate) const;

 private:
  // "field op ?" for `comparison`, pushing the bound value(s) to params_.
  std::string Condition(std::string_view field, int comparison, const Variant& value);
  void AppendWhere(const std::string& condition);

  ConnectionPtr connection_;
  std::string fields_;
  std::string table_;
  std::string joins_;
  std::string where_;
  std::string groupBy_;
  std::string orderBy_;
  int top_ = 0;
  std::vector<Variant> params_;
};

}  // namespace corvina20
