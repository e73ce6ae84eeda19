// SQL Server type families and arithmetic result types; see TsqlTypes.h.
#include "data/tsql/TsqlTypes.h"

#include "core/Text.h"

namespace corvina20::data::tsql {
namespace {

struct TypeInfo {
  std::string_view base;
  TypeFamily family;
  int precedence;  // higher wins in arithmetic, as in SQL Server
};

constexpr TypeInfo kTypes[] = {
    {"bit", TypeFamily::Bit, 1},          {"tinyint", TypeFamily::Integer, 2},
    {"smallint", TypeFamily::Integer, 3}, {"int", TypeFamily::Integer, 4},
    {"bigint", TypeFamily::Integer, 5},   {"smallmoney", TypeFamily::Exact, 6},
    {"money", TypeFamily::Exact, 7},      {"decimal", TypeFamily::Exact, 8},
    {"numeric", TypeFamily::Exact, 8},    {"real", TypeFamily::Float, 9},
    {"float", TypeFamily::Float, 10},     {"char", TypeFamily::Text, 0},
    {"varchar", TypeFamily::Text, 0},     {"nchar", TypeFamily::Text, 0},
    {"nvarchar", TypeFamily::Text, 0},    {"text", TypeFamily::Text, 0},
    {"ntext", TypeFamily::Text, 0},       {"date", TypeFamily::Date, 0},
    {"time", TypeFamily::Date, 0},        {"datetime", TypeFamily::Date, 0},
    {"datetime2", TypeFamily::Date, 0},   {"smalldatetime", TypeFamily::Date, 0},
};

const TypeInfo* Find(std::string_view type) {
  std::string_view base = type.substr(0, type.find('('));
  base = text::Trim(base);
  for (const TypeInfo& info : kTypes)
    if (text::EqualsNoCase(info.base, base)) return &info;
  return nullptr;
}

}  // namespace

std::string NormalizeType(std::string_view declared) {
  std::string out;
  for (char c : text::Lower(declared))
    if (c != ' ' && c != '\t') out += c;
  if (out.rfind("integer", 0) == 0) out.replace(0, 7, "int");
  return out;
}

TypeFamily FamilyOf(std::string_view type) {
  const TypeInfo* info = Find(type);
  return info ? info->family : TypeFamily::Unknown;
}

std::string ArithmeticType(const std::string& a, const std::string& b) {
  const TypeInfo* x = Find(a);
  const TypeInfo* y = Find(b);
  if (!x || !y || x->precedence == 0 || y->precedence == 0) return "";
  return x->precedence >= y->precedence ? a : b;
}

std::string SumType(const std::string& argument) {
  switch (FamilyOf(argument)) {
    case TypeFamily::Integer:
      return NormalizeType(argument) == "bigint" ? "bigint" : "int";
    case TypeFamily::Exact:
      return argument;
    default:
      return "float";
  }
}

}  // namespace corvina20::data::tsql
