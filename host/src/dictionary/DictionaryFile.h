// The files of the message dictionary (data/dictionary): their parsing and the
// filling of "%s" placeholders. MervoStatus loads them once per process through
// these functions; tests use them directly on small texts. Nothing here knows
// where the files live or caches anything.
#pragma once

#include <cstdint>
#include <istream>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

namespace corvina20::dictionary {

using MessageTable = std::unordered_map<std::int32_t, std::string>;
using PhraseTable = std::unordered_map<std::string, std::string>;

// Decodes the escapes of a dictionary text: "\n" is a line break, written as
// CR LF like the module's own message lists; "\t" a tab; "\\" one backslash.
// Any other backslash sequence throws Error(kErrHost) naming `where`, so a typo
// in the file is caught when it is loaded, not shown to a user.
std::string Unescape(std::string_view raw, std::string_view where);

// messages.tsv: one "number<TAB>text" a line. Blank lines and lines starting
// with "#" are skipped; a trailing CR is dropped. Throws Error(kErrHost) naming
// `name` and the line for a line without a tab, a number that is not a 32-bit
// decimal integer, an empty text, a number given twice or a bad escape.
MessageTable ParseMessages(std::istream& in, std::string_view name);

// phrases.tsv: one "phrase<TAB>translation" a line, or the phrase alone when
// it translates to itself. Comments, blank lines and escapes as in
// ParseMessages; a phrase given twice or an empty phrase throws.
PhraseTable ParsePhrases(std::istream& in, std::string_view name);

// `text` with each "%s", left to right, replaced by the next non-empty
// argument; empty arguments are skipped. A "%s" that an argument brings in is
// never filled itself. Placeholders left over stay as "%s"; surplus arguments
// are dropped.
std::string FillPlaceholders(std::string_view text, std::span<const std::string_view> args);

}  // namespace corvina20::dictionary
