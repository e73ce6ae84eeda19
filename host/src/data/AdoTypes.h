// The mapping between declared SQL Server column types, ADO type codes and
// the Variant kinds values carry. One place for it, used by every backend and
// by the recordsets.
#pragma once

#include <string_view>

#include "corvina20/Recordset.h"
#include "corvina20/Variant.h"

namespace corvina20::data {

// The number of decimals of a "decimal(p,s)"/"numeric(p,s)" type; 0 when
// none is written; 4 for money.
int ScaleOfSqlServerType(std::string_view sqlType);

// Gives a raw value (as a backend reads it: Long, BigInt, Double, String or
// Null) the kind that the ADO type implies: Boolean for bit, Date for the date
// kinds (from ISO text), Currency for money, and so on. A value that does not
// fit its column's type is returned unchanged rather than guessed at.
Variant CoerceToAdoType(const Variant& raw, int adoType, int scale);

}  // namespace corvina20::data
