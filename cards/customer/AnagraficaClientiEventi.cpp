// The customer card's record cycle: initialise and load, inside the save and
// the delete, after an action, the begin of the transaction, the popup items
// of the card and of the duplicate grids, the taking over of an existing
// party and the refused delete of an address still in use.
//
// Choices kept on purpose (docs/customer-card.md tells why):
// - message 153 is shown only when automatic account creation is on: with it
//   off, nothing needs the control account or the mask;
// - the delete removes the customer-only rows (customer data, banks, notes)
//   with the role; the party, its addresses and references stay while
//   another role holds them.
#include "cards/customer/AnagraficaClienti.h"

#include "cards/contact/DuplicateGrids.h"
#include "cards/customer/GridRows.h"
#include "cards/customer/LedgerAccount.h"
#include "cards/customer/PartyTakeOver.h"
#include "cards/party/ExcludedMonths.h"
#include "cards/party/PartyPages.h"
#include "cards/party/PartyCard.h"
#include "module/CardHandlers.h"
#include "module/CodedLookups.h"
#include "module/CardValues.h"
#include "module/ModuloVantor.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

constexpr const char* kForm = "AnagraficaClienti";
constexpr const char* kSatellite = "STDAnagraficaClienti";

const PartyCardRole& CustomerRole() {
  static const PartyCardRole role{"Cliente", kSatellite, "CodContoClienti", "il Conto Clienti", kSideCustomers,
                              {"STDAnagraficaClienti", "STDBancheClienti", "STDAnagraficaClientiNote"}};
  return role;
}

// Dictionary messages of the record cycle.
constexpr std::int32_t kMsgCodiceGiaPresente = 132;
constexpr std::int32_t kMsgUsaEsistente = 130;
constexpr std::int32_t kMsgSostituisce = 895;
constexpr std::int32_t kMsgSincronizza = 1209;
constexpr std::int32_t kMsgIndirizzoUsato = 21007;

// The mail-client item's warnings are the module's own texts.
constexpr const char* kOutlookNonAttivo = "Attenzione: MS Outlook non attivato nei Parametri CRM";
constexpr const char* kOutlookNonInstallato = "Attenzione: MS Outlook non installato";

std::string Location(const char* control, const char* event) {
  return std::string(kForm) + "." + control + "_" + event;
}

void ShowLiteral(const char* text) {
  corvina20::MessageRequest request;
  request.text = text;
  request.style = corvina20::kStyleExclamation;
  App().ShowMessage(request);
}

// How many documents or open bank receipts use the address row, and where.
long AddressUses(std::int32_t idAnagrafica, const RecordsetPtr& row, std::string& where) {
  const int tipo = FieldValue(row, Variant("TipoIndirizzo")).ToLong();
  const Variant idIndirizzo = row->Fields("IdIndirizzo").Value();
  if (IsBlank(idIndirizzo)) return 0;  // never saved: nothing can use it
  corvina20::QueryBuilder q(App().GetConnection());
  if (tipo == 0 || tipo == 1) {
    q.AddFields("Count(ATTDocTeste.IdDoc) as Contatore");
    q.SetTable("ATTDocTeste");
    q.AddJoin(corvina20::JoinKind::Inner, "ATTDocCoda", "ATTDocTeste.IdDoc", "ATTDocCoda.IdDoc");
    q.AddCondition("ATTDocTeste.IdAnagrafica", corvina20::kCompareEqual, Variant(idAnagrafica));
    // The sales documents that print an invoice or delivery address.
    q.AddConditionText("ATTDocTeste.TipoDocumento IN ('OFC','ORC','DDT','FAT','FAI','NCE','RIF','DRC')");
    q.AddCondition(tipo == 0 ? "ATTDocCoda.IdIndirizzoFattura" : "ATTDocCoda.IdIndirizzoMerce",
                   corvina20::kCompareEqual, idIndirizzo);
    where = "documenti di vendita";
  } else if (tipo == 2) {
    q.AddFields("Count(IdScadenza) as Contatore");
    q.SetTable("COGScadenze");
    q.AddCondition("IdAnagrafica", corvina20::kCompareEqual, Variant(idAnagrafica));
    // Bank receipts (Ri.Ba.) not yet paid.
    q.AddCondition("IdTipologiaPagamento", corvina20::kCompareEqual, Variant(std::int16_t{2}));
    q.AddCondition("StatoEffetto", corvina20::kCompareDifferent, Variant(std::int16_t{2}));
    where = "scadenze Ri.Ba. aperte";
  } else {
    return 0;
  }
  RecordsetPtr rs = q.Open();
  return rs->IsEOF() ? 0 : FieldValue(rs, Variant("Contatore")).ToLong();
}

}  // namespace

void AnagraficaClienti::WireEvents() {
  crdAnagraficaClienti.Inizialize = [this](bool& ok, std::string& key, std::string& display) {
    OnInizialize(ok, key, display);
  };
  crdAnagraficaClienti.ActionBefore = [this](int op, bool& cancel) { OnActionBefore(op, cancel); };
  crdAnagraficaClienti.ActionInside = [this](int op) { OnActionInside(op); };
  crdAnagraficaClienti.ActionAfter = [this](int op) { OnActionAfter(op); };
  crdAnagraficaClienti.BeginTrans = [this] { OnBeginTrans(); };
  crdAnagraficaClienti.PopupItemSelected = [this](const std::string& key) { OnPopupItem(key); };
  crdAnagraficaClienti.Reposition = [this] {
    RunHandler(Location("crdAnagraficaClienti", "Reposition"), [this] { ShowExcludedMonths(); });
  };

  cdoCodiceFiscale.Change = [this] {
    RunHandler(Location("cdoCodiceFiscale", "Change"),
               [this] { OfferTakeOver("CodiceFiscale", cdoCodiceFiscale.Value()); });
  };
  txtPartitaIva.Change = [this] {
    RunHandler(Location("txtPartitaIva", "Change"),
               [this] { OfferTakeOver("PartitaIva", txtPartitaIva.Value()); });
  };

  bdyIndirizzi.BeforeDeleteAt = [this](long, bool& cancel) {
    bool ok = RunHandler(Location("bdyIndirizzi", "BeforeDeleteAt"), [&] {
      std::string where;
      RecordsetPtr row = bdyIndirizzi.Data();
      long uses = AddressUses(CurrentId(), row, where);
      if (uses == 0) return;
      ShowMessage(kMsgIndirizzoUsato, corvina20::kStyleInformation,
                  {TextOf(row->Fields("NrIndirizzo").Value()), std::to_string(uses), where});
      cancel = true;
    });
    if (!ok) cancel = true;
  };

  // The account lookups offer the accounts a customer can use (the validity
  // filter is added to every coded lookup by the module); agents and carriers
  // are parties of their role.
  OfferPartyAccounts(cdoConto, kSideCustomers);
  OfferPartyAccounts(cdoCodContropartita, kSideCustomers);
  const std::pair<const char*, const char*> partyLookups[] = {
      {"cdoIdAgente1", "Agente"}, {"cdoIdAgente2", "Agente"}, {"cdoIdVettore1", "Vettore"},
      {"cdoIdVettore2", "Vettore"}, {"cdoIdVettore3", "Vettore"}};
  for (const auto& [name, role] : partyLookups)
    OfferPartiesOfRole(dynamic_cast<corvina20::VxCode&>(*FindControl(name)), role);

  for (corvina20::VxBody* grid : {&bdyAnagraficheDoppie, &bdyAnagraficheDoppie2})
    grid->PopupItemSelected = [this, grid](const std::string& key) { OnDuplicatesPopup(*grid, key); };
}

void AnagraficaClienti::OnInizialize(bool& ok, std::string& key, std::string& display) {
  RunHandler(Location("crdAnagraficaClienti", "Inizialize"), [&] {
    ok = true;
    key = "IdAnagrafica";
    display = "IdAnagrafica";
    settings_ = InitializePartyCard(
        *this, crdAnagraficaClienti, CustomerRole(),
        {{bdyBancheCliente, "STDBancheClienti", "IdBanca"},
         {bdyIndirizzi, "STDAnagIndirizzi", "IdIndirizzo", "NrIndirizzo"},
         {bdyRiferimenti, "STDAnagRiferimenti", "IdRiferimento", "NrRiga"},
         {bdyNoteCliente, "STDAnagraficaClientiNote", "IdNota", "NrRiga"},
         {bdyStoricizzazione, "STDAnagraficheStorico", "IdRiga"},
         {bdyProfilazione, "CRMValProfilazioneRighe", "IdRiga", "", "idAnagrafica"},
         {bdyAllegati, "STDAnagraficheAllegati", "IdAllegato", "NrRiga"}});
    bdyAllegati.SetEnabled(true);
  });
}

void AnagraficaClienti::Load() {
  RunHandler(Location("Form", "Load"), [this] {
    ApplySettings();
    cboTipoDocumentoDaGenerare.ClearEntries();
    int i = 0;
    for (const char* c : {"Libero", "DDT", "Fattura"})
      cboTipoDocumentoDaGenerare.AddEntry(c, Variant(static_cast<std::int16_t>(i++)));
    cboPosNote.ClearEntries();
    i = 0;
    for (const char* c : {"Tra le righe (alla fine)", "In Fondo", "Nessuna Nota", "Tra le righe (all'inizio)"})
      cboPosNote.AddEntry(c, Variant(static_cast<std::int16_t>(i++)));
    FillMonthList(cboMeseEscluso1);
    FillMonthList(cboMeseEscluso2);

    corvina20::PopupMenu& popup = crdAnagraficaClienti.Popup();
    popup.Clear();
    popup.Add("Cruscotto Cliente", "Cruscotto Cliente");
    popup.Add("POP_UP_SINCRONIZZA_CONTATTO", "Sincronizza Cliente In Outlook");
    popup.Add("POP_UP_DOCUMENTALE", "Accedi al Documentale");
    popup.Add("POP_UP_FIDOCLIENTE", "Fido Cliente");
    for (corvina20::VxBody* grid : {&bdyAnagraficheDoppie, &bdyAnagraficheDoppie2}) {
      grid->Popup().Clear();
      grid->Popup().Add("Apri Anagrafica", "Apri Anagrafica");
      grid->Popup().Add("Acquisisci Dati da righe selezionate", "Acquisisci Dati da righe selezionate");
      grid->Popup().Add("Cancella Anagrafiche selezionate", "Cancella Anagrafiche selezionate");
    }
    ImpostaCaptionAnagraficheDoppie(bdyAnagraficheDoppie, bdyAnagraficheDoppie2);
  });
}

void AnagraficaClienti::ApplySettings() {
  corvina20::HostParameters params = App().Parameters();
  ckbInfragruppo.SetEnabled(params.ReadFlagParameter("GestisciPNInfragruppo"));
  const bool ritenuta = params.ReadFlagParameter("SoggettoARitenutaAccontoAttiva");
  ckbSoggettoARitenutaAccontoAttiva.SetEnabled(ritenuta);
  PercentualeRitenutaAccontoAttiva.SetEnabled(ritenuta);
  settings_.historyEnabled = params.ReadFlagParameter("AbilitaStoricoAnagrafiche");
  sstCliente.SetPageVisible(kPageStorico, settings_.historyEnabled);
  bdyStoricizzazione.SetVisible(settings_.historyEnabled);
  const std::string analitica = TextOf(params.ReadParameter("TipoContoAnalitica"));
  cdoCodContoAnaComDefault.SetMask(analitica == "1" || analitica == "2"
                                       ? TextOf(params.ReadParameter("MaskContoAnalitica"))
                                       : settings_.maskConto);
}

std::int32_t AnagraficaClienti::CurrentId() const {
  const Variant& v = numIdAnagrafica.Value();
  return IsBlank(v) ? 0 : v.ToLong();
}

void AnagraficaClienti::ShowExcludedMonths() {
  ShowExcludedPeriods(crdAnagraficaClienti.GetSatelliteRecordset(kSatellite), cboMeseEscluso1, cboMeseEscluso2,
                      numGgEscluso);
}

void AnagraficaClienti::WriteExcludedPeriods(const RecordsetPtr& customer) {
  vantor20::WriteExcludedPeriods(customer, cboMeseEscluso1, cboMeseEscluso2, numGgEscluso);
}

void AnagraficaClienti::WriteDefaults(const Variant& key) {
  const DefaultRowKeys defaults = ReadDefaultRows(bdyBancheCliente, bdyIndirizzi);
  App().GetConnection()->Execute(
      "UPDATE STDAnagraficaClienti SET IdBancaDefault = ?, IdIndSpedMerceDefault = ?, "
      "IdIndSpedFatturaDefault = ? WHERE IdAnagrafica = ?",
      {defaults.bank, defaults.goods, defaults.invoice, key});
}

void AnagraficaClienti::OfferTakeOver(const char* field, const Variant& value) {
  if (crdAnagraficaClienti.Mode() != corvina20::kModeNew || state_.takenOver || IsBlank(value)) return;
  std::int32_t found = FindPartyWithoutRole(field, value, "Cliente");
  if (found == 0) return;
  ShowMessage(kMsgCodiceGiaPresente, corvina20::kStyleInformation, {TextOf(value)});
  if (ShowMessage(kMsgUsaEsistente, corvina20::kStyleYesNo + corvina20::kStyleQuestion) !=
      corvina20::kAnswerYes)
    return;
  if (!crdAnagraficaClienti.Adopt(Variant(found))) return;
  state_.takenOver = true;
  // A supplier's banks become the customer's own, as new rows.
  if (FlagOf(crdAnagraficaClienti.GetRecordset()->Fields("Fornitore").Value()))
    CopyRowsAsNew("STDBancheFornitori", found, bdyBancheCliente);
  ShowExcludedMonths();
}

void AnagraficaClienti::OnActionInside(int operation) {
  RunInsideTransaction(Location("crdAnagraficaClienti", "ActionInside"), [&] {
    RecordsetPtr record = crdAnagraficaClienti.GetRecordset();
    if (operation == corvina20::kOpSave) {
      WriteExcludedPeriods(crdAnagraficaClienti.GetSatelliteRecordset(kSatellite));
      if (replacedId_ != 0 && App().Parameters().ReadFlagParameter("IdAnagraficaCollegata") &&
          ShowMessage(kMsgSostituisce, corvina20::kStyleYesNo) == corvina20::kAnswerYes)
        record->Fields("IdAnagraficaSostituita") = Variant(replacedId_);
      if (crdAnagraficaClienti.Mode() == corvina20::kModeNew) record->Fields("Cliente") = Variant(true);
      AssignKeyAtSave(crdAnagraficaClienti, numIdAnagrafica, settings_, state_.takenOver);
      if (state_.openAccount)
        OpenAccountAtSave(crdAnagraficaClienti, CustomerRole(), settings_, cdoConto,
                          TextOf(txtRagioneSociale1.Value()));
    } else if (operation == corvina20::kOpDelete) {
      DeletePartyRole(crdAnagraficaClienti, CustomerRole(), cdoConto.Value(), state_.deleteAccount);
    }
  });
}

void AnagraficaClienti::OnActionAfter(int operation) {
  RunHandler(Location("crdAnagraficaClienti", "ActionAfter"), [&] {
    if (operation == corvina20::kOpNew) {
      if (!settings_.manualId) numIdAnagrafica.SetValue(Variant(NextFreeIdAnagrafica()));
      ShowExcludedMonths();
    } else if (operation == corvina20::kOpSave) {
      numIdAnagrafica.SetValue(FieldValue(crdAnagraficaClienti.GetRecordset(), Variant("IdAnagrafica")));
    }
    if (operation == corvina20::kOpSave || operation == corvina20::kOpDelete) {
      state_ = {};
      replacedId_ = 0;
    }
  });
}

void AnagraficaClienti::OnBeginTrans() {
  RunInsideTransaction(Location("crdAnagraficaClienti", "BeginTrans"), [&] {
    const Variant key = crdAnagraficaClienti.GetRecordset()->Fields("IdAnagrafica").Value();
    ForEachRow(bdyProfilazione, [&](const RecordsetPtr& rs, long) {
      rs->Fields("idAnagrafica") = key;
      rs->Fields("Leads") = Variant(false);
    });
    for (corvina20::VxBody* grid :
         {&bdyBancheCliente, &bdyIndirizzi, &bdyRiferimenti, &bdyNoteCliente, &bdyProfilazione}) {
      if (grid == &bdyRiferimenti) AssignReferenceIds(bdyRiferimenti.Data(), key.ToLong());
      grid->LoadLinkValue(key);
      grid->Save();
    }
    bdyAllegati.LoadLinkValue(key);
    bdyAllegati.Save();
    // New rows have their keys only now that their grids are written.
    WriteDefaults(key);
  });
}

void AnagraficaClienti::OnPopupItem(const std::string& key) {
  RunHandler(Location("crdAnagraficaClienti", "PopupItemSelected"), [&] {
    const Variant id(CurrentId());
    if (key == "Cruscotto Cliente") {
      App().OpenItem("CruscottoCliente", {id});
    } else if (key == "POP_UP_SINCRONIZZA_CONTATTO") {
      if (!App().Parameters().ReadFlagParameter("OutlookAttivo")) {
        ShowLiteral(kOutlookNonAttivo);
      } else if (!App().Parameters().ReadFlagParameter("OutlookInstallato")) {
        // The reference host has no mail client of its own to synchronise.
        ShowLiteral(kOutlookNonInstallato);
      } else if (ShowMessage(kMsgSincronizza, corvina20::kStyleOkCancel) == corvina20::kAnswerOk) {
        App().OpenItem("SincronizzaContattiOutlook", {id});
      }
    } else if (key == "POP_UP_DOCUMENTALE") {
      App().OpenItem("Documentale", {Variant(kForm), id});
    } else if (key == "POP_UP_FIDOCLIENTE") {
      App().OpenItem("FidoClienti", {Variant("IdAnagrafica = " + std::to_string(CurrentId()))});
    }
  });
}

void AnagraficaClienti::OnDuplicatesPopup(corvina20::VxBody& grid, const std::string& key) {
  RunHandler(Location(grid.Name().c_str(), "PopupItemSelected"), [&] {
    if (key == "Apri Anagrafica") {
      RecordsetPtr rs = grid.Data();
      if (!rs || rs->IsEOF() || rs->IsBOF()) return;
      const int tipo = FieldValue(rs, Variant("TipoAnag")).ToLong();
      App().OpenItem(tipo == 2 ? "AnagraficaLeads" : tipo == 1 ? "AnagraficaClienti" : "AnagraficaContatti",
                     {rs->Fields("IdAnagrafica").Value()});
    } else if (key == "Acquisisci Dati da righe selezionate") {
      AcquisisciDatiAnagraficheDoppie(grid, CurrentId());
    } else if (key == "Cancella Anagrafiche selezionate") {
      CancellaAnagraficheDoppie(grid);
    }
  });
}

}  // namespace vantor20
