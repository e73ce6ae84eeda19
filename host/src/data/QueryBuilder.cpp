// The query builder assembles T-SQL with "?" for every condition value; the
// connection translates and binds it.
#include "corvina20/QueryBuilder.h"

#include <string>

#include "corvina20/Error.h"
#include "data/text/TextFold.h"

namespace corvina20 {
namespace {

void AppendList(std::string& list, std::string_view piece) {
  if (piece.empty()) return;
  if (!list.empty()) list += ",";
  list += piece;
}

}  // namespace

QueryBuilder::QueryBuilder(ConnectionPtr connection) : connection_(std::move(connection)) {}

void QueryBuilder::AddFields(std::string_view fields) { AppendList(fields_, fields); }
void QueryBuilder::SetTable(std::string_view table) { table_ = std::string(table); }

void QueryBuilder::AddJoin(JoinKind kind, std::string_view table, std::string_view leftField,
                           std::string_view rightField) {
  joins_ += kind == JoinKind::Inner ? " INNER JOIN " : " LEFT JOIN ";
  joins_ += std::string(table) + " ON " + std::string(leftField) + " = " + std::string(rightField);
}

std::string QueryBuilder::Condition(std::string_view field, int comparison, const Variant& value) {
  std::string f(field);
  bool null = value.IsNull();
  switch (comparison) {
    case kCompareEqual:
      if (null) return f + " IS NULL";
      params_.push_back(value);
      return f + " = ?";
    case kCompareDifferent:
      if (null) return f + " IS NOT NULL";
      params_.push_back(value);
      return f + " <> ?";
    case kCompareLess: params_.push_back(value); return f + " < ?";
    case kCompareGreaterOrEqual: params_.push_back(value); return f + " >= ?";
    case kCompareGreater: params_.push_back(value); return f + " > ?";
    case kCompareLessOrEqual: params_.push_back(value); return f + " <= ?";
    case kCompareContains:
    case kCompareStartsWith: {
      std::string pattern = data::text::LikeLiteral(null || value.IsEmpty() ? "" : value.ToString());
      params_.emplace_back(comparison == kCompareContains ? "%" + pattern + "%" : pattern + "%");
      return f + " LIKE ?";
    }
    default:
      throw Error(kErrHost, "Corvina20.QueryBuilder",
                  "Codice di confronto sconosciuto: " + std::to_string(comparison));
  }
}

void QueryBuilder::AppendWhere(const std::string& condition) {
  if (!where_.empty()) where_ += " AND ";
  where_ += condition;
}

void QueryBuilder::AddCondition(std::string_view field, int comparison, const Variant& value) {
  AppendWhere(Condition(field, comparison, value));
}

void QueryBuilder::AddConditionOrNull(std::string_view field, int comparison,
                                      const Variant& value) {
  AppendWhere("(" + std::string(field) + " IS NULL OR " + Condition(field, comparison, value) + ")");
}

void QueryBuilder::AddConditionText(std::string_view condition, const std::vector<Variant>& params) {
  AppendWhere("(" + std::string(condition) + ")");
  params_.insert(params_.end(), params.begin(), params.end());
}

void QueryBuilder::AddGroupBy(std::string_view fields) { AppendList(groupBy_, fields); }
void QueryBuilder::AddOrderBy(std::string_view fields) { AppendList(orderBy_, fields); }
void QueryBuilder::SetTop(int n) { top_ = n; }

std::string QueryBuilder::SqlText() const {
  std::string sql = "SELECT ";
  if (top_ > 0) sql += "TOP " + std::to_string(top_) + " ";
  sql += fields_.empty() ? "*" : fields_;
  sql += " FROM " + table_ + joins_;
  if (!where_.empty()) sql += " WHERE " + where_;
  if (!groupBy_.empty()) sql += " GROUP BY " + groupBy_;
  if (!orderBy_.empty()) sql += " ORDER BY " + orderBy_;
  return sql;
}

RecordsetPtr QueryBuilder::Open(LockType lock) const {
  if (table_.empty())
    throw Error(kErrHost, "Corvina20.QueryBuilder", "Query senza tabella");
  return connection_->OpenRecordset(SqlText(), params_, lock);
}

}  // namespace corvina20
