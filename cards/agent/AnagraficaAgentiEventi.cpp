// The agent card's record cycle and grids: initialise and load, the share
// grid following the current mandate, the receiving agent's name in a share
// row, the taking over of an existing party, inside the save and the delete,
// after an action, and the save of mandates and shares in the transaction.
//
// Choices kept on purpose (docs/agent-card.md tells why):
// - a mandate not saved yet carries a provisional negative IdValidita, so its
//   shares can point at it; the save swaps it for the generated key;
// - deleting a mandate row deletes its shares with it;
// - the share grid is not saved row by row: every share of the agent is
//   deleted and the grid's rows (all mandates) inserted again, field by field
//   by name, grouped by mandate.
#include "cards/agent/AnagraficaAgenti.h"

#include <utility>
#include <vector>

#include "cards/agent/MandateChecks.h"
#include "cards/customer/GridRows.h"
#include "cards/customer/PartyTakeOver.h"
#include "module/CardHandlers.h"
#include "module/CodedLookups.h"
#include "module/CardValues.h"
#include "module/ModuloVantor.h"
#include "module/PartyCodes.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

constexpr const char* kForm = "AnagraficaAgenti";
constexpr const char* kSatellite = "STDAnagraficaAgenti";
constexpr const char* kSharesTable = "STDAnagraficaAgentiMandatiQuote";

// Dictionary messages of the record cycle.
constexpr std::int32_t kMsgCFAltroAgente = 134;
constexpr std::int32_t kMsgPIAltroAgente = 141;
constexpr std::int32_t kMsgAcquisisci = 137;
constexpr std::int32_t kMsgSostituisce = 895;
constexpr std::int32_t kMsgNonAgente = 21400;

std::string Location(const char* control, const char* event) {
  return std::string(kForm) + "." + control + "_" + event;
}

// The name of agent `id`; false when no agent has that key.
bool AgentName(const Variant& id, std::string& name) {
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("RagioneSociale");
  q.SetTable("STDAnagrafiche");
  q.AddCondition("IdAnagrafica", corvina20::kCompareEqual, id);
  q.AddCondition("Agente", corvina20::kCompareEqual, Variant(true));
  RecordsetPtr rs = q.Open();
  if (IsRecordsetClosed(rs) || rs->IsEOF()) return false;
  name = TextOf(FieldValue(rs, Variant("RagioneSociale")));
  return true;
}


}  // namespace

void AnagraficaAgenti::WireEvents() {
  crdAnagraficaAgenti.Inizialize = [this](bool& ok, std::string& key, std::string& display) {
    OnInizialize(ok, key, display);
  };
  crdAnagraficaAgenti.ActionBefore = [this](int op, bool& cancel) { OnActionBefore(op, cancel); };
  crdAnagraficaAgenti.ActionInside = [this](int op) { OnActionInside(op); };
  crdAnagraficaAgenti.ActionAfter = [this](int op) { OnActionAfter(op); };
  crdAnagraficaAgenti.BeginTrans = [this] { OnBeginTrans(); };

  cdoCodiceFiscale.Change = [this] {
    RunHandler(Location("cdoCodiceFiscale", "Change"),
               [this] { OfferTakeOver("CodiceFiscale", cdoCodiceFiscale.Value()); });
  };
  txtPartitaIva.Change = [this] {
    RunHandler(Location("txtPartitaIva", "Change"),
               [this] { OfferTakeOver("PartitaIva", txtPartitaIva.Value()); });
  };
  OfferPartiesOfRole(cdoCapoArea, "Agente");
  OfferPartiesOfRole(cdoIdAgenteConsolidamento, "Agente");
  OfferPartiesOfRole(cdoIdFornitore, "Fornitore");

  // ---- mandates: new rows get a provisional id; the shares follow ----
  bdyMandati.OnAddNew = [this] {
    RecordsetPtr rs = bdyMandati.Data();
    rs->Fields("IdValidita") = Variant(nextProvisional_--);
    rs->Fields("TipoMandato") = Variant(std::int16_t{0});
    rs->Fields("TipoAgente") = Variant(std::int16_t{0});
  };
  bdyMandati.RowChanged = [this] {
    RunHandler(Location("bdyMandati", "RowChanged"), [this] { OnMandateChanged(); });
  };
  // The mandate's id is read before the row goes, its shares after.
  bdyMandati.BeforeDeleteAt = [this](long, bool&) {
    const Variant& id = bdyMandati.Data()->Fields("IdValidita").Value();
    droppedMandate_ = IsBlank(id) ? 0 : id.ToLong();
  };
  bdyMandati.AfterDelete = [this] {
    RunHandler(Location("bdyMandati", "AfterDelete"), [this] {
      if (droppedMandate_ != 0) DropShares(droppedMandate_);
      droppedMandate_ = 0;
    });
  };

  // ---- shares: a new row belongs to the current mandate and agent ----
  bdyMandatiQuote.OnAddNew = [this] {
    RecordsetPtr rs = bdyMandatiQuote.Data();
    rs->Fields("IdValidita") = Variant(CurrentMandate());
    rs->Fields("IdAnagrafica") = Variant(CurrentId());
  };
  bdyMandatiQuote.AfterColUpdate = [this](const std::string& column) {
    RunHandler(Location("bdyMandatiQuote", "AfterColUpdate"), [&] {
      RecordsetPtr rs = bdyMandatiQuote.Data();
      if (SameName(column, "IdAgente")) {
        const Variant id = rs->Fields("IdAgente").Value();
        std::string name;
        if (IsBlank(id)) {
          rs->Fields("RagioneSociale") = Variant::Null();
        } else if (AgentName(id, name)) {
          rs->Fields("RagioneSociale") = Variant(name);
        } else {
          // Only agents receive shares: the code typed goes back to empty.
          rs->Fields("IdAgente") = Variant::Null();
          rs->Fields("RagioneSociale") = Variant::Null();
          ShowMessage(kMsgNonAgente, corvina20::kStyleInformation, {TextOf(id)});
        }
      }
      ShowShareTotal();
    });
  };
  bdyMandatiQuote.AfterDelete = [this] {
    RunHandler(Location("bdyMandatiQuote", "AfterDelete"), [this] { ShowShareTotal(); });
  };
}

void AnagraficaAgenti::OnInizialize(bool& ok, std::string& key, std::string& display) {
  RunHandler(Location("crdAnagraficaAgenti", "Inizialize"), [&] {
    ok = true;
    key = "IdAnagrafica";
    display = "IdAnagrafica";
    crdAnagraficaAgenti.SetMainTable("STDAnagrafiche", "IdAnagrafica");
    crdAnagraficaAgenti.AddSatellite(kSatellite);
    crdAnagraficaAgenti.SetRecordCondition("Agente = 1");
    crdAnagraficaAgenti.SetNameField("RagioneSociale");
    // The party row outlives the agent role when another role holds it.
    crdAnagraficaAgenti.SetDeletesOwnRows(false);
    // The shares are read and written by the card itself (they follow the
    // mandates), so only the mandates grid is linked.
    bdyMandati.BindTable("STDAnagraficaAgentiMandati", "IdValidita", "IdAnagrafica");
    crdAnagraficaAgenti.LinkGrid(bdyMandati);
    manualId_ = App().Parameters().ReadFlagParameter("IdAnagraficaManuale");
    numIdAnagrafica.SetLocked(!manualId_);
  });
}

void AnagraficaAgenti::Load() {
  RunHandler(Location("Form", "Load"), [this] {
    cboTipoLiquidazioneProvvigione.ClearEntries();
    std::int16_t value = 0;
    for (const char* c : {"Incasso Parziale", "Fatturato", "Incasso Totale"})
      cboTipoLiquidazioneProvvigione.AddEntry(c, Variant(value++));
  });
}

std::int32_t AnagraficaAgenti::CurrentId() const {
  const Variant& v = numIdAnagrafica.Value();
  return IsBlank(v) ? 0 : v.ToLong();
}

std::int32_t AnagraficaAgenti::CurrentMandate() {
  RecordsetPtr rs = bdyMandati.Data();
  const long row = bdyMandati.CurrentRow();
  if (!rs || !rs->IsOpen() || row < 0 || row >= rs->RecordCount()) return 0;
  bdyMandati.GoToRow(row);
  const Variant& id = rs->Fields("IdValidita").Value();
  return IsBlank(id) ? 0 : id.ToLong();
}

void AnagraficaAgenti::LoadShares() {
  const Variant key = crdAnagraficaAgenti.KeyValue();
  const bool none = IsBlank(key) || crdAnagraficaAgenti.Mode() == corvina20::kModeNew;
  // The receiving agent's name rides along; it is not a column of the table,
  // which is why the shares are written back field by field by name.
  const std::string sql =
      "SELECT Q.IdRiga, Q.IdAnagrafica, Q.IdValidita, Q.IdAgente, A.RagioneSociale, Q.PercQuota "
      "FROM STDAnagraficaAgentiMandatiQuote Q LEFT JOIN STDAnagrafiche A ON A.IdAnagrafica = Q.IdAgente "
      "WHERE Q.IdAnagrafica = ? ORDER BY Q.IdRiga";
  // A taken-over party is not an agent yet: it has no shares of its own.
  RecordsetPtr read = App().GetConnection()->OpenRecordset(
      sql, {none ? Variant(std::int32_t{0}) : key}, corvina20::LockType::ReadOnly);
  // A query over a join cannot be edited: the grid holds a copy in memory,
  // which the save writes back itself.
  std::vector<corvina20::FieldInfo> fields;
  for (std::size_t i = 0; i < read->FieldCount(); ++i) fields.push_back(read->Info(i));
  RecordsetPtr rows = corvina20::Recordset::CreateInMemory(std::move(fields));
  for (; !read->IsEOF(); read->MoveNext()) {
    rows->AddNew();
    for (std::size_t i = 0; i < read->FieldCount(); ++i) rows->Fields(i) = read->Fields(i).Value();
  }
  bdyMandatiQuote.SetData(rows);
}

void AnagraficaAgenti::OnMandateChanged() {
  // A load of the mandates (another record, new, save, cancel) brings a new
  // row set: the shares are read again with it.
  if (bdyMandati.Data() != mandatesLoaded_) {
    mandatesLoaded_ = bdyMandati.Data();
    nextProvisional_ = -1;
    LoadShares();
  }
  RecordsetPtr shares = bdyMandatiQuote.Data();
  if (shares && shares->IsOpen())
    shares->SetFilter("IdValidita = " + std::to_string(CurrentMandate()));
  ShowShareTotal();
}

void AnagraficaAgenti::ShowShareTotal() {
  // The share grid shows the current mandate's rows only: their sum is the
  // mandate's total, in the fixed point the save check adds them in.
  // The cursor goes back where it stood (a handler of a cell being typed
  // runs in the middle of the typing), by position: it may stand on a row
  // just deleted, which has no bookmark.
  std::int64_t total = 0;
  RecordsetPtr rs = bdyMandatiQuote.Data();
  const long rows = rs && rs->IsOpen() ? rs->RecordCount() : 0;
  if (rows > 0) {
    const long here = rs->IsEOF() || rs->IsBOF() ? 0 : rs->AbsolutePosition();
    for (rs->MoveFirst(); !rs->IsEOF(); rs->MoveNext()) {
      const Variant& perc = rs->Fields("PercQuota").Value();
      if (!IsBlank(perc)) total += perc.ToCurrency().units;
    }
    if (here > 0 && here <= rows) bdyMandatiQuote.GoToRow(here - 1);
  }
  percTotaleQuote.SetValue(rows == 0 ? Variant() : Variant(corvina20::Currency{total}));
}

void AnagraficaAgenti::DropShares(std::int32_t idValidita) {
  RecordsetPtr rs = bdyMandatiQuote.Data();
  if (!rs || !rs->IsOpen()) return;
  const std::string filter = rs->Filter();
  rs->SetFilter("IdValidita = " + std::to_string(idValidita));
  std::vector<Variant> marks;
  for (; !rs->IsEOF(); rs->MoveNext()) marks.push_back(rs->Bookmark());
  for (const Variant& mark : marks) {
    rs->SetBookmark(mark);
    rs->Delete();
  }
  rs->SetFilter(filter);
}

void AnagraficaAgenti::OfferTakeOver(const char* field, const Variant& value) {
  if (crdAnagraficaAgenti.Mode() != corvina20::kModeNew || takenOver_ || IsBlank(value)) return;
  const std::int32_t found = FindPartyWithoutRole(field, value, "Agente");
  if (found == 0) {
    // Held only by agents: the user is told, nothing is taken over.
    if (CheckDuplicateField(kRoleAgente, field, value, CurrentId(), true))
      ShowMessage(std::string(field) == "CodiceFiscale" ? kMsgCFAltroAgente : kMsgPIAltroAgente,
                  corvina20::kStyleInformation);
    return;
  }
  if (ShowMessage(kMsgAcquisisci, corvina20::kStyleYesNo + corvina20::kStyleQuestion) !=
      corvina20::kAnswerYes)
    return;
  // The party's own values replace what was typed; the save adds the role.
  if (crdAnagraficaAgenti.Adopt(Variant(found))) takenOver_ = true;
}

void AnagraficaAgenti::OnActionInside(int operation) {
  RunInsideTransaction(Location("crdAnagraficaAgenti", "ActionInside"), [&] {
    RecordsetPtr record = crdAnagraficaAgenti.GetRecordset();
    if (operation == corvina20::kOpSave) {
      if (crdAnagraficaAgenti.Mode() == corvina20::kModeNew && !manualId_ && !takenOver_) {
        // Taken again at save time: the id shown at "new" may have gone to
        // another workstation meanwhile.
        const std::int32_t id = NextFreeIdAnagrafica();
        record->Fields("IdAnagrafica") = Variant(id);
        numIdAnagrafica.SetValue(Variant(id));
      }
      record->Fields("Agente") = Variant(true);
      if (replacedId_ != 0 && App().Parameters().ReadFlagParameter("IdAnagraficaCollegata") &&
          ShowMessage(kMsgSostituisce, corvina20::kStyleYesNo) == corvina20::kAnswerYes)
        record->Fields("IdAnagraficaSostituita") = Variant(replacedId_);
    } else if (operation == corvina20::kOpDelete) {
      const std::int32_t id = FieldValue(record, Variant("IdAnagrafica")).ToLong();
      ClearPartyRole(id, "Agente");
      ClearPartyChildRows(id);
      // The agent's own rows go with the role; the party stays for its others.
      corvina20::ConnectionPtr db = App().GetConnection();
      for (const char* table : {kSharesTable, "STDAnagraficaAgentiMandati", kSatellite})
        db->Execute(std::string("DELETE FROM ") + table + " WHERE IdAnagrafica = ?", {Variant(id)});
    }
  });
}

void AnagraficaAgenti::OnBeginTrans() {
  RunInsideTransaction(Location("crdAnagraficaAgenti", "BeginTrans"), [&] {
    SaveMandatesAndShares(crdAnagraficaAgenti.GetRecordset()->Fields("IdAnagrafica").Value());
  });
}

void AnagraficaAgenti::SaveMandatesAndShares(const Variant& key) {
  // New mandates leave their provisional ids for the generated ones.
  std::vector<std::pair<Variant, std::int32_t>> fresh;  // bookmark, provisional id
  ForEachRow(bdyMandati, [&](const RecordsetPtr& rs, long) {
    const Variant& id = rs->Fields("IdValidita").Value();
    if (IsBlank(id) || id.ToLong() >= 0) return;
    fresh.emplace_back(rs->Bookmark(), id.ToLong());
    rs->Fields("IdValidita") = Variant::Null();
  });
  RecordsetPtr mandates = bdyMandati.Data();
  bdyMandati.LoadLinkValue(key);
  try {
    bdyMandati.Save();
  } catch (...) {
    // The save rolls back: the mandates not written take their provisional
    // ids again, so that their shares still point at them.
    for (const auto& [mark, provisional] : fresh) {
      mandates->SetBookmark(mark);
      if (mandates->Fields("IdValidita").Value().IsNull())
        mandates->Fields("IdValidita") = Variant(provisional);
    }
    throw;
  }
  std::vector<std::pair<std::int32_t, std::int32_t>> renamed;  // provisional, generated
  for (const auto& [mark, provisional] : fresh) {
    mandates->SetBookmark(mark);
    renamed.emplace_back(provisional, mandates->Fields("IdValidita").Value().ToLong());
  }

  // Every share of every mandate: the filter is set aside while they are read.
  RecordsetPtr shares = bdyMandatiQuote.Data();
  if (!shares || !shares->IsOpen()) return;
  const std::string filter = shares->Filter();
  shares->SetFilter("");
  std::vector<MandateShare> rows;
  std::vector<Variant> marks;
  for (shares->MoveFirst(); !shares->IsEOF(); shares->MoveNext()) {
    const Variant& id = shares->Fields("IdValidita").Value();
    std::int32_t mandate = IsBlank(id) ? 0 : id.ToLong();
    for (const auto& [provisional, generated] : renamed)
      if (mandate == provisional) {
        mandate = generated;
        shares->Fields("IdValidita") = Variant(generated);
      }
    rows.push_back({mandate, 0});
    marks.push_back(shares->Bookmark());
  }
  corvina20::ConnectionPtr db = App().GetConnection();
  db->Execute(std::string("DELETE FROM ") + kSharesTable + " WHERE IdAnagrafica = ?", {key});
  RecordsetPtr target =
      db->OpenRecordset(std::string("SELECT * FROM ") + kSharesTable + " WHERE 1 = 0", {},
                        corvina20::LockType::Immediate);
  for (std::size_t i : GroupedShareOrder(rows)) {
    shares->SetBookmark(marks[i]);
    target->AddNew();
    for (std::size_t f = 0; f < target->FieldCount(); ++f) {
      const std::string& name = target->Info(f).name;
      // The row key is the table's own; the agent is the record saved.
      if (SameName(name, "IdRiga") || !shares->HasField(name)) continue;
      target->Fields(f) = SameName(name, "IdAnagrafica") ? key : shares->Fields(name).Value();
    }
    target->Update();
  }
  shares->SetFilter(filter);
}

void AnagraficaAgenti::OnActionAfter(int operation) {
  RunHandler(Location("crdAnagraficaAgenti", "ActionAfter"), [&] {
    if (operation == corvina20::kOpNew) {
      if (!manualId_) numIdAnagrafica.SetValue(Variant(NextFreeIdAnagrafica()));
    } else if (operation == corvina20::kOpSave) {
      numIdAnagrafica.SetValue(FieldValue(crdAnagraficaAgenti.GetRecordset(), Variant("IdAnagrafica")));
    }
    if (operation == corvina20::kOpSave || operation == corvina20::kOpDelete) {
      takenOver_ = false;
      replacedId_ = 0;
    }
  });
}

}  // namespace vantor20
