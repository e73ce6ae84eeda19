// Reference tables every database holds whatever its company: lists fixed by
// law or custom (the Italian provinces) kept as tab-separated files under
// data/ and copied into their table by `corvina init`. Not for: demo data
// (data/demo) or a company's own codes, which the user keeps.
#pragma once

#include "corvina20/Connection.h"

namespace corvina20::data {

// Fills every reference table that is empty from its file under the data
// directory (STDProvince from province.tsv), in one transaction. A table that
// already holds rows is left alone, so a company's changes survive a new
// init. Returns the number of rows written (0 when every table had rows).
// Throws corvina20::Error when a file cannot be read or a row is refused;
// nothing is written then.
int FillReferenceTables(Connection& connection);

// True for a table FillReferenceTables fills (case-insensitive name).
bool IsReferenceTable(std::string_view table);

}  // namespace corvina20::data
