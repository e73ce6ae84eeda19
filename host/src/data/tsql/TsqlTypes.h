// SQL Server type names as the translator reasons about them: which family a
// declared type belongs to (text, integer, date…), and the type of an
// arithmetic result. Types stay SQL Server names throughout ("nvarchar(50)",
// "bit"), because the host maps declared types to ADO field types.
#pragma once

#include <string>
#include <string_view>

namespace corvina20::data::tsql {

enum class TypeFamily {
  Unknown,  // "" or a name outside the list
  Bit,
  Integer,  // tinyint, smallint, int, bigint
  Exact,    // decimal, numeric, money, smallmoney
  Float,    // float, real
  Text,     // char, varchar, nchar, nvarchar, text, ntext
  Date,     // date, time, datetime, datetime2, smalldatetime
};

// Lower-cased, blanks removed, "integer" spelled "int"; "" stays "".
std::string NormalizeType(std::string_view declared);

// The family of a type name with or without its size ("varchar(40)").
TypeFamily FamilyOf(std::string_view type);

inline bool IsTextType(std::string_view type) { return FamilyOf(type) == TypeFamily::Text; }

// The type of a + b, a - b… on numbers: the operand of higher SQL Server
// precedence (float > real > decimal/numeric > money > bigint > int > smallint
// > tinyint > bit); "" when either is unknown.
std::string ArithmeticType(const std::string& a, const std::string& b);

// The type of Sum(x) / Avg(x) for an argument of type `argument`: integers
// give int (bigint stays bigint), exact types keep theirs, anything else float.
std::string SumType(const std::string& argument);

}  // namespace corvina20::data::tsql
