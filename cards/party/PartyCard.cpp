// The record-cycle steps shared by the party cards; see PartyCard.h.
//
// Message 153 is shown only when automatic account creation is on: with it
// off, nothing needs the control account or the mask.
#include "cards/party/PartyCard.h"

#include <cassert>

#include "cards/customer/LedgerAccount.h"
#include "module/CardErrorList.h"
#include "module/CardValues.h"
#include "module/ModuloVantor.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

constexpr std::int32_t kMsgParametriConto = 153;
constexpr std::int32_t kMsgContoNonCreato = 156;

corvina20::Control& Named(corvina20::Form& form, const char* name) {
  corvina20::Control* c = form.FindControl(name);
  assert(c != nullptr && "party card without a control the shared steps need");
  return *c;
}

}  // namespace

PartyCardSettings InitializePartyCard(corvina20::Form& form, corvina20::Card& card, const PartyCardRole& role,
                                      const std::vector<PartyGrid>& grids) {
  card.SetMainTable("STDAnagrafiche", "IdAnagrafica");
  card.AddSatellite(role.satellite);
  card.SetRecordCondition(std::string(role.flag) + " = 1");
  card.SetNameField("RagioneSociale");
  // The party row outlives the role when another role holds it.
  card.SetDeletesOwnRows(false);
  for (const PartyGrid& g : grids) {
    if (*g.order) g.grid.BindTable(g.table, g.key, g.link, g.order);
    else g.grid.BindTable(g.table, g.key, g.link);
    card.LinkGrid(g.grid);
  }

  corvina20::HostParameters params = App().Parameters();
  PartyCardSettings s;
  s.manualId = params.ReadFlagParameter("IdAnagraficaManuale");
  s.controlAccount = TextOf(params.ReadParameter(role.controlAccountKey));
  s.maskConto = TextOf(params.ReadParameter("MaskConto"));
  s.creaAutomPC = params.ReadFlagParameter("CreaAutomPC");
  s.historyEnabled = params.ReadFlagParameter("AbilitaStoricoAnagrafiche");

  Named(form, "numIdAnagrafica").SetLocked(!s.manualId);
  dynamic_cast<corvina20::TextField&>(Named(form, "txtPartitaIva"))
      .SetAcceptedCharacters("abcdefghilmnopqrstuvzwxjykABCDEFGHILMNOPQRSTUVZWXJYK0123456789");
  for (const char* account : {"cdoConto", "cdoCodContropartita"})
    dynamic_cast<corvina20::VxCode&>(Named(form, account)).SetMask(s.maskConto);

  if (s.creaAutomPC && (s.controlAccount.empty() || s.maskConto.empty())) {
    const std::string missing = s.controlAccount.empty()
                                    ? std::string(role.controlAccountName) +
                                          (s.maskConto.empty() ? " e la Maschera Conto" : "")
                                    : "la Maschera Conto";
    ShowMessage(kMsgParametriConto, corvina20::kStyleInformation, {missing});
  }
  return s;
}

void AssignKeyAtSave(corvina20::Card& card, corvina20::Control& numIdAnagrafica, const PartyCardSettings& settings,
                     bool takenOver) {
  if (card.Mode() != corvina20::kModeNew || settings.manualId || takenOver) return;
  const std::int32_t id = NextFreeIdAnagrafica();
  card.GetRecordset()->Fields("IdAnagrafica") = Variant(id);
  numIdAnagrafica.SetValue(Variant(id));
}

void OpenAccountAtSave(corvina20::Card& card, const PartyCardRole& role, const PartyCardSettings& settings,
                       corvina20::Control& cdoConto, const std::string& name) {
  const std::int32_t id = card.GetRecordset()->Fields("IdAnagrafica").Value().ToLong();
  const std::string code = FormAutomaticAccount(settings.controlAccount, settings.maskConto, id);
  try {
    OpenLedgerAccount(code, name, role.side, settings.controlAccount);
  } catch (const corvina20::Error& e) {
    throw corvina20::Error(e.Number(), "OpenLedgerAccount",
                           FillMessage(kMsgContoNonCreato, {}) + "\r\n" + e.Description());
  }
  card.GetSatelliteRecordset(role.satellite)->Fields("CodConto") = Variant(code);
  cdoConto.SetValue(Variant(code));
}

std::int32_t DeletePartyRole(corvina20::Card& card, const PartyCardRole& role, const Variant& account,
                             bool deleteAccount) {
  const std::int32_t id = FieldValue(card.GetRecordset(), Variant("IdAnagrafica")).ToLong();
  ClearPartyRole(id, role.flag);
  ClearPartyChildRows(id);
  corvina20::ConnectionPtr db = App().GetConnection();
  for (const char* table : role.ownTables)
    db->Execute(std::string("DELETE FROM ") + table + " WHERE IdAnagrafica = ?", {Variant(id)});
  if (deleteAccount && !IsBlank(account)) db->Execute("DELETE FROM STDPianoDeiConti WHERE CodConto = ?", {account});
  return id;
}

bool SnapshotAtSave(const corvina20::Form& form, corvina20::Card& card, corvina20::VxBody& history,
                    const PartyCardSettings& settings, PartyCardState& state, std::int32_t idAnagrafica,
                    const std::vector<SnapshotField>& fields, std::int16_t tipoCliFor, std::string_view location) {
  if (!settings.historyEnabled || card.Mode() != corvina20::kModeEdit ||
      !SnapshotFieldsChanged(form, fields, state.remembered))
    return true;
  state.snapshot = AskSnapshotDate(idAnagrafica);
  if (!state.snapshot.message.empty()) {
    ReportErrorList(location, state.snapshot.message + "\r\n");
    return false;
  }
  // Cancelled: no snapshot, the save goes on.
  if (state.snapshot.confirmed)
    AddSnapshotRow(history, idAnagrafica, state.snapshot, fields, state.remembered, tipoCliFor);
  return true;
}

}  // namespace vantor20
