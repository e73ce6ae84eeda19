// The agent card's rules on mandates and commission shares, on plain rows
// read from the two grids: mandate periods must follow one another without
// gaps or overlaps (only the last may be open-ended), and the shares of each
// mandate must add up to exactly 100 in four-decimal fixed point. The card
// reads its grids into these rows and calls the checks in its save checks;
// the running total beside the grids uses ShareTotal.
// Not for: reading the grids or showing the messages (AnagraficaAgenti).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "corvina20/Variant.h"

namespace vantor20 {

// Dictionary messages of the mandate checks (docs/messages.md).
inline constexpr std::int32_t kMsgMandatoSovrapposto = 1448;   // "%s": IdValidita
inline constexpr std::int32_t kMsgMandatoNonSeguito = 1449;    // "%s": IdValidita
inline constexpr std::int32_t kMsgMandatoAperto = 563;         // only the last may be open
inline constexpr std::int32_t kMsgTotaleQuote = 780;           // "%s": "Mandato"

// One mandate row: its id and its first and last day as whole day numbers
// (the serial date's integer part); no value for an empty date.
struct MandatePeriod {
  std::int32_t idValidita = 0;
  std::optional<std::int64_t> dal;
  std::optional<std::int64_t> al;  // empty: open-ended
};

// One commission share row: the mandate it belongs to and its share in
// ten-thousandths of a percent (the money column's fixed point).
struct MandateShare {
  std::int32_t idValidita = 0;
  std::int64_t units = 0;
};

// The whole day number of a grid's date cell: a date, or a text as the grid
// receives it ("yyyy-mm-dd" or "dd/mm/yyyy"); no value when blank.
// Raises error 13 for a text that is no date.
std::optional<std::int64_t> DayOf(const corvina20::Variant& value);

// Adds to `errors`, rows in their stored order, each row compared with every
// row of a different IdValidita:
// - 1448 (row's IdValidita) when its Dal lies inside the other row's period,
//   and again when its Al does. Inside is inclusive at both ends: a Dal equal
//   to the other's Al shares that day, so it overlaps. A period without Dal
//   starts with no limit, one without Al never ends; an empty Dal or Al of
//   the row itself is not tested;
// - for every row but the last: 563 once per compared row when its Al is
//   empty; otherwise the row is followed when some compared row's Dal is its
//   Al plus one day, and a row not followed adds 1449 (its IdValidita). An
//   open-ended row is told by 563 only.
// Nothing is added for fewer than two rows.
void CheckMandatePeriods(const std::vector<MandatePeriod>& mandates, std::string& errors);

// Adds 780 ("Mandato") for each mandate whose shares do not add up to
// exactly 100.0000. The rows are taken grouped by mandate in the order each
// mandate first appears (the rows of one mandate stay together however they
// were typed); a mandate without rows is not examined, and the last group is
// examined only when its IdValidita is not 0 (shares typed with no mandate).
void CheckShareTotals(const std::vector<MandateShare>& shares, std::string& errors);

// The sum of the shares of mandate `idValidita`, in ten-thousandths.
std::int64_t ShareTotal(const std::vector<MandateShare>& shares, std::int32_t idValidita);

// The shares grouped by mandate as CheckShareTotals takes them: the order in
// which the card writes them back.
std::vector<std::size_t> GroupedShareOrder(const std::vector<MandateShare>& shares);

}  // namespace vantor20
