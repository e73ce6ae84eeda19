// The excluded months of a party's due dates (frmMesiEsclusi): two months in
// which no payment falls due, kept as two periods day/month to day/month,
// and the fixed due day. The customer card keeps them in its customer row,
// the supplier card in the party row; the columns are named alike
// (GgDaEscl1, MmDaEscl1, GgAEscl1, MmAEscl1, the same with 2, GgScadenza).
#pragma once

#include "module/Host.h"

namespace vantor20 {

// Fills a month list: "Gennaio" … "Dicembre" with the values 1 … 12.
void FillMonthList(corvina20::ChoiceField& month);

// Shows the stored months (MmDaEscl1, MmDaEscl2) and GgScadenza of `row` in
// the two lists and the day field; a blank or 0 shows blank, as does no row.
void ShowExcludedPeriods(const RecordsetPtr& row, corvina20::ChoiceField& month1,
                         corvina20::ChoiceField& month2, corvina20::NumberField& dueDay);

// Writes the periods into `row`: a chosen month m gives day 1 of m to the
// last day of m (in the session's working year, so February has 28 or 29);
// no month empties the four columns. GgScadenza from `dueDay`.
// REQUIRES: row positioned on the record being saved.
void WriteExcludedPeriods(const RecordsetPtr& row, const corvina20::ChoiceField& month1,
                          const corvina20::ChoiceField& month2, const corvina20::NumberField& dueDay);

}  // namespace vantor20
