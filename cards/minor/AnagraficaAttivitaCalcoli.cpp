// The pro-rata and ceiling reads of the activity card; see the header and
// docs/activity-codes.md for the rules.
#include "cards/minor/AnagraficaAttivitaCalcoli.h"

#include <cmath>

#include "module/modDatabaseUtility.h"
#include "module/modErrorHandling.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

using corvina20::Currency;
using corvina20::DateTime;
using corvina20::JoinKind;
using corvina20::kCompareEqual;
using corvina20::kCompareGreaterOrEqual;
using corvina20::kCompareLess;
using corvina20::LockType;
using corvina20::QueryBuilder;

// VAT register kinds (COGPrimeNoteRIva.TipoRegIva, COGCausaliContabili.TipoRegIva).
constexpr std::int16_t kRegistroAcquisti = 1;
constexpr std::int16_t kRegistroVendite = 2;

// Natures of the VAT codes whose operations build the ceiling: exports,
// intra-EU supplies, supplies to San Marino and the Vatican, operations
// assimilated to exports. Sales made under a customer's declaration of
// intent (N3.5) and the other non-taxable ones (N3.6) do not.
constexpr const char* kNatureCheFormanoPlafond = "STDIva.Natura IN ('N3.1', 'N3.2', 'N3.3', 'N3.4')";
// Purchases without VAT under the company's own declarations of intent.
constexpr const char* kNaturaAcquistiConDichiarazione = "N3.5";

Currency AsCurrency(const Variant& v) {
  return v.IsNull() || v.IsEmpty() ? Currency{} : v.ToCurrency();
}

// SUM(SegnoIva*ImponibileVB) over the VAT lines of `codAttivita` registered
// in `anno` on register `registro`, not provisional, with a causal of the
// same register; the caller narrows the VAT codes further.
QueryBuilder VatLines(const std::string& codAttivita, int anno, std::int16_t registro) {
  QueryBuilder q(App().GetConnection());
  q.AddFields("SUM(SegnoIva*ImponibileVB) AS Importo");
  q.SetTable("COGPrimeNoteRIva");
  q.AddJoin(JoinKind::Inner, "COGPrimeNoteTeste", "COGPrimeNoteTeste.IdPrimaNota",
            "COGPrimeNoteRIva.IdPrimaNota");
  q.AddJoin(JoinKind::Inner, "STDIva", "STDIva.CodIva", "COGPrimeNoteRIva.CodIva");
  q.AddJoin(JoinKind::Inner, "COGCausaliContabili", "COGCausaliContabili.CodCausale",
            "COGPrimeNoteTeste.CodCausale");
  q.AddCondition("COGPrimeNoteTeste.DataRegistrazione", kCompareGreaterOrEqual,
                 Variant(DateTime::FromParts(anno, 1, 1)));
  q.AddCondition("COGPrimeNoteTeste.DataRegistrazione", kCompareLess,
                 Variant(DateTime::FromParts(anno + 1, 1, 1)));
  q.AddCondition("COGPrimeNoteTeste.CodAttivita", kCompareEqual, Variant(codAttivita));
  q.AddCondition("COGPrimeNoteTeste.Provvisoria", kCompareEqual, Variant(false));
  q.AddCondition("COGPrimeNoteRIva.TipoRegIva", kCompareEqual, Variant(registro));
  q.AddCondition("COGCausaliContabili.TipoRegIva", kCompareEqual, Variant(registro));
  return q;
}

Currency Sum(const QueryBuilder& q) {
  RecordsetPtr rs = q.Open(LockType::ReadOnly);
  if (IsRecordsetClosed(rs) || rs->IsEOF()) return {};
  return AsCurrency(FieldValue(rs, Variant("Importo")));
}

// The activity's row of the settlement (anno, periodo); at EOF when none.
RecordsetPtr ActivityRow(const std::string& codAttivita, int anno, std::int16_t periodo) {
  QueryBuilder q(App().GetConnection());
  q.AddFields("PercProrata, IvaDebito, IvaCredito");
  q.SetTable("COGIvaLiquidazioniAttivita");
  q.AddCondition("Anno", kCompareEqual, Variant(static_cast<std::int16_t>(anno)));
  q.AddCondition("periodo", kCompareEqual, Variant(periodo));
  q.AddCondition("CodAttivita", kCompareEqual, Variant(codAttivita));
  return q.Open(LockType::ReadOnly);
}

Variant Balance(const RecordsetPtr& row) {
  double debit = AsCurrency(FieldValue(row, Variant("IvaDebito"))).ToDouble();
  double credit = AsCurrency(FieldValue(row, Variant("IvaCredito"))).ToDouble();
  return Variant(Currency::FromDouble(debit - credit));
}

}  // namespace

YearProRata ReadYearProRata(const std::string& codAttivita, int anno) {
  try {
    YearProRata result;
    result.percProRata = Variant::Null();
    result.acconto = Variant::Null();
    result.liquidazioneAnnuale = Variant::Null();

    // Only settlements whose values are final: a provisional one may still
    // change, and its percentage with it.
    QueryBuilder q(App().GetConnection());
    q.AddFields("Periodo");
    q.SetTable("COGIvaLiquidazioni");
    q.AddCondition("Anno", kCompareEqual, Variant(static_cast<std::int16_t>(anno)));
    q.AddCondition("ValoriDefinitivi", kCompareEqual, Variant(true));
    q.AddOrderBy("Periodo DESC");
    RecordsetPtr settlements = q.Open(LockType::ReadOnly);
    if (IsRecordsetClosed(settlements)) return result;

    for (; !settlements->IsEOF(); settlements->MoveNext()) {
      auto periodo = static_cast<std::int16_t>(FieldValue(settlements, Variant("Periodo")).ToLong());
      RecordsetPtr row = ActivityRow(codAttivita, anno, periodo);
      if (row->IsEOF()) continue;
      if (periodo == kPeriodoAcconto) {
        // The advance is worked out on last year's figures: its percentage
        // is not this year's, its balance is shown as it is.
        result.acconto = Balance(row);
        continue;
      }
      if (periodo == kPeriodoLiquidazioneAnnuale) result.liquidazioneAnnuale = Balance(row);
      Variant perc = row->Fields("PercProrata").Value();
      if (!result.found && !perc.IsNull()) {
        result.found = true;
        result.periodo = periodo;
        result.percProRata = perc;
      }
    }
    return result;
  } catch (...) {
    RaiseError(-1, "YearProRata");
  }
}

Currency AnnualCeiling(const std::string& codAttivita, int anno) {
  try {
    // Over the year's own registrations (DataRegistrazione within `anno`).
    QueryBuilder q = VatLines(codAttivita, anno, kRegistroVendite);
    q.AddCondition("STDIva.VolumeAffari", kCompareEqual, Variant(true));
    q.AddConditionText(kNatureCheFormanoPlafond);
    return Sum(q);
  } catch (...) {
    RaiseError(-1, "AnnualCeiling");
  }
}

Currency CeilingUsed(const std::string& codAttivita, int anno) {
  try {
    // The business-volume flag concerns sales; purchases are picked by
    // nature alone.
    QueryBuilder q = VatLines(codAttivita, anno, kRegistroAcquisti);
    q.AddCondition("STDIva.Natura", kCompareEqual, Variant(kNaturaAcquistiConDichiarazione));
    return Sum(q);
  } catch (...) {
    RaiseError(-1, "CeilingUsed");
  }
}

Currency PercentOf(Currency amount, int percent) {
  // In cents: units are ten-thousandths.
  double cents = static_cast<double>(amount.units) * percent / 100.0 / 100.0;
  Currency result;
  result.units = static_cast<std::int64_t>(std::llround(cents)) * 100;
  return result;
}

}  // namespace vantor20
