// The record lists' trigram index on SQLite; see ListSearchIndex.h. One
// external-content FTS5 table per indexed table, CORls_<table>, with
// detail=none (only which rows hold a trigram, not where: the list's LIKE
// checks the rest) and three triggers that follow the rows.
#include "data/listsearch/ListSearchIndex.h"

#include <sqlite3.h>

#include <set>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "data/Backend.h"
#include "data/text/TextFold.h"
#include "data/postgres/PgListSearch.h"
#include "data/sqlite/Fts5.h"

namespace corvina20::data::listsearch {
namespace {

// Bumped when the tokenizer or the tables change: older indexes are rebuilt.
constexpr int kVersion = 1;

struct IndexedTable {
  const char* table;
  const char* key;
  std::vector<std::string> columns;
};

// What the record lists search, for the tables whose lists are long.
const std::vector<IndexedTable>& Indexed() {
  static const std::vector<IndexedTable> indexed = {
      {"STDAnagrafiche", "IdAnagrafica", {"RagioneSociale", "PartitaIva", "CodiceFiscale", "Citta", "Telefono"}},
  };
  return indexed;
}

constexpr const char* kBookkeeping =
    "CREATE TABLE IF NOT EXISTS CORListSearch (Tabella nvarchar(128) NOT NULL PRIMARY KEY, "
    "Colonne nvarchar(400) NOT NULL, Versione int NOT NULL)";

std::string Q(std::string_view name) { return "\"" + std::string(name) + "\""; }
std::string IndexName(std::string_view table) { return "CORls_" + std::string(table); }

void AppendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

// The folded characters of `text`, each with the byte offset where it starts
// (one more entry: the end).
struct Folded {
  std::vector<std::string> chars;
  std::vector<int> starts;
};
Folded Fold(std::string_view text) {
  Folded f;
  for (std::size_t i = 0; i < text.size();) {
    f.starts.push_back(static_cast<int>(i));
    std::string c;
    AppendUtf8(c, text::FoldCase(text::DecodeUtf8(text, i)));
    f.chars.push_back(std::move(c));
  }
  f.starts.push_back(static_cast<int>(text.size()));
  return f;
}

// --- the tokenizer ------------------------------------------------------------

int GramsCreate(void*, const char**, int, Fts5Tokenizer** out) {
  static int instance = 0;  // the tokenizer keeps no state
  *out = reinterpret_cast<Fts5Tokenizer*>(&instance);
  return SQLITE_OK;
}
void GramsDelete(Fts5Tokenizer*) {}

// A row's text gives its trigrams; a query's term (one trigram the search
// wrote, quoted) is taken whole, folded.
int GramsTokenize(Fts5Tokenizer*, void* context, int flags, const char* text, int length,
                  int (*emit)(void*, int, const char*, int, int, int)) {
  try {
    const std::string_view view(text, static_cast<std::size_t>(length));
    const Folded f = Fold(view);
    if (flags & FTS5_TOKENIZE_QUERY) {
      std::string term;
      for (const auto& c : f.chars) term += c;
      return term.empty() ? SQLITE_OK : emit(context, 0, term.data(), static_cast<int>(term.size()), 0, length);
    }
    for (std::size_t i = 0; i + 3 <= f.chars.size(); ++i) {
      const std::string gram = f.chars[i] + f.chars[i + 1] + f.chars[i + 2];
      int rc = emit(context, 0, gram.data(), static_cast<int>(gram.size()), f.starts[i], f.starts[i + 3]);
      if (rc != SQLITE_OK) return rc;
    }
  } catch (...) {
    return SQLITE_NOMEM;
  }
  return SQLITE_OK;
}

// --- the tables ---------------------------------------------------------------

std::string Joined(const std::vector<std::string>& names, const std::string& prefix) {
  std::string out;
  for (const auto& n : names) out += (out.empty() ? "" : ", ") + prefix + Q(n);
  return out;
}

std::vector<std::string> DropStatements(std::string_view table) {
  const std::string index = IndexName(table);
  return {"DROP TRIGGER IF EXISTS " + Q(index + "_ai"), "DROP TRIGGER IF EXISTS " + Q(index + "_ad"),
          "DROP TRIGGER IF EXISTS " + Q(index + "_au"), "DROP TABLE IF EXISTS " + Q(index)};
}

std::vector<std::string> CreateStatements(const IndexedTable& t) {
  const std::string name = IndexName(t.table), index = Q(name), key = Q(t.key);
  const std::string insertRow = "INSERT INTO " + index + " (rowid, " + Joined(t.columns, "") + ") VALUES (new." +
                                t.key + ", " + Joined(t.columns, "new.") + ");";
  const std::string deleteRow = "INSERT INTO " + index + " (" + index + ", rowid, " + Joined(t.columns, "") +
                                ") VALUES ('delete', old." + t.key + ", " + Joined(t.columns, "old.") + ");";
  // Cards write every bound field on save: the index is touched only when
  // a searched column or the key really changes.
  std::string changed = "old." + key + " IS NOT new." + key;
  for (const auto& c : t.columns) changed += " OR old." + Q(c) + " IS NOT new." + Q(c);
  return {
      "CREATE VIRTUAL TABLE " + index + " USING fts5(" + Joined(t.columns, "") + ", content='" + t.table +
          "', content_rowid='" + t.key + "', tokenize='corvina_grams', detail=none, columnsize=0)",
      "INSERT INTO " + index + " (" + index + ") VALUES ('rebuild')",
      "CREATE TRIGGER " + Q(name + "_ai") + " AFTER INSERT ON " + Q(t.table) + " BEGIN " + insertRow + " END",
      "CREATE TRIGGER " + Q(name + "_ad") + " AFTER DELETE ON " + Q(t.table) + " BEGIN " + deleteRow + " END",
      "CREATE TRIGGER " + Q(name + "_au") + " AFTER UPDATE OF " + Joined(t.columns, "") + ", " + key + " ON " +
          Q(t.table) + " WHEN " + changed + " BEGIN " + deleteRow + " " + insertRow + " END",
  };
}

std::string ColumnList(const IndexedTable& t) {
  std::string out;
  for (const auto& c : t.columns) out += (out.empty() ? "" : ",") + c;
  return out;
}

const IndexedTable* Covering(std::string_view table, std::string_view key, const std::vector<std::string>& columns) {
  for (const IndexedTable& t : Indexed()) {
    if (!corvina20::text::EqualsNoCase(t.table, table) || !corvina20::text::EqualsNoCase(t.key, key)) continue;
    bool all = true;
    for (const auto& c : columns) {
      bool in = false;
      for (const auto& i : t.columns) in = in || corvina20::text::EqualsNoCase(i, c);
      all = all && in;
    }
    if (all) return &t;
  }
  return nullptr;
}

}  // namespace

void RegisterListSearch(sqlite3* db) {
  fts5_api* api = Fts5Api(db);
  if (api == nullptr)
    throw Error(kErrDatabase, "Corvina20.ListSearch", "SQLite senza FTS5: indice di ricerca degli elenchi non disponibile");
  static fts5_tokenizer tokenizer{GramsCreate, GramsDelete, GramsTokenize};
  if (api->xCreateTokenizer(api, "corvina_grams", nullptr, &tokenizer, nullptr) != SQLITE_OK)
    throw Error(kErrDatabase, "Corvina20.ListSearch", sqlite3_errmsg(db));
}

std::vector<std::string> Trigrams(std::string_view text) {
  const Folded f = Fold(text);
  std::vector<std::string> grams;
  for (std::size_t i = 0; i + 3 <= f.chars.size(); ++i) grams.push_back(f.chars[i] + f.chars[i + 1] + f.chars[i + 2]);
  return grams;
}

int EnsureListSearchIndexes(Connection& connection) {
  Backend& backend = connection.Backend();
  if (backend.Dialect() == SqlDialect::Postgres) {
    int built = 0;
    for (const IndexedTable& t : Indexed()) built += pg::EnsureListSearchIndexes(connection, t.table, t.columns);
    return built;
  }
  connection.BeginTrans();
  int built = 0;
  try {
    backend.Run(kBookkeeping, {});
    for (const IndexedTable& t : Indexed()) {
      ResultSet known = backend.Run("SELECT Colonne, Versione FROM CORListSearch WHERE Tabella = ?", {Variant(t.table)});
      if (!known.rows.empty() && known.rows[0][0].ToString() == ColumnList(t) && known.rows[0][1].ToLong() == kVersion &&
          !backend.Columns(IndexName(t.table)).empty())
        continue;
      for (const std::string& s : DropStatements(t.table)) connection.ExecuteNative(s);
      for (const std::string& s : CreateStatements(t)) connection.ExecuteNative(s);
      backend.Run("INSERT OR REPLACE INTO CORListSearch (Tabella, Colonne, Versione) VALUES (?, ?, ?)",
                  {Variant(t.table), Variant(ColumnList(t)), Variant(static_cast<std::int32_t>(kVersion))});
      ++built;
    }
    connection.CommitTrans();
  } catch (...) {
    connection.RollbackTrans();
    throw;
  }
  return built;
}

std::optional<std::vector<Variant>> ListSearchCandidates(Connection& connection, std::string_view table,
                                                         std::string_view key,
                                                         const std::vector<std::string>& columns,
                                                         std::string_view search, std::size_t most) {
  const IndexedTable* t = Covering(table, key, columns);
  if (t == nullptr) return std::nullopt;
  std::vector<std::string> grams = Trigrams(search);
  if (grams.empty()) return std::nullopt;
  Backend& backend = connection.Backend();
  // PostgreSQL reads its trigram indexes for the list's LIKE itself.
  if (backend.Dialect() == SqlDialect::Postgres) return std::nullopt;
  // A database not brought to this version (no InitDatabase yet) scans.
  if (backend.Columns(IndexName(t->table)).empty()) return std::nullopt;
  // Every trigram, each a quoted FTS5 string: the rows holding all of them.
  std::set<std::string> distinct(grams.begin(), grams.end());
  std::string match;
  for (const auto& g : distinct) {
    std::string quoted = "\"";
    for (char c : g) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    match += (match.empty() ? "" : " AND ") + quoted + "\"";
  }
  const std::string index = Q(IndexName(t->table));
  ResultSet rows = backend.Run("SELECT rowid FROM " + index + " WHERE " + index + " MATCH ? LIMIT ?",
                               {Variant(match), Variant(static_cast<std::int64_t>(most) + 1)});
  if (rows.rows.size() > most) return std::nullopt;
  std::vector<Variant> keys;
  keys.reserve(rows.rows.size());
  for (auto& r : rows.rows) keys.push_back(std::move(r[0]));
  return keys;
}

}  // namespace corvina20::data::listsearch
