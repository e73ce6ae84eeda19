// Thesaurus and stemming of index terms; see FtsWords.h. The stemmer only
// undoes inflection (number and gender), by the rules below; each thread
// remembers the terms of the words it has seen: loading a million rows into
// a mirror stems a few million words drawn from a vocabulary of some tens of
// thousands.
//
// Why not a full Italian stemmer: one that also drops derivational endings
// (-anti, -ismo, -ico, -mente …) cuts surnames down to a few letters
// ("Calotanti" to "calot") and makes one term of given names ("Luca",
// "Lucia"): many names one typo apart, and duplicates found that are not.
// Measured on the duplicates benchmark (docs/performance.md).
#include "data/fulltext/FtsWords.h"

#include <cctype>
#include <fstream>
#include <memory>
#include <sstream>
#include <vector>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "corvina20/MervoStatus.h"
#include "data/fulltext/FtsTokenizer.h"

namespace corvina20::data::fulltext {
namespace {

bool IsLatinWord(std::string_view s) {
  for (char c : s)
    if (c < 'a' || c > 'z') return false;
  return !s.empty();
}

std::uint32_t Checksum(std::string_view text) {
  std::uint32_t h = 2166136261u;  // FNV-1a
  for (char c : text) h = (h ^ static_cast<std::uint8_t>(c)) * 16777619u;
  return h;
}

bool IsVowel(char c) { return c == 'a' || c == 'e' || c == 'i' || c == 'o'; }

}  // namespace

Thesaurus ParseThesaurus(std::string_view text, std::string_view source) {
  Thesaurus out;
  out.checksum = Checksum(text);
  std::istringstream in{std::string(text)};
  std::string line;
  int number = 0;
  while (std::getline(in, line)) {
    ++number;
    std::string trimmed(text::Trim(line));
    if (trimmed.empty() || trimmed[0] == '#') continue;
    auto fail = [&](const std::string& why) {
      throw Error(kErrHost, "Corvina20.FullText",
                  std::string(source) + ", riga " + std::to_string(number) + ": " + why);
    };
    std::vector<std::string> forms;
    std::stringstream cells(trimmed);
    std::string cell;
    while (std::getline(cells, cell, ',')) {
      cell = std::string(text::Trim(cell));
      if (cell.empty()) continue;
      // A sign of its own ("&") becomes a word only where the thesaurus
      // lists it; everywhere else it separates words.
      if (cell.size() == 1 && !std::isalnum(static_cast<unsigned char>(cell[0]))) {
        if (out.signs.find(cell[0]) == std::string::npos) out.signs += cell[0];
        forms.push_back(cell);
        continue;
      }
      std::vector<std::string> words = FoldedWords(cell, "");
      if (words.size() != 1) fail("\"" + cell + "\" non è una parola sola");
      forms.push_back(words[0]);
    }
    if (forms.size() < 2) fail("un gruppo vuole almeno due forme");
    for (const std::string& form : forms) {
      auto [at, added] = out.forms.emplace(form, forms.back());
      if (!added && at->second != forms.back()) fail("\"" + form + "\" è già in un altro gruppo");
    }
  }
  return out;
}

const Thesaurus& LoadedThesaurus() {
  static const Thesaurus thesaurus = [] {
    std::string path = DataDirectory() + "/thesaurus.tsv";
    std::ifstream in(path, std::ios::binary);
    if (!in) return Thesaurus{};
    std::ostringstream text;
    text << in.rdbuf();
    return ParseThesaurus(text.str(), path);
  }();
  return thesaurus;
}

std::string StemWord(std::string_view word) {
  // Four letters at least: "via", "di", "spa" and the like stay whole.
  if (!IsLatinWord(word) || word.size() < 4 || !IsVowel(word.back())) return std::string(word);
  std::string stem(word.substr(0, word.size() - 1));
  // -io / -i: "servizio", "servizi"; "negozio", "negozi".
  if (word.back() == 'o' && stem.back() == 'i' && stem.size() > 3) stem.pop_back();
  // The h that keeps a c or g hard before e and i: "ceramiche" as "ceramica",
  // "alberghi" as "albergo", "bianchi" as "bianco".
  if (stem.size() > 3 && stem.back() == 'h' && (stem[stem.size() - 2] == 'c' || stem[stem.size() - 2] == 'g'))
    stem.pop_back();
  return stem;
}

std::string IndexTerm(std::string_view word) {
  thread_local std::unordered_map<std::string, std::string> seen;
  std::string key(word);
  if (auto it = seen.find(key); it != seen.end()) return it->second;
  const Thesaurus& thesaurus = LoadedThesaurus();
  auto form = thesaurus.forms.find(key);
  std::string term = StemWord(form == thesaurus.forms.end() ? word : std::string_view(form->second));
  // Bounded: a stream of distinct words (codes, e-mail addresses) would
  // otherwise grow it without end.
  if (seen.size() > (1u << 18)) seen.clear();
  seen.emplace(std::move(key), term);
  return term;
}

}  // namespace corvina20::data::fulltext
