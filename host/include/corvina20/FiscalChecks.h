// The Italian fiscal-identity checks the cards ask the host for: the personal
// fiscal code (16 characters, with check character and omocodia), the numeric
// fiscal code of companies (11 digits) and the VAT number (11 digits with its
// check digit). Only yes/no answers; the module computes no check digit itself.
#pragma once

#include <string_view>

namespace corvina20 {

class FiscalChecks {
 public:
  // True for a valid 16-character personal code (letters in any case; the
  // omocodia letters L M N P Q R S T U V allowed in the numeric positions),
  // or a valid 11-digit code of a company (same rule as the VAT number).
  // Blanks around the code are ignored; an empty text is false.
  bool IsValidCodiceFiscale(std::string_view code) const;
  // True for 11 digits whose last is the check digit of the first ten, with
  // a nonzero taxpayer number and a valid VAT office code (001-100, 120, 121,
  // 888, 999). Blanks around are ignored; anything else is false.
  bool IsValidPartitaIva(std::string_view number) const;
};

}  // namespace corvina20
