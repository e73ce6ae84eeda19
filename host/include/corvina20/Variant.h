// The value that flows between the database, the controls and the module's
// code. It mirrors the variant of the desktop hosts the module was written for:
// the same kinds, and conversions that follow the host's regional settings
// (Italian: decimal comma, dd/mm/yyyy, "Vero"/"Falso"). A conversion that cannot
// be made raises corvina20::Error 13 ("Tipo non corrispondente"); it never
// guesses. This header is not the place for database or control logic.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace corvina20 {

enum class VariantKind : std::uint8_t {
  Empty,     // never assigned
  Null,      // database null
  Boolean,
  Integer,   // 16-bit
  Long,      // 32-bit
  BigInt,    // 64-bit
  Single,
  Double,
  Currency,  // fixed point, 4 decimals
  Decimal,   // fixed point, up to 18 significant digits, scale 0..18
  Date,      // date and time
  String,    // UTF-8
};

// Fixed-point amount with four decimals, as money columns hold it.
struct Currency {
  std::int64_t units = 0;  // value * 10000
  static Currency FromDouble(double value);
  double ToDouble() const { return static_cast<double>(units) / 10000.0; }
  friend bool operator==(Currency, Currency) = default;
};

// Exact decimal: value = mantissa / 10^scale.
struct Decimal {
  std::int64_t mantissa = 0;
  std::uint8_t scale = 0;
  static Decimal FromDouble(double value, int scale = 6);
  double ToDouble() const;
  bool operator==(const Decimal& other) const;  // compares values, not scales
};

// Date and time as days since 30/12/1899 (the desktop hosts' serial date),
// the fraction being the time of day.
struct DateTime {
  double serial = 0;
  static DateTime FromParts(int year, int month, int day, int hour = 0, int minute = 0,
                            int second = 0);
  void ToParts(int& year, int& month, int& day, int& hour, int& minute, int& second) const;
  // "yyyy-mm-dd" or "yyyy-mm-dd hh:mm:ss" when there is a time: the form the
  // database stores.
  std::string ToIso() const;
  // Reads "yyyy-mm-dd[ hh:mm[:ss[.fff]]]" (also with a 'T'). Returns false when
  // the text is not such a date.
  static bool FromIso(std::string_view text, DateTime& out);
  friend bool operator==(DateTime, DateTime) = default;
};

class Variant {
 public:
  Variant() = default;  // Empty
  static Variant Null();
  Variant(bool value);
  Variant(std::int16_t value);
  Variant(std::int32_t value);
  Variant(std::int64_t value);
  Variant(float value);
  Variant(double value);
  Variant(Currency value);
  Variant(Decimal value);
  Variant(DateTime value);
  Variant(std::string value);
  Variant(std::string_view value);
  Variant(const char* value);

  VariantKind Kind() const { return kind_; }
  bool IsEmpty() const { return kind_ == VariantKind::Empty; }
  bool IsNull() const { return kind_ == VariantKind::Null; }
  bool IsNumeric() const;  // any integer, floating, currency or decimal kind

  // VB-like conversions (CBool, CInt, CLng, CDbl, CCur, CDate, CStr).
  // Empty converts to False / 0 / "" ; Null raises error 94 ("Uso non valido di Null").
  // A text converts to a number when it reads as one under Italian settings
  // ("1.234,5" or "1234,5"); "Vero"/"True" and "Falso"/"False" convert to booleans.
  // Integer conversions round half to even, as the desktop hosts do, and raise
  // error 6 ("Overflow") when out of range.
  bool ToBool() const;
  std::int16_t ToInteger() const;
  std::int32_t ToLong() const;
  std::int64_t ToBigInt() const;
  double ToDouble() const;
  Currency ToCurrency() const;
  DateTime ToDate() const;
  // Empty gives "", Null raises 94. Booleans read "Vero"/"Falso", numbers use
  // the decimal comma without grouping, dates "dd/mm/yyyy" (with " hh:mm:ss"
  // when there is a time).
  std::string ToString() const;

  // Value access without conversion. REQUIRES: the matching kind.
  const std::string& StringRef() const;

  // Equality as the module's comparisons mean it: kinds compared by value
  // after numeric promotion; Empty equals "" and 0; Null equals nothing (not
  // even Null). Strings compare exactly (case-sensitive).
  bool Equals(const Variant& other) const;

  // Text for logs and JSON, never failing: "Null", "Empty" or ToString().
  std::string Describe() const;

 private:
  VariantKind kind_ = VariantKind::Empty;
  std::variant<std::monostate, bool, std::int64_t, double, Currency, Decimal, DateTime,
               std::string>
      value_;
};

const char* KindName(VariantKind kind);

}  // namespace corvina20
