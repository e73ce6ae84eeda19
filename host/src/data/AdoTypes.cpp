// Declared SQL Server types to ADO type codes, and raw values to typed ones.
#include "data/AdoTypes.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include "core/Text.h"

namespace corvina20 {

int ado::TypeOfSqlServerType(std::string_view sqlType) {
  std::string t = text::Lower(text::Trim(sqlType));
  if (auto p = t.find('('); p != std::string::npos) t = std::string(text::Trim(t.substr(0, p)));
  struct Entry {
    const char* name;
    int type;
  };
  static const Entry kTypes[] = {
      {"bit", ado::kBoolean},          {"tinyint", ado::kUnsignedTinyInt},
      {"smallint", ado::kSmallInt},    {"int", ado::kInteger},
      {"integer", ado::kInteger},      {"bigint", ado::kBigInt},
      {"real", ado::kSingle},          {"float", ado::kDouble},
      {"money", ado::kCurrency},       {"smallmoney", ado::kCurrency},
      {"decimal", ado::kNumeric},      {"numeric", ado::kNumeric},
      {"datetime", ado::kDBTimeStamp}, {"smalldatetime", ado::kDBTimeStamp},
      {"datetime2", ado::kDBTimeStamp}, {"date", ado::kDBDate},
      {"time", ado::kDBTime},          {"char", ado::kChar},
      {"nchar", ado::kWChar},          {"varchar", ado::kVarChar},
      {"nvarchar", ado::kVarWChar},    {"text", ado::kLongVarChar},
      {"ntext", ado::kLongVarWChar},   {"uniqueidentifier", ado::kGuid},
      {"varbinary", ado::kVarBinary},  {"image", ado::kVarBinary},
  };
  for (const Entry& e : kTypes)
    if (t == e.name) return e.type;
  return ado::kVariant;
}

namespace data {

int ScaleOfSqlServerType(std::string_view sqlType) {
  std::string t = text::Lower(sqlType);
  if (text::StartsWithNoCase(t, "money") || text::StartsWithNoCase(t, "smallmoney")) return 4;
  auto comma = t.find(',');
  if (comma == std::string::npos) return 0;
  return std::atoi(t.c_str() + comma + 1);
}

Variant CoerceToAdoType(const Variant& raw, int adoType, int scale) {
  if (raw.IsNull() || raw.IsEmpty()) return raw;
  try {
    switch (adoType) {
      case ado::kBoolean:
        if (raw.IsNumeric()) return Variant(raw.ToDouble() != 0);
        if (raw.Kind() == VariantKind::Boolean) return raw;
        return raw;
      case ado::kSmallInt:
        if (raw.IsNumeric()) return Variant(raw.ToInteger());
        return raw;
      case ado::kTinyInt:
      case ado::kUnsignedTinyInt:
      case ado::kInteger:
        if (raw.IsNumeric()) return Variant(raw.ToLong());
        return raw;
      case ado::kBigInt:
        if (raw.IsNumeric()) return Variant(raw.ToBigInt());
        return raw;
      case ado::kSingle:
        if (raw.IsNumeric()) return Variant(static_cast<float>(raw.ToDouble()));
        return raw;
      case ado::kDouble:
        if (raw.IsNumeric()) return Variant(raw.ToDouble());
        return raw;
      case ado::kCurrency:
        if (raw.IsNumeric()) return Variant(Currency::FromDouble(raw.ToDouble()));
        return raw;
      case ado::kDecimal:
      case ado::kNumeric:
        if (raw.IsNumeric()) {
          if (raw.Kind() == VariantKind::Long || raw.Kind() == VariantKind::BigInt)
            return Variant(Decimal{raw.ToBigInt(), 0});
          return Variant(Decimal::FromDouble(raw.ToDouble(), scale > 0 ? scale : 6));
        }
        return raw;
      case ado::kDate:
      case ado::kDBDate:
      case ado::kDBTime:
      case ado::kDBTimeStamp:
        if (raw.Kind() == VariantKind::String) {
          DateTime d;
          if (DateTime::FromIso(raw.StringRef(), d)) return Variant(d);
        }
        return raw;
      case ado::kChar:
      case ado::kWChar:
      case ado::kVarChar:
      case ado::kVarWChar:
      case ado::kLongVarChar:
      case ado::kLongVarWChar:
      case ado::kBSTR:
        if (raw.Kind() == VariantKind::String) return raw;
        if (raw.Kind() == VariantKind::Long || raw.Kind() == VariantKind::BigInt)
          return Variant(std::to_string(raw.ToBigInt()));
        return raw;
      default:
        return raw;
    }
  } catch (...) {
    return raw;  // out of range for the declared type: keep what the database holds
  }
}

}  // namespace data
}  // namespace corvina20
