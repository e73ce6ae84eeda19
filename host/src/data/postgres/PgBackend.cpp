// PostgreSQL implementation of Backend over libpq. Statements run with
// PQexecParams, every parameter sent as text of unknown type so that the
// server types it from its use, as it would a literal. Values come back typed
// by the column's SQL Server type (from the catalog: the column's comment, or
// its PostgreSQL type for work tables) exactly as the SQLite backend types
// them. Inside a transaction each statement runs under a savepoint: a failed
// statement leaves the transaction usable, as on the other backends.
#include "data/postgres/PgBackend.h"

#include <libpq-fe.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <utility>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "data/AdoTypes.h"
#include "data/SqlPlaceholders.h"
#include "data/postgres/PgFullText.h"
#include "data/postgres/PgHostObjects.h"

namespace corvina20::data {
namespace {

constexpr const char* kSource = "Corvina20.PostgreSQL";

// PostgreSQL type OIDs (pg_type.h); stable across versions.
constexpr Oid kBoolOid = 16, kInt8Oid = 20, kInt2Oid = 21, kInt4Oid = 23, kFloat4Oid = 700,
              kFloat8Oid = 701, kNumericOid = 1700, kDateOid = 1082, kTimestampOid = 1114,
              kTimestampTzOid = 1184;

struct ResultDeleter {
  void operator()(PGresult* r) const { PQclear(r); }
};
using Result = std::unique_ptr<PGresult, ResultDeleter>;

// '?' outside quotes becomes $1, $2… in order.
std::string NumberPlaceholders(std::string_view sql) {
  std::string out;
  out.reserve(sql.size() + 8);
  std::size_t from = 0;
  int n = 0;
  for (std::size_t at : PlaceholderOffsets(sql)) {
    out.append(sql.substr(from, at - from));
    out += "$" + std::to_string(++n);
    from = at + 1;
  }
  out.append(sql.substr(from));
  return out;
}

// A parameter as the text PostgreSQL reads for a literal; nullopt for NULL.
std::optional<std::string> ParamText(const Variant& v) {
  char buffer[64];
  switch (v.Kind()) {
    case VariantKind::Empty:
    case VariantKind::Null:
      return std::nullopt;
    case VariantKind::Boolean:
      return std::string(v.ToBool() ? "1" : "0");
    case VariantKind::Integer:
    case VariantKind::Long:
    case VariantKind::BigInt:
      return std::to_string(v.ToBigInt());
    case VariantKind::Single:
    case VariantKind::Double:
    case VariantKind::Currency:
    case VariantKind::Decimal:
      std::snprintf(buffer, sizeof buffer, "%.17g", v.ToDouble());
      return std::string(buffer);
    case VariantKind::Date:
      return v.ToDate().ToIso();
    case VariantKind::String:
      return v.StringRef();
  }
  return std::nullopt;
}

// The SQL Server type a PostgreSQL column type stands for (work tables and
// columns without the host's comment).
std::string SqlServerTypeOf(std::string pgType) {
  pgType = text::Lower(pgType);
  auto starts = [&](std::string_view p) { return pgType.rfind(p, 0) == 0; };
  if (pgType == pg::kBitDomain) return "bit";
  if (pgType == "smallint") return "smallint";
  if (pgType == "integer") return "int";
  if (pgType == "bigint") return "bigint";
  if (pgType == "real") return "real";
  if (pgType == "double precision") return "float";
  if (starts("numeric")) return "decimal" + pgType.substr(7);
  if (starts("character varying")) return "varchar" + pgType.substr(17);
  if (starts("character")) return "char" + pgType.substr(9);
  if (pgType == "text") return "text";
  if (starts("timestamp")) return "datetime";
  if (pgType == "date") return "date";
  if (pgType == "boolean") return "bit";
  return "";
}

// A raw value by its PostgreSQL type: integers as Long/BigInt, numbers as
// Double, booleans, dates as Date; the rest as text.
Variant ReadRaw(const PGresult* r, int row, int col, Oid type) {
  if (PQgetisnull(r, row, col)) return Variant::Null();
  const char* s = PQgetvalue(r, row, col);
  switch (type) {
    case kBoolOid:
      return Variant(s[0] == 't');
    case kInt2Oid:
    case kInt4Oid:
      return Variant(static_cast<std::int32_t>(std::strtol(s, nullptr, 10)));
    case kInt8Oid: {
      long long v = std::strtoll(s, nullptr, 10);
      if (v >= INT32_MIN && v <= INT32_MAX) return Variant(static_cast<std::int32_t>(v));
      return Variant(static_cast<std::int64_t>(v));
    }
    case kFloat4Oid:
    case kFloat8Oid:
    case kNumericOid:
      return Variant(std::strtod(s, nullptr));
    case kDateOid:
    case kTimestampOid:
    case kTimestampTzOid: {
      DateTime d;
      std::string iso(s, std::min<std::size_t>(19, std::strlen(s)));
      if (DateTime::FromIso(iso, d)) return Variant(d);
      return Variant(std::string(s));
    }
    default:
      return Variant(std::string(s, static_cast<std::size_t>(PQgetlength(r, row, col))));
  }
}

struct CatalogColumn {
  std::string table;       // folded, as in the catalog
  std::string name;        // folded, as in the catalog
  std::string schemaName;  // as the schema writes it
  std::string sqlType;
};

class PgBackend final : public Backend {
 public:
  explicit PgBackend(const std::string& uri) : database_(uri) {
    conn_ = PQconnectdb(uri.c_str());
    if (PQstatus(conn_) != CONNECTION_OK) {
      std::string msg = PQerrorMessage(conn_);
      PQfinish(conn_);
      conn_ = nullptr;
      throw Error(kErrDatabase, kSource, "Impossibile aprire il database " + uri + ": " + std::string(text::Trim(msg)));
    }
    PQsetNoticeProcessor(conn_, [](void*, const char*) {}, nullptr);
    RunScript("SET client_encoding = 'UTF8'; SET DateStyle = 'ISO, YMD'; SET client_min_messages = warning");
  }
  ~PgBackend() override {
    fullText_.reset();
    PQfinish(conn_);
  }

  SqlDialect Dialect() const override { return SqlDialect::Postgres; }
  std::string Name() const override { return "postgres"; }

  ResultSet Run(std::string_view sql, const std::vector<Variant>& params) override {
    std::string native = NumberPlaceholders(sql);
    // The key an INSERT generates is read back by RETURNING: lastval() would
    // answer a sequence a trigger used on the way.
    std::string identity = IdentityColumnOfInsert(native);
    if (!identity.empty()) native += " RETURNING " + identity;
    LockKeyAllocation(native);

    std::vector<std::optional<std::string>> texts;
    texts.reserve(params.size());
    for (const Variant& p : params) texts.push_back(ParamText(p));
    std::vector<const char*> values;
    values.reserve(params.size());
    for (const auto& t : texts) values.push_back(t ? t->c_str() : nullptr);

    Result r = Exec(native, values);
    ResultSet result;
    if (!identity.empty()) {
      int n = PQntuples(r.get());
      if (n > 0) lastInsertId_ = std::strtoll(PQgetvalue(r.get(), n - 1, 0), nullptr, 10);
      result.changes = n;
      return result;
    }
    if (PQresultStatus(r.get()) == PGRES_COMMAND_OK) {
      result.changes = std::strtol(PQcmdTuples(r.get()), nullptr, 10);
      return result;
    }
    int n = PQnfields(r.get());
    std::vector<Oid> oids(static_cast<std::size_t>(n));
    std::vector<int> types(static_cast<std::size_t>(n), ado::kVariant);
    std::vector<int> scales(static_cast<std::size_t>(n), 0);
    for (int i = 0; i < n; ++i) {
      auto k = static_cast<std::size_t>(i);
      ResultColumn c;
      c.name = PQfname(r.get(), i);
      oids[k] = PQftype(r.get(), i);
      if (const CatalogColumn* origin = Origin(PQftable(r.get(), i), PQftablecol(r.get(), i))) {
        c.declType = origin->sqlType;
        c.baseTable = origin->table;
        c.baseColumn = origin->name;
        // A column not renamed by the query reads as the schema names it.
        if (c.name == origin->name) c.name = origin->schemaName;
      }
      types[k] = ado::TypeOfSqlServerType(c.declType);
      scales[k] = ScaleOfSqlServerType(c.declType);
      result.columns.push_back(std::move(c));
    }
    int rows = PQntuples(r.get());
    result.rows.reserve(static_cast<std::size_t>(rows));
    for (int row = 0; row < rows; ++row) {
      std::vector<Variant> values;
      values.reserve(static_cast<std::size_t>(n));
      for (int i = 0; i < n; ++i) {
        auto k = static_cast<std::size_t>(i);
        Variant raw = ReadRaw(r.get(), row, i, oids[k]);
        values.push_back(types[k] == ado::kVariant ? std::move(raw) : CoerceToAdoType(raw, types[k], scales[k]));
      }
      result.rows.push_back(std::move(values));
    }
    return result;
  }

  void RunScript(std::string_view sql) override {
    std::string script(sql);
    if (inTransaction_) Command("SAVEPOINT corvina_statement");
    Result r(PQexec(conn_, script.c_str()));
    if (PQresultStatus(r.get()) != PGRES_COMMAND_OK && PQresultStatus(r.get()) != PGRES_TUPLES_OK) {
      std::string msg(text::Trim(PQresultErrorMessage(r.get())));
      if (inTransaction_) Command("ROLLBACK TO SAVEPOINT corvina_statement");
      throw Error(kErrDatabase, kSource, msg + " [" + (script.size() > 80 ? script.substr(0, 80) + "…" : script) + "]");
    }
    if (inTransaction_) Command("RELEASE SAVEPOINT corvina_statement");
    ForgetCatalog();
  }

  void Begin() override {
    Command("BEGIN");
    inTransaction_ = true;
  }
  void Commit() override {
    inTransaction_ = false;
    Command("COMMIT");
  }
  void Rollback() override {
    inTransaction_ = false;
    Command("ROLLBACK");
    ForgetCatalog();
  }

  std::int64_t LastInsertId() override { return lastInsertId_; }

  std::vector<std::pair<std::int64_t, int>> FreeText(const std::string& table, const std::string& column,
                                                     const std::string& text, int minRank) override {
    if (!fullText_)
      fullText_ = std::make_unique<pg::FullTextSearch>(*this, database_, [this] { return inTransaction_; });
    return fullText_->Search(table, column, text, minRank);
  }

  void FollowNewestCopies() override {
    try {
      if (fullText_ && !inTransaction_) fullText_->FollowNewest();
    } catch (const std::exception&) {
      // The next search follows them anyway.
    }
  }

  // Temporary tables (work tables) come first, as the server resolves names.
  std::vector<TableColumn> Columns(std::string_view table) override {
    static const char* kSql =
        "SELECT a.attname, format_type(a.atttypid, a.atttypmod), col_description(c.oid, a.attnum), "
        "coalesce((SELECT k.n FROM unnest(i.indkey) WITH ORDINALITY AS k(att, n) WHERE k.att = a.attnum), 0), "
        "a.attnotnull "
        "FROM pg_class c JOIN pg_attribute a ON a.attrelid = c.oid "
        "LEFT JOIN pg_index i ON i.indrelid = c.oid AND i.indisprimary "
        "WHERE c.oid = (SELECT c2.oid FROM pg_class c2 WHERE c2.relname = lower($1) "
        "AND c2.relkind IN ('r', 'v', 'p') AND pg_table_is_visible(c2.oid) LIMIT 1) "
        "AND a.attnum > 0 AND NOT a.attisdropped ORDER BY a.attnum";
    std::string name(table);
    Result r = Exec(kSql, {name.c_str()});
    std::vector<TableColumn> cols;
    for (int row = 0; row < PQntuples(r.get()); ++row) {
      TableColumn c;
      c.name = SchemaName(PQgetvalue(r.get(), row, 0), r.get(), row, 2);
      c.declType = DeclaredType(PQgetvalue(r.get(), row, 1), r.get(), row, 2);
      c.keyPosition = std::atoi(PQgetvalue(r.get(), row, 3));
      c.notNull = PQgetvalue(r.get(), row, 4)[0] == 't';
      cols.push_back(std::move(c));
    }
    return cols;
  }

 private:
  // The host's comment ("nvarchar(80) RagioneSociale") when it is there,
  // else the PostgreSQL type's SQL Server name.
  static std::string DeclaredType(const char* pgType, const PGresult* r, int row, int col) {
    if (!PQgetisnull(r, row, col)) {
      std::string comment = PQgetvalue(r, row, col);
      return comment.substr(0, comment.find(' '));
    }
    return SqlServerTypeOf(pgType);
  }
  // The column's name as the schema writes it; `folded` when not recorded.
  static std::string SchemaName(const char* folded, const PGresult* r, int row, int col) {
    if (!PQgetisnull(r, row, col)) {
      std::string comment = PQgetvalue(r, row, col);
      std::size_t space = comment.find(' ');
      if (space != std::string::npos) return comment.substr(space + 1);
    }
    return folded;
  }

  Result Exec(const std::string& sql, const std::vector<const char*>& values) {
    if (inTransaction_) Command("SAVEPOINT corvina_statement");
    Result r(PQexecParams(conn_, sql.c_str(), static_cast<int>(values.size()), nullptr, values.data(),
                          nullptr, nullptr, 0));
    ExecStatusType status = PQresultStatus(r.get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) {
      std::string msg(text::Trim(PQresultErrorMessage(r.get())));
      if (inTransaction_) Command("ROLLBACK TO SAVEPOINT corvina_statement");
      throw Error(kErrDatabase, kSource, msg + " [" + sql + "]");
    }
    if (inTransaction_) Command("RELEASE SAVEPOINT corvina_statement");
    // A statement that is not a query may have made or dropped a table.
    if (status == PGRES_COMMAND_OK && !text::StartsWithNoCase(sql, "INSERT") &&
        !text::StartsWithNoCase(sql, "UPDATE") && !text::StartsWithNoCase(sql, "DELETE"))
      ForgetCatalog();
    return r;
  }

  void Command(const char* sql) {
    Result r(PQexec(conn_, sql));
    if (PQresultStatus(r.get()) != PGRES_COMMAND_OK)
      throw Error(kErrDatabase, kSource,
                  std::string(text::Trim(PQresultErrorMessage(r.get()))) + " [" + sql + "]");
  }

  // The table column a result column comes from, by the table's OID and the
  // column's number; nullptr for computed columns.
  const CatalogColumn* Origin(Oid table, int column) {
    if (table == InvalidOid || column <= 0) return nullptr;
    auto key = std::make_pair(table, column);
    auto it = origins_.find(key);
    if (it != origins_.end()) return &it->second;
    std::string oid = std::to_string(table);
    Result r = Exec(
        "SELECT a.attnum, a.attname, format_type(a.atttypid, a.atttypmod), col_description(c.oid, a.attnum), "
        "c.relname FROM pg_attribute a JOIN pg_class c ON c.oid = a.attrelid "
        "WHERE c.oid = $1::oid AND a.attnum > 0 AND NOT a.attisdropped",
        {oid.c_str()});
    for (int row = 0; row < PQntuples(r.get()); ++row) {
      CatalogColumn c{PQgetvalue(r.get(), row, 4), PQgetvalue(r.get(), row, 1),
                      SchemaName(PQgetvalue(r.get(), row, 1), r.get(), row, 3),
                      DeclaredType(PQgetvalue(r.get(), row, 2), r.get(), row, 3)};
      origins_[{table, std::atoi(PQgetvalue(r.get(), row, 0))}] = std::move(c);
    }
    it = origins_.find(key);
    return it == origins_.end() ? nullptr : &it->second;
  }

  // For INSERT INTO <table> …: the table's IDENTITY column, quoted; "" when
  // the statement is something else or the table has none.
  std::string IdentityColumnOfInsert(const std::string& sql) {
    if (!text::StartsWithNoCase(sql, "INSERT INTO ")) return "";
    std::size_t start = 12, end = start;
    std::string table;
    if (end < sql.size() && sql[end] == '"') {
      end = sql.find('"', start + 1);
      if (end == std::string::npos) return "";
      table = sql.substr(start + 1, end - start - 1);
    } else {
      while (end < sql.size() && sql[end] != ' ' && sql[end] != '(') ++end;
      table = text::Lower(sql.substr(start, end - start));
    }
    auto it = identities_.find(table);
    if (it == identities_.end()) {
      std::string name = table;
      Result r = Exec(
          "SELECT a.attname FROM pg_attribute a WHERE a.attidentity <> '' AND a.attrelid = "
          "(SELECT c.oid FROM pg_class c WHERE c.relname = $1 AND pg_table_is_visible(c.oid) LIMIT 1)",
          {name.c_str()});
      std::string column = PQntuples(r.get()) > 0 ? "\"" + std::string(PQgetvalue(r.get(), 0, 0)) + "\"" : "";
      it = identities_.emplace(table, column).first;
    }
    return it->second;
  }

  // The module numbers new rows max + 1 inside the save transaction
  // (NextFreeIdAnagrafica, the cards' own numbering). SQLite lets one writer
  // at a time in; here two saves would read the same max, and the second
  // would fail on the key. So a query of a table's max inside a transaction
  // first takes that table's advisory lock, held to the end of the
  // transaction: the next one waits, then reads the max the first wrote.
  void LockKeyAllocation(const std::string& sql) {
    if (!inTransaction_ || !text::StartsWithNoCase(sql, "SELECT max(") || sql.find(" JOIN ") != std::string::npos)
      return;
    std::size_t from = sql.find(" FROM \"");
    if (from == std::string::npos) return;
    std::size_t start = from + 7, end = sql.find('"', start);
    if (end == std::string::npos) return;
    std::string table = sql.substr(start, end - start);
    Exec("SELECT pg_advisory_xact_lock(7202, hashtext($1))", {table.c_str()});
  }

  void ForgetCatalog() {
    origins_.clear();
    identities_.clear();
  }

  PGconn* conn_ = nullptr;
  std::string database_;  // names the database for the mirrors the process's connections share
  std::unique_ptr<pg::FullTextSearch> fullText_;
  bool inTransaction_ = false;
  std::int64_t lastInsertId_ = 0;
  std::map<std::pair<Oid, int>, CatalogColumn> origins_;
  std::map<std::string, std::string> identities_;
};

}  // namespace

bool IsPostgresLocation(const std::string& location) {
  return text::StartsWithNoCase(location, "postgresql://") || text::StartsWithNoCase(location, "postgres://");
}

std::unique_ptr<Backend> OpenPgBackend(const std::string& uri) {
  // user:password@ before the host: a password on a command line is visible
  // to every user of the machine (ps) and stays in the shell's history.
  std::size_t scheme = uri.find("://") + 3;
  std::size_t at = uri.find('@', scheme);
  std::size_t slash = uri.find('/', scheme);
  if (at != std::string::npos && (slash == std::string::npos || at < slash) &&
      uri.substr(scheme, at - scheme).find(':') != std::string::npos)
    throw Error(kErrDatabase, kSource,
                "La password non va scritta nell'indirizzo del database: usare il file delle password "
                "(PGPASSFILE) o il file dei servizi (PGSERVICEFILE)");
  if (text::Lower(uri).find("password=") != std::string::npos)
    throw Error(kErrDatabase, kSource,
                "La password non va scritta nell'indirizzo del database: usare il file delle password "
                "(PGPASSFILE) o il file dei servizi (PGSERVICEFILE)");
  return std::make_unique<PgBackend>(uri);
}

}  // namespace corvina20::data
