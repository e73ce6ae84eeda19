// What the full-text index keeps of a folded word: the form the thesaurus
// (data/thesaurus.tsv) gives it, then its Italian stem, so that "Trasporto"
// and "Trasporti", "F.lli" and "Fratelli", "&" and "e" are one term. Rows and
// searched texts go through the same steps (FtsTokenizer.cpp calls them).
// Not for: splitting a text into words (FtsTokenizer.h) or ranking (FtsRank.h).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace corvina20::data::fulltext {

// The groups of the thesaurus: every form of a line to the line's last form,
// all folded as the tokenizer folds words ("Società" is "societa").
struct Thesaurus {
  std::unordered_map<std::string, std::string> forms;
  std::string signs;           // the single signs it lists ("&"): words of their own
  std::uint32_t checksum = 0;  // of the file's text: a changed file rebuilds the indexes
};

// Reads a thesaurus from `text` (lines of comma-separated forms, # comments).
// Throws corvina20::Error kErrHost naming `source` and the line when a form is
// not one word or one sign, or when a form belongs to two groups.
Thesaurus ParseThesaurus(std::string_view text, std::string_view source);

// The thesaurus of DataDirectory() + "/thesaurus.tsv", read on first use and
// kept for the life of the process. An empty thesaurus when the file is
// missing. Throws as ParseThesaurus when it is malformed.
const Thesaurus& LoadedThesaurus();

// The term the index keeps for a folded word: its thesaurus form, stemmed.
// Words holding a digit, and words of other scripts, are kept as they are.
// REQUIRES: `word` folded by the tokenizer (ASCII lower case when Latin).
std::string IndexTerm(std::string_view word);

// The stem of a folded Italian word with its inflection undone: the final
// vowel dropped (number and gender: "trasporti", "trasporto" give
// "trasport"; "rossa", "rosse" give "ross"), the i of -io ("servizio" as
// "servizi") and the h of -che, -chi, -ghe, -ghi ("ceramiche" as "ceramica")
// with it. Derivational endings stay. `word` itself when it is shorter than
// four letters, ends in a consonant or holds anything but the letters a-z.
std::string StemWord(std::string_view word);

}  // namespace corvina20::data::fulltext
