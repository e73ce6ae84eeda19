// The Italian fiscal-identity checks: the 16-character personal code with its
// check letter and omocodia, the 11-digit numeric code of companies and the
// VAT number. Pure functions of the text; nothing here looks anything up
// (a town code is only checked for its shape, not against the register).
#include "corvina20/FiscalChecks.h"

#include <array>
#include <cassert>

#include "core/Text.h"

namespace corvina20 {
namespace {

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsUpperLetter(char c) { return c >= 'A' && c <= 'Z'; }

// The letters that stand for 0..9 in a numeric position of a personal code
// whose plain form clashed with another person's (omocodia).
constexpr std::string_view kOmocodiaLetters = "LMNPQRSTUV";
// Month of birth, January to December.
constexpr std::string_view kMonthLetters = "ABCDEHLMPRST";
// Offsets of the seven numeric positions: year, day, town number.
constexpr std::array<std::size_t, 7> kNumericPositions = {6, 7, 9, 10, 12, 13, 14};

// The value of a numeric position, undoing omocodia; -1 when the character
// is neither a digit nor an omocodia letter.
int NumericValue(char c) {
  if (IsDigit(c)) return c - '0';
  const auto at = kOmocodiaLetters.find(c);
  return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

// Values of the characters in odd positions (1st, 3rd, ... counting from one)
// for the check letter; a digit counts as the letter at the same index
// (0 as A, 1 as B, ...). Fixed by the fiscal code's decree.
constexpr std::array<int, 26> kOddValues = {1,  0,  5,  7,  9,  13, 15, 17, 19, 21, 2,  4,  18,
                                            20, 11, 3,  6,  8,  12, 14, 16, 10, 22, 25, 24, 23};

char PersonalCheckLetter(std::string_view code) {
  assert(code.size() >= 15);
  int sum = 0;
  for (std::size_t i = 0; i < 15; ++i) {
    const char c = code[i];
    const int index = IsDigit(c) ? c - '0' : c - 'A';
    assert(index >= 0 && index < 26);
    // i is zero-based, so even i is an odd position of the code.
    sum += (i % 2 == 0) ? kOddValues[static_cast<std::size_t>(index)] : index;
  }
  return static_cast<char>('A' + sum % 26);
}

// REQUIRES: code is 16 characters, upper case.
bool IsValidPersonalCode(std::string_view code) {
  assert(code.size() == 16);
  for (std::size_t i : {0u, 1u, 2u, 3u, 4u, 5u, 11u, 15u})
    if (!IsUpperLetter(code[i])) return false;
  for (std::size_t i : kNumericPositions)
    if (NumericValue(code[i]) < 0) return false;
  if (kMonthLetters.find(code[8]) == std::string_view::npos) return false;
  // Women's codes add 40 to the day of birth.
  const int day = NumericValue(code[9]) * 10 + NumericValue(code[10]);
  if (!((day >= 1 && day <= 31) || (day >= 41 && day <= 71))) return false;
  return PersonalCheckLetter(code) == code[15];
}

// Check digit of the first ten digits of an 11-digit number (VAT number and
// numeric fiscal code): odd positions as they are, even positions doubled
// with 9 taken off a two-digit result.
// REQUIRES: number holds at least ten digits.
int NumericCheckDigit(std::string_view number) {
  int sum = 0;
  for (std::size_t i = 0; i < 10; ++i) {
    int d = number[i] - '0';
    if (i % 2 == 1) {
      d *= 2;
      if (d > 9) d -= 9;
    }
    sum += d;
  }
  return (10 - sum % 10) % 10;
}

bool IsValidOfficeCode(int office) {
  return (office >= 1 && office <= 100) || office == 120 || office == 121 || office == 888 ||
         office == 999;
}

// REQUIRES: number is already trimmed.
bool IsValidElevenDigits(std::string_view number) {
  if (number.size() != 11) return false;
  for (char c : number)
    if (!IsDigit(c)) return false;
  if (number.substr(0, 7) == "0000000") return false;
  const int office = (number[7] - '0') * 100 + (number[8] - '0') * 10 + (number[9] - '0');
  if (!IsValidOfficeCode(office)) return false;
  return NumericCheckDigit(number) == number[10] - '0';
}

}  // namespace

bool FiscalChecks::IsValidCodiceFiscale(std::string_view code) const {
  const std::string_view trimmed = text::Trim(code);
  if (trimmed.size() == 11) return IsValidElevenDigits(trimmed);
  if (trimmed.size() != 16) return false;
  return IsValidPersonalCode(text::Upper(trimmed));
}

bool FiscalChecks::IsValidPartitaIva(std::string_view number) const {
  return IsValidElevenDigits(text::Trim(number));
}

}  // namespace corvina20
