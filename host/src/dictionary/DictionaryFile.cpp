// Parsing of the dictionary's tab-separated files and placeholder filling; see
// DictionaryFile.h for the format.
#include "dictionary/DictionaryFile.h"

#include <charconv>

#include "core/Text.h"
#include "corvina20/Error.h"

namespace corvina20::dictionary {
namespace {

constexpr std::string_view kSource = "MervoStatus";

[[noreturn]] void Fail(std::string_view where, std::string_view what) {
  throw Error(kErrHost, std::string(kSource),
              "Dizionario dei messaggi, " + std::string(where) + ": " + std::string(what));
}

// Calls `take(text, where)` for each line that carries an entry.
template <typename Take>
void ForEachEntry(std::istream& in, std::string_view name, Take take) {
  std::string line;
  int number = 0;
  while (std::getline(in, line)) {
    ++number;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (text::Trim(line).empty() || line.front() == '#') continue;
    take(std::string_view(line), std::string(name) + " riga " + std::to_string(number));
  }
  if (in.bad()) Fail(name, "lettura non riuscita");
}

}  // namespace

std::string Unescape(std::string_view raw, std::string_view where) {
  std::string out;
  out.reserve(raw.size());
  for (std::size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] != '\\') {
      out += raw[i];
      continue;
    }
    if (i + 1 == raw.size()) Fail(where, "barra rovesciata in fondo al testo");
    switch (raw[++i]) {
      case 'n': out += "\r\n"; break;
      case 't': out += '\t'; break;
      case '\\': out += '\\'; break;
      default: Fail(where, std::string("sequenza sconosciuta \\") + raw[i]);
    }
  }
  return out;
}

MessageTable ParseMessages(std::istream& in, std::string_view name) {
  MessageTable table;
  ForEachEntry(in, name, [&](std::string_view line, const std::string& where) {
    const auto tab = line.find('\t');
    if (tab == std::string_view::npos) Fail(where, "manca il tabulatore tra numero e testo");
    const std::string_view digits = line.substr(0, tab);
    std::int32_t number = 0;
    const auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (digits.empty() || ec != std::errc() || end != digits.data() + digits.size())
      Fail(where, "numero di messaggio non valido: " + std::string(digits));
    std::string text = Unescape(line.substr(tab + 1), where);
    if (text.empty()) Fail(where, "testo vuoto per il messaggio " + std::string(digits));
    if (!table.emplace(number, std::move(text)).second)
      Fail(where, "messaggio " + std::string(digits) + " ripetuto");
  });
  return table;
}

PhraseTable ParsePhrases(std::istream& in, std::string_view name) {
  PhraseTable table;
  ForEachEntry(in, name, [&](std::string_view line, const std::string& where) {
    const auto tab = line.find('\t');
    std::string phrase = Unescape(line.substr(0, tab), where);
    if (phrase.empty()) Fail(where, "frase vuota");
    std::string translation =
        tab == std::string_view::npos ? phrase : Unescape(line.substr(tab + 1), where);
    if (!table.emplace(std::move(phrase), std::move(translation)).second)
      Fail(where, "frase ripetuta");
  });
  return table;
}

std::string FillPlaceholders(std::string_view text, std::span<const std::string_view> args) {
  std::string out(text);
  std::size_t from = 0;
  for (std::string_view arg : args) {
    if (arg.empty()) continue;
    const auto at = out.find("%s", from);
    if (at == std::string::npos) break;
    out.replace(at, 2, arg);
    from = at + arg.size();
  }
  return out;
}

}  // namespace corvina20::dictionary
