// The yearly VAT figures of an activity code that the activity card computes
// on request: the pro-rata percentage read from the year's VAT settlements,
// and the export ceiling ("plafond") of a habitual exporter taken from the
// journal's VAT lines. docs/activity-codes.md states the rules and why.
// These are reads only: the card puts the results in its grid, and they are
// stored with the card. Not for: the settlements themselves.
#pragma once

#include <cstdint>
#include <string>

#include "module/Host.h"

namespace vantor20 {

// Settlement periods beyond the ordinary ones (1..12 monthly, 1..4
// quarterly): the December advance payment and the annual settlement made
// with the VAT return, where the definitive pro-rata is fixed.
inline constexpr std::int16_t kPeriodoAcconto = 13;
inline constexpr std::int16_t kPeriodoLiquidazioneAnnuale = 14;

// The warning thresholds a recomputed ceiling gives to those left empty, as
// percentages of the annual ceiling.
inline constexpr int kPrimoAvvisoPerc = 10;
inline constexpr int kSecondoAvvisoPerc = 5;

struct YearProRata {
  bool found = false;        // false: no definitive settlement gives a percentage
  std::int16_t periodo = 0;  // the settlement the percentage comes from
  Variant percProRata;       // PercProrata as stored
  // The activity's VAT balance (IvaDebito - IvaCredito) in the definitive
  // advance and annual settlements; Null when that settlement is missing or
  // not definitive.
  Variant acconto;
  Variant liquidazioneAnnuale;
};

// The pro-rata of `codAttivita` for `anno`: among the year's settlements with
// ValoriDefinitivi set, the latest period (the annual settlement before any
// ordinary one) whose activity row holds a PercProrata. The advance
// settlement never gives it. Not found: `found` false, the rest Null.
// Raises (procedure "YearProRata") the database's error.
YearProRata ReadYearProRata(const std::string& codAttivita, int anno);

// The annual ceiling of `anno`: the taxable amounts, signed by SegnoIva, of
// the sales-register VAT lines registered in `anno` (their
// COGPrimeNoteTeste.DataRegistrazione within the year) for the activity, with VAT codes that count in the business volume
// and whose nature is an export or an operation assimilated to one (N3.1 to
// N3.4). Provisional registrations and registrations whose causal is not of
// the sales register do not count. 0 when nothing matches.
// Raises (procedure "AnnualCeiling") the database's error.
corvina20::Currency AnnualCeiling(const std::string& codAttivita, int anno);

// The ceiling used in `anno`: the taxable amounts, signed, of the
// purchase-register VAT lines registered in `anno` for the activity with VAT
// codes of nature N3.5 (bought without VAT under a declaration of intent).
// Provisional registrations and causals of other registers do not count.
// Raises (procedure "CeilingUsed") the database's error.
corvina20::Currency CeilingUsed(const std::string& codAttivita, int anno);

// `percent` per cent of `amount`, rounded to the cent (half away from zero).
corvina20::Currency PercentOf(corvina20::Currency amount, int percent);

}  // namespace vantor20
