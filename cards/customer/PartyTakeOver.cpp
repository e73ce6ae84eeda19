// Taking over an existing party on a role card.
#include "cards/customer/PartyTakeOver.h"

#include <string>

#include "cards/customer/GridRows.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {

std::int32_t FindPartyWithoutRole(std::string_view field, const Variant& value,
                                  std::string_view roleFlag) {
  const std::string flag(roleFlag);
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("IdAnagrafica");
  q.SetTable("STDAnagrafiche");
  q.AddCondition(std::string(field), corvina20::kCompareEqual, value);
  q.AddConditionText(flag + " = NULL or " + flag + " = 0");
  q.AddOrderBy("IdAnagrafica");
  RecordsetPtr rs = q.Open();
  if (IsRecordsetClosed(rs) || rs->IsEOF()) return 0;
  return FieldValue(rs, Variant("IdAnagrafica")).ToLong();
}

void CopyRowsAsNew(std::string_view table, std::int32_t idAnagrafica, corvina20::VxBody& grid) {
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("*");
  q.SetTable(std::string(table));
  q.AddCondition("IdAnagrafica", corvina20::kCompareEqual, Variant(idAnagrafica));
  RecordsetPtr source = q.Open();
  RecordsetPtr target = grid.Data();
  if (IsRecordsetClosed(source) || !target) return;
  for (; !source->IsEOF(); source->MoveNext()) {
    target->AddNew();
    for (std::size_t i = 0; i < source->FieldCount(); ++i) {
      const std::string& name = source->Info(i).name;
      if (SameName(name, grid.RowKey()) || SameName(name, grid.LinkKey()) || !target->HasField(name))
        continue;
      target->Fields(name) = source->Fields(i).Value();
    }
  }
}

}  // namespace vantor20
