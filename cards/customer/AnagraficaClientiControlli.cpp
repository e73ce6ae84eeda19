// The customer card's checks before an action, in their fixed order: the
// order of the texts the user reads is the order below, so it is part of
// the card's behaviour. Errors stop the action (error 235); warnings are put
// to the user with question 386.
//
// Choices kept on purpose (docs/customer-card.md tells why):
// - an exemption period is wrong only when both dates are given and the
//   start follows the end;
// - the account formed at step 4 is opened inside the save transaction, so
//   a save refused later leaves no account behind;
// - the sales register's texts: a register fit for both split payment and
//   electronic invoicing with a customer subject to neither gives the one
//   combined text; otherwise the split-payment and the e-invoicing pairs are
//   judged each on its own;
// - the duplicates found join the warning list (one question for all), in
//   their place among the checks;
// - delete: a customer still used by documents or journal lines is refused
//   with 147 before its account is looked at.
#include <cmath>

#include "cards/contact/DuplicateGrids.h"
#include "cards/customer/AnagraficaClienti.h"
#include "cards/customer/BankRows.h"
#include "cards/customer/LedgerAccount.h"
#include "cards/customer/PartyRowChecks.h"
#include "cards/party/PartyLiterals.h"
#include "module/CardErrorList.h"
#include "module/CardHandlers.h"
#include "module/CardValues.h"
#include "module/ManualKeys.h"
#include "module/ModuloVantor.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

constexpr const char* kActionBefore = "AnagraficaClienti.crdAnagraficaClienti_ActionBefore";

// The module's own texts of the sales-register and e-invoicing checks.
constexpr const char* kRegNonSplit = "Il Sezionale Vendita indicato non è idoneo alla gestione split payment";
constexpr const char* kRegSplit =
    "Il Sezionale Vendita indicato è idoneo alla gestione split payment, ma l'anagrafica non è split payment";
constexpr const char* kRegFatturaEl =
    "Il Sezionale Vendita indicato è idoneo alla fatturazione elettronica, ma il cliente non è soggetto alla "
    "fatturazione elettronica";
constexpr const char* kRegNonFatturaEl =
    "Il Sezionale Vendita indicato non è idoneo alla fatturazione elettronica, per il cliente";
constexpr const char* kRegEntrambi =
    "Il Sezionale Vendita indicato è idoneo alla fatturazione elettronica\\split payment, ma il cliente non è "
    "soggetto alla fatturazione elettronica e\\o allo split payment";
constexpr const char* kB2BSenzaRecapito =
    "Occorre inserire o il codice destinatario o l'indirizzo Email Pec o l'indirizzo per la Fatturazione "
    "Elettronica";
constexpr const char* kEnteNonSplit =
    "L'anagrafica è stata indicata come ente pubblico, ma non come soggetta a split payment";
constexpr const char* kEnteSenzaCodice =
    "L'anagrafica è stata indicata come ente pubblico e soggetta a split payment, ma non è stato indicato il "
    "codice destinatario";
constexpr const char* kDoppieIntestazione = "Nelle anagrafiche sono già presenti i seguenti record:";

void AddLiteral(const char* text, std::string& list) { (list += text) += "\r\n"; }

bool Flag(const corvina20::Control& c) { return FlagOf(c.Value()); }

}  // namespace

void AnagraficaClienti::OnActionBefore(int operation, bool& cancel) {
  bool ok = RunHandler(kActionBefore, [&] {
    switch (operation) {
      case corvina20::kOpNew: CheckNewRecord(cancel); break;
      case corvina20::kOpEdit:
        if (settings_.historyEnabled) state_.remembered = RememberSnapshotFields(*this, CustomerSnapshotFields());
        break;
      case corvina20::kOpDelete: CheckDelete(cancel); break;
      case corvina20::kOpSave: CheckSave(cancel); break;
      default: break;  // other codes pass with no check
    }
  });
  if (!ok) cancel = true;
}

void AnagraficaClienti::CheckNewRecord(bool& cancel) {
  state_.takenOver = false;
  replacedId_ = 0;
  state_.remembered.clear();
  // With linking on, a new customer may replace the party on screen.
  if (crdAnagraficaClienti.HasRecord() && App().Parameters().ReadFlagParameter("IdAnagraficaCollegata"))
    replacedId_ = FieldValue(crdAnagraficaClienti.GetRecordset(), Variant("IdAnagrafica")).ToLong();
  if (!ConfirmNewOverHistory(bdyStoricizzazione)) cancel = true;
}

void AnagraficaClienti::CheckDelete(bool& cancel) {
  const std::int32_t id = CurrentId();
  const std::string usage = PartyUsage(id, kRoleCliente);
  if (!usage.empty()) {
    ShowMessage(147, corvina20::kStyleInformation, {usage});
    cancel = true;
    return;
  }
  const Variant account = cdoConto.Value();
  std::string warnings;
  state_.deleteAccount = false;
  const bool shared = !IsBlank(account) && AccountUsedByOtherCustomer(account, id);
  if (!IsBlank(account) && !shared && settings_.creaAutomPC) {
    if (!AccountUsage(account).empty()) {
      ShowMessage(746, corvina20::kStyleInformation);
      cancel = true;
      return;
    }
    AddCardMessage(747, warnings);
    state_.deleteAccount = true;
  } else if (shared) {
    AddCardMessage(1425, warnings);
  } else {
    ShowMessage(144, corvina20::kStyleInformation);
    cancel = true;
    return;
  }
  if (AskMessage(kQuestionWarnings, warnings) != corvina20::kAnswerYes) {
    state_.deleteAccount = false;
    cancel = true;
  }
}

std::int32_t AnagraficaClienti::IdForSave() const {
  if (crdAnagraficaClienti.Mode() == corvina20::kModeNew && !settings_.manualId && !state_.takenOver)
    return NextFreeIdAnagrafica();
  return CurrentId();
}

void AnagraficaClienti::CheckSave(bool& cancel) {
  // A typed key is judged first: a save under a missing or used key cannot
  // go anywhere, whatever the other checks say.
  if (settings_.manualId && !CheckManualKey(crdAnagraficaClienti, kActionBefore)) {
    cancel = true;
    return;
  }
  crdAnagraficaClienti.CommitFields();
  std::string errors, warnings;
  state_.openAccount = false;
  CheckExemptionAndConai(errors);                                   // 1-2
  CheckAccount(errors, cancel);                                     // 3-5
  if (cancel) return;
  CheckAddressTypes(bdyIndirizzi, errors);                          // 6
  if (Flag(ckbConsumatoreFinale) && Flag(ckbInSospensione)) AddCardMessage(1457, warnings);  // 7
  CheckSalesRegister(warnings);                                     // 8
  CheckElectronicInvoicing(warnings);                               // 9-12
  CheckIdentity(errors, warnings);                                  // 13-17
  if (IsBlank(cdoDivisa.Value())) AddCardMessage(745, warnings);    // 18
  if (App().Parameters().ReadFlagParameter("IvaCassa") && !Flag(ckbInSospensione))
    AddCardMessage(1476, warnings);                                 // 19
  CheckBankRows(bdyBancheCliente, warnings);                        // 20
  CheckAddressRows(bdyIndirizzi, warnings);                         // 21
  CheckReferenceRows(bdyRiferimenti, Flag(ckbInvioMail), warnings); // 22
  CheckDuplicates(warnings);                                        // 23
  CheckBlackList(warnings);                                         // 24
  if (!ConfirmCheckLists(kActionBefore, errors, warnings)) {        // 25-26
    state_.openAccount = false;
    cancel = true;
    return;
  }
  if (!SnapshotAtSave(*this, crdAnagraficaClienti, bdyStoricizzazione, settings_, state_, CurrentId(),
                      CustomerSnapshotFields(), 1, kActionBefore))  // 27
    cancel = true;
}

void AnagraficaClienti::CheckExemptionAndConai(std::string& errors) {
  const Variant& da = dteValiditaAutorizDa.Value();
  const Variant& a = dteValiditaAutorizA.Value();
  if (!IsBlank(da) && !IsBlank(a) && da.ToDate().serial > a.ToDate().serial) AddCardMessage(155, errors);
  if (Flag(ckbSoggettoConai)) {
    const Variant& perc = percEsenzConai.Value();
    if (!IsBlank(perc) && perc.ToDouble() == 0) percEsenzConai.SetValue(Variant());
    if (IsBlank(dteDataConai.Value())) {
      AddCardMessage(377, errors);
      dteDataConai.SetFocus();
    }
  }
}

void AnagraficaClienti::CheckAccount(std::string& errors, bool& cancel) {
  const Variant account = cdoConto.Value();
  if (!IsBlank(account) && !IsUsableAccount(account, kSideCustomers, App().WorkingDate())) {
    AddCardMessage(158, errors);
    cdoConto.SetFocus();
  }
  if (IsBlank(account) && settings_.creaAutomPC && !settings_.controlAccount.empty() && !settings_.maskConto.empty()) {
    const int answer = ShowMessage(150, corvina20::kStyleYesNo + corvina20::kStyleQuestion,
                                   {TextOf(txtRagioneSociale1.Value())});
    if (answer == 0) {
      cancel = true;  // the question could not be shown
      return;
    }
    state_.openAccount = answer == corvina20::kAnswerYes;
  }
  if (IsBlank(account) && !state_.openAccount) AddCardMessage(149, errors);
}

void AnagraficaClienti::CheckSalesRegister(std::string& warnings) {
  if (IsBlank(cdoSezionale.Value())) return;
  int year = 0, m = 0, d = 0, hh = 0, mm = 0, ss = 0;
  App().WorkingDate().ToParts(year, m, d, hh, mm, ss);
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("SezionaleIva, Descrizione, IdNumerazione, SoggettoFatturePA, SplitPayment");
  q.SetTable("COGNumerazioniIva");
  q.AddCondition("TipoRegIva", corvina20::kCompareEqual, Variant(std::int16_t{2}));
  q.AddCondition("Anno", corvina20::kCompareEqual, Variant(static_cast<std::int16_t>(year)));
  q.AddCondition("SezionaleIva", corvina20::kCompareEqual, cdoSezionale.Value());
  RecordsetPtr rs = q.Open();
  if (IsRecordsetClosed(rs) || rs->IsEOF()) return;
  const bool regSplit = FieldValue(rs, Variant("SplitPayment")).ToBool();
  const bool regPA = FieldValue(rs, Variant("SoggettoFatturePA")).ToBool();
  const bool split = Flag(ckbSoggettoSplitPayment);
  const bool elettronica = Flag(ckbEntePubblico) || Flag(ckbSoggettoB2B);
  if (regSplit && regPA && !split && !elettronica) {
    AddLiteral(kRegEntrambi, warnings);
    return;
  }
  if (!regSplit && split) AddLiteral(kRegNonSplit, warnings);
  if (regSplit && !split) AddLiteral(kRegSplit, warnings);
  if (regPA && !elettronica) AddLiteral(kRegFatturaEl, warnings);
  if (!regPA && elettronica) AddLiteral(kRegNonFatturaEl, warnings);
}

void AnagraficaClienti::CheckElectronicInvoicing(std::string& warnings) {
  if (Flag(ckbSoggettoB2B) && !Flag(ckbEscludiDaElenco) && IsBlank(txtCodiceDestinatario.Value()) &&
      IsBlank(FindControl("txtEMailPec")->Value()) && IsBlank(FindControl("txtEmailFattEl")->Value()))
    AddLiteral(kB2BSenzaRecapito, warnings);
  if (!Flag(ckbEntePubblico)) return;
  if (Flag(ckbInSospensione)) AddLiteral(kEnteSospensione, warnings);
  if (!Flag(ckbSoggettoSplitPayment)) AddLiteral(kEnteNonSplit, warnings);
  else if (IsBlank(txtCodiceDestinatario.Value())) AddLiteral(kEnteSenzaCodice, warnings);
}

void AnagraficaClienti::CheckIdentity(std::string& errors, std::string& warnings) {
  corvina20::FiscalChecks checks;
  const std::string code = TextOf(cdoCodiceFiscale.Value());
  const std::string vat = TextOf(txtPartitaIva.Value());
  const std::string country = TextOf(cdoNazione.Value());
  const bool consumer = Flag(ckbConsumatoreFinale);
  const std::int32_t id = CurrentId();
  if (!code.empty() && !checks.IsValidCodiceFiscale(code)) {  // 13
    AddCardMessage(402, App().Parameters().ReadFlagParameter("ControlloCFBloccante") ? errors : warnings);
    cdoCodiceFiscale.SetFocus();
  }
  if (!vat.empty() && (country.empty() || country == "IT") && !checks.IsValidPartitaIva(vat)) {  // 14
    AddCardMessage(403, warnings);
    txtPartitaIva.SetFocus();
  }
  if (!code.empty()) {  // 15
    if (CheckDuplicateField(kRoleCliente, "CodiceFiscale", Variant(code), id, true))
      AddCardMessage(132, warnings, {code});
    if (!consumer && vat.empty()) AddCardMessage(1012, warnings);
  }
  if (!vat.empty()) {  // 16
    if (CheckDuplicateField(kRoleCliente, "PartitaIva", Variant(vat), id, true)) AddCardMessage(139, warnings);
    if (!consumer && code.empty()) AddCardMessage(1408, warnings);
  }
  if (vat.empty() && code.empty()) AddCardMessage(404, warnings);  // 17
}

void AnagraficaClienti::CheckDuplicates(std::string& warnings) {
  // The card's current values by column name, as the search reads them.
  std::vector<std::pair<std::string, std::string>> values;
  for (const auto& control : Controls()) {
    std::string column = control->Binding();
    if (column.empty() || control->Kind() == corvina20::ControlKind::Grid) continue;
    if (column.rfind("STDAnagrafiche.", 0) == 0) column = column.substr(15);
    values.emplace_back(column, TextOf(control->Value()));
  }
  RecordsetPtr record = corvina20::Recordset::CreateTextRow(values);
  if (!MostraAnagraficheDoppie(record, IdForSave(), false, bdyAnagraficheDoppie, bdyAnagraficheDoppie2,
                               lblAnagraficheDoppie))
    return;
  warnings += std::string(kDoppieIntestazione) + "\r\n" + DuplicatesListText(bdyAnagraficheDoppie.Data());
}

void AnagraficaClienti::CheckBlackList(std::string& warnings) {
  if (!Flag(ckbClienteBL)) return;
  const bool beni = !IsBlank(cdoCodIvaBeniBL.Value());
  const bool servizi = !IsBlank(cdoCodIvaServiziBL.Value());
  if (!beni && !servizi) AddLiteral(kBLSenzaAliquote, warnings);
  else if (!beni) AddLiteral(kBLSenzaBeni, warnings);
  else if (!servizi) AddLiteral(kBLSenzaServizi, warnings);
}

}  // namespace vantor20
