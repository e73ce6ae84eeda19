// The supplier card's record cycle: initialise and load, inside the save and
// the delete, after an action, the begin of the transaction, the tool bar
// items, the field dependencies of the supplier's tax data, the taking over
// of an existing party and the public procedures.
//
// Choices kept on purpose (docs/supplier-card.md tells why):
// - message 153 is shown only when automatic account creation is on;
// - the begin-transaction source text names the customer card's control
//   ("AnagraficaFornitori.crdAnagraficaClienti_BeginTrans"): kept as the
//   system writes it, traces and logs are matched on it;
// - "&Abilita Ricerca Banca" opens the bank search for the bank grid's
//   current row, as the grid's own "Ricerca Banca" item does;
// - the delete removes the supplier-only rows (supplier data, banks, notes)
//   with the role; the party, its addresses and references stay while
//   another role holds them.
#include "cards/customer/GridRows.h"
#include "cards/customer/LedgerAccount.h"
#include "cards/customer/PartyTakeOver.h"
#include "cards/party/ExcludedMonths.h"
#include "cards/party/PartyPages.h"
#include "cards/party/PartyCard.h"
#include "cards/supplier/AnagraficaFornitori.h"
#include "module/CardHandlers.h"
#include "module/CodedLookups.h"
#include "module/CardValues.h"
#include "module/ModuloVantor.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

constexpr const char* kForm = "AnagraficaFornitori";
constexpr const char* kSatellite = "STDAnagraficaFornitori";

const PartyCardRole& SupplierRole() {
  static const PartyCardRole role{"Fornitore", kSatellite, "CodContoFornitori", "il Conto Fornitori", kSideSuppliers,
                                  {"STDAnagraficaFornitori", "STDBancheFornitori", "STDAnagraficaFornitoriNote"}};
  return role;
}

constexpr std::int32_t kMsgCodiceFiscaleFornitore = 133;
constexpr std::int32_t kMsgUsaEsistente = 137;
constexpr std::int32_t kMsgPartitaIvaFornitore = 140;

constexpr const char* kToolRicercaBanca = "&Abilita Ricerca Banca";
constexpr const char* kToolCruscotto = "Cruscotto Fornitore";
constexpr const char* kToolDocumentale = "POP_UP_DOCUMENTALE";

std::string Location(const char* control, const char* event) {
  return std::string(kForm) + "." + control + "_" + event;
}

// The controls each check box governs (enabled while ticked; unticking
// empties them).
struct Dependency {
  const char* box;
  std::vector<const char*> fields;
  bool empties;
};
const std::vector<Dependency>& Dependencies() {
  static const std::vector<Dependency> list = {
      {"ckbSoggRit", {"cdoCausalePerc", "txtCausaleTipologiaRed"}, true},
      {"ckbSoggInps", {"cdoScaglioneInps"}, true},
      {"ckbSoggInail", {"cdoScaglioneInail"}, true},
      {"ckbFornitoreEsente",
       {"cdoCodIvaEsente", "dteValiditaAutorizDa", "dteValiditaAutorizA", "txtNsNrAutorizz", "dteNsDataAutorizz"},
       true},
      {"ckbSoggettoBL", {"cdoAliquotaBLBeni", "cdoAliquotaBLServizi"}, true},
      {"ckbTerzista", {"cdoCodDepTerzista", "cdoCodDepAzienda"}, false},
  };
  return list;
}

}  // namespace

void AnagraficaFornitori::WireEvents() {
  crdAnagraficaFornitori.Inizialize = [this](bool& ok, std::string& key, std::string& display) {
    OnInizialize(ok, key, display);
  };
  crdAnagraficaFornitori.ActionBefore = [this](int op, bool& cancel) { OnActionBefore(op, cancel); };
  crdAnagraficaFornitori.ActionInside = [this](int op) { OnActionInside(op); };
  crdAnagraficaFornitori.ActionAfter = [this](int op) { OnActionAfter(op); };
  crdAnagraficaFornitori.BeginTrans = [this] { OnBeginTrans(); };
  crdAnagraficaFornitori.PopupItemSelected = [this](const std::string& key) { OnPopupItem(key); };
  crdAnagraficaFornitori.Reposition = [this] {
    RunHandler(Location("crdAnagraficaFornitori", "Reposition"), [this] { ShowRecordExtras(); });
  };

  Ctl("cdoCodiceFiscale").Change = [this] {
    RunHandler(Location("cdoCodiceFiscale", "Change"),
               [this] { OfferTakeOver("CodiceFiscale", Ctl("cdoCodiceFiscale").Value()); });
  };
  Ctl("txtPartitaIva").Change = [this] {
    RunHandler(Location("txtPartitaIva", "Change"),
               [this] { OfferTakeOver("PartitaIva", Ctl("txtPartitaIva").Value()); });
  };
  Ctl("cdoNazione").Change = [this] {
    RunHandler(Location("cdoNazione", "Change"), [this] { FillFromNation(); });
  };
  for (const Dependency& d : Dependencies()) {
    const char* box = d.box;
    Ctl(box).Change = [this, box] {
      RunHandler(Location(box, "Click"), [this] { ApplyDependencies(); });
    };
  }
  // Either VAT treatment changing means a self-invoice is no longer implied.
  for (const char* box : {"ckbReverseCharge", "ckbInSospensione"})
    Ctl(box).Change = [this, box] {
      RunHandler(Location(box, "Click"), [this] { Ctl("ckbGeneraAutofattura").SetValue(Variant(false)); });
    };

  // The account lookups offer the sub-accounts of the suppliers' side or of none.
  for (const char* name : {"cdoConto", "cdoCodContropartita"})
    OfferPartyAccounts(Ctl<corvina20::VxCode>(name), kSideSuppliers);
}

void AnagraficaFornitori::OnInizialize(bool& ok, std::string& key, std::string& display) {
  RunHandler(Location("crdAnagraficaFornitori", "Inizialize"), [&] {
    ok = true;
    key = "IdAnagrafica";
    display = "IdAnagrafica";
    settings_ = InitializePartyCard(*this, crdAnagraficaFornitori, SupplierRole(),
                                    {{BdyBancheFornitore, "STDBancheFornitori", "IdBanca"},
                                     {bdyIndirizzi, "STDAnagIndirizzi", "IdIndirizzo", "NrIndirizzo"},
                                     {bdyRiferimenti, "STDAnagRiferimenti", "IdRiferimento", "NrRiga"},
                                     {bdyNoteFornitore, "STDAnagraficaFornitoriNote", "IdNota", "NrRiga"},
                                     {bdyStoricizzazione, "STDAnagraficheStorico", "IdRiga"},
                                     {bdyAllegati, "STDAnagraficheAllegati", "IdAllegato", "NrRiga"}});
  });
}

void AnagraficaFornitori::Load() {
  RunHandler(Location("Form", "Load"), [this] {
    corvina20::HostParameters params = App().Parameters();
    for (const char* name : {"frmPercipienti", "frmTerzisti", "frmAnalitica", "ckbInvioMail", "CkbInstallatore"})
      Ctl(name).SetVisible(true);
    Ctl("ckbInfragruppo").SetEnabled(params.ReadFlagParameter("GestisciPNInfragruppo"));
    settings_.historyEnabled = params.ReadFlagParameter("AbilitaStoricoAnagrafiche");
    sstFornitore.SetPageVisible(kPageStorico, settings_.historyEnabled);
    bdyStoricizzazione.SetVisible(settings_.historyEnabled);
    const std::string analitica = TextOf(params.ReadParameter("TipoContoAnalitica"));
    Ctl<corvina20::VxCode>("cdoCodContoAnaComDefault")
        .SetMask(analitica == "1" || analitica == "2" ? TextOf(params.ReadParameter("MaskContoAnalitica"))
                                                      : settings_.maskConto);
    FillMonthList(Ctl<corvina20::ChoiceField>("cboMeseEscluso1"));
    FillMonthList(Ctl<corvina20::ChoiceField>("cboMeseEscluso2"));
    auto& posNote = Ctl<corvina20::ChoiceField>("cboPosNote");
    posNote.ClearEntries();
    std::int16_t i = 0;
    for (const char* c : {"Tra le righe (alla fine)", "In Fondo", "Nessuna Nota", "Tra le righe (all'inizio)"})
      posNote.AddEntry(c, Variant(i++));

    corvina20::PopupMenu& tools = crdAnagraficaFornitori.Popup();
    tools.Clear();
    tools.Add(kToolRicercaBanca, kToolRicercaBanca);
    tools.Add(kToolCruscotto, kToolCruscotto);
    if (params.ReadFlagParameter("CONN_DOCUMENTALE")) tools.Add(kToolDocumentale, "Accedi al Documentale");
    ApplyDependencies();
  });
}

std::int32_t AnagraficaFornitori::CurrentId() const {
  const Variant& v = Ctl("numIdAnagrafica").Value();
  return IsBlank(v) ? 0 : v.ToLong();
}

void AnagraficaFornitori::ApplyDependencies() {
  const bool editable = crdAnagraficaFornitori.Mode() != corvina20::kModeBrowse;
  for (const Dependency& d : Dependencies()) {
    const bool ticked = Ticked(d.box);
    // The exemption fields follow the card's editability as well.
    const bool enabled = ticked && (editable || std::string_view(d.box) != "ckbFornitoreEsente");
    for (const char* name : d.fields) {
      Ctl(name).SetEnabled(enabled);
      if (!ticked && d.empties && editable && !Blank(name)) Ctl(name).SetValue(Variant());
    }
  }
}

void AnagraficaFornitori::ShowRecordExtras() {
  ShowExcludedPeriods(crdAnagraficaFornitori.GetRecordset(), Ctl<corvina20::ChoiceField>("cboMeseEscluso1"),
                      Ctl<corvina20::ChoiceField>("cboMeseEscluso2"), Ctl<corvina20::NumberField>("numGgEscluso"));
  ApplyDependencies();
}

// The nation chosen tells whether the supplier belongs to a black-list
// country (a privileged tax regime, whose VAT rates the save then asks for)
// and gives its foreign state code. The form has no control for the nation
// type, so that column is not shown.
void AnagraficaFornitori::FillFromNation() {
  if (crdAnagraficaFornitori.Mode() == corvina20::kModeBrowse) return;
  const Variant code = Ctl("cdoNazione").Value();
  if (IsBlank(code)) return;
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("PaeseBL, CodiceStatoEstero, TipoNazione");
  q.SetTable("STDNazioni");
  q.AddCondition("CodNazione", corvina20::kCompareEqual, code);
  RecordsetPtr nation = q.Open();
  if (nation->IsEOF()) return;
  Ctl("ckbSoggettoBL").SetValue(Variant(FlagOf(nation->Fields("PaeseBL").Value())));
  Ctl("txtCodStatoEstero").SetValue(nation->Fields("CodiceStatoEstero").Value());
  ApplyDependencies();
}

void AnagraficaFornitori::OfferTakeOver(const char* field, const Variant& value) {
  if (crdAnagraficaFornitori.Mode() != corvina20::kModeNew || state_.takenOver || IsBlank(value)) return;
  const bool fiscalCode = std::string_view(field) == "CodiceFiscale";
  // Anyone holding it at all? Without a match nothing is said.
  if (!CheckDuplicateField(0, field, value, 0)) return;
  const std::int32_t found = FindPartyWithoutRole(field, value, "Fornitore");
  if (found == 0) {
    ShowMessage(fiscalCode ? kMsgCodiceFiscaleFornitore : kMsgPartitaIvaFornitore, corvina20::kStyleInformation);
    return;
  }
  if (ShowMessage(kMsgUsaEsistente, corvina20::kStyleYesNo + corvina20::kStyleQuestion) != corvina20::kAnswerYes)
    return;
  if (!crdAnagraficaFornitori.Adopt(Variant(found))) return;
  state_.takenOver = true;
  // A customer's banks become the supplier's own, as new rows.
  if (FlagOf(crdAnagraficaFornitori.GetRecordset()->Fields("Cliente").Value()))
    CopyRowsAsNew("STDBancheClienti", found, BdyBancheFornitore);
  ShowRecordExtras();
}

void AnagraficaFornitori::OnActionInside(int operation) {
  RunInsideTransaction(Location("crdAnagraficaFornitori", "ActionInside"), [&] {
    RecordsetPtr record = crdAnagraficaFornitori.GetRecordset();
    if (operation == corvina20::kOpSave) {
      WriteExcludedPeriods(record, Ctl<corvina20::ChoiceField>("cboMeseEscluso1"),
                           Ctl<corvina20::ChoiceField>("cboMeseEscluso2"),
                           Ctl<corvina20::NumberField>("numGgEscluso"));
      const Variant& sesso = Ctl("optSesso").Value();
      record->Fields("Sesso") = IsBlank(sesso) ? Variant::Null() : sesso;
      AssignKeyAtSave(crdAnagraficaFornitori, Ctl("numIdAnagrafica"), settings_, state_.takenOver);
      record->Fields("Fornitore") = Variant(true);
      if (state_.openAccount)
        OpenAccountAtSave(crdAnagraficaFornitori, SupplierRole(), settings_, Ctl("cdoConto"),
                          Text("txtRagioneSociale1"));
    } else if (operation == corvina20::kOpDelete) {
      const std::int32_t id =
          DeletePartyRole(crdAnagraficaFornitori, SupplierRole(), Ctl("cdoConto").Value(), state_.deleteAccount);
      // The attachments go with the supplier only when no role is left.
      corvina20::ConnectionPtr db = App().GetConnection();
      corvina20::QueryBuilder q(db);
      q.AddFields("IdAnagrafica");
      q.SetTable("STDAnagrafiche");
      q.AddCondition("IdAnagrafica", corvina20::kCompareEqual, Variant(id));
      if (q.Open()->IsEOF()) db->Execute("DELETE FROM STDAnagraficheAllegati WHERE IdAnagrafica = ?", {Variant(id)});
    }
  });
}

void AnagraficaFornitori::OnActionAfter(int operation) {
  RunHandler(Location("crdAnagraficaFornitori", "ActionAfter"), [&] {
    if (operation == corvina20::kOpNew) {
      if (!settings_.manualId) Ctl("numIdAnagrafica").SetValue(Variant(NextFreeIdAnagrafica()));
      ShowRecordExtras();
    } else if (operation == corvina20::kOpSave) {
      Ctl("numIdAnagrafica").SetValue(FieldValue(crdAnagraficaFornitori.GetRecordset(), Variant("IdAnagrafica")));
    }
    if (operation == corvina20::kOpEdit) ApplyDependencies();
    if (operation == corvina20::kOpSave || operation == corvina20::kOpDelete) {
      state_ = {};
      ApplyDependencies();
    }
  });
}

void AnagraficaFornitori::OnBeginTrans() {
  // The customer card's control name in this source text is the system's own.
  RunInsideTransaction("AnagraficaFornitori.crdAnagraficaClienti_BeginTrans", [&] {
    const Variant key = crdAnagraficaFornitori.GetRecordset()->Fields("IdAnagrafica").Value();
    for (corvina20::VxBody* grid : {&BdyBancheFornitore, &bdyIndirizzi, &bdyRiferimenti, &bdyNoteFornitore,
                                    &bdyStoricizzazione, &bdyAllegati}) {
      if (grid == &bdyRiferimenti) AssignReferenceIds(bdyRiferimenti.Data(), key.ToLong());
      grid->LoadLinkValue(key);
      grid->Save();
    }
    // New rows have their keys only now that their grids are written.
    const DefaultRowKeys defaults = ReadDefaultRows(BdyBancheFornitore, bdyIndirizzi);
    App().GetConnection()->Execute(
        "UPDATE STDAnagrafiche SET IdBancaDefault = ?, IdIndSpedMerceDefault = ?, IdIndSpedFatturaDefault = ? "
        "WHERE IdAnagrafica = ?",
        {defaults.bank, defaults.goods, defaults.invoice, key});
  });
}

void AnagraficaFornitori::OnPopupItem(const std::string& key) {
  RunHandler(Location("crdAnagraficaFornitori", "PopupItemSelected"), [&] {
    const Variant id(CurrentId());
    if (key == kToolRicercaBanca) {
      SearchBankForRow(BdyBancheFornitore);
    } else if (key == kToolCruscotto) {
      App().OpenItem("CruscottoFornitore", {id});
    } else if (key == kToolDocumentale) {
      App().OpenItem("Documentale", {Variant(kForm), id});
    }
  });
}

bool AnagraficaFornitori::ControllaPartitaIva_Pub() {
  const std::string vat = Text("txtPartitaIva");
  const std::string country = Text("cdoNazione");
  return vat.empty() || !(country.empty() || country == "IT") || corvina20::FiscalChecks().IsValidPartitaIva(vat);
}

void AnagraficaFornitori::ImpostaDefaultPerStampe() {
  RunHandler(Location("Form", "ImpostaDefaultPerStampe"), [this] {
    App().OpenItem("RptEtichetteFornitori",
                   {Variant("FORM_CHIAMANTE_STAMPA_ETICHETTE"), Variant(kForm), Variant("IDANAGRAFICA"),
                    Variant(CurrentId())});
  });
}

void AnagraficaFornitori::objUsSceltaBanche_BancaSelezionata(const BankBranch& bank) {
  RunHandler(Location("objUsSceltaBanche", "BancaSelezionata"), [&] { PutBankInRow(BdyBancheFornitore, bank); });
}

void AnagraficaFornitori::prModaleStoricizzazione_ChiusuraModale() {
  RunHandler(Location("prModaleStoricizzazione", "ChiusuraModale"), [this] {
    bdyStoricizzazione.LoadFor(App().GetConnection(), Variant(CurrentId()));
  });
}

}  // namespace vantor20
