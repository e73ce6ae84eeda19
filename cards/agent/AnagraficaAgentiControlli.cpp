// The agent card's checks before an action. The save runs "ControlliOK" in
// its fixed order: fiscal code, VAT number, neither given, duplicates among
// agents, mandate periods, share totals. Errors stop the save as error 235
// raised by "ControlliOK"; warnings are put to the user with question 235
// (the agent card asks its own question, not the customer card's 386), and a
// "No" puts the focus back on the field the user most likely has to fix.
// A delete is refused while the agent is named on sales documents or is
// another agent's area manager.
#include "cards/agent/AnagraficaAgenti.h"
#include "cards/agent/MandateChecks.h"
#include "cards/customer/GridRows.h"
#include "module/CardErrorList.h"
#include "module/CardHandlers.h"
#include "module/CardValues.h"
#include "module/ManualKeys.h"
#include "module/ModuloVantor.h"
#include "module/PartyCodes.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

constexpr const char* kActionBefore = "AnagraficaAgenti.crdAnagraficaAgenti_ActionBefore";
// The procedure the checks' error names as its source, as it always has.
constexpr const char* kControlliOK = "ControlliOK";
// The agent card asks its warnings with this question.
constexpr int kQuestionAgentWarnings = 235;

constexpr std::int32_t kMsgCFErrato = 402;
constexpr std::int32_t kMsgPIErrata = 403;
constexpr std::int32_t kMsgNessunCodice = 404;
constexpr std::int32_t kMsgCFAltroAgente = 134;
constexpr std::int32_t kMsgPIAltroAgente = 141;
constexpr std::int32_t kMsgAnagraficaUsata = 147;

}  // namespace

void AnagraficaAgenti::OnActionBefore(int operation, bool& cancel) {
  bool ok = RunHandler(kActionBefore, [&] {
    switch (operation) {
      case corvina20::kOpNew:
        takenOver_ = false;
        replacedId_ = 0;
        // With linking on, a new agent may replace the party on screen.
        if (crdAnagraficaAgenti.HasRecord() && App().Parameters().ReadFlagParameter("IdAnagraficaCollegata"))
          replacedId_ = FieldValue(crdAnagraficaAgenti.GetRecordset(), Variant("IdAnagrafica")).ToLong();
        break;
      case corvina20::kOpDelete: CheckDelete(cancel); break;
      case corvina20::kOpSave:
        // A typed key is judged first: nothing can be saved under a missing
        // or used one, whatever the other checks say.
        if (manualId_ && !CheckManualKey(crdAnagraficaAgenti, kActionBefore)) {
          cancel = true;
          return;
        }
        if (!ControlliOK()) cancel = true;
        break;
      default: break;  // other codes pass with no check
    }
  });
  if (!ok) cancel = true;
}

void AnagraficaAgenti::CheckDelete(bool& cancel) {
  const std::string usage = AgentUsage(CurrentId());
  if (usage.empty()) return;
  ShowMessage(kMsgAnagraficaUsata, corvina20::kStyleInformation, {usage});
  cancel = true;
}

bool AnagraficaAgenti::ControlliOK() {
  crdAnagraficaAgenti.CommitFields();
  std::string errors, warnings;
  corvina20::FiscalChecks checks;
  const std::string code = TextOf(cdoCodiceFiscale.Value());
  const std::string vat = TextOf(txtPartitaIva.Value());
  const std::string country = TextOf(cdoNazione.Value());
  bool codeWarned = false;

  if (!code.empty() && !checks.IsValidCodiceFiscale(code)) {                             // 1
    const bool blocking = App().Parameters().ReadFlagParameter("ControlloCFBloccante");
    AddCardMessage(kMsgCFErrato, blocking ? errors : warnings);
    codeWarned = !blocking;
  }
  // Foreign VAT numbers follow other rules: only Italian ones are checked.
  if ((country.empty() || country == "IT") && !vat.empty() && !checks.IsValidPartitaIva(vat))  // 2
    AddCardMessage(kMsgPIErrata, warnings);
  if (code.empty() && vat.empty()) AddCardMessage(kMsgNessunCodice, warnings);          // 3
  if (!code.empty() && CheckDuplicateField(kRoleAgente, "CodiceFiscale", Variant(code), CurrentId(), true)) {  // 4
    AddCardMessage(kMsgCFAltroAgente, warnings);
    codeWarned = true;
  }
  if (!vat.empty() && CheckDuplicateField(kRoleAgente, "PartitaIva", Variant(vat), CurrentId(), true))
    AddCardMessage(kMsgPIAltroAgente, warnings);
  CheckMandates(errors);                                                                 // 5-6

  if (!errors.empty()) {                                                                 // 7
    ReportErrorList(kActionBefore, errors, kControlliOK);
    return false;
  }
  if (warnings.empty()) return true;
  if (AskMessage(kQuestionAgentWarnings, warnings) == corvina20::kAnswerYes) return true;
  if (codeWarned) cdoCodiceFiscale.SetFocus();
  else txtPartitaIva.SetFocus();
  return false;
}

void AnagraficaAgenti::CheckMandates(std::string& errors) {
  std::vector<MandatePeriod> periods;
  ForEachRow(bdyMandati, [&](const RecordsetPtr& rs, long) {
    const Variant& id = rs->Fields("IdValidita").Value();
    periods.push_back({IsBlank(id) ? 0 : id.ToLong(), DayOf(rs->Fields("Dal").Value()),
                       DayOf(rs->Fields("Al").Value())});
  });
  CheckMandatePeriods(periods, errors);

  // Every mandate's shares, not only the ones shown: the filter is set aside.
  std::vector<MandateShare> shares;
  RecordsetPtr rs = bdyMandatiQuote.Data();
  if (!rs || !rs->IsOpen()) return;
  const std::string filter = rs->Filter();
  rs->SetFilter("");
  for (rs->MoveFirst(); !rs->IsEOF(); rs->MoveNext()) {
    const Variant& id = rs->Fields("IdValidita").Value();
    const Variant& perc = rs->Fields("PercQuota").Value();
    shares.push_back({IsBlank(id) ? 0 : id.ToLong(), IsBlank(perc) ? 0 : perc.ToCurrency().units});
  }
  rs->SetFilter(filter);
  CheckShareTotals(shares, errors);
}

}  // namespace vantor20
