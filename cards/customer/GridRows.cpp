// Grid row walks shared by the party cards.
#include "cards/customer/GridRows.h"

#include <cctype>

#include "module/CardValues.h"

namespace vantor20 {

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return true;
}

void ForEachRow(corvina20::VxBody& grid,
                const std::function<void(const RecordsetPtr& rows, long position)>& visit) {
  RecordsetPtr rs = grid.Data();
  if (!rs || !rs->IsOpen() || rs->RecordCount() == 0) return;
  Variant here = rs->IsEOF() || rs->IsBOF() ? Variant() : rs->Bookmark();
  long position = 0;
  for (rs->MoveFirst(); !rs->IsEOF(); rs->MoveNext()) visit(rs, ++position);
  if (!here.IsEmpty()) rs->SetBookmark(here);
}

void ClearOtherDefaults(corvina20::VxBody& grid, std::string_view groupColumn) {
  RecordsetPtr rs = grid.Data();
  if (!rs || rs->IsEOF() || rs->IsBOF()) return;
  const Variant current = rs->Bookmark();
  const std::string group =
      groupColumn.empty() ? std::string() : TextOf(rs->Fields(groupColumn).Value());
  ForEachRow(grid, [&](const RecordsetPtr& row, long) {
    if (row->Bookmark().Equals(current)) return;
    if (!groupColumn.empty() && TextOf(row->Fields(groupColumn).Value()) != group) return;
    if (FlagOf(row->Fields("Default").Value())) row->Fields("Default") = Variant(false);
  });
}

void WireAddressGrid(corvina20::VxBody& addresses) {
  addresses.OnAddNew = [&addresses] {
    RecordsetPtr rs = addresses.Data();
    rs->Fields("NrIndirizzo") = Variant(static_cast<std::int32_t>(rs->RecordCount()));
  };
  addresses.AfterColUpdate = [&addresses](const std::string& column) {
    RecordsetPtr rs = addresses.Data();
    if ((SameName(column, "Default") || SameName(column, "TipoIndirizzo")) &&
        FlagOf(rs->Fields("Default").Value()))
      ClearOtherDefaults(addresses, "TipoIndirizzo");
  };
}

DefaultRowKeys ReadDefaultRows(corvina20::VxBody& banks, corvina20::VxBody& addresses) {
  DefaultRowKeys keys;
  ForEachRow(banks, [&](const RecordsetPtr& rs, long) {
    if (FlagOf(rs->Fields("Default").Value())) keys.bank = rs->Fields("IdBanca").Value();
  });
  ForEachRow(addresses, [&](const RecordsetPtr& rs, long) {
    if (!FlagOf(rs->Fields("Default").Value())) return;
    const Variant& tipo = rs->Fields("TipoIndirizzo").Value();
    if (IsBlank(tipo)) return;
    if (tipo.ToLong() == 0) keys.invoice = rs->Fields("IdIndirizzo").Value();
    if (tipo.ToLong() == 1) keys.goods = rs->Fields("IdIndirizzo").Value();
  });
  return keys;
}

}  // namespace vantor20
