// The agent card's rules on mandates and commission shares.
#include "cards/agent/MandateChecks.h"

#include <cmath>

#include "module/CardValues.h"
#include "module/modCardError.h"

namespace vantor20 {
namespace {

constexpr std::int64_t kHundredPercent = 100 * 10000;

// Whether `day` lies in the period of `other`, both ends included.
bool Inside(std::int64_t day, const MandatePeriod& other) {
  if (other.dal && day < *other.dal) return false;
  if (other.al && day > *other.al) return false;
  return true;
}

}  // namespace

std::optional<std::int64_t> DayOf(const corvina20::Variant& value) {
  if (IsBlank(value)) return std::nullopt;
  corvina20::DateTime date;
  if (value.Kind() == corvina20::VariantKind::String && corvina20::DateTime::FromIso(value.StringRef(), date))
    return static_cast<std::int64_t>(std::floor(date.serial));
  return static_cast<std::int64_t>(std::floor(value.ToDate().serial));
}

void CheckMandatePeriods(const std::vector<MandatePeriod>& mandates, std::string& errors) {
  for (std::size_t i = 0; i < mandates.size(); ++i) {
    const MandatePeriod& row = mandates[i];
    const std::string id = std::to_string(row.idValidita);
    const bool last = i + 1 == mandates.size();
    bool followed = false;
    for (std::size_t j = 0; j < mandates.size(); ++j) {
      const MandatePeriod& other = mandates[j];
      if (j == i || other.idValidita == row.idValidita) continue;
      if (row.dal && Inside(*row.dal, other)) AddCardMessage(kMsgMandatoSovrapposto, errors, {id});
      if (row.al && Inside(*row.al, other)) AddCardMessage(kMsgMandatoSovrapposto, errors, {id});
      if (last) continue;
      // Once per compared row, as the check has always counted it.
      if (!row.al) AddCardMessage(kMsgMandatoAperto, errors);
      else if (other.dal && *other.dal == *row.al + 1) followed = true;
    }
    if (!last && row.al && !followed) AddCardMessage(kMsgMandatoNonSeguito, errors, {id});
  }
}

std::vector<std::size_t> GroupedShareOrder(const std::vector<MandateShare>& shares) {
  std::vector<std::size_t> order;
  std::vector<bool> taken(shares.size(), false);
  for (std::size_t i = 0; i < shares.size(); ++i) {
    if (taken[i]) continue;
    for (std::size_t j = i; j < shares.size(); ++j)
      if (!taken[j] && shares[j].idValidita == shares[i].idValidita) {
        taken[j] = true;
        order.push_back(j);
      }
  }
  return order;
}

void CheckShareTotals(const std::vector<MandateShare>& shares, std::string& errors) {
  const std::vector<std::size_t> order = GroupedShareOrder(shares);
  std::size_t k = 0;
  while (k < order.size()) {
    const std::int32_t id = shares[order[k]].idValidita;
    std::int64_t sum = 0;
    for (; k < order.size() && shares[order[k]].idValidita == id; ++k) sum += shares[order[k]].units;
    const bool lastGroup = k == order.size();
    if (lastGroup && id == 0) break;  // shares typed with no mandate to belong to
    if (sum != kHundredPercent) AddCardMessage(kMsgTotaleQuote, errors, {"Mandato"});
  }
}

std::int64_t ShareTotal(const std::vector<MandateShare>& shares, std::int32_t idValidita) {
  std::int64_t sum = 0;
  for (const MandateShare& s : shares)
    if (s.idValidita == idValidita) sum += s.units;
  return sum;
}

}  // namespace vantor20
