// The history-snapshot dialog; see SalvaStoricoAnagrafiche.h.
//
// Choices kept on purpose:
// - The check for a snapshot already on the date reads the party's rows of
//   both sides (customer and supplier), as the numbering does: one party
//   keeps one dated history, so a date taken on the supplier side is refused
//   on the customer card too, although the table would allow both.
// - A date taken is answered as confirmed, with the message: the card turns
//   the message into an error of the save, which does not go on.
// - Conferma with the date field emptied leaves the dialog open on the field:
//   there is no snapshot without a date, and the user may still cancel.
#include "cards/customer/SalvaStoricoAnagrafiche.h"

#include <limits>

#include "module/CardHandlers.h"
#include "module/modCardError.h"
#include "module/modDatabaseUtility.h"
#include "module/modErrorHandling.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

constexpr const char* kForm = "SalvaStoricoAnagrafiche";
constexpr std::int32_t kMsgDataGiaStoricizzata = 1410;

using corvina20::kCompareEqual;
using corvina20::LockType;
using corvina20::QueryBuilder;

bool HasDate(const Variant& v) { return v.Kind() == corvina20::VariantKind::Date; }

// True when party `idAnagrafica` has a snapshot dated `date`.
bool SnapshotOnDate(std::int32_t idAnagrafica, const corvina20::DateTime& date) {
  QueryBuilder query(App().GetConnection());
  query.AddFields("IdRiga");
  query.SetTable("STDAnagraficheStorico");
  query.AddCondition("IdAnagrafica", kCompareEqual, Variant(idAnagrafica));
  query.AddCondition("DataAnagrafica", kCompareEqual, Variant(date));
  RecordsetPtr rs = query.Open(LockType::ReadOnly);
  return !IsRecordsetClosed(rs) && !rs->IsEOF();
}

}  // namespace

std::int16_t NextSnapshotIdRiga(std::int32_t idAnagrafica) {
  try {
    QueryBuilder query(App().GetConnection());
    query.AddFields("max(IdRiga) as MaxIdRiga");
    query.SetTable("STDAnagraficheStorico");
    query.AddCondition("IdAnagrafica", kCompareEqual, Variant(idAnagrafica));
    RecordsetPtr rs = query.Open(LockType::ReadOnly);
    std::int64_t last = 0;
    if (!IsRecordsetClosed(rs) && !rs->IsEOF()) {
      Variant max = rs->Fields("MaxIdRiga").Value();
      if (!max.IsNull() && !max.IsEmpty()) last = max.ToBigInt();
    }
    if (last + 1 > std::numeric_limits<std::int16_t>::max())
      throw Error(corvina20::kErrOverflow, std::string(kAppName), "Overflow");
    return static_cast<std::int16_t>(last + 1);
  } catch (...) {
    RaiseError(-1, "NextSnapshotIdRiga");
  }
}

SalvaStoricoAnagrafiche::SalvaStoricoAnagrafiche()
    : Form(kForm),
      dteDataStoricizzazione(Add<corvina20::DateField>("dteDataStoricizzazione", "Data Storicizzazione")),
      cmdConferma(Add<corvina20::Button>("cmdConferma", "Conferma")),
      cmdAnnulla(Add<corvina20::Button>("cmdAnnulla", "Annulla")) {
  cmdConferma.Click = [this] { cmdConferma_Click(); };
  cmdAnnulla.Click = [this] { cmdAnnulla_Click(); };
}

void SalvaStoricoAnagrafiche::Init(std::int32_t idAnagrafica, const std::array<std::string, 9>& texts) {
  idAnagrafica_ = idAnagrafica;
  texts_ = texts;
}

void SalvaStoricoAnagrafiche::InitWithIdAnagrafica(std::int32_t idAnagrafica) { idAnagrafica_ = idAnagrafica; }

void SalvaStoricoAnagrafiche::Load() {
  RunHandler("SalvaStoricoAnagrafiche.Form_Load",
             [this] { dteDataStoricizzazione.SetValue(Variant(App().Parameters().WorkingDate())); });
}

void SalvaStoricoAnagrafiche::Close(const std::string& message, std::int16_t idRiga, bool confirmed) {
  const Variant& value = dteDataStoricizzazione.Value();
  corvina20::DateTime date = HasDate(value) ? value.ToDate() : corvina20::DateTime{};
  if (ChiusuraModale) ChiusuraModale(message, idRiga, confirmed, date);
  CloseModal();
}

void SalvaStoricoAnagrafiche::cmdAnnulla_Click() {
  RunHandler("SalvaStoricoAnagrafiche.cmdAnnulla_Click", [this] { Close("", 0, false); });
}

void SalvaStoricoAnagrafiche::cmdConferma_Click() {
  // An error (the database, the numbering's overflow) is shown and the
  // dialog stays open: the user may still cancel.
  RunHandler("SalvaStoricoAnagrafiche.cmdConferma_Click", [this] {
    const Variant& value = dteDataStoricizzazione.Value();
    if (!HasDate(value)) {
      dteDataStoricizzazione.SetFocus();
      return;
    }
    std::int16_t idRiga = NextSnapshotIdRiga(idAnagrafica_);
    std::string message;
    // The bare text: the card adds it to its error list with the line break.
    if (SnapshotOnDate(idAnagrafica_, value.ToDate())) message += FillMessage(kMsgDataGiaStoricizzata, {});
    Close(message, idRiga, true);
  });
}

}  // namespace vantor20
