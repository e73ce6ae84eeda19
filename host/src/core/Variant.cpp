// Variant storage and its VB-like conversions under Italian regional settings.
// Failing conversions raise Error 13 (type mismatch), 6 (overflow) or 94
// (invalid use of Null), the numbers the module's error traces expect.
#include "corvina20/Variant.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstdio>
#include <limits>

#include "core/Text.h"
#include "corvina20/Error.h"

namespace corvina20 {
namespace {

[[noreturn]] void TypeMismatch(std::string_view what) {
  throw Error(kErrTypeMismatch, "Corvina20", "Tipo non corrispondente: " + std::string(what));
}
[[noreturn]] void Overflow() { throw Error(kErrOverflow, "Corvina20", "Overflow"); }
[[noreturn]] void NullUse() {
  throw Error(kErrInvalidUseOfNull, "Corvina20", "Uso non valido di Null");
}

std::int64_t Pow10(int n) {
  std::int64_t p = 1;
  while (n-- > 0) p *= 10;
  return p;
}

// Parses a number written under Italian settings: optional sign, digits with
// '.' as thousands separator (groups of exactly three digits), ',' as the
// decimal separator. Returns false for anything else: "1.5" is refused
// rather than read as 15 or 1.5.
bool ParseItalianNumber(std::string_view raw, double& out) {
  std::string_view s = text::Trim(raw);
  if (s.empty()) return false;
  std::string normal;
  std::size_t i = 0;
  if (s[0] == '-' || s[0] == '+') {
    if (s[0] == '-') normal += '-';
    i = 1;
  }
  bool digits = false, comma = false;
  int groupLen = -1;  // digits since the last '.', -1 when no '.' seen
  for (; i < s.size(); ++i) {
    char c = s[i];
    if (c >= '0' && c <= '9') {
      digits = true;
      normal += c;
      if (groupLen >= 0 && !comma) ++groupLen;
    } else if (c == '.' && !comma) {
      if (!digits || (groupLen >= 0 && groupLen != 3)) return false;
      groupLen = 0;
    } else if (c == ',' && !comma) {
      if (groupLen >= 0 && groupLen != 3) return false;
      comma = true;
      normal += '.';
    } else {
      return false;
    }
  }
  if (!digits || (groupLen >= 0 && groupLen != 3 && !comma)) return false;
  char* end = nullptr;
  out = std::strtod(normal.c_str(), &end);
  return end != nullptr && *end == '\0';
}

// Banker's rounding, as the desktop hosts' integer conversions do.
double RoundHalfEven(double v) {
  double r = std::nearbyint(v);  // default FE_TONEAREST is half-to-even
  return r;
}

std::string TrimZeros(std::string s) {
  if (s.find('.') == std::string::npos) return s;
  while (!s.empty() && s.back() == '0') s.pop_back();
  if (!s.empty() && s.back() == '.') s.pop_back();
  return s;
}

std::string FormatFloating(double v, int digits) {
  if (std::isnan(v)) return "NaN";
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*g", digits, v);
  std::string s = buf;
  std::string out;
  for (char c : s) out += c == '.' ? ',' : (c == 'e' ? 'E' : c);
  return out;
}

std::string FormatScaled(std::int64_t mantissa, int scale) {
  bool negative = mantissa < 0;
  unsigned long long m = negative ? 0ULL - static_cast<unsigned long long>(mantissa)
                                  : static_cast<unsigned long long>(mantissa);
  std::string digits = std::to_string(m);
  if (scale > 0) {
    if (static_cast<int>(digits.size()) <= scale)
      digits.insert(0, static_cast<std::size_t>(scale) + 1 - digits.size(), '0');
    digits.insert(digits.size() - static_cast<std::size_t>(scale), ".");
    digits = TrimZeros(digits);
  }
  for (char& c : digits)
    if (c == '.') c = ',';
  return negative ? "-" + digits : digits;
}

// Days from 1970-01-01 for a civil date (proleptic Gregorian).
long DaysFromCivil(long y, unsigned m, unsigned d) {
  y -= m <= 2;
  const long era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<long>(doe) - 719468;
}

void CivilFromDays(long z, int& y, int& m, int& d) {
  z += 719468;
  const long era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const long yy = static_cast<long>(yoe) + era * 400;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  y = static_cast<int>(yy + (m <= 2));
}

constexpr long kSerialEpochOffset = 25569;  // days from 1899-12-30 to 1970-01-01

bool ValidDate(int y, int m, int d) {
  if (y < 100 || y > 9999 || m < 1 || m > 12 || d < 1) return false;
  static const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  bool leap = (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
  return d <= days[m - 1] + (m == 2 && leap ? 1 : 0);
}

// Reads "hh:mm[:ss[.fff]]" into seconds of the day.
bool ParseTime(std::string_view s, int& h, int& mi, int& se) {
  h = mi = se = 0;
  int parts[3] = {0, 0, 0};
  int n = 0;
  std::size_t i = 0;
  while (i < s.size() && n < 3) {
    if (!std::isdigit(static_cast<unsigned char>(s[i]))) return false;
    int v = 0, len = 0;
    while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i])) && len < 2) {
      v = v * 10 + (s[i] - '0');
      ++i;
      ++len;
    }
    parts[n++] = v;
    if (i < s.size() && s[i] == ':') ++i;
    else break;
  }
  if (i < s.size() && s[i] == '.') {  // fractions of a second are dropped
    ++i;
    while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) ++i;
  }
  if (n < 2 || i != s.size()) return false;
  h = parts[0];
  mi = parts[1];
  se = parts[2];
  return h < 24 && mi < 60 && se < 60;
}

bool ParseItalianDate(std::string_view raw, DateTime& out) {
  std::string_view s = text::Trim(raw);
  int d = 0, m = 0, y = 0;
  std::size_t i = 0;
  auto number = [&](int& v, int maxLen) {
    int len = 0;
    v = 0;
    while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i])) && len < maxLen) {
      v = v * 10 + (s[i] - '0');
      ++i;
      ++len;
    }
    return len > 0;
  };
  if (!number(d, 2) || i >= s.size() || s[i] != '/') return false;
  ++i;
  if (!number(m, 2) || i >= s.size() || s[i] != '/') return false;
  ++i;
  std::size_t yStart = i;
  if (!number(y, 4)) return false;
  if (i - yStart == 2) y += y < 30 ? 2000 : 1900;  // two-digit years, as the hosts read them
  if (!ValidDate(y, m, d)) return false;
  int h = 0, mi = 0, se = 0;
  if (i < s.size()) {
    if (s[i] != ' ') return false;
    if (!ParseTime(text::Trim(s.substr(i)), h, mi, se)) return false;
  }
  out = DateTime::FromParts(y, m, d, h, mi, se);
  return true;
}

}  // namespace

// ---- Currency, Decimal, DateTime -------------------------------------------

Currency Currency::FromDouble(double value) {
  double scaled = std::round(value * 10000.0);
  if (!(std::fabs(scaled) < 9.2e18)) Overflow();
  return Currency{static_cast<std::int64_t>(scaled)};
}

Decimal Decimal::FromDouble(double value, int scale) {
  double scaled = std::round(value * static_cast<double>(Pow10(scale)));
  if (!(std::fabs(scaled) < 9.2e18)) Overflow();
  return Decimal{static_cast<std::int64_t>(scaled), static_cast<std::uint8_t>(scale)};
}

double Decimal::ToDouble() const {
  return static_cast<double>(mantissa) / static_cast<double>(Pow10(scale));
}

bool Decimal::operator==(const Decimal& other) const {
  if (scale == other.scale) return mantissa == other.mantissa;
  const Decimal& lo = scale < other.scale ? *this : other;
  const Decimal& hi = scale < other.scale ? other : *this;
  __int128 widened = static_cast<__int128>(lo.mantissa) * Pow10(hi.scale - lo.scale);
  return widened == hi.mantissa;
}

DateTime DateTime::FromParts(int year, int month, int day, int hour, int minute, int second) {
  long days = DaysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)) +
              kSerialEpochOffset;
  double time = (hour * 3600.0 + minute * 60.0 + second) / 86400.0;
  return DateTime{static_cast<double>(days) + time};
}

void DateTime::ToParts(int& year, int& month, int& day, int& hour, int& minute,
                       int& second) const {
  double whole = std::floor(serial);
  long seconds = std::lround((serial - whole) * 86400.0);
  long days = static_cast<long>(whole);
  if (seconds >= 86400) {
    seconds -= 86400;
    ++days;
  }
  CivilFromDays(days - kSerialEpochOffset, year, month, day);
  hour = static_cast<int>(seconds / 3600);
  minute = static_cast<int>(seconds / 60 % 60);
  second = static_cast<int>(seconds % 60);
}

std::string DateTime::ToIso() const {
  int y, m, d, h, mi, s;
  ToParts(y, m, d, h, mi, s);
  char buf[40];
  if (h == 0 && mi == 0 && s == 0)
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d", y, m, d);
  else
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d %02d:%02d:%02d", y, m, d, h, mi, s);
  return buf;
}

bool DateTime::FromIso(std::string_view raw, DateTime& out) {
  std::string_view s = text::Trim(raw);
  if (s.size() < 10 || s[4] != '-' || s[7] != '-') return false;
  for (std::size_t i : {0u, 1u, 2u, 3u, 5u, 6u, 8u, 9u})
    if (!std::isdigit(static_cast<unsigned char>(s[i]))) return false;
  int y = std::stoi(std::string(s.substr(0, 4)));
  int m = std::stoi(std::string(s.substr(5, 2)));
  int d = std::stoi(std::string(s.substr(8, 2)));
  if (!ValidDate(y, m, d)) return false;
  int h = 0, mi = 0, se = 0;
  if (s.size() > 10) {
    if (s[10] != ' ' && s[10] != 'T') return false;
    if (!ParseTime(s.substr(11), h, mi, se)) return false;
  }
  out = FromParts(y, m, d, h, mi, se);
  return true;
}

// ---- Variant -----------------------------------------------------------------

Variant Variant::Null() {
  Variant v;
  v.kind_ = VariantKind::Null;
  return v;
}
Variant::Variant(bool value) : kind_(VariantKind::Boolean), value_(value) {}
Variant::Variant(std::int16_t value)
    : kind_(VariantKind::Integer), value_(static_cast<std::int64_t>(value)) {}
Variant::Variant(std::int32_t value)
    : kind_(VariantKind::Long), value_(static_cast<std::int64_t>(value)) {}
Variant::Variant(std::int64_t value) : kind_(VariantKind::BigInt), value_(value) {}
Variant::Variant(float value) : kind_(VariantKind::Single), value_(static_cast<double>(value)) {}
Variant::Variant(double value) : kind_(VariantKind::Double), value_(value) {}
Variant::Variant(Currency value) : kind_(VariantKind::Currency), value_(value) {}
Variant::Variant(Decimal value) : kind_(VariantKind::Decimal), value_(value) {}
Variant::Variant(DateTime value) : kind_(VariantKind::Date), value_(value) {}
Variant::Variant(std::string value) : kind_(VariantKind::String), value_(std::move(value)) {}
Variant::Variant(std::string_view value)
    : kind_(VariantKind::String), value_(std::string(value)) {}
Variant::Variant(const char* value) : kind_(VariantKind::String), value_(std::string(value)) {}

bool Variant::IsNumeric() const {
  switch (kind_) {
    case VariantKind::Integer:
    case VariantKind::Long:
    case VariantKind::BigInt:
    case VariantKind::Single:
    case VariantKind::Double:
    case VariantKind::Currency:
    case VariantKind::Decimal:
      return true;
    default:
      return false;
  }
}

const std::string& Variant::StringRef() const { return std::get<std::string>(value_); }

double Variant::ToDouble() const {
  switch (kind_) {
    case VariantKind::Empty:
      return 0;
    case VariantKind::Null:
      NullUse();
    case VariantKind::Boolean:
      return std::get<bool>(value_) ? -1 : 0;
    case VariantKind::Integer:
    case VariantKind::Long:
    case VariantKind::BigInt:
      return static_cast<double>(std::get<std::int64_t>(value_));
    case VariantKind::Single:
    case VariantKind::Double:
      return std::get<double>(value_);
    case VariantKind::Currency:
      return std::get<Currency>(value_).ToDouble();
    case VariantKind::Decimal:
      return std::get<Decimal>(value_).ToDouble();
    case VariantKind::Date:
      return std::get<DateTime>(value_).serial;
    case VariantKind::String: {
      const std::string& s = std::get<std::string>(value_);
      double v = 0;
      if (ParseItalianNumber(s, v)) return v;
      TypeMismatch("\"" + s + "\" non è un numero");
    }
  }
  TypeMismatch("valore");
}

std::int64_t Variant::ToBigInt() const {
  switch (kind_) {
    case VariantKind::Integer:
    case VariantKind::Long:
    case VariantKind::BigInt:
      return std::get<std::int64_t>(value_);
    case VariantKind::Currency: {
      // Exact: round the four decimals half to even.
      std::int64_t units = std::get<Currency>(value_).units;
      return static_cast<std::int64_t>(RoundHalfEven(static_cast<double>(units) / 10000.0));
    }
    default: {
      double d = RoundHalfEven(ToDouble());
      if (!(d >= -9.2233720368547758e18 && d < 9.2233720368547758e18)) Overflow();
      return static_cast<std::int64_t>(d);
    }
  }
}

std::int32_t Variant::ToLong() const {
  std::int64_t v = ToBigInt();
  if (v < std::numeric_limits<std::int32_t>::min() || v > std::numeric_limits<std::int32_t>::max())
    Overflow();
  return static_cast<std::int32_t>(v);
}

std::int16_t Variant::ToInteger() const {
  std::int64_t v = ToBigInt();
  if (v < std::numeric_limits<std::int16_t>::min() || v > std::numeric_limits<std::int16_t>::max())
    Overflow();
  return static_cast<std::int16_t>(v);
}

bool Variant::ToBool() const {
  switch (kind_) {
    case VariantKind::Empty:
      return false;
    case VariantKind::Null:
      NullUse();
    case VariantKind::Boolean:
      return std::get<bool>(value_);
    case VariantKind::String: {
      std::string upper = text::Upper(text::Trim(std::get<std::string>(value_)));
      if (upper == "VERO" || upper == "TRUE") return true;
      if (upper == "FALSO" || upper == "FALSE") return false;
      double v = 0;
      if (ParseItalianNumber(upper, v)) return v != 0;
      TypeMismatch("\"" + std::get<std::string>(value_) + "\" non è un valore logico");
    }
    default:
      return ToDouble() != 0;
  }
}

Currency Variant::ToCurrency() const {
  if (kind_ == VariantKind::Currency) return std::get<Currency>(value_);
  if (kind_ == VariantKind::Decimal) {
    const Decimal& d = std::get<Decimal>(value_);
    if (d.scale <= 4) return Currency{d.mantissa * Pow10(4 - d.scale)};
  }
  return Currency::FromDouble(ToDouble());
}

DateTime Variant::ToDate() const {
  switch (kind_) {
    case VariantKind::Date:
      return std::get<DateTime>(value_);
    case VariantKind::Null:
      NullUse();
    case VariantKind::String: {
      const std::string& s = std::get<std::string>(value_);
      DateTime d;
      if (ParseItalianDate(s, d) || DateTime::FromIso(s, d)) return d;
      TypeMismatch("\"" + s + "\" non è una data");
    }
    default:
      return DateTime{ToDouble()};
  }
}

std::string Variant::ToString() const {
  switch (kind_) {
    case VariantKind::Empty:
      return "";
    case VariantKind::Null:
      NullUse();
    case VariantKind::Boolean:
      return std::get<bool>(value_) ? "Vero" : "Falso";
    case VariantKind::Integer:
    case VariantKind::Long:
    case VariantKind::BigInt:
      return std::to_string(std::get<std::int64_t>(value_));
    case VariantKind::Single:
      return FormatFloating(std::get<double>(value_), 7);
    case VariantKind::Double:
      return FormatFloating(std::get<double>(value_), 15);
    case VariantKind::Currency:
      return FormatScaled(std::get<Currency>(value_).units, 4);
    case VariantKind::Decimal: {
      const Decimal& d = std::get<Decimal>(value_);
      return FormatScaled(d.mantissa, d.scale);
    }
    case VariantKind::Date: {
      int y, m, d, h, mi, s;
      std::get<DateTime>(value_).ToParts(y, m, d, h, mi, s);
      char buf[40];
      if (h == 0 && mi == 0 && s == 0)
        std::snprintf(buf, sizeof buf, "%02d/%02d/%04d", d, m, y);
      else
        std::snprintf(buf, sizeof buf, "%02d/%02d/%04d %02d:%02d:%02d", d, m, y, h, mi, s);
      return buf;
    }
    case VariantKind::String:
      return std::get<std::string>(value_);
  }
  return "";
}

bool Variant::Equals(const Variant& other) const {
  if (IsNull() || other.IsNull()) return false;
  if (IsEmpty() && other.IsEmpty()) return true;
  if (kind_ == VariantKind::String && other.kind_ == VariantKind::String)
    return StringRef() == other.StringRef();
  if (IsEmpty() || other.IsEmpty()) {
    const Variant& v = IsEmpty() ? other : *this;
    if (v.kind_ == VariantKind::String) return v.StringRef().empty();
    if (v.kind_ == VariantKind::Date) return std::get<DateTime>(v.value_).serial == 0;
    return v.ToDouble() == 0;
  }
  if (kind_ == VariantKind::Decimal && other.kind_ == VariantKind::Decimal)
    return std::get<Decimal>(value_) == std::get<Decimal>(other.value_);
  try {
    if (kind_ == VariantKind::Date || other.kind_ == VariantKind::Date)
      return ToDate().serial == other.ToDate().serial;
    return ToDouble() == other.ToDouble();
  } catch (const Error&) {
    return false;  // a text that is not a number equals no number
  }
}

std::string Variant::Describe() const {
  if (IsNull()) return "Null";
  if (IsEmpty()) return "Empty";
  return ToString();
}

const char* KindName(VariantKind kind) {
  switch (kind) {
    case VariantKind::Empty: return "Empty";
    case VariantKind::Null: return "Null";
    case VariantKind::Boolean: return "Boolean";
    case VariantKind::Integer: return "Integer";
    case VariantKind::Long: return "Long";
    case VariantKind::BigInt: return "BigInt";
    case VariantKind::Single: return "Single";
    case VariantKind::Double: return "Double";
    case VariantKind::Currency: return "Currency";
    case VariantKind::Decimal: return "Decimal";
    case VariantKind::Date: return "Date";
    case VariantKind::String: return "String";
  }
  return "?";
}

}  // namespace corvina20
