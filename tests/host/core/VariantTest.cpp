// Variant conversions under Italian regional settings, and the errors of the
// conversions that cannot be made.
#include <gtest/gtest.h>

#include "corvina20/Error.h"
#include "corvina20/Variant.h"

using corvina20::Currency;
using corvina20::DateTime;
using corvina20::Decimal;
using corvina20::Error;
using corvina20::Variant;

namespace {

int ErrorOf(auto&& f) {
  try {
    f();
  } catch (const Error& e) {
    return e.Number();
  }
  return 0;
}

TEST(Variant, NumbersReadAndWriteWithTheDecimalComma) {
  EXPECT_DOUBLE_EQ(Variant("1.234,5").ToDouble(), 1234.5);
  EXPECT_DOUBLE_EQ(Variant(" -12,25 ").ToDouble(), -12.25);
  EXPECT_DOUBLE_EQ(Variant("1.000.000").ToDouble(), 1000000);
  EXPECT_EQ(Variant(1.5).ToString(), "1,5");
  EXPECT_EQ(Variant(Currency{125000}).ToString(), "12,5");
  EXPECT_EQ(Variant(Decimal{-5, 3}).ToString(), "-0,005");
  EXPECT_EQ(Variant(1e20).ToString(), "1E+20");
  // A point is never taken for a decimal separator: "1.5" is neither 1,5 nor 15.
  EXPECT_EQ(ErrorOf([] { Variant("1.5").ToDouble(); }), corvina20::kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([] { Variant("abc").ToLong(); }), corvina20::kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([] { Variant("").ToDouble(); }), corvina20::kErrTypeMismatch);
}

TEST(Variant, IntegerConversionsRoundHalfToEvenAndCheckRange) {
  EXPECT_EQ(Variant(2.5).ToInteger(), 2);
  EXPECT_EQ(Variant(3.5).ToInteger(), 4);
  EXPECT_EQ(Variant(-2.5).ToLong(), -2);
  EXPECT_EQ(Variant(Currency{25000}).ToLong(), 2);
  EXPECT_EQ(ErrorOf([] { Variant(40000).ToInteger(); }), corvina20::kErrOverflow);
  EXPECT_EQ(ErrorOf([] { Variant(std::int64_t{1} << 40).ToLong(); }), corvina20::kErrOverflow);
  EXPECT_EQ(Variant(true).ToLong(), -1);  // True is -1, as in the desktop hosts
}

TEST(Variant, EmptyAndNullBehaveDifferently) {
  EXPECT_EQ(Variant().ToLong(), 0);
  EXPECT_EQ(Variant().ToString(), "");
  EXPECT_FALSE(Variant().ToBool());
  EXPECT_EQ(ErrorOf([] { Variant::Null().ToString(); }), corvina20::kErrInvalidUseOfNull);
  EXPECT_EQ(ErrorOf([] { Variant::Null().ToLong(); }), corvina20::kErrInvalidUseOfNull);
  EXPECT_EQ(Variant::Null().Describe(), "Null");
}

TEST(Variant, BooleansReadItalianAndEnglishWords) {
  EXPECT_TRUE(Variant("Vero").ToBool());
  EXPECT_TRUE(Variant("TRUE").ToBool());
  EXPECT_FALSE(Variant("falso").ToBool());
  EXPECT_TRUE(Variant("-1").ToBool());
  EXPECT_EQ(Variant(true).ToString(), "Vero");
  EXPECT_EQ(Variant(false).ToString(), "Falso");
  EXPECT_EQ(ErrorOf([] { Variant("forse").ToBool(); }), corvina20::kErrTypeMismatch);
}

TEST(Variant, DatesReadDayMonthYearAndIso) {
  DateTime d = Variant("29/02/2024").ToDate();
  EXPECT_EQ(d.ToIso(), "2024-02-29");
  EXPECT_EQ(Variant(d).ToString(), "29/02/2024");
  EXPECT_EQ(Variant("2025-12-31 13:45:10").ToDate().ToIso(), "2025-12-31 13:45:10");
  EXPECT_EQ(Variant(DateTime::FromParts(2025, 1, 2, 8, 5, 0)).ToString(), "02/01/2025 08:05:00");
  EXPECT_EQ(ErrorOf([] { Variant("31/02/2025").ToDate(); }), corvina20::kErrTypeMismatch);
  // The serial date counts days from 30/12/1899, as the desktop hosts' does.
  EXPECT_DOUBLE_EQ(DateTime::FromParts(1900, 1, 1).serial, 2);
  DateTime parsed;
  EXPECT_FALSE(DateTime::FromIso("2025-13-01", parsed));
}

TEST(Variant, EqualityPromotesNumbersAndNeverMatchesNull) {
  EXPECT_TRUE(Variant(std::int16_t{5}).Equals(Variant(5.0)));
  EXPECT_TRUE(Variant(Currency{50000}).Equals(Variant(5)));
  EXPECT_TRUE(Variant().Equals(Variant("")));
  EXPECT_TRUE(Variant().Equals(Variant(0)));
  EXPECT_FALSE(Variant::Null().Equals(Variant::Null()));
  EXPECT_FALSE(Variant("abc").Equals(Variant("ABC")));
  EXPECT_FALSE(Variant("abc").Equals(Variant(1)));
  EXPECT_TRUE(Variant(Decimal{150, 2}).Equals(Variant(Decimal{15, 1})));
}

}  // namespace
