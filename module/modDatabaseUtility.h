// The two helpers through which forms read recordsets: FieldValue, so that a
// database null never reaches a control, and IsRecordsetClosed.
#pragma once

#include "module/Host.h"

namespace vantor20 {

// The field's value (by name, or by 0-based index when `field` is numeric)
// with nulls replaced by the default of its ADO type: 0 (16-bit) for the
// numeric types 2 3 4 5 6 16 20 131, "" for the date, text and time types
// 7 8 129 130 134 135 200–203, False for 11, Decimal 0 for 14; any other type
// keeps its null. Single and double values come back rounded to six decimals.
// Raises (through RaiseError, procedure "FieldValue") for a missing field or a
// recordset without a current row.
Variant FieldValue(const RecordsetPtr& recordset, const Variant& field);

// True when `recordset` is missing or closed; an open recordset at EOF is not
// closed. Never raises.
bool IsRecordsetClosed(const RecordsetPtr& recordset);

}  // namespace vantor20
