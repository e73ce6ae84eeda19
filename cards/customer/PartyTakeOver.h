// Taking over an existing party on a role card: a new customer (or
// supplier…) whose fiscal code or VAT number belongs to a party that does not
// hold the card's role yet becomes that party, which gains the role at save
// instead of a second party being created.
#pragma once

#include <cstdint>
#include <string_view>

#include "module/Host.h"

namespace vantor20 {

// The first party (lowest key) holding `value` in the STDAnagrafiche column
// `field` ("CodiceFiscale" or "PartitaIva") and not the role `roleFlag`
// ("Cliente", "Fornitore", …; NULL counts as not held); 0 when none.
std::int32_t FindPartyWithoutRole(std::string_view field, const Variant& value,
                                  std::string_view roleFlag);

// Adds to `grid` one new row per row of `table` belonging to party
// `idAnagrafica`, copying every column the two have in common by name but
// the grid's row key and link key (the rows become the grid's own at save).
void CopyRowsAsNew(std::string_view table, std::int32_t idAnagrafica, corvina20::VxBody& grid);

}  // namespace vantor20
