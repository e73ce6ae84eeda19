// A small recursive-descent parser for recordset filters, evaluated per row.
#include "data/RecordFilter.h"

#include <cctype>
#include <string>

#include "core/Text.h"
#include "corvina20/Error.h"

namespace corvina20::data {
namespace {

[[noreturn]] void Malformed(std::string_view filter, std::string_view why) {
  throw Error(kErrHost, "Corvina20.Recordset",
              "Filtro non valido (" + std::string(why) + "): " + std::string(filter));
}

enum class Op { Eq, Ne, Lt, Gt, Le, Ge, Like };

struct Comparison final : RecordFilter {
  std::size_t field = 0;
  Op op = Op::Eq;
  Variant value;

  static bool LikeMatch(std::string_view s, std::string_view p) {
    // '*' and '%' match any run, '_' and '?' one character; case-insensitive.
    if (p.empty()) return s.empty();
    if (p[0] == '*' || p[0] == '%') {
      for (std::size_t i = 0; i <= s.size(); ++i)
        if (LikeMatch(s.substr(i), p.substr(1))) return true;
      return false;
    }
    if (s.empty()) return false;
    if (p[0] == '_' || p[0] == '?' ||
        std::toupper(static_cast<unsigned char>(p[0])) ==
            std::toupper(static_cast<unsigned char>(s[0])))
      return LikeMatch(s.substr(1), p.substr(1));
    return false;
  }

  bool Matches(const std::vector<Variant>& row) const override {
    const Variant& v = row[field];
    if (value.IsNull()) {
      if (op == Op::Eq) return v.IsNull();
      if (op == Op::Ne) return !v.IsNull();
      return false;
    }
    if (v.IsNull()) return false;
    try {
      if (op == Op::Like) return LikeMatch(v.IsEmpty() ? "" : v.ToString(), value.ToString());
      int cmp;
      if (v.Kind() == VariantKind::Boolean && value.IsNumeric()) {
        // A bit column is true for any nonzero literal: "Cliente = 1" holds.
        bool a = v.ToBool(), b = value.ToDouble() != 0;
        cmp = a == b ? 0 : (a ? 1 : -1);
      } else if (value.Kind() == VariantKind::String && !v.IsNumeric() && v.Kind() != VariantKind::Date) {
        std::string a = text::Upper(v.IsEmpty() ? "" : v.ToString());
        std::string b = text::Upper(value.StringRef());
        cmp = a < b ? -1 : (a > b ? 1 : 0);
      } else if (value.Kind() == VariantKind::Date || v.Kind() == VariantKind::Date) {
        double a = v.ToDate().serial, b = value.ToDate().serial;
        cmp = a < b ? -1 : (a > b ? 1 : 0);
      } else {
        double a = v.ToDouble(), b = value.ToDouble();
        cmp = a < b ? -1 : (a > b ? 1 : 0);
      }
      switch (op) {
        case Op::Eq: return cmp == 0;
        case Op::Ne: return cmp != 0;
        case Op::Lt: return cmp < 0;
        case Op::Gt: return cmp > 0;
        case Op::Le: return cmp <= 0;
        case Op::Ge: return cmp >= 0;
        case Op::Like: break;
      }
    } catch (const Error&) {
      return false;  // a value of another kind never matches
    }
    return false;
  }
};

struct Logical final : RecordFilter {
  bool isAnd = true;
  std::unique_ptr<RecordFilter> left, right;
  bool Matches(const std::vector<Variant>& row) const override {
    return isAnd ? (left->Matches(row) && right->Matches(row))
                 : (left->Matches(row) || right->Matches(row));
  }
};

class Parser {
 public:
  Parser(std::string_view text, const std::vector<FieldInfo>& fields)
      : text_(text), fields_(fields) {}

  std::unique_ptr<RecordFilter> Parse() {
    auto result = Or();
    Skip();
    if (pos_ != text_.size()) Malformed(text_, "testo in eccesso");
    return result;
  }

 private:
  void Skip() {
    while (pos_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[pos_]))) ++pos_;
  }
  bool Keyword(std::string_view word) {
    Skip();
    if (!text::StartsWithNoCase(text_.substr(pos_), word)) return false;
    std::size_t end = pos_ + word.size();
    if (end < text_.size() && (std::isalnum(static_cast<unsigned char>(text_[end])) || text_[end] == '_'))
      return false;
    pos_ = end;
    return true;
  }

  std::unique_ptr<RecordFilter> Or() {
    auto left = And();
    while (Keyword("OR")) {
      auto node = std::make_unique<Logical>();
      node->isAnd = false;
      node->left = std::move(left);
      node->right = And();
      left = std::move(node);
    }
    return left;
  }

  std::unique_ptr<RecordFilter> And() {
    auto left = Primary();
    while (Keyword("AND")) {
      auto node = std::make_unique<Logical>();
      node->left = std::move(left);
      node->right = Primary();
      left = std::move(node);
    }
    return left;
  }

  std::unique_ptr<RecordFilter> Primary() {
    Skip();
    if (pos_ < text_.size() && text_[pos_] == '(') {
      ++pos_;
      auto inner = Or();
      Skip();
      if (pos_ >= text_.size() || text_[pos_] != ')') Malformed(text_, "parentesi non chiusa");
      ++pos_;
      return inner;
    }
    auto cmp = std::make_unique<Comparison>();
    cmp->field = Column();
    cmp->op = Operator();
    cmp->value = Value();
    return cmp;
  }

  std::size_t Column() {
    Skip();
    std::string name;
    if (pos_ < text_.size() && text_[pos_] == '[') {
      auto close = text_.find(']', pos_);
      if (close == std::string_view::npos) Malformed(text_, "parentesi quadra non chiusa");
      name = std::string(text_.substr(pos_ + 1, close - pos_ - 1));
      pos_ = close + 1;
    } else {
      std::size_t start = pos_;
      while (pos_ < text_.size() &&
             (std::isalnum(static_cast<unsigned char>(text_[pos_])) || text_[pos_] == '_' || text_[pos_] == '.'))
        ++pos_;
      name = std::string(text_.substr(start, pos_ - start));
    }
    if (name.empty()) Malformed(text_, "manca il nome del campo");
    for (std::size_t i = 0; i < fields_.size(); ++i)
      if (text::EqualsNoCase(fields_[i].name, name)) return i;
    Malformed(text_, "campo sconosciuto " + name);
  }

  Op Operator() {
    Skip();
    auto rest = text_.substr(pos_);
    struct Entry { std::string_view text; Op op; };
    static const Entry kOps[] = {{"<>", Op::Ne}, {"<=", Op::Le}, {">=", Op::Ge},
                                 {"=", Op::Eq},  {"<", Op::Lt},  {">", Op::Gt}};
    for (const Entry& e : kOps)
      if (rest.substr(0, e.text.size()) == e.text) {
        pos_ += e.text.size();
        return e.op;
      }
    if (Keyword("LIKE")) return Op::Like;
    Malformed(text_, "operatore mancante");
  }

  Variant Value() {
    Skip();
    if (pos_ >= text_.size()) Malformed(text_, "valore mancante");
    char c = text_[pos_];
    if (c == '\'') {
      std::string s;
      ++pos_;
      for (;;) {
        if (pos_ >= text_.size()) Malformed(text_, "testo non chiuso");
        if (text_[pos_] == '\'') {
          if (pos_ + 1 < text_.size() && text_[pos_ + 1] == '\'') {
            s += '\'';
            pos_ += 2;
            continue;
          }
          ++pos_;
          break;
        }
        s += text_[pos_++];
      }
      return Variant(s);
    }
    if (c == '#') {
      auto close = text_.find('#', pos_ + 1);
      if (close == std::string_view::npos) Malformed(text_, "data non chiusa");
      Variant text(text_.substr(pos_ + 1, close - pos_ - 1));
      pos_ = close + 1;
      try {
        return Variant(text.ToDate());
      } catch (const Error&) {
        Malformed(text_, "data non valida");
      }
    }
    if (Keyword("NULL")) return Variant::Null();
    std::size_t start = pos_;
    if (c == '-' || c == '+') ++pos_;
    while (pos_ < text_.size() && (std::isdigit(static_cast<unsigned char>(text_[pos_])) || text_[pos_] == '.'))
      ++pos_;
    std::string number(text_.substr(start, pos_ - start));
    if (number.empty() || number == "-" || number == "+") Malformed(text_, "valore non valido");
    // Filters written by code use the invariant '.' as decimal point.
    char* end = nullptr;
    double d = std::strtod(number.c_str(), &end);
    if (*end != '\0') Malformed(text_, "numero non valido");
    if (number.find('.') == std::string::npos) return Variant(static_cast<std::int64_t>(d));
    return Variant(d);
  }

  std::string_view text_;
  const std::vector<FieldInfo>& fields_;
  std::size_t pos_ = 0;
};

}  // namespace

RecordFilter::~RecordFilter() = default;

std::unique_ptr<RecordFilter> RecordFilter::Parse(std::string_view filter,
                                                  const std::vector<FieldInfo>& fields) {
  return Parser(filter, fields).Parse();
}

}  // namespace corvina20::data
