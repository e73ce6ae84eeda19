// Text as the module's SQL compares it: without regard to case, with regard
// to accents ("è" = "È", "e" <> "è"), by Unicode simple case folding of UTF-8,
// and T-SQL LIKE patterns under the same rule. Pure functions; the SQLite
// backend registers them on its connections (SqliteText.h). Not the
// full-text folding, which also drops accents (fulltext/FtsTokenizer.h).
#pragma once

#include <string>
#include <string_view>

namespace corvina20::data::text {

// Decodes one UTF-8 sequence at text[i] and advances i past it.
// REQUIRES: i < text.size(). Invalid bytes give U+FFFD and advance by one.
char32_t DecodeUtf8(std::string_view text, std::size_t& i);

// The Unicode simple case folding of `cp` (its lower-case form for nearly
// every letter; "ẞ" → "ß", "ς" → "σ", Kelvin sign → "k"); `cp` itself when
// it has none.
char32_t FoldCase(char32_t cp);

// <0, 0 or >0 as `a` sorts before, equal to or after `b`: code point by code
// point of their case-folded forms, a prefix first. ASCII is compared without
// decoding. Invalid UTF-8 bytes compare as U+FFFD.
int CompareNoCase(std::string_view a, std::string_view b);

// T-SQL LIKE: `%` any run, `_` one character, `[abc]` / `[a-z]` one of a set,
// `[^abc]` one not in it; `escape` (0 for none) makes the next pattern
// character literal. Characters compare as CompareNoCase does. A `[` without
// its `]` matches itself.
bool LikeMatch(std::string_view text, std::string_view pattern, char32_t escape = 0);

// `value` as a piece of a LIKE pattern that matches it literally: `%`, `_`
// and `[` bracketed, the T-SQL way (the translator carries it to every
// backend). What a user types into a search is text, never a wildcard.
std::string LikeLiteral(std::string_view value);

}  // namespace corvina20::data::text
