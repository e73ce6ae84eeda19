// The full-text tokenizer; see FtsTokenizer.h. Words are split and folded
// here; the thesaurus and the stemmer (FtsWords.h) then give each its term. Folding covers the Latin
// letters Italian names and addresses are written with (Latin-1 and Latin
// Extended-A); letters of other scripts are kept as they are, combining
// accents are dropped, and punctuation (typographic apostrophes and dashes
// included) separates words.
#include "data/fulltext/FtsTokenizer.h"

#include "data/fulltext/FtsWords.h"
#include "data/text/TextFold.h"

#include <cstdint>
#include <unordered_set>

namespace corvina20::data::fulltext {
namespace {

// Latin-1 letters U+00C0..U+00FF folded; "" for the two signs (× ÷).
constexpr const char* kLatin1[64] = {
    "a", "a", "a", "a", "a", "a", "ae", "c", "e", "e", "e", "e", "i", "i", "i", "i",  //
    "d", "n", "o", "o", "o", "o", "o",  "",  "o", "u", "u", "u", "u", "y", "th", "ss",  //
    "a", "a", "a", "a", "a", "a", "ae", "c", "e", "e", "e", "e", "i", "i", "i", "i",  //
    "d", "n", "o", "o", "o", "o", "o",  "",  "o", "u", "u", "u", "u", "y", "th", "y"};

// Latin Extended-A, U+0100..U+017F, by ranges of the same base letter.
struct Range {
  char32_t last;
  const char* folded;
};
constexpr Range kLatinExtendedA[] = {
    {0x105, "a"}, {0x10D, "c"}, {0x111, "d"}, {0x11B, "e"}, {0x123, "g"}, {0x127, "h"},
    {0x131, "i"}, {0x133, "ij"}, {0x135, "j"}, {0x138, "k"}, {0x142, "l"}, {0x14B, "n"},
    {0x151, "o"}, {0x153, "oe"}, {0x159, "r"}, {0x161, "s"}, {0x167, "t"}, {0x173, "u"},
    {0x175, "w"}, {0x178, "y"}, {0x17E, "z"}, {0x17F, "s"}};

enum class CharClass { Separator, Word, Drop };

// What a code point contributes to a word: its folded text (Word), nothing
// while staying inside the word (Drop, combining accents), or a break.
CharClass Classify(char32_t cp, std::string& folded) {
  folded.clear();
  if (cp < 0x80) {
    char c = static_cast<char>(cp);
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
      folded = c;
      return CharClass::Word;
    }
    return CharClass::Separator;
  }
  if (cp >= 0xC0 && cp <= 0xFF) {
    folded = kLatin1[cp - 0xC0];
    return folded.empty() ? CharClass::Separator : CharClass::Word;
  }
  if (cp >= 0x100 && cp <= 0x17F) {
    for (const Range& r : kLatinExtendedA)
      if (cp <= r.last) {
        folded = r.folded;
        return CharClass::Word;
      }
  }
  if (cp >= 0x300 && cp <= 0x36F) return CharClass::Drop;
  if (cp < 0xC0 || (cp >= 0x2000 && cp <= 0x206F) || (cp >= 0x20A0 && cp <= 0x20CF) ||
      cp == 0x3000 || cp == 0xFEFF || cp == 0xFFFD)
    return CharClass::Separator;
  // Letters of other scripts: kept as written.
  char buffer[4];
  int n = 0;
  if (cp < 0x800) {
    buffer[n++] = static_cast<char>(0xC0 | (cp >> 6));
  } else if (cp < 0x10000) {
    buffer[n++] = static_cast<char>(0xE0 | (cp >> 12));
    buffer[n++] = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
  } else {
    buffer[n++] = static_cast<char>(0xF0 | (cp >> 18));
    buffer[n++] = static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    buffer[n++] = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
  }
  buffer[n++] = static_cast<char>(0x80 | (cp & 0x3F));
  folded.assign(buffer, static_cast<std::size_t>(n));
  return CharClass::Word;
}

bool IsLetters(std::string_view s) {
  for (char c : s)
    if (c < 'a' || c > 'z') return false;
  return !s.empty();
}

// Words as the text writes them, before abbreviations are handled. A sign
// of `signs` ("&", which the thesaurus lists) is a word of its own.
void RawTokens(std::string_view text, std::vector<FtsToken>& out, std::string_view signs) {
  out.clear();
  FtsToken current;
  bool inWord = false;
  std::string folded;
  std::size_t i = 0;
  while (i < text.size()) {
    std::size_t at = i;
    // Fast path: the ASCII letters and digits most names are made of.
    char a = text[i];
    if ((a >= 'a' && a <= 'z') || (a >= '0' && a <= '9') || (a >= 'A' && a <= 'Z')) {
      if (!inWord) {
        current.term.clear();
        current.start = static_cast<int>(at);
        inWord = true;
      }
      current.term += a >= 'A' && a <= 'Z' ? static_cast<char>(a - 'A' + 'a') : a;
      current.end = static_cast<int>(++i);
      continue;
    }
    if (signs.find(a) != std::string_view::npos) {
      if (inWord && !current.term.empty()) out.push_back(current);
      inWord = false;
      out.push_back(FtsToken{std::string(1, a), static_cast<int>(at), static_cast<int>(at + 1)});
      ++i;
      continue;
    }
    CharClass cls = Classify(text::DecodeUtf8(text, i), folded);
    if (cls == CharClass::Separator) {
      if (inWord && !current.term.empty()) out.push_back(current);
      inWord = false;
      continue;
    }
    if (!inWord) {
      current.term.clear();
      current.start = current.end = static_cast<int>(at);
      inWord = true;
    }
    current.term += folded;
    current.end = static_cast<int>(i);
  }
  if (inWord && !current.term.empty()) out.push_back(current);
}

// The words of `text` with dotted abbreviations joined, folded: what the
// thesaurus and the stemmer then work on.
void JoinedWords(std::string_view text, std::vector<FtsToken>& out, std::string_view signs) {
  thread_local std::vector<FtsToken> raw;
  RawTokens(text, raw, signs);
  out.clear();
  for (std::size_t k = 0; k < raw.size(); ++k) {
    FtsToken token = raw[k];
    // "S.r.l.", "S.p.A.", "F.lli", "P.zza", "V.le": a single letter, a dot
    // and at once a short word are one abbreviation. "V.Roma" is two words.
    std::size_t last = k;  // the last piece joined
    while (raw[last].term.size() == 1 && IsLetters(raw[last].term) && k + 1 < raw.size() &&
           static_cast<std::size_t>(token.end) < text.size() && text[static_cast<std::size_t>(token.end)] == '.' &&
           raw[k + 1].start == token.end + 1 && raw[k + 1].term.size() <= 3 && IsLetters(raw[k + 1].term)) {
      ++k;
      token.term += raw[k].term;
      token.end = raw[k].end;
      last = k;
    }
    out.push_back(std::move(token));
  }
}

}  // namespace

std::vector<FtsToken> TokenizeText(std::string_view text) {
  std::vector<FtsToken> out;
  TokenizeText(text, out);
  return out;
}

void TokenizeText(std::string_view text, std::vector<FtsToken>& out) {
  JoinedWords(text, out, LoadedThesaurus().signs);
  for (FtsToken& token : out) token.term = IndexTerm(token.term);
}

std::vector<std::string> FoldedWords(std::string_view text, std::string_view signs) {
  std::vector<FtsToken> tokens;
  JoinedWords(text, tokens, signs);
  std::vector<std::string> out;
  for (FtsToken& t : tokens) out.push_back(std::move(t.term));
  return out;
}

std::vector<std::string> DistinctTerms(std::string_view text) {
  std::vector<std::string> out;
  std::unordered_set<std::string> seen;
  for (FtsToken& t : TokenizeText(text))
    if (seen.insert(t.term).second) out.push_back(std::move(t.term));
  return out;
}

}  // namespace corvina20::data::fulltext
