// The text level of the schema language: the tokens of a DDL batch, and the
// splitting of plain SQL scripts into statements. Both know the quoting rules
// of SQL Server and SQLite ('…' with '' inside, "…", […]) and skip comments.
#include "data/schema/DdlTokenizer.h"

#include <algorithm>
#include <cctype>

#include "corvina20/Error.h"
#include "data/schema/DdlConverter.h"

namespace corvina20::data {
namespace ddl {
namespace {

bool IsWordStart(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '@' || c == '#' ||
         static_cast<unsigned char>(c) >= 0x80;
}
bool IsWordChar(char c) {
  return IsWordStart(c) || std::isdigit(static_cast<unsigned char>(c)) != 0 || c == '$';
}

}  // namespace

[[noreturn]] void Fail(int line, const std::string& what) {
  throw Error(kErrDatabase, "Corvina20.Schema", "Schema, riga " + std::to_string(line) + ": " + what);
}

std::string Upper(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return out;
}

std::string Lower(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

std::string_view Trim(std::string_view text) {
  const auto blank = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

// Finds the end of a quoted run starting at `pos` (the opening quote), with
// the closing character doubled as its escape. Returns npos when unterminated.
std::size_t QuotedEnd(std::string_view text, std::size_t pos, char close) {
  for (std::size_t i = pos + 1; i < text.size(); ++i) {
    if (text[i] != close) continue;
    if (i + 1 < text.size() && text[i + 1] == close) {
      ++i;
      continue;
    }
    return i + 1;
  }
  return std::string_view::npos;
}

std::vector<Token> Tokenize(std::string_view text, int firstLine) {
  std::vector<Token> tokens;
  int line = firstLine;
  std::size_t i = 0;
  const auto countLines = [&](std::size_t from, std::size_t to) {
    line += static_cast<int>(std::count(text.begin() + static_cast<std::ptrdiff_t>(from),
                                        text.begin() + static_cast<std::ptrdiff_t>(to), '\n'));
  };
  while (i < text.size()) {
    const char c = text[i];
    if (c == '\n') {
      ++line;
      ++i;
      continue;
    }
    if (std::isspace(static_cast<unsigned char>(c)) != 0) {
      ++i;
      continue;
    }
    if (c == '-' && i + 1 < text.size() && text[i + 1] == '-') {
      while (i < text.size() && text[i] != '\n') ++i;
      continue;
    }
    if (c == '/' && i + 1 < text.size() && text[i + 1] == '*') {
      const std::size_t end = text.find("*/", i + 2);
      if (end == std::string_view::npos) Fail(line, "commento /* non chiuso");
      countLines(i, end);
      i = end + 2;
      continue;
    }
    Token token;
    token.offset = i;
    token.line = line;
    std::size_t end = i + 1;
    if ((c == 'N' || c == 'n') && i + 1 < text.size() && text[i + 1] == '\'') {
      end = QuotedEnd(text, i + 1, '\'');
      if (end == std::string_view::npos) Fail(line, "stringa non chiusa");
      token.kind = TokKind::String;
    } else if (c == '\'') {
      end = QuotedEnd(text, i, '\'');
      if (end == std::string_view::npos) Fail(line, "stringa non chiusa");
      token.kind = TokKind::String;
    } else if (c == '[' || c == '"') {
      end = QuotedEnd(text, i, c == '[' ? ']' : '"');
      if (end == std::string_view::npos) Fail(line, "nome tra delimitatori non chiuso");
      token.kind = TokKind::QuotedName;
    } else if (std::isdigit(static_cast<unsigned char>(c)) != 0) {
      while (end < text.size() &&
             (std::isdigit(static_cast<unsigned char>(text[end])) != 0 || text[end] == '.')) {
        ++end;
      }
      token.kind = TokKind::Number;
    } else if (IsWordStart(c)) {
      while (end < text.size() && IsWordChar(text[end])) ++end;
      token.kind = TokKind::Word;
    } else {
      token.kind = TokKind::Punct;
    }
    token.text = std::string(text.substr(i, end - i));
    countLines(i, end);
    tokens.push_back(std::move(token));
    i = end;
  }
  Token last;
  last.kind = TokKind::End;
  last.offset = text.size();
  last.line = line;
  tokens.push_back(last);
  return tokens;
}

// The name a (possibly delimited) identifier stands for, for comparisons.
std::string NameKey(const Token& token) {
  if (token.kind == TokKind::QuotedName) {
    return Upper(token.text.substr(1, token.text.size() - 2));
  }
  return Upper(token.text);
}

}  // namespace ddl

std::vector<std::string> SplitSqlStatements(std::string_view sql) {
  std::vector<std::string> statements;
  std::string current;
  bool meaningful = false;
  int line = 1;
  const auto finish = [&]() {
    const std::string_view text = ddl::Trim(current);
    if (meaningful && !text.empty()) statements.emplace_back(text);
    current.clear();
    meaningful = false;
  };
  std::size_t i = 0;
  while (i < sql.size()) {
    const char c = sql[i];
    if (c == '-' && i + 1 < sql.size() && sql[i + 1] == '-') {
      while (i < sql.size() && sql[i] != '\n') ++i;
      current += ' ';
      continue;
    }
    if (c == '/' && i + 1 < sql.size() && sql[i + 1] == '*') {
      const std::size_t end = sql.find("*/", i + 2);
      if (end == std::string_view::npos) ddl::Fail(line, "commento /* non chiuso");
      line += static_cast<int>(std::count(sql.begin() + static_cast<std::ptrdiff_t>(i),
                                          sql.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
      current += ' ';
      i = end + 2;
      continue;
    }
    if (c == '\'' || c == '"' || c == '[') {
      const std::size_t end = ddl::QuotedEnd(sql, i, c == '[' ? ']' : c);
      if (end == std::string_view::npos) ddl::Fail(line, "testo tra apici non chiuso");
      const std::string_view quoted = sql.substr(i, end - i);
      line += static_cast<int>(std::count(quoted.begin(), quoted.end(), '\n'));
      current += quoted;
      meaningful = true;
      i = end;
      continue;
    }
    if (c == ';') {
      finish();
      ++i;
      continue;
    }
    if (c == '\n') ++line;
    if (std::isspace(static_cast<unsigned char>(c)) == 0) meaningful = true;
    current += c;
    ++i;
  }
  finish();
  return statements;
}

}  // namespace corvina20::data
