// Null-safe field reads.
#include "module/modDatabaseUtility.h"

#include <cstdio>
#include <cstdlib>

#include "module/modErrorHandling.h"

namespace vantor20 {
namespace ado = corvina20::ado;

Variant FieldValue(const RecordsetPtr& recordset, const Variant& field) {
  try {
    if (!recordset) throw Error(corvina20::kErrObjectRequired, "Vantor20", "Recordset mancante");
    corvina20::Field f = field.IsNumeric()
                             ? recordset->Fields(static_cast<std::size_t>(field.ToLong()))
                             : recordset->Fields(field.ToString());
    const Variant& value = f.Value();
    int type = f.Type();
    if (!value.IsNull() && !value.IsEmpty()) {
      if (type == ado::kSingle || type == ado::kDouble) {
        // Format "#.000000" and back: every floating value a card shows has
        // six decimals at most.
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, "%.6f", value.ToDouble());
        return Variant(std::strtod(buffer, nullptr));
      }
      return value;
    }
    switch (type) {
      case ado::kSmallInt:
      case ado::kInteger:
      case ado::kSingle:
      case ado::kDouble:
      case ado::kCurrency:
      case ado::kTinyInt:
      case ado::kBigInt:
      case ado::kNumeric:
        return Variant(std::int16_t{0});
      case ado::kDate:
      case ado::kBSTR:
      case ado::kChar:
      case ado::kWChar:
      case ado::kDBTime:
      case ado::kDBTimeStamp:
      case ado::kVarChar:
      case ado::kLongVarChar:
      case ado::kVarWChar:
      case ado::kLongVarWChar:
        // An empty text, not a zero date: the cards' controls read "" as
        // "no date set".
        return Variant("");
      case ado::kBoolean:
        return Variant(false);
      case ado::kDecimal:
        return Variant(corvina20::Decimal{0, 0});
      default:
        return value;
    }
  } catch (...) {
    RaiseError(-1, "FieldValue");
  }
}

bool IsRecordsetClosed(const RecordsetPtr& recordset) {
  if (!recordset) return true;
  try {
    recordset->Fields(std::size_t{0});
    return false;
  } catch (...) {
    return true;
  }
}

}  // namespace vantor20
