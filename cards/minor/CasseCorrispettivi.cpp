// The cash-register card's handlers, in the order the card raises them.
//
// Choices kept on purpose:
// - Save writes CassaCorrispettivi on both records of the card, the
//   STDAnagrafiche row and the STDAnagraficaClienti row; Cliente on the first
//   (the role flag) and ConsumatoreFinale on the second (where the schema
//   keeps each).
// - With typed keys ("IdAnagraficaManuale") a missing or used key is refused
//   before the save (CheckManualKey), never left to the table's constraint.
// - The record condition shows cash registers only (CassaCorrispettivi = 1),
//   never the other customers.
// - Delete removes the customer role as the customer card does: ClearPartyRole
//   (id, "Cliente") deletes the party row unless another role holds it, the
//   customer satellite row goes with the role, addresses and references go
//   with the party, and a party kept by another role loses the register mark.
//   A register that documents, stock movements or journal lines still name
//   (PartyUsage for the customer role) is not deleted: message 147 with the
//   area, as on the carrier card.
#include "cards/minor/CasseCorrispettivi.h"

#include "module/CardHandlers.h"
#include "module/CodedLookups.h"
#include "module/ManualKeys.h"
#include "module/ModuloVantor.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

using corvina20::ControlKind;

constexpr const char* kForm = "CasseCorrispettivi";

// On the account lookups, the counter-account is a generic account: never a
// customer's or a supplier's (STDPianoDeiConti.TipoCliFor 0).
constexpr const char* kGenericAccount = "0";

bool IsBlank(const Variant& v) {
  return v.IsEmpty() || v.IsNull() ||
         (v.Kind() == corvina20::VariantKind::String && v.StringRef().empty());
}

// True when the chart of accounts holds `code`.
bool AccountExists(const Variant& code) {
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("CodConto");
  q.SetTable("STDPianoDeiConti");
  q.AddCondition("CodConto", corvina20::kCompareEqual, code);
  return !q.Open(corvina20::LockType::ReadOnly)->IsEOF();
}

}  // namespace

CasseCorrispettivi::CasseCorrispettivi()
    : Form(kForm),
      crdCasseCorrispettivi(Add<corvina20::Card>("crdCasseCorrispettivi", *this)),
      frmCassa(Add<corvina20::Frame>("frmCassa", "Cassa Corrispettivi")),
      numIdAnagrafica(Add<corvina20::NumberField>("numIdAnagrafica", ControlKind::Integer, "Codice")),
      txtRagioneSociale1(Add<corvina20::TextField>("txtRagioneSociale1", "Descrizione")),
      cdoCodConto(Add<corvina20::VxCode>("cdoCodConto", "Conto", "PianoDeiConti")),
      cdoCodContropartita(Add<corvina20::VxCode>("cdoCodContropartita", "Contropartita", "PianoDeiConti")),
      cdoDivisa(Add<corvina20::VxCode>("cdoDivisa", "Divisa", "Divise")),
      dteFineValidita(Add<corvina20::DateField>("dteFineValidita", "Fine Validità")),
      ckbInfragruppo(Add<corvina20::CheckBox>("ckbInfragruppo", "Soggetto Infragruppo")) {
  crdCasseCorrispettivi.SetMainTable("STDAnagrafiche", "IdAnagrafica");
  crdCasseCorrispettivi.AddSatellite("STDAnagraficaClienti");
  crdCasseCorrispettivi.SetRecordCondition("CassaCorrispettivi = 1");
  crdCasseCorrispettivi.SetNameField("RagioneSociale");
  // ClearPartyRole decides whether the party row goes, not the card.
  crdCasseCorrispettivi.SetDeletesOwnRows(false);

  numIdAnagrafica.Bind("STDAnagrafiche.IdAnagrafica").Place("frmCassa");
  txtRagioneSociale1.Bind("STDAnagrafiche.RagioneSociale").Place("frmCassa");
  txtRagioneSociale1.SetMaxLength(80);
  // Unprefixed bindings belong to the customer satellite row.
  cdoCodConto.Bind("CodConto").Place("frmCassa");
  cdoCodContropartita.Bind("CodContropartita").Place("frmCassa");
  cdoDivisa.Bind("STDAnagrafiche.CodDivisa").Place("frmCassa");
  dteFineValidita.Bind("FineValidita").Place("frmCassa");
  ckbInfragruppo.Bind("Infragruppo").Place("frmCassa");

  crdCasseCorrispettivi.Inizialize = [this](bool& ok, std::string& key, std::string& display) {
    OnInizialize(ok, key, display);
  };
  crdCasseCorrispettivi.ActionBefore = [this](int op, bool& cancel) { OnActionBefore(op, cancel); };
  crdCasseCorrispettivi.ActionInside = [this](int op) { OnActionInside(op); };
  crdCasseCorrispettivi.ActionAfter = [this](int op) { OnActionAfter(op); };

  // Both account lookups take the validity filter from WireCodedLookups; the
  // counter-account adds its own condition first.
  cdoCodContropartita.BrowserSql = [](corvina20::LookupQuery& query) {
    query.ClearFilters();
    query.AddFilter("TipoCliFor", corvina20::kCompareEqual, kGenericAccount, 0);
  };
  WireCodedLookups(*this);
}

std::string CasseCorrispettivi::Location(const char* event) const {
  return std::string(kForm) + ".crd" + kForm + "_" + event;
}

void CasseCorrispettivi::Load() {
  RunHandler("CasseCorrispettivi.Form_Load", [this] {
    bool offered = App().Parameters().ReadFlagParameter("GestisciPNInfragruppo");
    ckbInfragruppo.SetVisible(offered);
    ckbInfragruppo.SetEnabled(offered);
  });
}

void CasseCorrispettivi::OnInizialize(bool& ok, std::string& key, std::string& display) {
  RunHandler(Location("Inizialize"), [&] {
    ok = true;
    key = "IdAnagrafica";
    display = "IdAnagrafica";
    corvina20::HostParameters params = App().Parameters();
    manualId_ = params.ReadFlagParameter("IdAnagraficaManuale");
    numIdAnagrafica.SetLocked(!manualId_);
    Variant mask = params.ReadParameter("MaskConto");
    std::string text = mask.IsNull() ? "" : mask.ToString();
    cdoCodConto.SetMask(text);
    cdoCodContropartita.SetMask(text);
  });
}

void CasseCorrispettivi::CheckBeforeSave(bool& cancel) {
  if (manualId_ && !CheckManualKey(crdCasseCorrispettivi, Location("ActionBefore"))) {
    cancel = true;
    return;
  }
  crdCasseCorrispettivi.CommitFields();
  std::string list;
  if (IsBlank(cdoCodConto.Value())) {
    AddCardMessage(149, list);
    cdoCodConto.SetFocus();
  } else if (!AccountExists(cdoCodConto.Value())) {
    AddCardMessage(158, list);
    cdoCodConto.SetFocus();
  }
  if (IsBlank(cdoDivisa.Value())) {
    AddCardMessage(745, list);
    cdoDivisa.SetFocus();
  }
  if (!list.empty() && AskMessage(386, list) == corvina20::kAnswerNo) cancel = true;
}

void CasseCorrispettivi::OnActionBefore(int operation, bool& cancel) {
  bool ok = RunHandler(Location("ActionBefore"), [&] {
    if (operation == corvina20::kOpSave) {
      CheckBeforeSave(cancel);
    } else if (operation == corvina20::kOpDelete) {
      std::int32_t id =
          FieldValue(crdCasseCorrispettivi.GetRecordset(), Variant("IdAnagrafica")).ToLong();
      std::string usage = PartyUsage(id, kRoleCliente);
      if (!usage.empty()) {
        ShowMessage(147, corvina20::kStyleInformation, {usage});
        cancel = true;
      }
    }
  });
  if (!ok) cancel = true;
}

void CasseCorrispettivi::OnActionInside(int operation) {
  RunInsideTransaction(Location("ActionInside"), [&] {
    RecordsetPtr party = crdCasseCorrispettivi.GetRecordset();
    if (operation == corvina20::kOpSave) {
      // A typed key was checked before the save.
      if (crdCasseCorrispettivi.Mode() == corvina20::kModeNew && !manualId_) {
        // Taken again at save time: the id shown at "new" may be gone.
        std::int32_t id = NextFreeIdAnagrafica();
        party->Fields("IdAnagrafica") = Variant(id);
        numIdAnagrafica.SetValue(Variant(id));
      }
      RecordsetPtr customer = crdCasseCorrispettivi.GetSatelliteRecordset("STDAnagraficaClienti");
      party->Fields("CassaCorrispettivi") = Variant(true);
      party->Fields("Cliente") = Variant(true);
      customer->Fields("CassaCorrispettivi") = Variant(true);
      customer->Fields("ConsumatoreFinale") = Variant(true);
    } else if (operation == corvina20::kOpDelete) {
      std::int32_t id = FieldValue(party, Variant("IdAnagrafica")).ToLong();
      ClearPartyRole(id, "Cliente");
      corvina20::DataObject data(App().GetConnection());
      data.Execute("DELETE FROM STDAnagraficaClienti WHERE IdAnagrafica = ?", {Variant(id)});
      if (!ClearPartyChildRows(id))
        data.Execute("UPDATE STDAnagrafiche SET CassaCorrispettivi = 0 WHERE IdAnagrafica = ?",
                     {Variant(id)});
    }
  });
}

void CasseCorrispettivi::OnActionAfter(int operation) {
  RunHandler(Location("ActionAfter"), [&] {
    if (operation == corvina20::kOpNew) {
      numIdAnagrafica.SetValue(Variant(NextFreeIdAnagrafica()));
      // A new till takes the company's currency until the user says otherwise.
      Variant base = App().Parameters().ReadParameter("CodDivisaBase");
      if (!base.IsNull()) {
        cdoDivisa.SetValue(base);
        cdoDivisa.Refresh(App().GetConnection());
      }
    } else if (operation == corvina20::kOpSave) {
      numIdAnagrafica.SetValue(
          FieldValue(crdCasseCorrispettivi.GetRecordset(), Variant("IdAnagrafica")));
    }
  });
}

}  // namespace vantor20
