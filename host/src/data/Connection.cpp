// The Connection: translates the module's T-SQL for the backend, runs it, and
// turns results into recordsets that know their types and, when they come
// from one table with its whole key, how to write back.
#include "corvina20/Connection.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "data/AdoTypes.h"
#include "data/Backend.h"
#include "data/BackendPool.h"
#include "data/SqlPlaceholders.h"
#include "data/tsql/TsqlTranslator.h"

namespace corvina20 {

struct Connection::Impl {
  std::unique_ptr<data::Backend> owned;  // see Bound
  std::shared_ptr<data::BackendPool> pool;  // null for a connection on its own backend
  bool inTransaction = false;
  std::atomic<bool> abandoned{false};
  // Column lists by upper-cased table name; cleared after every statement
  // that is not a query, since work tables come and go at run time.
  std::map<std::string, std::vector<data::TableColumn>> columns;

  // The backend statements run on: the connection's own, or one borrowed
  // from the pool until ReleaseBackend.
  data::Backend& Bound() {
    if (!owned) owned = pool->Take();
    return *owned;
  }

  const std::vector<data::TableColumn>& ColumnsOf(std::string_view table) {
    std::string key = text::Upper(table);
    auto it = columns.find(key);
    if (it == columns.end()) it = columns.emplace(key, Bound().Columns(table)).first;
    return it->second;
  }

  data::TranslatedSql Translate(std::string_view tsql) {
    return data::TranslateTsql(
        tsql, Bound().Dialect(),
        [this](std::string_view table, std::string_view column) -> std::optional<std::string> {
          for (const auto& c : ColumnsOf(table))
            if (text::EqualsNoCase(c.name, column)) return c.declType;
          return std::nullopt;
        },
        [this](std::string_view table, std::string_view column) {
          for (const auto& c : ColumnsOf(table))
            if (text::EqualsNoCase(c.name, column)) return c.notNull || c.keyPosition > 0;
          return false;
        });
  }

  // FREETEXTTABLE left to the host: the statements with each search's KEY
  // and RANK rows in place of its name, as two constant arrays (numbers the
  // host computed, no user text). A temporary table filled for each search
  // took four more statements, and the planner, knowing nothing of it until
  // it was analysed, read the whole register to join it; the server knows
  // how many rows a constant array holds.
  std::vector<std::string> WithFreeTextRows(const data::TranslatedSql& sql) {
    std::vector<std::string> statements = sql.statements;
    for (const auto& call : sql.freeTexts) {
      auto rows = Bound().FreeText(call.table, call.column, call.text, call.minRank);
      std::string keys, ranks;
      for (const auto& [key, rank] : rows) {
        keys += (keys.empty() ? "" : ",") + std::to_string(key);
        ranks += (ranks.empty() ? "" : ",") + std::to_string(rank);
      }
      const std::string source = "(SELECT * FROM unnest('{" + keys + "}'::integer[], '{" + ranks +
                                 "}'::integer[]) AS \"" + call.workTable + "\"(\"key\", \"rank\"))";
      for (std::string& statement : statements) statement = data::ReplaceBareName(statement, call.workTable, source);
    }
    return statements;
  }

  // Runs the translated statements, binding `params` across them in order.
  data::ResultSet RunAll(const data::TranslatedSql& sql, const std::vector<Variant>& params) {
    const std::vector<std::string> statements = sql.freeTexts.empty() ? sql.statements : WithFreeTextRows(sql);
    data::ResultSet last;
    std::size_t next = 0;
    for (const std::string& statement : statements) {
      std::size_t count = data::PlaceholderOffsets(statement).size();
      if (next + count > params.size())
        throw Error(kErrDatabase, "Corvina20.Data",
                    "Parametri insufficienti per l'istruzione: " + statement);
      std::vector<Variant> mine(params.begin() + static_cast<long>(next),
                                params.begin() + static_cast<long>(next + count));
      if (Bound().Dialect() == data::SqlDialect::Postgres)
        for (std::size_t i = 0; i < count; ++i)
          if (next + i < sql.paramUses.size() && !Fits(mine[i], sql.paramUses[next + i]))
            mine[i] = Variant::Null();
      next += count;
      last = Bound().Run(statement, mine);
    }
    if (next != params.size())
      throw Error(kErrDatabase, "Corvina20.Data", "Parametri in eccesso per l'istruzione");
    return last;
  }

  // False for a text that is not a number of the kind `use` asks for
  // (blanks around, a sign, digits, and a decimal point for kNumber), or a
  // whole number beyond its type's range: the server would refuse it where
  // SQLite compares it as unequal.
  static bool Fits(const Variant& v, data::TranslatedSql::ParamUse use) {
    using Use = data::TranslatedSql;
    if (use == Use::kAnything || v.Kind() != VariantKind::String) return true;
    std::string_view s = text::Trim(v.StringRef());
    const bool negative = !s.empty() && s.front() == '-';
    if (!s.empty() && (s.front() == '+' || s.front() == '-')) s.remove_prefix(1);
    bool digits = false, point = false;
    for (char c : s) {
      if (c >= '0' && c <= '9') digits = true;
      else if (c == '.' && !point && use == Use::kNumber) point = true;
      else return false;
    }
    if (!digits || use == Use::kNumber) return digits;
    // The magnitude against the type's limit (the negative limit one more).
    const std::uint64_t limit = use == Use::kBigWhole ? 9223372036854775807ULL
                                : use == Use::kSmallWhole ? 32767ULL
                                                          : 2147483647ULL;
    std::uint64_t magnitude = 0;
    for (char c : s) {
      const std::uint64_t digit = static_cast<std::uint64_t>(c - '0');
      if (magnitude > (limit + 1 - digit) / 10) return false;
      magnitude = magnitude * 10 + digit;
    }
    return magnitude <= limit + (negative ? 1 : 0);
  }


};

Connection::Connection(std::unique_ptr<data::Backend> backend) : impl_(std::make_unique<Impl>()) {
  impl_->owned = std::move(backend);
}

Connection::Connection(std::shared_ptr<data::BackendPool> pool) : impl_(std::make_unique<Impl>()) {
  impl_->pool = std::move(pool);
}

Connection::~Connection() {
  if (!impl_ || !impl_->owned) return;
  if (impl_->inTransaction) {
    try {
      impl_->owned->Rollback();
      impl_->inTransaction = false;
    } catch (...) {
      // Closing: the backend drops the transaction when it is closed, below.
    }
  }
  // A borrowed backend goes back only clean; one whose rollback failed is
  // closed with this connection.
  if (impl_->pool && !impl_->inTransaction) impl_->pool->Give(std::move(impl_->owned));
}

RecordsetPtr Connection::OpenRecordset(std::string_view tsql, const std::vector<Variant>& params,
                                       LockType lock) {
  data::TranslatedSql sql = impl_->Translate(tsql);
  data::ResultSet rs = impl_->RunAll(sql, params);
  // A SELECT … INTO creates a work table on the way.
  if (sql.statements.size() > 1) impl_->columns.clear();

  std::vector<FieldInfo> fields;
  fields.reserve(rs.columns.size());
  for (std::size_t i = 0; i < rs.columns.size(); ++i) {
    const data::ResultColumn& c = rs.columns[i];
    FieldInfo f;
    f.name = c.name;
    // A backend that folds names gives aliases and computed columns back in
    // lower case: the field takes the name the query wrote. A bare table
    // column keeps the schema's spelling, which the backend reports.
    if (impl_->Bound().Dialect() == data::SqlDialect::Postgres && i < sql.columnNames.size() &&
        text::EqualsNoCase(sql.columnNames[i], c.name) && !text::EqualsNoCase(c.name, c.baseColumn))
      f.name = sql.columnNames[i];
    f.baseTable = c.baseTable;
    f.baseColumn = c.baseColumn;
    f.sqlType = c.declType;
    if (f.sqlType.empty() && i < sql.columnTypes.size()) f.sqlType = sql.columnTypes[i];
    f.type = ado::TypeOfSqlServerType(f.sqlType);
    if (c.declType.empty() && f.type != ado::kVariant) {
      int scale = data::ScaleOfSqlServerType(f.sqlType);
      for (auto& row : rs.rows) row[i] = data::CoerceToAdoType(row[i], f.type, scale);
    }
    if (f.type == ado::kVariant) {
      // Computed and untyped: take the kind of the first value present.
      for (const auto& row : rs.rows) {
        const Variant& v = row[i];
        if (v.IsNull()) continue;
        switch (v.Kind()) {
          case VariantKind::Long: f.type = ado::kInteger; break;
          case VariantKind::BigInt: f.type = ado::kBigInt; break;
          case VariantKind::Double: f.type = ado::kDouble; break;
          case VariantKind::String: f.type = ado::kVarWChar; break;
          default: break;
        }
        break;
      }
    }
    fields.push_back(std::move(f));
  }

  // Writable when every column comes from one table and its key is selected.
  std::string source;
  bool single = !fields.empty();
  for (const FieldInfo& f : fields) {
    if (f.baseTable.empty()) continue;
    if (source.empty()) source = f.baseTable;
    else if (!text::EqualsNoCase(source, f.baseTable)) single = false;
  }
  std::vector<std::string> keys;
  if (single && !source.empty()) {
    keys = KeyColumns(source);
    for (const std::string& k : keys) {
      bool present = false;
      for (const FieldInfo& f : fields)
        if (text::EqualsNoCase(f.baseColumn, k) && text::EqualsNoCase(f.baseTable, source))
          present = true;
      if (!present) single = false;
    }
    if (keys.empty()) single = false;
  }
  if (!single) {
    source.clear();
    keys.clear();
  }
  auto recordset = std::make_shared<Recordset>();
  recordset->OpenWith(std::move(fields), std::move(rs.rows), shared_from_this(), source, keys,
                      source.empty() ? LockType::ReadOnly : lock);
  return recordset;
}

long Connection::Execute(std::string_view tsql, const std::vector<Variant>& params) {
  RequireWritable();
  data::TranslatedSql sql = impl_->Translate(tsql);
  data::ResultSet rs = impl_->RunAll(sql, params);
  impl_->columns.clear();
  return rs.changes;
}

std::vector<std::string> Connection::NativeStatements(std::string_view tsql) {
  return impl_->Translate(tsql).statements;
}

void Connection::ExecuteNative(std::string_view sql) {
  impl_->Bound().RunScript(sql);
  impl_->columns.clear();
}

void Connection::Abandon() { impl_->abandoned = true; }

void Connection::RequireWritable() const {
  if (impl_->abandoned)
    throw Error(kErrTransaction, "Corvina20.Data",
                "La sessione è stata chiusa: nessuna modifica viene più salvata");
}

void Connection::BeginTrans() {
  RequireWritable();
  if (impl_->inTransaction)
    throw Error(kErrTransaction, "Corvina20.Data",
                "Una transazione è già aperta su questa connessione: le transazioni annidate non "
                "sono ammesse");
  impl_->Bound().Begin();
  impl_->inTransaction = true;
}

void Connection::CommitTrans() {
  if (!impl_->inTransaction)
    throw Error(kErrTransaction, "Corvina20.Data", "Nessuna transazione aperta da confermare");
  if (impl_->abandoned) {
    // The session ended while this transaction was open: none of it lands.
    impl_->inTransaction = false;
    impl_->Bound().Rollback();
    RequireWritable();
  }
  impl_->Bound().Commit();
  impl_->inTransaction = false;
}

void Connection::RollbackTrans() {
  if (!impl_->inTransaction)
    throw Error(kErrTransaction, "Corvina20.Data", "Nessuna transazione aperta da annullare");
  impl_->inTransaction = false;
  impl_->Bound().Rollback();
}

bool Connection::InTransaction() const { return impl_->inTransaction; }

std::optional<std::string> Connection::ColumnType(std::string_view table,
                                                  std::string_view column) {
  for (const auto& c : impl_->ColumnsOf(table))
    if (text::EqualsNoCase(c.name, column)) return c.declType;
  return std::nullopt;
}

std::vector<std::string> Connection::KeyColumns(std::string_view table) {
  std::vector<std::string> keys;
  for (const auto& c : impl_->ColumnsOf(table))
    if (c.keyPosition > 0) {
      if (keys.size() < static_cast<std::size_t>(c.keyPosition)) keys.resize(c.keyPosition);
      keys[c.keyPosition - 1] = c.name;
    }
  return keys;
}

bool Connection::TableExists(std::string_view table) { return !impl_->ColumnsOf(table).empty(); }

std::string Connection::BackendName() const {
  return impl_->owned ? impl_->owned->Name() : impl_->pool->Name();
}

data::Backend& Connection::Backend() { return impl_->Bound(); }

bool Connection::ReleaseBackend() {
  if (!impl_->pool || !impl_->owned || impl_->inTransaction) return false;
  impl_->pool->Give(std::move(impl_->owned));
  return true;
}

}  // namespace corvina20
