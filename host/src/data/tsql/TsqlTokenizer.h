// Splits T-SQL text into tokens: identifiers (bare, [bracketed] or
// "double-quoted"), 'strings' (with '' escapes, N'...' national strings),
// numbers, operators and punctuation, "?" placeholders and @variables.
// Comments and blanks are dropped. It knows nothing of keywords: a keyword is
// a bare identifier that the parser recognises.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvina20::data::tsql {

enum class TokenKind {
  Identifier,        // bare word: keyword or name, text as written
  QuotedIdentifier,  // [name] or "name", text without the quotes, escapes resolved
  String,            // 'text': text is the value, '' already turned into '
  NationalString,    // N'text': as String
  Number,            // 12, 1.5, 2e3, .5: text as written
  Operator,          // ( ) , . ; * + - / % = < > <= >= <> != !< !> & | ^ ~
  Param,             // ?
  Variable,          // @name (no rule: the parser reports it)
  End,               // after the last token
};

struct Token {
  TokenKind kind = TokenKind::End;
  std::string text;
  std::size_t offset = 0;  // byte offset in the source, for messages
};

// The tokens of `tsql`, always ending with one End token.
// Throws the translator's error for an unterminated string, [identifier] or
// /* comment, and for a character that starts no token (e.g. '#', '$').
std::vector<Token> Tokenize(std::string_view tsql);

}  // namespace corvina20::data::tsql
