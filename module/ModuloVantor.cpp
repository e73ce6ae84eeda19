// Party keys, role flags, the duplicate check and yes/no values: the identity
// half of the shared party procedures. The usage checks are in PartyUsage.cpp.
#include "module/ModuloVantor.h"

#include <algorithm>
#include <cctype>
#include <limits>

#include "module/modDatabaseUtility.h"
#include "module/modErrorHandling.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

using corvina20::kCompareDifferent;
using corvina20::kCompareEqual;
using corvina20::LockType;
using corvina20::QueryBuilder;

// The five role flags, in the order the party row is summed.
constexpr std::string_view kAllRoleFlags[] = {"Cliente", "Fornitore", "Agente", "Vettore",
                                              "Contatto"};

// A maximum read through FieldValue: a null (no rows at all) counts as 0.
std::int64_t MaxOrZero(const RecordsetPtr& rs, const char* field) {
  Variant value = FieldValue(rs, Variant(field));
  return value.IsNull() || value.IsEmpty() ? 0 : value.ToBigInt();
}

}  // namespace

std::int32_t NextFreeIdAnagrafica() {
  try {
    QueryBuilder query(App().GetConnection());
    query.AddFields("Max(IdAnagrafica) as IdLibera");
    query.SetTable("STDAnagrafiche");
    RecordsetPtr rs = query.Open(LockType::ReadOnly);
    if (IsRecordsetClosed(rs)) return 1;
    std::int64_t next = MaxOrZero(rs, "IdLibera") + 1;
    if (next > std::numeric_limits<std::int32_t>::max())
      throw Error(corvina20::kErrOverflow, std::string(kAppName),
                  "Overflow: nessun IdAnagrafica libero oltre 2147483647");
    return static_cast<std::int32_t>(next);
  } catch (...) {
    RaiseError(-1, "NextFreeIdAnagrafica");
  }
}

void AssignReferenceIds(const RecordsetPtr& references, std::int32_t idAnagrafica) {
  try {
    if (IsRecordsetClosed(references)) return;
    if (references->IsBOF() && references->IsEOF()) return;

    QueryBuilder query(App().GetConnection());
    query.AddFields("max(IdRiferimento) as MaxIdRif");
    query.SetTable("STDAnagRiferimenti");
    query.AddCondition("IdAnagrafica", kCompareEqual, Variant(idAnagrafica));
    RecordsetPtr rs = query.Open(LockType::ReadOnly);
    std::int64_t maxId = IsRecordsetClosed(rs) ? 0 : MaxOrZero(rs, "MaxIdRif");

    references->MoveFirst();
    while (!references->IsEOF()) {
      if (references->GetEditMode() == corvina20::EditMode::Add) {
        ++maxId;
        references->Fields("IdRiferimento") = Variant(static_cast<std::int32_t>(maxId));
      }
      references->MoveNext();
    }
  } catch (...) {
    RaiseError(-1, "AssignReferenceIds");
  }
}

void ClearPartyRole(std::int32_t idAnagrafica, std::string_view flagColumn) {
  try {
    QueryBuilder query(App().GetConnection());
    // The key must be among the fields for the row to be written back.
    query.AddFields("IdAnagrafica, Cliente, Fornitore, Contatto, Agente, Vettore");
    query.SetTable("STDAnagrafiche");
    query.AddCondition("IdAnagrafica", kCompareEqual, Variant(idAnagrafica));
    RecordsetPtr rs = query.Open(LockType::Immediate);
    if (IsRecordsetClosed(rs) || rs->IsEOF()) return;

    rs->Fields(flagColumn) = Variant(false);
    // FieldValue reads a NULL flag as False; a set flag counts as non-zero
    // whatever the sign its boolean converts to.
    int rolesLeft = 0;
    for (std::string_view flag : kAllRoleFlags)
      if (FieldValue(rs, Variant(flag)).ToLong() != 0) ++rolesLeft;
    if (rolesLeft != 0) {
      rs->Update();
    } else {
      rs->Delete();
    }
  } catch (...) {
    RaiseError(-1, "ClearPartyRole");
  }
}

bool ClearPartyChildRows(std::int32_t idAnagrafica) {
  try {
    ConnectionPtr connection = App().GetConnection();
    QueryBuilder query(connection);
    query.AddFields("IdAnagrafica");
    query.SetTable("STDAnagrafiche");
    query.AddCondition("IdAnagrafica", kCompareEqual, Variant(idAnagrafica));
    query.AddConditionText(
        "Cliente = 1 or Fornitore = 1 or Agente = 1 or Vettore = 1 or Contatto = 1");
    RecordsetPtr rs = query.Open(LockType::ReadOnly);
    if (!IsRecordsetClosed(rs) && !(rs->IsBOF() && rs->IsEOF())) return false;

    connection->Execute("Delete STDAnagIndirizzi where IdAnagrafica = ?", {Variant(idAnagrafica)});
    connection->Execute("Delete STDAnagRiferimenti where IdAnagrafica = ?",
                        {Variant(idAnagrafica)});
    return true;
  } catch (...) {
    RaiseError(-1, "ClearPartyChildRows");
  }
}

bool CheckDuplicateField(int role, std::string_view field, const Variant& value,
                         std::int32_t ownId, bool roleCheck) {
  try {
    if (roleCheck && !IsPartyRole(role)) return false;
    QueryBuilder query(App().GetConnection());
    query.AddFields("IdAnagrafica");
    query.SetTable("STDAnagrafiche");
    if (roleCheck) query.AddCondition(RoleFlagColumn(role), kCompareEqual, Variant(true));
    query.AddCondition(field, kCompareEqual, value);
    query.AddCondition("IdAnagrafica", kCompareDifferent, Variant(ownId));
    query.SetTop(1);
    RecordsetPtr rs = query.Open(LockType::ReadOnly);
    return !IsRecordsetClosed(rs) && !(rs->IsBOF() && rs->IsEOF());
  } catch (...) {
    RaiseError(-1, "CheckDuplicateField");
  }
}

bool IsTrueText(const Variant& value) {
  try {
    // Null is neither a word nor 1 (as comparing with Null never holds).
    if (value.IsNull()) return false;
    std::string text = value.ToString();
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    if (text == "VERO" || text == "TRUE") return true;
    // 1 only: the boolean True of the desktop hosts converts to -1, which is
    // deliberately not read as true here.
    return value.Equals(Variant(std::int32_t{1}));
  } catch (...) {
    RaiseError(-1, "IsTrueText");
  }
}

}  // namespace vantor20
