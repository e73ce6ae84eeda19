// The words of a text as the full-text indexes see them: letters and digits
// folded to lower case without accents ("Società" gives "societa"), every
// other character a separator (so "D'Amico" and "D Amico" give the same two
// words), dotted abbreviations joined ("S.r.l." gives "srl"), then each word
// replaced by the form the thesaurus gives it ("F.lli" gives "fratelli") and
// stemmed ("Trasporti" gives "trasport"; FtsWords.h). The same function
// tokenizes indexed rows and searched texts.
// Not for: ranking (FtsRank.h) or talking to SQLite (FtsSqlite.h).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvina20::data::fulltext {

struct FtsToken {
  std::string term;  // folded (ASCII lower case, no accents), thesaurus form, stemmed; never empty
  int start = 0;     // byte span of the token in the text it came from
  int end = 0;
};

// Every token of `text` in order, repetitions included. Invalid UTF-8 bytes
// are separators. Empty for a text without letters or digits.
std::vector<FtsToken> TokenizeText(std::string_view text);
// The same into `out` (replacing what it held), for callers that tokenize
// row after row and keep the vector's memory.
void TokenizeText(std::string_view text, std::vector<FtsToken>& out);

// The words of `text` folded and with dotted abbreviations joined, without
// thesaurus or stemming ("F.lli Rossi" gives "flli", "rossi"); a sign of
// `signs` is a word of its own. For reading the thesaurus itself.
std::vector<std::string> FoldedWords(std::string_view text, std::string_view signs);

// The distinct terms of `text`, in order of first appearance.
std::vector<std::string> DistinctTerms(std::string_view text);

}  // namespace corvina20::data::fulltext
