// The carrier card's handlers, in the order the card raises them.
#include "cards/minor/AnagraficaVettori.h"

#include "module/CardHandlers.h"
#include "module/ModuloVantor.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

using corvina20::ControlKind;

// The after-action handler traces with the customer card's location string,
// for every operation code, as it always has: logs and support scripts look
// for it. Deliberate; keep it.
constexpr const char* kAfterActionLocation = "AnagraficaClienti.crdAnagraficaClienti_ActionAfter";

bool IsBlank(const Variant& v) {
  return v.IsEmpty() || v.IsNull() ||
         (v.Kind() == corvina20::VariantKind::String && v.StringRef().empty());
}

// The party that holds `value` in `field` and is not a carrier yet; 0 when none.
std::int32_t ExistingNonCarrier(const char* field, const Variant& value) {
  corvina20::QueryBuilder q(App().GetConnection());
  q.AddFields("IdAnagrafica");
  q.SetTable("STDAnagrafiche");
  q.AddCondition(field, corvina20::kCompareEqual, value);
  q.AddConditionText("Vettore = NULL or Vettore = 0");
  q.AddOrderBy("IdAnagrafica");
  RecordsetPtr rs = q.Open();
  if (rs->IsEOF()) return 0;
  return FieldValue(rs, Variant("IdAnagrafica")).ToLong();
}

}  // namespace

AnagraficaVettori::AnagraficaVettori()
    : MinorPartyCard("AnagraficaVettori", "STDAnagrafiche", "IdAnagrafica"),
      frmVettore(Add<corvina20::Frame>("frmVettore", "Dati Vettore")),
      txtNumeroIscrizioneAlbo(Add<corvina20::TextField>("txtNumeroIscrizioneAlbo", "N. Iscrizione Albo")),
      currSpeseTrasporto(Add<corvina20::NumberField>("currSpeseTrasporto", ControlKind::Amount, "Spese di Trasporto")) {
  dteFineValidita.Bind("STDAnagrafiche.FineValiditaVettore");
  txtNumeroIscrizioneAlbo.Bind("STDAnagrafiche.NumeroIscrizioneAlbo").Place("frmVettore");
  txtNumeroIscrizioneAlbo.SetMaxLength(30);
  currSpeseTrasporto.Bind("STDAnagrafiche.SpeseTrasporto").Place("frmVettore");
  currSpeseTrasporto.SetDecimals(2);
  crd.SetRecordCondition("Vettore = 1");
  // The party row outlives the carrier role when another role holds it:
  // ClearPartyRole decides, not the card.
  crd.SetDeletesOwnRows(false);

  crd.Inizialize = [this](bool& ok, std::string& key, std::string& display) {
    OnInizialize(ok, key, display);
  };
  crd.ActionBefore = [this](int op, bool& cancel) { OnActionBefore(op, cancel); };
  crd.ActionInside = [this](int op) { OnActionInside(op); };
  crd.ActionAfter = [this](int op) { OnActionAfter(op); };

  cdoCodiceFiscale.Change = [this] {
    RunHandler("AnagraficaVettori.cdoCodiceFiscale_Change", [this] {
      if (crd.Mode() != corvina20::kModeNew || takenOver_ || IsBlank(cdoCodiceFiscale.Value())) return;
      std::int32_t found = ExistingNonCarrier("CodiceFiscale", cdoCodiceFiscale.Value());
      if (found != 0) OfferTakeOver("CodiceFiscale", cdoCodiceFiscale.Value(), found, 130);
    });
  };
  txtPartitaIva.Change = [this] {
    RunHandler("AnagraficaVettori.txtPartitaIva_Change", [this] {
      if (crd.Mode() != corvina20::kModeNew || takenOver_ || IsBlank(txtPartitaIva.Value())) return;
      std::int32_t found = ExistingNonCarrier("PartitaIva", txtPartitaIva.Value());
      if (found != 0) OfferTakeOver("PartitaIva", txtPartitaIva.Value(), found, 137);
    });
  };
}

void AnagraficaVettori::OnInizialize(bool& ok, std::string& key, std::string& display) {
  RunHandler(Location("Inizialize"), [&] {
    ok = true;
    key = "IdAnagrafica";
    display = "IdAnagrafica";
    ReadManualId();
    Variant currency = App().Parameters().ReadParameter("CodDivisaBase");
    currSpeseTrasporto.SetCurrency(currency.IsNull() ? "" : currency.ToString());
  });
}

void AnagraficaVettori::OfferTakeOver(const char* field, const Variant& value, std::int32_t found,
                                      std::int32_t question) {
  (void)value;
  // 135 / 142 tell that the code is already known; 130 / 137 ask to take over.
  ShowMessage(std::string(field) == "CodiceFiscale" ? 135 : 142, corvina20::kStyleInformation);
  if (ShowMessage(question, corvina20::kStyleYesNo + corvina20::kStyleQuestion) !=
      corvina20::kAnswerYes)
    return;
  // Typed values of the other fields give way to the existing party's data.
  if (crd.Adopt(Variant(found))) takenOver_ = true;
}

void AnagraficaVettori::OnActionBefore(int operation, bool& cancel) {
  bool ok = RunHandler(Location("ActionBefore"), [&] {
    switch (operation) {
      case corvina20::kOpNew:
        takenOver_ = false;
        replacedId_ = 0;
        // With linking on, a new carrier may replace the party on screen.
        if (crd.HasRecord() && App().Parameters().ReadFlagParameter("IdAnagraficaCollegata"))
          replacedId_ = FieldValue(crd.GetRecordset(), Variant("IdAnagrafica")).ToLong();
        break;
      case corvina20::kOpSave:
        CheckIdentityBeforeSave(cancel);
        break;
      case corvina20::kOpDelete: {
        std::int32_t id = FieldValue(crd.GetRecordset(), Variant("IdAnagrafica")).ToLong();
        std::string usage = CarrierUsage(id);
        if (usage.empty()) {
          ClearPartyRole(id, "Vettore");
        } else {
          ShowMessage(147, corvina20::kStyleInformation, {usage});
          cancel = true;
        }
        break;
      }
      default:
        break;  // other codes pass without checks
    }
  });
  if (!ok) cancel = true;
}

void AnagraficaVettori::OnActionInside(int operation) {
  RunInsideTransaction(Location("ActionInside"), [&] {
    RecordsetPtr record = crd.GetRecordset();
    if (operation == corvina20::kOpSave) {
      // Allocated again at save time: the id shown at "new" may have been
      // taken meanwhile by another workstation.
      if (crd.Mode() == corvina20::kModeNew && !manualId_ && !takenOver_) {
        std::int32_t id = NextFreeIdAnagrafica();
        record->Fields("IdAnagrafica") = Variant(id);
        numIdAnagrafica.SetValue(Variant(id));
      }
      record->Fields("Vettore") = Variant(true);
      if (replacedId_ != 0 && App().Parameters().ReadFlagParameter("IdAnagraficaCollegata") &&
          ShowMessage(895, corvina20::kStyleYesNo) == corvina20::kAnswerYes)
        record->Fields("IdAnagraficaSostituita") = Variant(replacedId_);
    } else if (operation == corvina20::kOpDelete) {
      ClearPartyRole(FieldValue(record, Variant("IdAnagrafica")).ToLong(), "Vettore");
    }
  });
}

void AnagraficaVettori::OnActionAfter(int operation) {
  RunHandler(kAfterActionLocation, [&] {
    if (operation == corvina20::kOpNew) {
      numIdAnagrafica.SetValue(Variant(NextFreeIdAnagrafica()));
    } else if (operation == corvina20::kOpSave) {
      numIdAnagrafica.SetValue(FieldValue(crd.GetRecordset(), Variant("IdAnagrafica")));
      takenOver_ = false;
      replacedId_ = 0;
    }
  });
}

}  // namespace vantor20
