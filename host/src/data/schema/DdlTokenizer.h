// Tokens of the schema language and the text helpers its converter shares;
// internal to host/src/data/schema. Not a SQL parser: DdlConverter.cpp gives
// the tokens their meaning.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvina20::data::ddl {

enum class TokKind { Word, QuotedName, Number, String, Punct, End };

struct Token {
  TokKind kind = TokKind::End;
  std::string text;  // as written ("[Default]", "N'x'", "(")
  std::size_t offset = 0;
  int line = 0;
};

// Throws corvina20::Error kErrDatabase, source "Corvina20.Schema", with
// "Schema, riga <line>: <what>".
[[noreturn]] void Fail(int line, const std::string& what);

std::string Upper(std::string_view text);
std::string Lower(std::string_view text);
std::string_view Trim(std::string_view text);

// The end (one past the closing character) of the quoted run opening at
// `pos`, the closing character doubled as its escape; npos when unterminated.
std::size_t QuotedEnd(std::string_view text, std::size_t pos, char close);

// The tokens of `text`, whose first line is `firstLine`, without comments and
// blanks, closed by an End token. Throws (Fail) on an unterminated string,
// delimited name or comment.
std::vector<Token> Tokenize(std::string_view text, int firstLine);

// The name a (possibly delimited) identifier stands for, upper-cased, for
// comparisons.
std::string NameKey(const Token& token);

}  // namespace corvina20::data::ddl
