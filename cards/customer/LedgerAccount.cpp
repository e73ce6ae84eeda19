// Ledger accounts of the party cards.
#include "cards/customer/LedgerAccount.h"

#include <cmath>

#include "module/CardValues.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {

int SubAccountWidth(const std::string& mask) {
  std::size_t dot = mask.rfind('.');
  return static_cast<int>(dot == std::string::npos ? mask.size() : mask.size() - dot - 1);
}

std::string FormAutomaticAccount(const std::string& controlAccount, const std::string& mask,
                                 std::int32_t id) {
  const std::size_t width = static_cast<std::size_t>(SubAccountWidth(mask));
  std::string key = std::to_string(id);
  if (key.size() > width) key = key.substr(key.size() - width);
  else key.insert(0, width - key.size(), '0');
  return controlAccount + "." + key;
}

bool IsUsableAccount(const Variant& code, int side, const corvina20::DateTime& date) {
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("CodConto,Descrizione,TipoConto,TipoCliFor,MovCont,SezioneBilancio,FineValidita");
  q.SetTable("STDPianoDeiConti");
  q.AddCondition("CodConto", corvina20::kCompareEqual, code);
  RecordsetPtr rs = q.Open();
  if (IsRecordsetClosed(rs) || rs->IsEOF()) return false;
  const int tipoCliFor = FieldValue(rs, Variant("TipoCliFor")).ToLong();
  const Variant fine = rs->Fields("FineValidita").Value();
  return FieldValue(rs, Variant("TipoConto")).ToLong() == 3 &&
         FieldValue(rs, Variant("MovCont")).ToBool() && (tipoCliFor == 0 || tipoCliFor == side) &&
         (IsBlank(fine) || fine.ToDate().serial >= std::floor(date.serial));
}

void OpenLedgerAccount(const std::string& code, const std::string& description, int side,
                       const std::string& parent) {
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("CodConto");
  q.SetTable("STDPianoDeiConti");
  q.AddCondition("CodConto", corvina20::kCompareEqual, Variant(code));
  if (!q.Open()->IsEOF()) return;
  App().GetConnection()->Execute(
      "INSERT INTO STDPianoDeiConti (CodConto, Descrizione, TipoConto, TipoCliFor, MovCont, "
      "SezioneBilancio, CodContoPadre) VALUES (?, ?, 3, ?, 1, ?, ?)",
      {Variant(code), Variant(description.substr(0, 80)), Variant(static_cast<std::int16_t>(side)),
       Variant(static_cast<std::int16_t>(side == kSideCustomers ? 1 : 2)), Variant(parent)});
}

bool AccountUsedByOtherCustomer(const Variant& code, std::int32_t ownId) {
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("IdAnagrafica");
  q.SetTable("STDAnagraficaClienti");
  q.AddCondition("CodConto", corvina20::kCompareEqual, code);
  q.AddCondition("IdAnagrafica", corvina20::kCompareDifferent, Variant(ownId));
  return !q.Open()->IsEOF();
}

}  // namespace vantor20
