// Bank rows: IBAN composition and checks, one default bank.
#include "cards/customer/BankRows.h"

#include <algorithm>
#include <cctype>

#include "cards/customer/GridRows.h"
#include "module/CardValues.h"
#include "module/modCardError.h"

namespace vantor20 {
namespace {

// Dictionary messages of the bank checks.
constexpr std::int32_t kMsgRigaIncompleta = 10712;
constexpr std::int32_t kMsgIbanCaratteri = 21001;
constexpr std::int32_t kMsgIbanCin = 21002;
constexpr std::int32_t kMsgIbanCheckDigit = 21003;
constexpr std::int32_t kMsgBancaPredefinita = 21004;

const char* const kIbanParts[] = {"CodicePaeseIBAN", "CheckDigitIBAN", "CodiceCIN",
                                  "CodAbi",          "CodCab",         "NumeroCc"};

std::string Fit(const std::string& value, std::size_t width) {
  std::string out = value.substr(0, width);
  out.resize(width, ' ');
  return out;
}

std::string ZeroFill(const std::string& value, std::size_t width) {
  return value.size() >= width ? value : std::string(width - value.size(), '0') + value;
}

std::string Trim(const std::string& s) {
  std::size_t b = s.find_first_not_of(' ');
  if (b == std::string::npos) return "";
  return s.substr(b, s.find_last_not_of(' ') - b + 1);
}

bool AllAlnum(const std::string& s) {
  return std::all_of(s.begin(), s.end(), [](unsigned char c) { return std::isalnum(c) != 0; });
}

// The value of a letter or digit in the CIN tables: digits 0-9 stand for
// the letters A-J.
int CinIndex(unsigned char c) { return std::isdigit(c) ? c - '0' : std::toupper(c) - 'A'; }

}  // namespace

std::string NormaliseAccountNumber(const std::string& numeroCc) {
  if (numeroCc.size() > 12) {
    std::string kept;
    for (char c : numeroCc)
      if (std::string_view(" /\\.()").find(c) == std::string_view::npos) kept += c;
    kept = Trim(kept);
    for (char& c : kept) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return kept.substr(0, 12);
  }
  return ZeroFill(numeroCc, 12);
}

std::string ComposeIban(const std::string& paese, const std::string& checkDigit,
                        const std::string& cin, const std::string& abi,
                        const std::string& cab, const std::string& numeroCc) {
  if (paese.empty() || checkDigit.empty() || cin.empty() || abi.empty() || cab.empty() ||
      numeroCc.empty())
    return "";
  return Fit(paese, 2) + Fit(checkDigit, 2) + Fit(cin, 1) + ZeroFill(abi, 5) + ZeroFill(cab, 5) +
         NormaliseAccountNumber(numeroCc);
}

std::string ItalianCin(const std::string& abiCabConto) {
  // The odd positions (1st, 3rd, …) weigh by this table, the even ones by
  // their plain index; the sum modulo 26 is the letter.
  static const int kOdd[26] = {1,  0,  5,  7,  9,  13, 15, 17, 19, 21, 2,  4,  18,
                               20, 11, 3,  6,  8,  12, 14, 16, 10, 22, 25, 24, 23};
  if (abiCabConto.size() != 22 || !AllAlnum(abiCabConto)) return "";
  int sum = 0;
  for (std::size_t i = 0; i < abiCabConto.size(); ++i) {
    int k = CinIndex(static_cast<unsigned char>(abiCabConto[i]));
    sum += i % 2 == 0 ? kOdd[k] : k;
  }
  return std::string(1, static_cast<char>('A' + sum % 26));
}

std::string IbanProblem(const std::string& iban, const std::string& row) {
  if (iban.size() != 27) return "";
  if (!AllAlnum(iban)) return FillMessage(kMsgIbanCaratteri, {row});
  std::string cin = ItalianCin(iban.substr(5));
  if (std::toupper(static_cast<unsigned char>(iban[4])) != cin[0])
    return FillMessage(kMsgIbanCin, {row, std::string(1, iban[4]), cin});
  // ISO 13616: the first four characters moved to the end, letters as 10..35,
  // the number modulo 97 is 1.
  std::string moved = iban.substr(4) + iban.substr(0, 4);
  int rest = 0;
  for (unsigned char c : moved) {
    int v = std::isdigit(c) ? c - '0' : std::toupper(c) - 'A' + 10;
    rest = (v >= 10 ? rest * 100 : rest * 10) + v;
    rest %= 97;
  }
  if (rest != 1) return FillMessage(kMsgIbanCheckDigit, {row, iban.substr(2, 2)});
  return "";
}

void WireBankGrid(corvina20::VxBody& grid) {
  grid.AfterColUpdate = [&grid](const std::string& column) {
    RecordsetPtr rs = grid.Data();
    if (!rs || rs->IsEOF() || rs->IsBOF()) return;
    if (SameName(column, "Default")) {
      if (FlagOf(rs->Fields("Default").Value())) ClearOtherDefaults(grid, "");
      return;
    }
    for (const char* part : kIbanParts) {
      if (!SameName(column, part)) continue;
      rs->Fields("Iban") = Variant(ComposeIban(
          TextOf(rs->Fields("CodicePaeseIBAN").Value()), TextOf(rs->Fields("CheckDigitIBAN").Value()),
          TextOf(rs->Fields("CodiceCIN").Value()), TextOf(rs->Fields("CodAbi").Value()),
          TextOf(rs->Fields("CodCab").Value()), TextOf(rs->Fields("NumeroCc").Value())));
      return;
    }
  };
}

void CheckBankRows(corvina20::VxBody& grid, std::string& warnings) {
  int defaults = 0;
  ForEachRow(grid, [&](const RecordsetPtr& rs, long position) {
    std::string id = TextOf(rs->Fields("IdBanca").Value());
    if (IsBlank(rs->Fields("Descrizione").Value()) && IsBlank(rs->Fields("Agenzia").Value()))
      AddCardMessage(kMsgRigaIncompleta, warnings, {"della banca", id});
    std::string problem = IbanProblem(TextOf(rs->Fields("Iban").Value()), std::to_string(position));
    if (!problem.empty()) warnings += problem + "\r\n";
    if (FlagOf(rs->Fields("Default").Value())) ++defaults;
  });
  if (defaults > 1) AddCardMessage(kMsgBancaPredefinita, warnings);
}

}  // namespace vantor20
