// TranslateTsql: tokenize, parse, type, emit. See TsqlTranslator.h.
#include "data/tsql/TsqlTranslator.h"

#include <string>

#include "corvina20/Error.h"
#include "data/tsql/TsqlEmitter.h"
#include "data/tsql/TsqlError.h"
#include "data/tsql/TsqlParser.h"
#include "data/tsql/TsqlTokenizer.h"
#include "data/tsql/TsqlTyping.h"

namespace corvina20::data {

namespace tsql {

void ThrowUnsupported(std::string_view construct) {
  throw Error(kErrDatabase, "Corvina20.Sql", "Costrutto T-SQL non supportato: " + std::string(construct));
}

}  // namespace tsql

TranslatedSql TranslateTsql(std::string_view tsql, SqlDialect dialect, const ColumnTypeLookup& lookup,
                            const ColumnNotNullLookup& notNull) {
  std::unique_ptr<tsql::Emitter> emitter =
      dialect == SqlDialect::Postgres ? tsql::MakePostgresEmitter() : tsql::MakeSqliteEmitter();

  std::vector<tsql::Statement> statements = tsql::Parser(tsql::Tokenize(tsql)).ParseScript();
  TranslatedSql out;
  for (tsql::Statement& statement : statements) {
    tsql::TypeStatement(statement, lookup, notNull);
    for (std::string& text : emitter->Emit(statement)) out.statements.push_back(std::move(text));
    const auto& uses = emitter->ParamUses();
    out.paramUses.insert(out.paramUses.end(), uses.begin(), uses.end());
    const auto& calls = emitter->FreeTextCalls();
    out.freeTexts.insert(out.freeTexts.end(), calls.begin(), calls.end());
  }
  // The result is the last statement's: its column types, if it is a query.
  if (!statements.empty()) {
    out.columnTypes = tsql::ResultColumnTypes(statements.back());
    out.columnNames = tsql::ResultColumnNames(statements.back());
  }
  return out;
}

}  // namespace corvina20::data
