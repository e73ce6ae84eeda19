// Recursive-descent parser of the T-SQL subset into the tree of TsqlAst.h.
// It accepts exactly the statements and expressions the module writes; any
// other construct (an unknown function, a statement keyword without a rule,
// a table-valued function other than FREETEXTTABLE, a table hint, a @variable…) is reported by name through
// ThrowUnsupported. Statements (this file's .cpp) and expressions
// (TsqlParseExpr.cpp) are parsed by the same class.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "data/tsql/TsqlAst.h"
#include "data/tsql/TsqlTokenizer.h"

namespace corvina20::data::tsql {

class Parser {
 public:
  // REQUIRES: tokens end with an End token (as Tokenize gives them).
  explicit Parser(std::vector<Token> tokens);

  // The statements of the script, separated by ";" or simply following each
  // other. Empty for a text of blanks, comments and ";" only.
  std::vector<Statement> ParseScript();

 private:
  // Statements and clauses (TsqlParser.cpp).
  Statement ParseStatement();
  Statement ParseInsert();
  Statement ParseUpdate();
  Statement ParseDelete();
  std::unique_ptr<Select> ParseSelect();
  SelectCore ParseSelectCore();
  SelectItem ParseSelectItem();
  FromClause ParseFrom();
  TableRef ParseTableRef();
  TableRef ParseFreeText();
  Name ParseTableName();
  Name ParseAlias();

  // Expressions (TsqlParseExpr.cpp), from the loosest operator to the tightest.
  ExprPtr ParseExpr();
  ExprPtr ParseAnd();
  ExprPtr ParseNot();
  ExprPtr ParsePredicate();
  ExprPtr ParseAdditive();
  ExprPtr ParseMultiplicative();
  ExprPtr ParseUnary();
  ExprPtr ParsePrimary();
  ExprPtr ParseNamed();
  ExprPtr ParseCall();
  ExprPtr ParseConvert();
  ExprPtr ParseCast();
  ExprPtr ParseCase();
  TypeSpec ParseType();

  // Tokens.
  const Token& Peek(std::size_t ahead = 0) const;
  const Token& Advance();
  bool IsKeyword(std::string_view keyword, std::size_t ahead = 0) const;
  bool AcceptKeyword(std::string_view keyword);
  void ExpectKeyword(std::string_view keyword);
  bool IsOperator(std::string_view op, std::size_t ahead = 0) const;
  bool AcceptOperator(std::string_view op);
  void ExpectOperator(std::string_view op);
  // A name: a quoted identifier, or a bare one that is not a reserved word.
  bool IsName(std::size_t ahead = 0) const;
  Name ParseName();
  // Reports the current token as the construct without a rule.
  [[noreturn]] void Unexpected() const;

  std::vector<Token> tokens_;
  std::size_t pos_ = 0;
};

// True for the T-SQL reserved words the parser treats as keywords.
bool IsReservedWord(std::string_view word);

}  // namespace corvina20::data::tsql
