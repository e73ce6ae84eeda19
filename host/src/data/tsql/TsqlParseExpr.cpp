// Expressions of the T-SQL subset, by T-SQL precedence: OR < AND < NOT <
// predicates (comparisons, IS NULL, IN, LIKE, BETWEEN) < + - < * / % <
// unary sign < primaries (literals, names, calls, CONVERT/CAST, CASE,
// subqueries). Operators outside the subset (&, |, ^, ~) are reported.
#include <string>
#include <utility>

#include "core/Text.h"
#include "data/tsql/TsqlError.h"
#include "data/tsql/TsqlParser.h"
#include "data/tsql/TsqlTypes.h"

namespace corvina20::data::tsql {
namespace {

ExprPtr Make(ExprKind kind, std::string text = {}) {
  auto e = std::make_unique<Expr>();
  e->kind = kind;
  e->text = std::move(text);
  return e;
}

ExprPtr MakeBinary(std::string op, ExprPtr left, ExprPtr right) {
  ExprPtr e = Make(ExprKind::Binary, std::move(op));
  e->args.push_back(std::move(left));
  e->args.push_back(std::move(right));
  return e;
}

// The comparison written by `token`, spelled the standard way ("!=" is "<>",
// "!<" is ">=", "!>" is "<="); "" when the token is no comparison.
std::string ComparisonOf(const Token& token) {
  if (token.kind != TokenKind::Operator) return "";
  const std::string& t = token.text;
  if (t == "=" || t == "<>" || t == "<" || t == ">" || t == "<=" || t == ">=") return t;
  if (t == "!=") return "<>";
  if (t == "!<") return ">=";
  if (t == "!>") return "<=";
  return "";
}

}  // namespace

ExprPtr Parser::ParseExpr() {
  ExprPtr left = ParseAnd();
  while (AcceptKeyword("OR")) left = MakeBinary("OR", std::move(left), ParseAnd());
  return left;
}

ExprPtr Parser::ParseAnd() {
  ExprPtr left = ParseNot();
  while (AcceptKeyword("AND")) left = MakeBinary("AND", std::move(left), ParseNot());
  return left;
}

ExprPtr Parser::ParseNot() {
  if (!AcceptKeyword("NOT")) return ParsePredicate();
  ExprPtr e = Make(ExprKind::Unary, "NOT");
  e->args.push_back(ParseNot());
  return e;
}

ExprPtr Parser::ParsePredicate() {
  ExprPtr left = ParseAdditive();
  std::string comparison = ComparisonOf(Peek());
  if (!comparison.empty()) {
    Advance();
    return MakeBinary(comparison, std::move(left), ParseAdditive());
  }
  if (AcceptKeyword("IS")) {
    ExprPtr e = Make(ExprKind::IsNullTest);
    e->negated = AcceptKeyword("NOT");
    ExpectKeyword("NULL");
    e->args.push_back(std::move(left));
    return e;
  }
  bool negated = IsKeyword("NOT") && (IsKeyword("IN", 1) || IsKeyword("LIKE", 1) || IsKeyword("BETWEEN", 1));
  if (negated) Advance();
  ExprPtr e;
  if (AcceptKeyword("IN")) {
    e = Make(ExprKind::In);
    e->args.push_back(std::move(left));
    ExpectOperator("(");
    if (IsKeyword("SELECT")) {
      e->query = ParseSelect();
    } else {
      do e->args.push_back(ParseExpr());
      while (AcceptOperator(","));
    }
    ExpectOperator(")");
  } else if (AcceptKeyword("LIKE")) {
    e = Make(ExprKind::Like);
    e->args.push_back(std::move(left));
    e->args.push_back(ParseAdditive());
    if (AcceptKeyword("ESCAPE")) e->args.push_back(ParseAdditive());
  } else if (AcceptKeyword("BETWEEN")) {
    e = Make(ExprKind::Between);
    e->args.push_back(std::move(left));
    e->args.push_back(ParseAdditive());
    ExpectKeyword("AND");
    e->args.push_back(ParseAdditive());
  } else {
    return left;
  }
  e->negated = negated;
  return e;
}

ExprPtr Parser::ParseAdditive() {
  ExprPtr left = ParseMultiplicative();
  while (IsOperator("+") || IsOperator("-")) {
    std::string op = Advance().text;
    left = MakeBinary(op, std::move(left), ParseMultiplicative());
  }
  return left;
}

ExprPtr Parser::ParseMultiplicative() {
  ExprPtr left = ParseUnary();
  while (IsOperator("*") || IsOperator("/") || IsOperator("%")) {
    std::string op = Advance().text;
    left = MakeBinary(op, std::move(left), ParseUnary());
  }
  return left;
}

ExprPtr Parser::ParseUnary() {
  if (IsOperator("-") || IsOperator("+")) {
    ExprPtr e = Make(ExprKind::Unary, Advance().text);
    e->args.push_back(ParseUnary());
    return e;
  }
  return ParsePrimary();
}

ExprPtr Parser::ParsePrimary() {
  const Token& t = Peek();
  switch (t.kind) {
    case TokenKind::Number:
      return Make(ExprKind::Number, Advance().text);
    case TokenKind::String:
    case TokenKind::NationalString: {
      ExprPtr e = Make(ExprKind::String, t.text);
      e->national = t.kind == TokenKind::NationalString;
      Advance();
      return e;
    }
    case TokenKind::Param:
      Advance();
      return Make(ExprKind::Param, "?");
    case TokenKind::QuotedIdentifier:
      return ParseNamed();
    case TokenKind::Identifier:
      break;
    default:
      if (AcceptOperator("(")) {
        ExprPtr e;
        if (IsKeyword("SELECT")) {
          e = Make(ExprKind::Subquery);
          e->query = ParseSelect();
        } else {
          e = Make(ExprKind::Paren);
          e->args.push_back(ParseExpr());
        }
        ExpectOperator(")");
        return e;
      }
      Unexpected();
  }
  if (AcceptKeyword("NULL")) return Make(ExprKind::Null);
  if (IsKeyword("CASE")) return ParseCase();
  if (IsKeyword("CONVERT")) return ParseConvert();
  if (IsKeyword("CAST")) return ParseCast();
  if (AcceptKeyword("EXISTS")) {
    ExprPtr e = Make(ExprKind::Exists);
    ExpectOperator("(");
    if (!IsKeyword("SELECT")) Unexpected();
    e->query = ParseSelect();
    ExpectOperator(")");
    return e;
  }
  if (IsOperator("(", 1)) return ParseCall();
  return ParseNamed();
}

// name, qualifier.name, qualifier.*
ExprPtr Parser::ParseNamed() {
  Name first = ParseName();
  if (!AcceptOperator(".")) {
    ExprPtr e = Make(ExprKind::Column);
    e->name = std::move(first);
    return e;
  }
  if (AcceptOperator("*")) {
    ExprPtr e = Make(ExprKind::Star);
    e->qualifier = std::move(first);
    return e;
  }
  ExprPtr e = Make(ExprKind::Column);
  e->qualifier = std::move(first);
  e->name = ParseName();
  if (IsOperator(".")) ThrowUnsupported("nome a tre parti " + e->qualifier.text + "." + e->name.text);
  return e;
}

// function(args), COUNT(*), aggregate(DISTINCT x)
ExprPtr Parser::ParseCall() {
  const Token& nameToken = Advance();
  const FunctionRule* rule = FindFunction(nameToken.text);
  if (!rule) ThrowUnsupported(text::Upper(nameToken.text) + "()");
  ExprPtr e = Make(ExprKind::Call, nameToken.text);
  e->function = rule;
  ExpectOperator("(");
  if (!IsOperator(")")) {
    bool aggregate = rule->id == Function::Count || rule->id == Function::Sum || rule->id == Function::Avg ||
                     rule->id == Function::Min || rule->id == Function::Max;
    if (aggregate && AcceptKeyword("DISTINCT")) e->distinct = true;
    if (rule->id == Function::Count && AcceptOperator("*")) {
      e->args.push_back(Make(ExprKind::Star));
    } else {
      do e->args.push_back(ParseExpr());
      while (AcceptOperator(","));
    }
  }
  ExpectOperator(")");
  int count = static_cast<int>(e->args.size());
  if (count < rule->minArgs || count > rule->maxArgs)
    ThrowUnsupported(std::string(rule->name) + " con " + std::to_string(count) + " argomenti");
  if (IsKeyword("OVER")) ThrowUnsupported(std::string(rule->name) + " OVER");
  return e;
}

// CONVERT(type, expr); the style argument has no rule.
ExprPtr Parser::ParseConvert() {
  Advance();
  ExpectOperator("(");
  ExprPtr e = Make(ExprKind::Convert);
  e->target = ParseType();
  ExpectOperator(",");
  e->args.push_back(ParseExpr());
  if (IsOperator(",")) ThrowUnsupported("CONVERT con stile");
  ExpectOperator(")");
  return e;
}

// CAST(expr AS type)
ExprPtr Parser::ParseCast() {
  Advance();
  ExpectOperator("(");
  ExprPtr e = Make(ExprKind::Convert);
  e->args.push_back(ParseExpr());
  ExpectKeyword("AS");
  e->target = ParseType();
  ExpectOperator(")");
  return e;
}

// A SQL Server type name with its optional size: varchar(40), varchar(max),
// decimal(10,2).
TypeSpec Parser::ParseType() {
  if (Peek().kind != TokenKind::Identifier) Unexpected();
  TypeSpec type;
  type.base = NormalizeType(Peek().text);
  if (FamilyOf(type.base) == TypeFamily::Unknown) ThrowUnsupported("tipo " + Peek().text);
  Advance();
  if (AcceptOperator("(")) {
    if (AcceptKeyword("MAX")) {
      type.size = "max";
    } else {
      if (Peek().kind != TokenKind::Number) Unexpected();
      type.size = Advance().text;
      if (AcceptOperator(",")) {
        if (Peek().kind != TokenKind::Number) Unexpected();
        type.size += "," + Advance().text;
      }
    }
    ExpectOperator(")");
  }
  return type;
}

// CASE [operand] WHEN … THEN … [WHEN … THEN …] [ELSE …] END
ExprPtr Parser::ParseCase() {
  ExpectKeyword("CASE");
  ExprPtr e = Make(ExprKind::Case);
  if (!IsKeyword("WHEN")) e->caseOperand = ParseExpr();
  if (!IsKeyword("WHEN")) Unexpected();
  while (AcceptKeyword("WHEN")) {
    e->args.push_back(ParseExpr());
    ExpectKeyword("THEN");
    e->args.push_back(ParseExpr());
  }
  if (AcceptKeyword("ELSE")) e->caseElse = ParseExpr();
  ExpectKeyword("END");
  return e;
}

}  // namespace corvina20::data::tsql
