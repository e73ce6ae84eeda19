// The objects the host keeps in a PostgreSQL database besides the schema's
// tables: the text collation, the bit domain, T-SQL LIKE and the trigger that
// keeps an IDENTITY's sequence past keys written explicitly. Their names are
// shared by the DDL converter, the translator's emitter and the backend.
#pragma once

#include <string>
#include <string_view>

namespace corvina20::data::pg {

// Case-insensitive, accent-sensitive ICU collation ('è' = 'È', 'e' <> 'è'),
// declared on every text column: =, IN, ORDER BY, GROUP BY, DISTINCT and
// unique indexes follow it. Nondeterministic, so PostgreSQL 15 refuses LIKE,
// regular expressions and substring searches on it: see kLikeFunction.
inline constexpr const char* kTextCollation = "corvina_ci";

// bit is a domain over smallint: `WHERE Flag = 1`, `isnull(Flag, 0)` and
// `Sum(Flag)` keep working as on the server the module was written for, and
// the catalog still tells a bit column (read as Boolean) from a smallint.
inline constexpr const char* kBitDomain = "corvina_bit";

// corvina_like(text, pattern[, escape]): T-SQL LIKE (%, _, [abc], [a-z],
// [^a]) under the collation's rule, both sides lower-cased by ICU.
inline constexpr const char* kLikeFunction = "corvina_like";

// The statement-level trigger function that moves an IDENTITY column's
// sequence past the largest key in the table (argument: the column), so a
// row inserted with an explicit key (copies, demo data) is never followed
// by a generated duplicate.
inline constexpr const char* kIdentityFollow = "corvina_identity_follow";

// The PostgreSQL type for a SQL Server column type ("varchar(40)", "bit",
// "money", "nvarchar(max)"…): bit as kBitDomain, tinyint smallint, money
// numeric(19,4), every character type text (lengths unchecked, as on SQLite;
// char(n) would pad with blanks), datetime timestamp(0); "" for a type
// outside the schema's list.
std::string PostgresTypeOf(std::string_view sqlServerType);

// The script that creates (or replaces) the objects above; idempotent.
std::string HostObjectsScript();

}  // namespace corvina20::data::pg
