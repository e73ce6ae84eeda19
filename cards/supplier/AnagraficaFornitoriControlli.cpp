// The supplier card's checks before an action, in their fixed order: the
// order of the texts the user reads is the order below, so it is part of
// the card's behaviour. Errors found up to the fiscal code stop the save at
// once (error 235); warnings are put to the user with question 386; the
// reference errors found later (1337, 1338) are reported after the
// question.
//
// Choices kept on purpose (docs/supplier-card.md tells why):
// - the late reference errors carry the customer card's source text
//   ("AnagraficaClienti.crdAnagraficaClienti_ActionBefore"), as the system
//   reports them; the early stop carries the supplier card's own;
// - the public-body text is appended after a CR LF when the list is not
//   empty, the black-list texts with no line break at all: the user reads
//   them as the system has always shown them;
// - the subcontractor's warehouses are errors of the first step: a missing
//   warehouse (21200) or one already another supplier's (21201);
// - delete: a supplier still used by documents or journal lines is refused
//   with 147 before its account is looked at.
#include "cards/customer/BankRows.h"
#include "cards/customer/LedgerAccount.h"
#include "cards/customer/PartyRowChecks.h"
#include "cards/party/PartyLiterals.h"
#include "cards/supplier/AnagraficaFornitori.h"
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

constexpr const char* kActionBefore = "AnagraficaFornitori.crdAnagraficaFornitori_ActionBefore";
// The late reference errors are reported under the customer card's text.
constexpr const char* kActionBeforeClienti = "AnagraficaClienti.crdAnagraficaClienti_ActionBefore";

constexpr std::int32_t kMsgDepositoMancante = 21200;
constexpr std::int32_t kMsgDepositoTerzistaUsato = 21201;


// A supplier's documents sent by e-mail; without e-mail sending only CRM.
const std::vector<const char*> kSendingFlagsMail = {"InvioOrdFor",    "InvioDDTRic",      "InvioFattRic",
                                                    "InvioNotaAdd",   "InvioDDTEmeFor",   "InvioRichOffForn",
                                                    "InvioCRM",       "InvioOrdLav"};
const std::vector<const char*> kSendingFlagsCrm = {"InvioCRM"};

bool WarehouseExists(const Variant& code) {
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("CodDeposito");
  q.SetTable("MagDepositi");
  q.AddCondition("CodDeposito", corvina20::kCompareEqual, code);
  return !q.Open()->IsEOF();
}

}  // namespace

void AnagraficaFornitori::OnActionBefore(int operation, bool& cancel) {
  bool ok = RunHandler(kActionBefore, [&] {
    switch (operation) {
      case corvina20::kOpNew: CheckNewRecord(cancel); break;
      case corvina20::kOpEdit:
        if (settings_.historyEnabled) state_.remembered = RememberSnapshotFields(*this, SupplierSnapshotFields());
        break;
      case corvina20::kOpDelete: CheckDelete(cancel); break;
      case corvina20::kOpSave: CheckSave(cancel); break;
      default: break;
    }
  });
  if (!ok) cancel = true;
}

void AnagraficaFornitori::CheckNewRecord(bool& cancel) {
  state_.takenOver = false;
  state_.remembered.clear();
  if (!ConfirmNewOverHistory(bdyStoricizzazione)) cancel = true;
}

void AnagraficaFornitori::CheckDelete(bool& cancel) {
  const std::int32_t id = CurrentId();
  const std::string usage = PartyUsage(id, kRoleFornitore);
  if (!usage.empty()) {
    ShowMessage(147, corvina20::kStyleInformation, {usage});
    cancel = true;
    return;
  }
  state_.deleteAccount = false;
  const Variant account = Ctl("cdoConto").Value();
  if (!settings_.creaAutomPC || IsBlank(account) || AccountUsedByOtherCustomer(account, id) || !AccountUsage(account).empty())
    return;
  std::string warnings;
  AddCardMessage(747, warnings);
  if (AskMessage(kQuestionWarnings, warnings) != corvina20::kAnswerYes) {
    cancel = true;
    return;
  }
  state_.deleteAccount = true;
}

void AnagraficaFornitori::CheckSave(bool& cancel) {
  if (settings_.manualId && !CheckManualKey(crdAnagraficaFornitori, kActionBefore)) {
    cancel = true;
    return;
  }
  crdAnagraficaFornitori.CommitFields();
  std::string errors, warnings;
  state_.openAccount = false;
  CheckAccount(errors, cancel);                   // 1-2
  if (cancel) return;
  CheckAddressTypes(bdyIndirizzi, errors);        // 3
  bool stop = false;
  CheckIdentity(errors, warnings, stop);          // 4-8
  if (stop) {
    state_.openAccount = false;
    cancel = true;
    return;
  }
  if (Blank("cdoDivisa")) AddCardMessage(745, warnings);  // 9
  CheckRows(errors, warnings);                    // 10-14
  if (!warnings.empty() && AskMessage(kQuestionWarnings, warnings) != corvina20::kAnswerYes) {  // 15
    state_.openAccount = false;
    cancel = true;
    return;
  }
  if (!errors.empty()) {  // 17: only the reference errors can be here
    ReportErrorList(kActionBeforeClienti, errors);
    state_.openAccount = false;
    cancel = true;
    return;
  }
  if (!SnapshotAtSave(*this, crdAnagraficaFornitori, bdyStoricizzazione, settings_, state_, CurrentId(),
                      SupplierSnapshotFields(), 2, kActionBefore))  // 16
    cancel = true;
}

void AnagraficaFornitori::CheckAccount(std::string& errors, bool& cancel) {
  const Variant account = Ctl("cdoConto").Value();
  if (!IsBlank(account) && !IsUsableAccount(account, kSideSuppliers, App().WorkingDate())) {
    AddCardMessage(158, errors);
    Ctl("cdoConto").SetFocus();
  }
  if (Ticked("ckbTerzista")) CheckSubcontractor(errors);
  if (IsBlank(account) && settings_.creaAutomPC && !settings_.controlAccount.empty() && !settings_.maskConto.empty()) {
    const int answer = ShowMessage(150, corvina20::kStyleYesNo + corvina20::kStyleQuestion,
                                   {Text("txtRagioneSociale1")});
    if (answer == 0) {
      cancel = true;  // the question could not be shown
      return;
    }
    state_.openAccount = answer == corvina20::kAnswerYes;
  }
  if (IsBlank(account) && !state_.openAccount) AddCardMessage(149, errors);
}

void AnagraficaFornitori::CheckSubcontractor(std::string& errors) {
  for (const char* name : {"cdoCodDepTerzista", "cdoCodDepAzienda"}) {
    const Variant code = Ctl(name).Value();
    if (!IsBlank(code) && !WarehouseExists(code)) AddCardMessage(kMsgDepositoMancante, errors, {TextOf(code)});
  }
  const Variant own = Ctl("cdoCodDepTerzista").Value();
  if (IsBlank(own)) return;
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("IdAnagrafica");
  q.SetTable("STDAnagraficaFornitori");
  q.AddCondition("CodDepTerzista", corvina20::kCompareEqual, own);
  q.AddCondition("IdAnagrafica", corvina20::kCompareDifferent, Variant(CurrentId()));
  RecordsetPtr rs = q.Open();
  if (!rs->IsEOF())
    AddCardMessage(kMsgDepositoTerzistaUsato, errors, {TextOf(own), TextOf(rs->Fields("IdAnagrafica").Value())});
}

void AnagraficaFornitori::CheckIdentity(std::string& errors, std::string& warnings, bool& stop) {
  corvina20::FiscalChecks checks;
  const std::string code = Text("cdoCodiceFiscale");
  const std::string vat = Text("txtPartitaIva");
  const std::int32_t id = CurrentId();
  if (!code.empty() && !checks.IsValidCodiceFiscale(code)) {  // 4
    AddCardMessage(402, App().Parameters().ReadFlagParameter("ControlloCFBloccante") ? errors : warnings);
    Ctl("cdoCodiceFiscale").SetFocus();
  }
  if (!errors.empty()) {  // 5
    ReportErrorList(kActionBefore, errors);
    stop = true;
    return;
  }
  if (!ControllaPartitaIva_Pub()) {  // 6
    AddCardMessage(403, warnings);
    Ctl("txtPartitaIva").SetFocus();
  }
  if (vat.empty() && code.empty()) AddCardMessage(404, warnings);  // 7
  if (!code.empty() && CheckDuplicateField(kRoleFornitore, "CodiceFiscale", Variant(code), id, true))  // 8
    AddCardMessage(133, warnings);
  if (!vat.empty() && CheckDuplicateField(kRoleFornitore, "PartitaIva", Variant(vat), id, true))
    AddCardMessage(140, warnings);
}

void AnagraficaFornitori::CheckRows(std::string& errors, std::string& warnings) {
  if (App().Parameters().ReadFlagParameter("IvaCassa") && !Ticked("ckbInSospensione"))  // 10
    AddCardMessage(1476, warnings);
  if (Ticked("ckbEntePubblico") && Ticked("ckbInSospensione")) {
    if (!warnings.empty()) warnings += "\r\n";
    warnings += kEnteSospensione;
  }
  CheckBankRows(BdyBancheFornitore, warnings);  // 11
  CheckAddressRows(bdyIndirizzi, warnings);     // 12
  CheckEmptyReferenceRows(bdyRiferimenti, warnings);  // 13
  CheckReferenceSending(bdyRiferimenti, Ticked("ckbInvioMail") ? kSendingFlagsMail : kSendingFlagsCrm, errors);
  if (Ticked("ckbSoggettoBL")) {  // 14: appended with no line break
    const bool beni = !Blank("cdoAliquotaBLBeni");
    const bool servizi = !Blank("cdoAliquotaBLServizi");
    if (!beni && !servizi) warnings += kBLSenzaAliquote;
    else if (!beni) warnings += kBLSenzaBeni;
    else if (!servizi) warnings += kBLSenzaServizi;
  }
}

}  // namespace vantor20
