// Walking the rows of a card's grid the way the save checks and the row
// rules do: every visible row in order, the cursor put back afterwards, and
// the single-default rule of the bank and address grids.
#pragma once

#include <functional>
#include <string_view>

#include "module/Host.h"

namespace vantor20 {

// Column names as the grid passes them, whatever their case.
bool SameName(std::string_view a, std::string_view b);

// Calls `visit` on each row of the grid's data with its 1-based position;
// the grid's current row is the same afterwards. No data: no call.
void ForEachRow(corvina20::VxBody& grid,
                const std::function<void(const RecordsetPtr& rows, long position)>& visit);

// The current row has just been marked Default: clears the mark on every
// other row (with `groupColumn`, only on the rows of the same value there,
// e.g. the addresses of the same TipoIndirizzo).
void ClearOtherDefaults(corvina20::VxBody& grid, std::string_view groupColumn);

// Wires a further-addresses grid (STDAnagIndirizzi): a new row is numbered
// with the count of the rows before it (NrIndirizzo); marking a row Default,
// or changing the type of a default row, clears the mark on the other rows
// of the same TipoIndirizzo.
void WireAddressGrid(corvina20::VxBody& addresses);

// The keys of the rows marked Default: the bank (IdBanca), the goods address
// (TipoIndirizzo 1) and the invoice address (0); Null where none is marked.
// Read after the grids are saved, so that new rows have their keys.
struct DefaultRowKeys {
  Variant bank = Variant::Null();
  Variant goods = Variant::Null();
  Variant invoice = Variant::Null();
};
DefaultRowKeys ReadDefaultRows(corvina20::VxBody& banks, corvina20::VxBody& addresses);

}  // namespace vantor20
