// The fiscal-identity checks against codes whose check characters were worked
// out by hand from the odd/even tables (personal codes) and the doubling rule
// (VAT numbers), independently of the implementation.
#include <gtest/gtest.h>

#include <string>

#include "corvina20/FiscalChecks.h"

namespace corvina20 {
namespace {

const FiscalChecks checks;

TEST(FiscalChecks, PersonalCodeAcceptedInAnyCaseAndWithBlanksAround) {
  EXPECT_TRUE(checks.IsValidCodiceFiscale("RSSMRA85T10A562S"));
  EXPECT_TRUE(checks.IsValidCodiceFiscale("rssmra85t10a562s"));
  EXPECT_TRUE(checks.IsValidCodiceFiscale("RssMra85T10a562S"));
  EXPECT_TRUE(checks.IsValidCodiceFiscale("  RSSMRA85T10A562S \t"));
  // Women: day of birth plus 40, 41 to 71.
  EXPECT_TRUE(checks.IsValidCodiceFiscale("RSSMRA85T41A562U"));
  EXPECT_TRUE(checks.IsValidCodiceFiscale("RSSMRA85T71A562X"));
  EXPECT_TRUE(checks.IsValidCodiceFiscale("RSSMRA85T31A562T"));
}

TEST(FiscalChecks, PersonalCodeOmocodiaInEveryNumericPosition) {
  // Each of the seven numeric positions of RSSMRA85T10A562 replaced by its
  // letter (0..9 = L M N P Q R S T U V), check letter recomputed.
  for (const char* code : {"RSSMRAU5T10A562P", "RSSMRA8RT10A562E", "RSSMRA85TM0A562D",
                           "RSSMRA85T1LA562V", "RSSMRA85T10AR62N", "RSSMRA85T10A5S2E",
                           "RSSMRA85T10A56NH"})
    EXPECT_TRUE(checks.IsValidCodiceFiscale(code)) << code;
  EXPECT_TRUE(checks.IsValidCodiceFiscale("RSSMRAURTMLARSNL"));  // all seven
  EXPECT_TRUE(checks.IsValidCodiceFiscale("rssmraurtmlarsnl"));
  // A woman's day through omocodia: R M = 51.
  EXPECT_TRUE(checks.IsValidCodiceFiscale("RSSMRA85TRMA562Z"));
  // The letter replaced but the check letter of the plain code kept.
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85T10A56NS"));
  // Letters that are not omocodia letters, with a matching check letter.
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA8AT10A562N"));
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85T10A5A2M"));
}

TEST(FiscalChecks, PersonalCodeRejections) {
  // Wrong check letter.
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85T10A562A"));
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85T10A5629"));
  // Month letter F is not a month; check letter matches, so only the month fails.
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85F10A562R"));
  // Days 00, 32, 40 and 72, each with its own correct check letter.
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85T00A562R"));
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85T32A562Y"));
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85T40A562V"));
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85TQLA562K"));  // 40 by omocodia
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85T72A562C"));
  // A digit where a letter belongs: in the surname, in the town letter.
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMR185T10A562T"));
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85T10156ZL"));
  // Lengths and blanks.
  EXPECT_FALSE(checks.IsValidCodiceFiscale(""));
  EXPECT_FALSE(checks.IsValidCodiceFiscale("   "));
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85T10A562"));
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85T10A562SS"));
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85 T10A562S"));
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRA85T10A562S-"));
  EXPECT_FALSE(checks.IsValidCodiceFiscale(std::string("RSSMRA85T10A562S\0", 17)));
  // A non-ASCII letter counts as a wrong character, never as a letter.
  EXPECT_FALSE(checks.IsValidCodiceFiscale("RSSMRÀ85T10A562S"));
}

TEST(FiscalChecks, NumericFiscalCodeOfCompaniesFollowsTheVatRule) {
  EXPECT_TRUE(checks.IsValidCodiceFiscale("01234560017"));
  EXPECT_TRUE(checks.IsValidCodiceFiscale(" 98765430586 "));
  EXPECT_FALSE(checks.IsValidCodiceFiscale("01234560018"));  // check digit
  EXPECT_FALSE(checks.IsValidCodiceFiscale("01234567897"));  // office 789
  EXPECT_FALSE(checks.IsValidCodiceFiscale("00000000018"));  // no taxpayer number
  EXPECT_FALSE(checks.IsValidCodiceFiscale("0123456001"));   // ten digits
}

TEST(FiscalChecks, VatNumberCheckDigitAndTaxpayerNumber) {
  EXPECT_TRUE(checks.IsValidPartitaIva("01234560017"));
  EXPECT_TRUE(checks.IsValidPartitaIva("12345670017"));
  EXPECT_TRUE(checks.IsValidPartitaIva("00000010017"));
  EXPECT_TRUE(checks.IsValidPartitaIva("98765430586"));
  EXPECT_TRUE(checks.IsValidPartitaIva("  01234560017  "));
  // Every other last digit fails.
  for (char last = '0'; last <= '9'; ++last) {
    if (last == '7') continue;
    EXPECT_FALSE(checks.IsValidPartitaIva(std::string("0123456001") + last)) << last;
  }
  // Two neighbouring digits swapped: the doubling catches it.
  EXPECT_FALSE(checks.IsValidPartitaIva("10234560017"));
  // Taxpayer number all zero, with a correct check digit.
  EXPECT_FALSE(checks.IsValidPartitaIva("00000000018"));
  // Shape.
  EXPECT_FALSE(checks.IsValidPartitaIva(""));
  EXPECT_FALSE(checks.IsValidPartitaIva("0123456001"));
  EXPECT_FALSE(checks.IsValidPartitaIva("012345600170"));
  EXPECT_FALSE(checks.IsValidPartitaIva("IT01234560017"));
  EXPECT_FALSE(checks.IsValidPartitaIva("0123456 0017"));
  EXPECT_FALSE(checks.IsValidPartitaIva("O1234560017"));
  // A personal code is not a VAT number.
  EXPECT_FALSE(checks.IsValidPartitaIva("RSSMRA85T10A562S"));
}

TEST(FiscalChecks, VatNumberOfficeCode) {
  // Check digits correct in every case; only the office code (digits 8-10) decides.
  for (const char* valid : {"01234560017", "01234561007", "01234561205", "01234561213",
                            "01234568887", "01234569992"})
    EXPECT_TRUE(checks.IsValidPartitaIva(valid)) << valid;
  for (const char* invalid : {"01234560009", "01234561015", "01234561197", "01234561221",
                              "01234567897"})
    EXPECT_FALSE(checks.IsValidPartitaIva(invalid)) << invalid;
}

}  // namespace
}  // namespace corvina20
