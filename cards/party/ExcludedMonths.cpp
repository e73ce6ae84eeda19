// Excluded months of the party cards; see ExcludedMonths.h.
#include "cards/party/ExcludedMonths.h"

#include <string>

#include "module/CardValues.h"
#include "module/modMainModule.h"

namespace vantor20 {
namespace {

const char* const kMonths[] = {"Gennaio", "Febbraio", "Marzo",     "Aprile",  "Maggio",   "Giugno",
                               "Luglio",  "Agosto",   "Settembre", "Ottobre", "Novembre", "Dicembre"};

int DaysInMonth(int year, int month) {
  static const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : days[month - 1];
}

}  // namespace

void FillMonthList(corvina20::ChoiceField& month) {
  month.ClearEntries();
  for (int m = 1; m <= 12; ++m) month.AddEntry(kMonths[m - 1], Variant(static_cast<std::int16_t>(m)));
}

void ShowExcludedPeriods(const RecordsetPtr& row, corvina20::ChoiceField& month1,
                         corvina20::ChoiceField& month2, corvina20::NumberField& dueDay) {
  auto month = [&](const char* column) {
    if (!row || row->IsEOF() || row->IsBOF()) return Variant();
    const Variant& v = row->Fields(column).Value();
    return IsBlank(v) || v.ToLong() == 0 ? Variant() : Variant(static_cast<std::int16_t>(v.ToLong()));
  };
  month1.SetValue(month("MmDaEscl1"));
  month2.SetValue(month("MmDaEscl2"));
  dueDay.SetValue(month("GgScadenza"));
}

void WriteExcludedPeriods(const RecordsetPtr& row, const corvina20::ChoiceField& month1,
                          const corvina20::ChoiceField& month2, const corvina20::NumberField& dueDay) {
  int year = 0, m = 0, d = 0, hh = 0, mm = 0, ss = 0;
  App().WorkingDate().ToParts(year, m, d, hh, mm, ss);
  auto write = [&](const corvina20::ChoiceField& cbo, const char* suffix) {
    const std::string s = suffix;
    if (IsBlank(cbo.Value())) {
      for (const char* c : {"MmDaEscl", "GgDaEscl", "MmAEscl", "GgAEscl"}) row->Fields(c + s) = Variant::Null();
      return;
    }
    const auto month = static_cast<std::int16_t>(cbo.Value().ToLong());
    row->Fields("GgDaEscl" + s) = Variant(std::int16_t{1});
    row->Fields("MmDaEscl" + s) = Variant(month);
    row->Fields("MmAEscl" + s) = Variant(month);
    row->Fields("GgAEscl" + s) = Variant(static_cast<std::int16_t>(DaysInMonth(year, month)));
  };
  write(month1, "1");
  write(month2, "2");
  row->Fields("GgScadenza") = IsBlank(dueDay.Value()) ? Variant::Null()
                                                      : Variant(static_cast<std::int16_t>(dueDay.Value().ToLong()));
}

}  // namespace vantor20
