// T-SQL tokenizer; see TsqlTokenizer.h. Bytes from 0x80 up count as letters,
// so UTF-8 names (an accented column name) stay one identifier.
#include "data/tsql/TsqlTokenizer.h"

#include <string>

#include "data/tsql/TsqlError.h"

namespace corvina20::data::tsql {
namespace {

bool IsIdentStart(unsigned char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c >= 0x80;
}

bool IsIdentPart(unsigned char c) {
  return IsIdentStart(c) || (c >= '0' && c <= '9') || c == '$' || c == '#' || c == '@';
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

class Tokenizer {
 public:
  explicit Tokenizer(std::string_view s) : s_(s) {}

  std::vector<Token> Run() {
    std::vector<Token> out;
    for (;;) {
      SkipBlanksAndComments();
      if (i_ >= s_.size()) break;
      out.push_back(Next());
    }
    out.push_back(Token{TokenKind::End, "", s_.size()});
    return out;
  }

 private:
  char At(std::size_t k) const { return k < s_.size() ? s_[k] : '\0'; }

  void SkipBlanksAndComments() {
    while (i_ < s_.size()) {
      char c = s_[i_];
      if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v') {
        ++i_;
      } else if (c == '-' && At(i_ + 1) == '-') {
        while (i_ < s_.size() && s_[i_] != '\n') ++i_;
      } else if (c == '/' && At(i_ + 1) == '*') {
        SkipBlockComment();
      } else {
        return;
      }
    }
  }

  // T-SQL block comments nest.
  void SkipBlockComment() {
    int depth = 0;
    do {
      if (i_ >= s_.size()) ThrowUnsupported("commento /* non terminato");
      if (s_[i_] == '/' && At(i_ + 1) == '*') {
        ++depth;
        i_ += 2;
      } else if (s_[i_] == '*' && At(i_ + 1) == '/') {
        --depth;
        i_ += 2;
      } else {
        ++i_;
      }
    } while (depth > 0);
  }

  // Reads up to the closing `close`; a doubled `close` stands for itself.
  std::string Delimited(char close, std::string_view what) {
    std::string value;
    ++i_;  // opening quote
    for (;;) {
      if (i_ >= s_.size()) ThrowUnsupported(std::string(what) + " non terminato");
      char c = s_[i_++];
      if (c == close) {
        if (At(i_) != close) return value;
        ++i_;
      }
      value += c;
    }
  }

  Token Next() {
    std::size_t start = i_;
    unsigned char c = static_cast<unsigned char>(s_[i_]);
    if ((c == 'N' || c == 'n') && At(i_ + 1) == '\'') {
      ++i_;
      return Token{TokenKind::NationalString, Delimited('\'', "testo"), start};
    }
    if (IsIdentStart(c)) {
      while (i_ < s_.size() && IsIdentPart(static_cast<unsigned char>(s_[i_]))) ++i_;
      return Token{TokenKind::Identifier, std::string(s_.substr(start, i_ - start)), start};
    }
    if (c == '@') {
      ++i_;
      while (i_ < s_.size() && IsIdentPart(static_cast<unsigned char>(s_[i_]))) ++i_;
      return Token{TokenKind::Variable, std::string(s_.substr(start, i_ - start)), start};
    }
    if (c == '[') return Token{TokenKind::QuotedIdentifier, Delimited(']', "identificatore ["), start};
    if (c == '"') return Token{TokenKind::QuotedIdentifier, Delimited('"', "identificatore \""), start};
    if (c == '\'') return Token{TokenKind::String, Delimited('\'', "testo"), start};
    if (IsDigit(static_cast<char>(c)) || (c == '.' && IsDigit(At(i_ + 1)))) return NumberToken();
    if (c == '?') {
      ++i_;
      return Token{TokenKind::Param, "?", start};
    }
    static constexpr std::string_view kTwoChar[] = {"<=", ">=", "<>", "!=", "!<", "!>"};
    for (std::string_view op : kTwoChar) {
      if (s_.substr(i_, 2) == op) {
        i_ += 2;
        return Token{TokenKind::Operator, std::string(op), start};
      }
    }
    static constexpr std::string_view kOneChar = "(),.;*+-/%=<>&|^~";
    if (kOneChar.find(static_cast<char>(c)) != std::string_view::npos) {
      ++i_;
      return Token{TokenKind::Operator, std::string(1, static_cast<char>(c)), start};
    }
    ThrowUnsupported("carattere '" + std::string(1, static_cast<char>(c)) + "'");
  }

  Token NumberToken() {
    std::size_t start = i_;
    if (s_[i_] == '0' && (At(i_ + 1) == 'x' || At(i_ + 1) == 'X')) ThrowUnsupported("costante binaria 0x");
    while (IsDigit(At(i_))) ++i_;
    if (At(i_) == '.') {
      ++i_;
      while (IsDigit(At(i_))) ++i_;
    }
    if ((At(i_) == 'e' || At(i_) == 'E') &&
        (IsDigit(At(i_ + 1)) || ((At(i_ + 1) == '+' || At(i_ + 1) == '-') && IsDigit(At(i_ + 2))))) {
      i_ += 2;
      while (IsDigit(At(i_))) ++i_;
    }
    return Token{TokenKind::Number, std::string(s_.substr(start, i_ - start)), start};
  }

  std::string_view s_;
  std::size_t i_ = 0;
};

}  // namespace

std::vector<Token> Tokenize(std::string_view tsql) { return Tokenizer(tsql).Run(); }

}  // namespace corvina20::data::tsql
