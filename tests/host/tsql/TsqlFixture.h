// A SQLite file with a few of the module's tables (declared with SQL Server
// type names, as the schema does) and a helper that translates T-SQL, runs
// every resulting statement with the parameters bound in sequence, and
// renders the last statement's rows as "a|b|NULL" lines.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "data/tsql/TsqlTranslator.h"
#include "support/TestSupport.h"

namespace corvina20::test {

using SqlParam = std::variant<std::int64_t, std::string>;

struct SqlResult {
  std::vector<std::string> columns;  // result column names
  std::vector<std::string> rows;     // "v1|v2|…", NULL as "NULL"
};

class TsqlFixture {
 public:
  TsqlFixture();
  ~TsqlFixture();
  TsqlFixture(const TsqlFixture&) = delete;
  TsqlFixture& operator=(const TsqlFixture&) = delete;

  // Native SQLite text, for set-up and checks.
  void Exec(const std::string& sql);
  SqlResult Query(const std::string& sql);

  data::TranslatedSql Translate(std::string_view tsql);
  // Translates and runs; fails the test (via exceptions) on any error.
  SqlResult Run(std::string_view tsql, const std::vector<SqlParam>& params = {});
  // The declared types of a table's columns, "name type" each, lower-cased.
  std::vector<std::string> DeclaredColumns(const std::string& table);

  // Answers from the database's own catalogue, as the host does.
  data::ColumnTypeLookup Lookup();

 private:
  SqlResult RunNative(const std::string& sql, const std::vector<SqlParam>& params, std::size_t& next);

  TempDir dir_;
  sqlite3* db_ = nullptr;
};

}  // namespace corvina20::test
