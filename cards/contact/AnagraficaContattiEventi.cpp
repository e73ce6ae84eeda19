// The contact card's record cycle: set-up and load, the duplicates panel
// when a record is shown and before a save, the save and the delete of the
// contact role, the popup items of the card (conversion into a customer, the
// mail client), of the activities and of the duplicate grids.
//
// Choices kept on purpose (docs/contact-card.md tells why):
// - the reference rows' warnings join the duplicates' list text in the one
//   question 386 asked before a save;
// - a contact that another party names as linked or replaced
//   (IdAnagraficaCollegata, IdAnagraficaSostituita) is not deleted: its key
//   would be left pointing nowhere;
// - the conversion item is enabled on a contact not yet converted and
//   disabled on one converted, so it reads the same after a reload as right
//   after the conversion.
#include "cards/contact/AnagraficaContatti.h"

#include "cards/contact/DuplicateGrids.h"
#include "cards/customer/GridRows.h"
#include "cards/customer/PartyRowChecks.h"
#include "module/CardErrorList.h"
#include "cards/customer/LedgerAccount.h"
#include "module/CardHandlers.h"
#include "module/CodedLookups.h"
#include "module/CardValues.h"
#include "module/ManualKeys.h"
#include "module/ModuloVantor.h"
#include "module/PartyCodes.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

constexpr const char* kForm = "AnagraficaContatti";
constexpr const char* kSatellite = "STDAnagraficaContatti";
constexpr const char* kActionBefore = "AnagraficaContatti.crdAnagraficaContatti_ActionBefore";

constexpr const char* kPopupConverti = "POPUP_CONVERTI_IN_CLIENTE";
constexpr const char* kPopupOutlook = "POP_UP_SINCRONIZZA_CONTATTO";
constexpr const char* kApriCalendario = "Apri Calendario alla data";
constexpr const char* kApriAttivita = "Apri Attività";
constexpr const char* kCancellaAttivita = "Cancella Attività";
constexpr const char* kNuovaAttivita = "Nuova Attività";

// Dictionary messages of the card.
constexpr std::int32_t kMsgParametriConto = 153;
constexpr std::int32_t kMsgInUso = 147;
constexpr std::int32_t kMsgSostituisce = 895;
constexpr std::int32_t kMsgConvertito = 918;
constexpr std::int32_t kMsgSincronizza = 1209;
constexpr std::int32_t kMsgCollegato = 21300;
constexpr std::int32_t kMsgEliminaAttivita = 21301;
constexpr std::int32_t kMsgNessunaAttivita = 21302;

// The mail-client item's warnings are the module's own texts.
constexpr const char* kOutlookNonAttivo = "Attenzione: MS Outlook non attivato nei Parametri CRM";
constexpr const char* kOutlookNonInstallato = "Attenzione: MS Outlook non installato";

std::string Location(const std::string& control, const char* event) {
  return std::string(kForm) + "." + control + "_" + event;
}

void ShowLiteral(const char* text) {
  corvina20::MessageRequest request;
  request.text = text;
  request.style = corvina20::kStyleExclamation;
  App().ShowMessage(request);
}

bool HasRow(const RecordsetPtr& rs) { return rs && rs->IsOpen() && !rs->IsEOF() && !rs->IsBOF(); }

// The first other party that names `id` as its linked or replaced party:
// "<key> <name>", "" when none.
std::string LinkedParty(std::int32_t id) {
  RecordsetPtr rs = App().GetConnection()->OpenRecordset(
      "SELECT IdAnagrafica, RagioneSociale FROM STDAnagrafiche WHERE IdAnagrafica <> ? AND "
      "(IdAnagraficaCollegata = ? OR IdAnagraficaSostituita = ?) ORDER BY IdAnagrafica",
      {Variant(id), Variant(id), Variant(id)}, corvina20::LockType::ReadOnly);
  if (rs->IsEOF()) return "";
  return TextOf(rs->Fields("IdAnagrafica").Value()) + " " + TextOf(rs->Fields("RagioneSociale").Value());
}

}  // namespace

void AnagraficaContatti::WireEvents() {
  crdAnagraficaContatti.Inizialize = [this](bool& ok, std::string& key, std::string& display) {
    OnInizialize(ok, key, display);
  };
  crdAnagraficaContatti.ActionBefore = [this](int op, bool& cancel) { OnActionBefore(op, cancel); };
  crdAnagraficaContatti.ActionInside = [this](int op) { OnActionInside(op); };
  crdAnagraficaContatti.ActionAfter = [this](int op) { OnActionAfter(op); };
  crdAnagraficaContatti.BeginTrans = [this] { OnBeginTrans(); };
  crdAnagraficaContatti.PopupItemSelected = [this](const std::string& key) { OnPopupItem(key); };
  crdAnagraficaContatti.Reposition = [this] { OnReposition(); };
  bdyAttivita.PopupItemSelected = [this](const std::string& key) { OnActivitiesPopup(key); };
  for (corvina20::VxBody* grid : {&bdyAnagraficheDoppie, &bdyAnagraficheDoppie2})
    grid->PopupItemSelected = [this, grid](const std::string& key) { OnDuplicatesPopup(*grid, key); };

  // The agents' lookups offer the parties that are agents; the
  // counter-account the sub-accounts of the customers' side or of none.
  for (const char* name : {"cdoAgente", "cdoAgente2"})
    OfferPartiesOfRole(*static_cast<corvina20::VxCode*>(FindControl(name)), "Agente");
  OfferPartyAccounts(cdoCodContropartita, kSideCustomers);
}

void AnagraficaContatti::OnInizialize(bool& ok, std::string& key, std::string& display) {
  RunHandler(Location("crdAnagraficaContatti", "Inizialize"), [&] {
    ok = true;
    key = "IdAnagrafica";
    display = "IdAnagrafica";
    crdAnagraficaContatti.SetMainTable("STDAnagrafiche", "IdAnagrafica");
    crdAnagraficaContatti.AddSatellite(kSatellite);
    crdAnagraficaContatti.SetRecordCondition("Contatto = 1");
    crdAnagraficaContatti.SetNameField("RagioneSociale");
    // The party row outlives the contact role when another role holds it.
    crdAnagraficaContatti.SetDeletesOwnRows(false);
    bdyRiferimenti.BindTable("STDAnagRiferimenti", "IdRiferimento", "IdAnagrafica", "NrRiga");
    bdyProfilazione.BindTable("CRMValProfilazioneRighe", "IdRiga", "idAnagrafica");
    bdyAllegati.BindTable("STDAnagraficheAllegati", "IdAllegato", "IdAnagrafica", "NrRiga");
    for (corvina20::VxBody* grid : {&bdyRiferimenti, &bdyProfilazione, &bdyAllegati})
      crdAnagraficaContatti.LinkGrid(*grid);

    corvina20::PopupMenu& popup = crdAnagraficaContatti.Popup();
    popup.Clear();
    popup.Add(kPopupConverti, "Converti In Cliente");
    popup.Add(kPopupOutlook, "Sincronizza Contatto In Outlook");
    bdyAttivita.Popup().Clear();
    for (const char* item : {kApriCalendario, kApriAttivita, kCancellaAttivita, kNuovaAttivita})
      bdyAttivita.Popup().Add(item, item);

    corvina20::HostParameters params = App().Parameters();
    manualId_ = params.ReadFlagParameter("IdAnagraficaManuale");
    codContoClienti_ = TextOf(params.ReadParameter("CodContoClienti"));
    maskConto_ = TextOf(params.ReadParameter("MaskConto"));
    creaAutomPC_ = params.ReadFlagParameter("CreaAutomPC");

    numIdAnagrafica.SetLocked(!manualId_);
    txtPartitaIva.SetAcceptedCharacters("abcdefghilmnopqrstuvzwxjykABCDEFGHILMNOPQRSTUVZWXJYK0123456789");
    cdoCodContropartita.SetMask(maskConto_);
    bdyAllegati.SetEnabled(true);
  });
}

void AnagraficaContatti::Load() {
  RunHandler(Location("Form", "Load"), [this] {
    for (corvina20::VxBody* grid : {&bdyAnagraficheDoppie, &bdyAnagraficheDoppie2}) {
      grid->Popup().Clear();
      for (const char* item :
           {"Apri Anagrafica", "Acquisisci Dati da righe selezionate", "Cancella Anagrafiche selezionate"})
        grid->Popup().Add(item, item);
    }
    ImpostaCaptionAnagraficheDoppie(bdyAnagraficheDoppie, bdyAnagraficheDoppie2);
  });
}

std::int32_t AnagraficaContatti::CurrentId() const {
  const Variant& v = numIdAnagrafica.Value();
  return IsBlank(v) ? 0 : v.ToLong();
}

bool AnagraficaContatti::ShowDuplicates() {
  return MostraAnagraficheDoppie(CardValuesRecord(*this), CurrentId(), true, bdyAnagraficheDoppie,
                                 bdyAnagraficheDoppie2, lblAnagraficheDoppie);
}

void AnagraficaContatti::LoadActivities() {
  const std::int32_t id = CurrentId();
  if (id == 0) {
    bdyAttivita.Clear();
    return;
  }
  // Current and stored activities of the party (not of a lead with the same key).
  bdyAttivita.SetData(App().GetConnection()->OpenRecordset(
      "SELECT V.StartDateTime, V.EndDateTime, V.Subject, E.Descrizione AS Tipo, V.codOperatore, "
      "V.AttivitaSvolta, V.Storico, V.EventID, V.IdAnagrafica FROM CRMViewAttivitaTotali V "
      "LEFT JOIN CRMCalendarioEtichette E ON E.labelid = V.labelid "
      "WHERE V.IdAnagrafica = ? AND V.Leads = 0 ORDER BY V.StartDateTime DESC",
      {Variant(id)}, corvina20::LockType::ReadOnly));
}

void AnagraficaContatti::OnReposition() {
  RunHandler(Location("crdAnagraficaContatti", "Reposition"), [this] {
    crdAnagraficaContatti.Popup().SetEnabled(kPopupConverti, crdAnagraficaContatti.HasRecord() &&
                                                                  !FlagOf(ckbConvertitoInCliente.Value()));
    LoadActivities();
    if (crdAnagraficaContatti.HasRecord()) ShowDuplicates();
  });
}

void AnagraficaContatti::OnActionBefore(int operation, bool& cancel) {
  bool ok = RunHandler(kActionBefore, [&] {
    switch (operation) {
      case corvina20::kOpNew:
        replacedId_ = 0;
        // With linking on, a new contact may replace the party on screen.
        if (crdAnagraficaContatti.HasRecord() && App().Parameters().ReadFlagParameter("IdAnagraficaCollegata"))
          replacedId_ = FieldValue(crdAnagraficaContatti.GetRecordset(), Variant("IdAnagrafica")).ToLong();
        break;
      case corvina20::kOpDelete: CheckDelete(cancel); break;
      case corvina20::kOpSave: CheckSave(cancel); break;
      default: break;  // other codes pass with no check
    }
  });
  if (!ok) cancel = true;
}

void AnagraficaContatti::CheckSave(bool& cancel) {
  if (manualId_ && !CheckManualKey(crdAnagraficaContatti, kActionBefore)) {
    cancel = true;
    return;
  }
  crdAnagraficaContatti.CommitFields();
  std::string warnings;
  if (ShowDuplicates()) warnings += DuplicatesListText(bdyAnagraficheDoppie.Data());
  CheckReferenceRows(bdyRiferimenti, FlagOf(ckbInvioMail.Value()), warnings);
  if (!ConfirmCheckLists(kActionBefore, "", warnings)) cancel = true;
}

void AnagraficaContatti::CheckDelete(bool& cancel) {
  const std::int32_t id = CurrentId();
  const std::string usage = PartyUsage(id, kRoleContatto);
  if (!usage.empty()) {
    ShowMessage(kMsgInUso, corvina20::kStyleInformation, {usage});
    cancel = true;
    return;
  }
  const std::string linked = LinkedParty(id);
  if (!linked.empty()) {
    ShowMessage(kMsgCollegato, corvina20::kStyleInformation, {linked});
    cancel = true;
  }
}

void AnagraficaContatti::OnActionInside(int operation) {
  RunInsideTransaction(Location("crdAnagraficaContatti", "ActionInside"), [&] {
    RecordsetPtr record = crdAnagraficaContatti.GetRecordset();
    if (operation == corvina20::kOpSave) {
      if (replacedId_ != 0 && App().Parameters().ReadFlagParameter("IdAnagraficaCollegata") &&
          ShowMessage(kMsgSostituisce, corvina20::kStyleYesNo) == corvina20::kAnswerYes)
        record->Fields("IdAnagraficaSostituita") = Variant(replacedId_);
      if (crdAnagraficaContatti.Mode() == corvina20::kModeNew) {
        // Taken again at save time: the id shown at "new" may have gone to
        // another workstation meanwhile.
        if (!manualId_) {
          const std::int32_t id = NextFreeIdAnagrafica();
          record->Fields("IdAnagrafica") = Variant(id);
          numIdAnagrafica.SetValue(Variant(id));
        }
        record->Fields("Contatto") = Variant(true);
      }
    } else if (operation == corvina20::kOpDelete) {
      const std::int32_t id = FieldValue(record, Variant("IdAnagrafica")).ToLong();
      ClearPartyRole(id, "Contatto");
      corvina20::ConnectionPtr db = App().GetConnection();
      db->Execute("DELETE FROM STDAnagraficaContatti WHERE IdAnagrafica = ?", {Variant(id)});
      // The party is gone with its last role: its profiling goes with it.
      if (ClearPartyChildRows(id))
        db->Execute("DELETE FROM CRMValProfilazioneRighe WHERE idAnagrafica = ? AND Leads = 0", {Variant(id)});
    }
  });
}

void AnagraficaContatti::OnActionAfter(int operation) {
  RunHandler(Location("crdAnagraficaContatti", "ActionAfter"), [&] {
    if (operation == corvina20::kOpNew) {
      if (!manualId_) numIdAnagrafica.SetValue(Variant(NextFreeIdAnagrafica()));
      bdyAttivita.Clear();
    } else if (operation == corvina20::kOpSave) {
      numIdAnagrafica.SetValue(FieldValue(crdAnagraficaContatti.GetRecordset(), Variant("IdAnagrafica")));
    }
    if (operation == corvina20::kOpSave || operation == corvina20::kOpDelete) replacedId_ = 0;
  });
}

void AnagraficaContatti::OnBeginTrans() {
  RunInsideTransaction(Location("crdAnagraficaContatti", "BeginTrans"), [&] {
    const Variant key = crdAnagraficaContatti.GetRecordset()->Fields("IdAnagrafica").Value();
    // The profiling rows are the party's own (Leads 0), not a lead's.
    ForEachRow(bdyProfilazione, [&](const RecordsetPtr& rs, long) {
      rs->Fields("idAnagrafica") = key;
      rs->Fields("Leads") = Variant(false);
    });
    AssignReferenceIds(bdyRiferimenti.Data(), key.ToLong());
    for (corvina20::VxBody* grid : {&bdyRiferimenti, &bdyProfilazione, &bdyAllegati}) {
      grid->LoadLinkValue(key);
      grid->Save();
    }
  });
}

void AnagraficaContatti::OnPopupItem(const std::string& key) {
  RunHandler(Location("crdAnagraficaContatti", "PopupItemSelected"), [&] {
    if (key == kPopupConverti) ConvertiInCliente();
    else if (key == kPopupOutlook) SincronizzaOutlook();
  });
}

void AnagraficaContatti::ConvertiInCliente() {
  if (codContoClienti_.empty() && creaAutomPC_) {
    ShowMessage(kMsgParametriConto, corvina20::kStyleInformation,
                {maskConto_.empty() ? "il Conto Clienti e la Maschera Conto" : "il Conto Clienti"});
    return;
  }
  if (maskConto_.empty()) {
    ShowMessage(kMsgParametriConto, corvina20::kStyleInformation, {"la Maschera Conto"});
    return;
  }
  // Only a stored contact can be converted; a card being typed is saved first.
  if (!crdAnagraficaContatti.HasRecord() || crdAnagraficaContatti.Mode() != corvina20::kModeBrowse) return;
  const std::int32_t id = FieldValue(crdAnagraficaContatti.GetRecordset(), Variant("IdAnagrafica")).ToLong();
  corvina20::DataObject data(App().GetConnection());
  data.BeginTrans();
  // Job costing and quotations are in use: the host carries what they hold.
  App().ConvertContactToCustomer(id, true, true);
  data.CommitTrans();
  ShowMessage(kMsgConvertito, corvina20::kStyleInformation);
  crdAnagraficaContatti.Popup().SetEnabled(kPopupConverti, false);
  App().Notify("Refresh", {Variant(kForm)});
}

void AnagraficaContatti::SincronizzaOutlook() {
  corvina20::HostParameters params = App().Parameters();
  if (!params.ReadFlagParameter("OutlookAttivo")) {
    ShowLiteral(kOutlookNonAttivo);
  } else if (!params.ReadFlagParameter("OutlookInstallato")) {
    // The reference host has no mail client of its own to synchronise.
    ShowLiteral(kOutlookNonInstallato);
  } else if (ShowMessage(kMsgSincronizza, corvina20::kStyleOkCancel) == corvina20::kAnswerOk) {
    App().OpenItem("SincronizzaContattiOutlook", {Variant(CurrentId())});
  }
}

void AnagraficaContatti::OnActivitiesPopup(const std::string& key) {
  RunHandler(Location("bdyAttivita", "PopupItemSelected"), [&] {
    RecordsetPtr rs = bdyAttivita.Data();
    const bool row = HasRow(rs);
    const Variant day = row ? rs->Fields("StartDateTime").Value() : Variant(App().WorkingDate());
    if (key == kApriCalendario) {
      App().OpenItem("CalendarioCrm", {day});
    } else if (key == kApriAttivita) {
      if (row) App().OpenItem("CalendarioCrm", {day, rs->Fields("EventID").Value()});
      else ShowMessage(kMsgNessunaAttivita, corvina20::kStyleCritical);
    } else if (key == kNuovaAttivita) {
      App().OpenItem("CalendarioCrm", {Variant(App().WorkingDate()), Variant(), Variant(CurrentId())});
    } else if (key == kCancellaAttivita) {
      if (!row) {
        ShowMessage(kMsgNessunaAttivita, corvina20::kStyleCritical);
        return;
      }
      if (ShowMessage(kMsgEliminaAttivita, corvina20::kStyleYesNo + corvina20::kStyleQuestion,
                      {TextOf(rs->Fields("Subject").Value())}) != corvina20::kAnswerYes)
        return;
      // A stored activity lives in the history table, a current one in the calendar's.
      const bool stored = FlagOf(rs->Fields("Storico").Value());
      App().GetConnection()->Execute(
          std::string("DELETE FROM ") + (stored ? "CRMCalendarEventsSTO" : "CRMCalendarEvents") +
              " WHERE EventID = ?",
          {rs->Fields("EventID").Value()});
      LoadActivities();
    }
  });
}

void AnagraficaContatti::OnDuplicatesPopup(corvina20::VxBody& grid, const std::string& key) {
  RunHandler(Location(grid.Name(), "PopupItemSelected"), [&] {
    if (key == "Apri Anagrafica") {
      RecordsetPtr rs = grid.Data();
      if (!HasRow(rs)) return;
      App().OpenItem(CardOfDuplicateRow(rs), {rs->Fields("IdAnagrafica").Value()});
    } else if (key == "Acquisisci Dati da righe selezionate") {
      AcquisisciDatiAnagraficheDoppie(grid, CurrentId());
    } else if (key == "Cancella Anagrafiche selezionate") {
      CancellaAnagraficheDoppie(grid);
    }
  });
}

void AnagraficaContatti::ImpostaDefaultPerStampe(const std::string& nomeStampa) {
  RunHandler(Location("Form", "ImpostaDefaultPerStampe"), [&] {
    if (!SameName(nomeStampa, "RptEtichetteContatti") || !crdAnagraficaContatti.HasRecord()) return;
    App().SetPrintDefault("FORM_CHIAMANTE_STAMPA_ETICHETTE", {Variant(kForm), Variant(CurrentId())});
  });
}

}  // namespace vantor20
