// The translator's test database; see TsqlFixture.h.
#include "TsqlFixture.h"

#include <stdexcept>

#include "data/sqlite/SqliteText.h"

namespace corvina20::test {
namespace {

constexpr const char* kSchema = R"(
CREATE TABLE STDAnagrafiche (IdAnagrafica int PRIMARY KEY, RagioneSociale nvarchar(80),
  RagioneSociale2 nvarchar(80), Indirizzo nvarchar(80), Citta nvarchar(50), CodNazione varchar(3),
  PartitaIva varchar(20), CodiceFiscale varchar(16), Cliente bit, Fornitore bit, Vettore bit,
  Contatto bit, CassaCorrispettivi bit);
CREATE TABLE STDAnagraficheStorico (IdAnagrafica int, IdRiga smallint, RagioneSociale nvarchar(80),
  DataAnagrafica datetime, PRIMARY KEY (IdAnagrafica, IdRiga));
CREATE TABLE CRMAnagraficheProfilazione (IdAnagrafica int, codProfilazione varchar(10), Leads bit,
  codFamiglia varchar(10), codTipologia varchar(10), Valutazione int, DataProfilazione datetime);
CREATE TABLE CRMAnagraficaClienti (IdAnagrafica int PRIMARY KEY, Note text);
CREATE TABLE CRMCalendarEvents (IdEvento int PRIMARY KEY, IdAnagrafica int, Leads bit);
CREATE TABLE COGPrimeNoteTeste (IdPrimaNota int PRIMARY KEY, IdAnagrafica int,
  DataRegistrazione datetime, Provvisoria bit, TipoRegIva smallint, TotDocumentoVB money);
CREATE TABLE COGPrimeNoteRIva (IdPrimaNota int, SegnoIva smallint, ImponibileVB money);

INSERT INTO STDAnagrafiche VALUES
  (1, 'Rossi Spa', NULL, 'Via Roma 1', 'Milano', 'IT', '01234567890', NULL, 1, 0, NULL, 0, 0),
  (2, 'Bianchi Srl', 'Div. Nord', 'Via Po 2', 'Torino', 'IT', NULL, 'BNCMRA80A01L219X', NULL, 1, 0, 1, NULL),
  (3, 'Verdi & C', NULL, 'Corso Italia 3', 'Milano', 'FR', NULL, NULL, 0, NULL, 1, NULL, 1),
  (4, 'D''Amico  ', NULL, NULL, NULL, '', NULL, NULL, 1, 1, 0, 0, 0);
INSERT INTO STDAnagraficheStorico VALUES
  (1, 1, 'Rossi', '2020-01-10 00:00:00'), (1, 2, 'Rossi Srl', '2021-03-05 00:00:00'),
  (2, 1, 'Bianchi', '2019-07-01 00:00:00');
INSERT INTO COGPrimeNoteTeste VALUES
  (10, 1, '2011-03-15 00:00:00', 0, 2, 4000), (11, 1, '2011-11-02 00:00:00', 1, 2, 100),
  (12, 2, '2010-05-20 00:00:00', 0, 1, 500), (13, 3, '2011-12-31 00:00:00', 0, 2, 3600);
INSERT INTO COGPrimeNoteRIva VALUES (10, 1, 100.5), (10, -1, 20.25), (12, 1, 7);
)";

void Check(int rc, sqlite3* db, const std::string& sql) {
  if (rc != SQLITE_OK && rc != SQLITE_ROW && rc != SQLITE_DONE)
    throw std::runtime_error(std::string(sqlite3_errmsg(db)) + " in: " + sql);
}

}  // namespace

TsqlFixture::TsqlFixture() {
  std::string path = dir_.File("tsql.db");
  if (sqlite3_open(path.c_str(), &db_) != SQLITE_OK) throw std::runtime_error("cannot open " + path);
  // The translated texts name the host's text collation, as on its connections.
  data::RegisterTextSemantics(db_);
  Exec(kSchema);
}

TsqlFixture::~TsqlFixture() { sqlite3_close(db_); }

void TsqlFixture::Exec(const std::string& sql) {
  char* error = nullptr;
  if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
    std::string message = error ? error : "?";
    sqlite3_free(error);
    throw std::runtime_error(message + " in: " + sql);
  }
}

SqlResult TsqlFixture::Query(const std::string& sql) {
  std::size_t next = 0;
  return RunNative(sql, {}, next);
}

data::ColumnTypeLookup TsqlFixture::Lookup() {
  return [this](std::string_view table, std::string_view column) -> std::optional<std::string> {
    const char* type = nullptr;
    int rc = sqlite3_table_column_metadata(db_, nullptr, std::string(table).c_str(),
                                           std::string(column).c_str(), &type, nullptr, nullptr,
                                           nullptr, nullptr);
    if (rc != SQLITE_OK || type == nullptr) return std::nullopt;
    return std::string(type);
  };
}

data::TranslatedSql TsqlFixture::Translate(std::string_view tsql) {
  return data::TranslateTsql(tsql, data::SqlDialect::Sqlite, Lookup());
}

SqlResult TsqlFixture::Run(std::string_view tsql, const std::vector<SqlParam>& params) {
  data::TranslatedSql translated = Translate(tsql);
  SqlResult last;
  std::size_t next = 0;
  for (const std::string& statement : translated.statements) last = RunNative(statement, params, next);
  if (next != params.size()) throw std::runtime_error("parameters left unbound");
  return last;
}

SqlResult TsqlFixture::RunNative(const std::string& sql, const std::vector<SqlParam>& params,
                                 std::size_t& next) {
  SqlResult result;
  const char* tail = sql.c_str();
  while (*tail) {
    sqlite3_stmt* stmt = nullptr;
    Check(sqlite3_prepare_v2(db_, tail, -1, &stmt, &tail), db_, sql);
    if (!stmt) break;  // trailing blanks
    int count = sqlite3_bind_parameter_count(stmt);
    for (int i = 1; i <= count; ++i, ++next) {
      if (next >= params.size()) throw std::runtime_error("too few parameters for: " + sql);
      if (auto* n = std::get_if<std::int64_t>(&params[next])) {
        sqlite3_bind_int64(stmt, i, *n);
      } else {
        const std::string& s = std::get<std::string>(params[next]);
        sqlite3_bind_text(stmt, i, s.c_str(), static_cast<int>(s.size()), SQLITE_TRANSIENT);
      }
    }
    result = SqlResult{};
    for (int c = 0; c < sqlite3_column_count(stmt); ++c) result.columns.push_back(sqlite3_column_name(stmt, c));
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
      std::string row;
      for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
        if (c) row += "|";
        const unsigned char* text = sqlite3_column_text(stmt, c);
        row += text ? reinterpret_cast<const char*>(text) : "NULL";
      }
      result.rows.push_back(row);
    }
    sqlite3_finalize(stmt);
    Check(rc, db_, sql);
  }
  return result;
}

std::vector<std::string> TsqlFixture::DeclaredColumns(const std::string& table) {
  // SQLite keeps its own spelling of the types it knows ("int" as "INT").
  return Query("SELECT name || ' ' || lower(type) FROM pragma_table_info('" + table + "')").rows;
}

}  // namespace corvina20::test
