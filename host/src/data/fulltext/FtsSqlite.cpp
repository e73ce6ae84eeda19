// The tokenizer, SQL functions and search table of full text on SQLite; see
// FtsSqlite.h. Weights and the rows' terms come from the connection's
// mirrors of the indexes (FtsMirror.h). The scalar functions prepare the
// searched text (a constant of the statement) once per statement and keep it
// as SQLite auxiliary data on that argument.
#include "data/fulltext/FtsSqlite.h"

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "corvina20/Error.h"
#include "data/fulltext/FtsMirror.h"
#include "data/fulltext/FtsRank.h"
#include "data/fulltext/FtsTokenizer.h"
#include "data/sqlite/Fts5.h"

namespace corvina20::data::fulltext {
namespace {

// --- the FTS5 tokenizer -------------------------------------------------------

int TokenizerCreate(void*, const char**, int, Fts5Tokenizer** out) {
  static int instance = 0;  // stateless: every table shares one
  *out = reinterpret_cast<Fts5Tokenizer*>(&instance);
  return SQLITE_OK;
}

void TokenizerDelete(Fts5Tokenizer*) {}

int TokenizerTokenize(Fts5Tokenizer*, void* context, int flags, const char* text, int length,
                      int (*emit)(void*, int, const char*, int, int, int)) {
  if (text == nullptr || length <= 0) return SQLITE_OK;
  try {
    if (flags & FTS5_TOKENIZE_QUERY) {
      // A MATCH expression is written in index terms (corvina_ft_match
      // writes it): stemming them again would cut them further ("trasport"
      // to "trasp"), so a query is only folded.
      for (const std::string& term : FoldedWords(std::string_view(text, static_cast<std::size_t>(length)), "")) {
        int rc = emit(context, 0, term.data(), static_cast<int>(term.size()), 0, length);
        if (rc != SQLITE_OK) return rc;
      }
      return SQLITE_OK;
    }
    for (const FtsToken& t : TokenizeText(std::string_view(text, static_cast<std::size_t>(length)))) {
      int rc = emit(context, 0, t.term.data(), static_cast<int>(t.term.size()), t.start, t.end);
      if (rc != SQLITE_OK) return rc;
    }
  } catch (...) {
    return SQLITE_NOMEM;
  }
  return SQLITE_OK;
}

// --- the connection's state -------------------------------------------------

// The page cache of each connection, in KiB.
constexpr int kCachePerConnectionKiB = 4096;

std::mutex g_statesMutex;
std::unordered_map<sqlite3*, FullTextState*>& States() {
  static auto* states = new std::unordered_map<sqlite3*, FullTextState*>();
  return *states;
}

void DestroyState(void* p) {
  auto* state = static_cast<FullTextState*>(p);
  {
    std::lock_guard lock(g_statesMutex);
    auto it = States().find(state->Db());
    if (it != States().end() && it->second == state) States().erase(it);
  }
  delete state;
}

std::string Text(sqlite3_value* v) {
  const unsigned char* s = sqlite3_value_text(v);
  return s ? std::string(reinterpret_cast<const char*>(s), static_cast<std::size_t>(sqlite3_value_bytes(v)))
           : std::string();
}

// --- scalar functions ----------------------------------------------------------

// The searched text of argument 2 against the index of arguments 0 and 1,
// made on the first row of a statement and kept as SQLite auxiliary data.
struct Search {
  Search(IndexMirror& m, std::string_view text) : mirror(&m), searched(m, text) {}
  IndexMirror* mirror;
  SearchedText searched;
};

Search& SearchOf(sqlite3_context* ctx, sqlite3_value** argv) {
  if (auto* s = static_cast<Search*>(sqlite3_get_auxdata(ctx, 2))) return *s;
  auto* state = static_cast<FullTextState*>(sqlite3_user_data(ctx));
  IndexMirror& mirror = state->Mirror(Text(argv[0]), Text(argv[1]));
  auto* s = new Search(mirror, Text(argv[2]));
  sqlite3_set_auxdata(ctx, 2, s, [](void* p) { delete static_cast<Search*>(p); });
  // SQLite drops it at once only when out of memory (it has deleted it then).
  // A text that is not a constant of the statement is prepared on every row.
  if (auto* kept = static_cast<Search*>(sqlite3_get_auxdata(ctx, 2))) return *kept;
  throw Error(kErrDatabase, "Corvina20.FullText", "Memoria insufficiente per la ricerca full-text");
}

template <class F>
void Guard(sqlite3_context* ctx, F&& body) {
  try {
    body();
  } catch (const Error& e) {
    sqlite3_result_error(ctx, e.Description().c_str(), -1);
  } catch (const std::exception& e) {
    sqlite3_result_error(ctx, e.what(), -1);
  }
}

void TermsFunction(sqlite3_context* ctx, int, sqlite3_value** argv) {
  Guard(ctx, [&] {
    std::vector<std::string> terms = DistinctTerms(Text(argv[0]));
    std::string json = terms.empty() ? "[" : "[\"\"";
    for (const std::string& t : terms) {
      json += ",\"";
      for (char c : t) {
        if (c == '"' || c == '\\') json += '\\';
        json += c;
      }
      json += '"';
    }
    json += "]";
    sqlite3_result_text(ctx, json.c_str(), static_cast<int>(json.size()), SQLITE_TRANSIENT);
  });
}

void MatchFunction(sqlite3_context* ctx, int, sqlite3_value** argv) {
  Guard(ctx, [&] {
    Search& search = SearchOf(ctx, argv);
    std::string query = CandidateQuery(search.searched.Terms(), sqlite3_value_int(argv[3]), search.searched.Power());
    sqlite3_result_text(ctx, query.c_str(), static_cast<int>(query.size()), SQLITE_TRANSIENT);
  });
}

void RankFunction(sqlite3_context* ctx, int, sqlite3_value** argv) {
  Guard(ctx, [&] {
    if (sqlite3_value_type(argv[3]) == SQLITE_NULL) {
      sqlite3_result_null(ctx);
      return;
    }
    const unsigned char* row = sqlite3_value_text(argv[3]);
    std::string_view text(reinterpret_cast<const char*>(row), static_cast<std::size_t>(sqlite3_value_bytes(argv[3])));
    Search& search = SearchOf(ctx, argv);
    double score = search.searched.RankText(*search.mirror, text);
    if (score < 0) sqlite3_result_null(ctx);
    else sqlite3_result_int(ctx, RoundRank(score));
  });
}

void FrequencyFunction(sqlite3_context* ctx, int, sqlite3_value** argv) {
  Guard(ctx, [&] {
    auto* state = static_cast<FullTextState*>(sqlite3_user_data(ctx));
    IndexMirror& mirror = state->Mirror(Text(argv[0]), Text(argv[1]));
    std::string term = Text(argv[2]);
    sqlite3_result_int64(ctx, term.empty() ? static_cast<sqlite3_int64>(mirror.Rows()) : mirror.Frequency(term));
  });
}

void FollowFunction(sqlite3_context* ctx, int, sqlite3_value**) {
  Guard(ctx, [&] {
    static_cast<FullTextState*>(sqlite3_user_data(ctx))->FollowNewest();
    sqlite3_result_null(ctx);
  });
}

// --- corvina_ft_search ---------------------------------------------------------
//
// corvina_ft_search(T, C, text, floor, drives): the rows of T.C that share a
// word with text, as KEY and RANK, the rank at least floor. A table-valued
// function (an eponymous virtual table). Three ways to run it:
//   by key       KEY = x is known (the FREETEXTTABLE that does not drive):
//                the one row x, ranked from the mirror;
//   best first   ORDER BY RANK DESC [, KEY]: the rows of the candidate terms
//                (CandidateParts) term by term, heaviest first, each ranked
//                from the mirror and kept in a heap; a row is given as soon
//                as no term left can beat it, so TOP n stops reading early;
//   all at once  otherwise: the rows of the FTS5 query of the candidate
//                terms for the least rank asked for (the floor and RANK > /
//                >= / = constraints), each ranked from the mirror, those
//                within the RANK bounds given (sorted, when SQLite leaves the
//                order to it).
// `drives` 0 makes the plans without a key so dear that SQLite takes them
// only when no key can be given. RANK bounds only narrow the search: SQLite
// checks them again.

enum SearchColumn { kColKey, kColRank, kColTable, kColColumn, kColText, kColFloor, kColDrives };

struct SearchVtab {
  sqlite3_vtab base;  // first: SQLite sees a sqlite3_vtab*
  FullTextState* state;
};

// A row of the search: (key, rank).
using Found = std::pair<std::int64_t, int>;

// Best first: higher rank, then lower key. As a heap's order, "a below b".
bool Below(const Found& a, const Found& b) {
  return a.second != b.second ? a.second < b.second : a.first > b.first;
}

struct SearchCursor {
  sqlite3_vtab_cursor base;
  std::vector<Found> rows;  // in the order given; a heap of the best while `lazy`
  std::size_t at = 0;
  // Rows given best first, part by part (CandidateParts): the parts not read
  // yet, what the rows are ranked against, and the rank bounds.
  bool lazy = false;
  std::vector<CandidatePart> parts;
  std::size_t nextPart = 0;
  std::vector<std::string> heavier;  // the terms of the parts read
  IndexMirror* mirror = nullptr;
  sqlite3_stmt* match = nullptr;  // the index's MATCH statement
  std::optional<SearchedText> searched;
  std::string text;
  int loads = 0;  // the mirror's Loads() when `searched` was made
  int least = 0, most = 1000;
};

// idxStr: one letter per argv entry. Arguments: t c x f d; the key: k;
// RANK constraints: > G (>=) < L (<=) = .
// idxNum: 1 rows sorted by RANK, 2 RANK descending, 4 then by KEY, 8 KEY descending.

int SearchConnect(sqlite3* db, void* aux, int, const char* const*, sqlite3_vtab** out, char**) {
  int rc = sqlite3_declare_vtab(
      db, "CREATE TABLE x(\"KEY\", \"RANK\", tab HIDDEN, col HIDDEN, txt HIDDEN, floor HIDDEN, drives HIDDEN)");
  if (rc != SQLITE_OK) return rc;
  sqlite3_vtab_config(db, SQLITE_VTAB_INNOCUOUS);
  auto* vtab = new (std::nothrow) SearchVtab{};
  if (vtab == nullptr) return SQLITE_NOMEM;
  vtab->state = static_cast<FullTextState*>(aux);
  *out = &vtab->base;
  return SQLITE_OK;
}

int SearchDisconnect(sqlite3_vtab* vtab) {
  delete reinterpret_cast<SearchVtab*>(vtab);
  return SQLITE_OK;
}

int SearchBestIndex(sqlite3_vtab*, sqlite3_index_info* info) {
  int args[5] = {-1, -1, -1, -1, -1};
  int key = -1;
  std::vector<std::pair<int, char>> ranks;
  for (int i = 0; i < info->nConstraint; ++i) {
    const auto& c = info->aConstraint[i];
    if (c.iColumn >= kColTable && c.op == SQLITE_INDEX_CONSTRAINT_EQ) {
      if (!c.usable) return SQLITE_CONSTRAINT;
      args[c.iColumn - kColTable] = i;
    } else if (c.iColumn == kColKey && c.op == SQLITE_INDEX_CONSTRAINT_EQ && c.usable && key < 0) {
      key = i;
    } else if (c.iColumn == kColRank && c.usable) {
      char op = c.op == SQLITE_INDEX_CONSTRAINT_GT   ? '>'
                : c.op == SQLITE_INDEX_CONSTRAINT_GE ? 'G'
                : c.op == SQLITE_INDEX_CONSTRAINT_LT ? '<'
                : c.op == SQLITE_INDEX_CONSTRAINT_LE ? 'L'
                : c.op == SQLITE_INDEX_CONSTRAINT_EQ ? '='
                                                      : 0;
      if (op) ranks.push_back({i, op});
    }
  }
  if (args[0] < 0 || args[1] < 0 || args[2] < 0) return SQLITE_CONSTRAINT;  // T, C and the text are needed
  std::string plan;
  int n = 0;
  for (int a = 0; a < 5; ++a)
    if (args[a] >= 0) {
      info->aConstraintUsage[args[a]].argvIndex = ++n;
      info->aConstraintUsage[args[a]].omit = 1;
      plan += "tcxfd"[a];
    }
  bool drives = true;
  sqlite3_value* value = nullptr;
  if (args[4] >= 0 && sqlite3_vtab_rhs_value(info, args[4], &value) == SQLITE_OK && value != nullptr)
    drives = sqlite3_value_int(value) != 0;
  if (key >= 0) {
    info->aConstraintUsage[key].argvIndex = ++n;
    info->aConstraintUsage[key].omit = 1;
    plan += 'k';
  }
  // SQLite checks the RANK bounds again: they only narrow the search.
  for (const auto& [i, op] : ranks) {
    info->aConstraintUsage[i].argvIndex = ++n;
    plan += op;
  }
  if (key >= 0) {
    info->estimatedCost = 10;
    info->estimatedRows = 1;
    info->idxFlags = SQLITE_INDEX_SCAN_UNIQUE;
  } else {
    info->estimatedCost = drives ? 1000 : 1e12;
    info->estimatedRows = drives ? 100 : 1000000000;
    bool sorted = info->nOrderBy >= 1 && info->nOrderBy <= 2 && info->aOrderBy[0].iColumn == kColRank &&
                  (info->nOrderBy == 1 || info->aOrderBy[1].iColumn == kColKey);
    if (sorted) {
      info->orderByConsumed = 1;
      info->idxNum = 1 | (info->aOrderBy[0].desc ? 2 : 0);
      if (info->nOrderBy == 2) info->idxNum |= 4 | (info->aOrderBy[1].desc ? 8 : 0);
    }
  }
  info->idxStr = sqlite3_mprintf("%s", plan.c_str());
  info->needToFreeIdxStr = 1;
  return info->idxStr ? SQLITE_OK : SQLITE_NOMEM;
}

int SearchOpen(sqlite3_vtab*, sqlite3_vtab_cursor** out) {
  auto* cursor = new (std::nothrow) SearchCursor{};
  if (cursor == nullptr) return SQLITE_NOMEM;
  *out = &cursor->base;
  return SQLITE_OK;
}

int SearchClose(sqlite3_vtab_cursor* cursor) {
  delete reinterpret_cast<SearchCursor*>(cursor);
  return SQLITE_OK;
}

// A bound on an integer rank from a constraint's value; nothing for a value
// that is not a number (text, NULL: SQLite compares those by its own rules).
std::optional<double> Number(sqlite3_value* v) {
  int type = sqlite3_value_type(v);
  if (type == SQLITE_INTEGER || type == SQLITE_FLOAT) return sqlite3_value_double(v);
  return std::nullopt;
}

// Ranks the rows of one FTS5 query against the cursor's text, keeping those
// within its bounds; rows holding one of the terms `skip` are left out.
void Collect(SearchCursor& cursor, const std::string& match, const std::vector<std::string>& skip = {}) {
  IndexMirror& mirror = *cursor.mirror;
  // Another statement of the connection may have reloaded the mirror (its
  // term numbers) between two parts.
  if (!cursor.searched || cursor.loads != mirror.Loads()) {
    cursor.searched.emplace(mirror, cursor.text);
    cursor.loads = mirror.Loads();
  }
  const SearchedText& searched = *cursor.searched;
  std::vector<std::uint32_t> skipped;
  for (const std::string& term : skip)
    if (std::optional<std::uint32_t> id = mirror.Find(term)) skipped.push_back(*id);
  sqlite3_stmt* st = cursor.match;
  sqlite3_bind_text(st, 1, match.c_str(), static_cast<int>(match.size()), SQLITE_STATIC);
  int rc;
  while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
    std::int64_t key = sqlite3_column_int64(st, 0);
    std::span<const std::uint32_t> row = mirror.RowTerms(key);
    bool seen = false;
    for (std::uint32_t id : row)
      for (std::uint32_t s : skipped) seen = seen || id == s;
    if (seen) continue;
    double score = searched.RankTerms(mirror, row);
    if (score < 0) continue;
    int rank = RoundRank(score);
    if (rank >= cursor.least && rank <= cursor.most) {
      cursor.rows.push_back({key, rank});
      if (cursor.lazy) std::push_heap(cursor.rows.begin(), cursor.rows.end(), Below);
    }
  }
  sqlite3_reset(st);
  sqlite3_clear_bindings(st);
  if (rc != SQLITE_DONE) throw Error(kErrDatabase, "Corvina20.FullText", sqlite3_errmsg(sqlite3_db_handle(st)));
}

// Reads parts until no part left can hold a row as good as the best one
// held. The rows of a part's term that hold a heavier candidate term belong
// to an earlier part.
void Fill(SearchCursor& cursor) {
  while (cursor.nextPart < cursor.parts.size() &&
         (cursor.rows.empty() || cursor.rows.front().second <= cursor.parts[cursor.nextPart].bound)) {
    const CandidatePart& part = cursor.parts[cursor.nextPart++];
    Collect(cursor, QuoteTerm(part.term), cursor.heavier);
    cursor.heavier.push_back(part.term);
  }
}

void RunSearch(SearchCursor& cursor, FullTextState& state, int idxNum, const std::string& plan, sqlite3_value** argv) {
  std::string table, column;
  int least = 0, most = 1000;
  bool none = false;
  std::optional<std::int64_t> key;
  for (std::size_t i = 0; i < plan.size(); ++i) {
    sqlite3_value* v = argv[i];
    std::optional<double> x;
    switch (plan[i]) {
      case 't': table = Text(v); break;
      case 'c': column = Text(v); break;
      case 'x':
        cursor.text = Text(v);
        none = none || sqlite3_value_type(v) == SQLITE_NULL;
        break;
      case 'f': least = std::max(least, sqlite3_value_int(v)); break;
      case 'd': break;
      case 'k':
        // The keys are integers: 5 and 5.0 name one, '5' and NULL none.
        if (sqlite3_value_type(v) == SQLITE_INTEGER) key = sqlite3_value_int64(v);
        else if (sqlite3_value_type(v) == SQLITE_FLOAT && std::trunc(sqlite3_value_double(v)) == sqlite3_value_double(v) &&
                 std::fabs(sqlite3_value_double(v)) < 9e15)
          key = static_cast<std::int64_t>(sqlite3_value_double(v));
        else none = true;
        break;
      case '>':
        if ((x = Number(v))) least = std::max(least, static_cast<int>(std::min(std::floor(*x) + 1, 1001.0)));
        break;
      case 'G':
        if ((x = Number(v))) least = std::max(least, static_cast<int>(std::min(std::ceil(*x), 1001.0)));
        break;
      case '<':
        if ((x = Number(v))) most = std::min(most, static_cast<int>(std::max(std::ceil(*x) - 1, -1.0)));
        break;
      case 'L':
        if ((x = Number(v))) most = std::min(most, static_cast<int>(std::max(std::floor(*x), -1.0)));
        break;
      case '=':
        if ((x = Number(v))) {
          least = std::max(least, static_cast<int>(std::min(std::ceil(*x), 1001.0)));
          most = std::min(most, static_cast<int>(std::max(std::floor(*x), -1.0)));
        }
        break;
    }
  }
  if (none || least > most) return;
  cursor.least = least;
  cursor.most = most;
  cursor.mirror = &state.Mirror(table, column);
  cursor.match = state.MatchStatement(table, column);
  cursor.searched.emplace(*cursor.mirror, cursor.text);
  cursor.loads = cursor.mirror->Loads();
  if (key) {
    double score = cursor.searched->RankTerms(*cursor.mirror, cursor.mirror->RowTerms(*key));
    int rank = score < 0 ? -1 : RoundRank(score);
    if (score >= 0 && rank >= least && rank <= most) cursor.rows.push_back({*key, rank});
    return;
  }
  const bool sorted = idxNum & 1;
  const bool rankDown = idxNum & 2;
  const bool keyDown = (idxNum & 4) && (idxNum & 8);
  if (sorted && rankDown && !keyDown) {
    // Best first, as ORDER BY RANK DESC [, KEY] asks: part by part, so that
    // TOP n reads only the parts it needs.
    cursor.lazy = true;
    cursor.parts = CandidateParts(cursor.searched->Terms(), least, cursor.searched->Power());
    Fill(cursor);
    return;
  }
  std::string match = CandidateQuery(cursor.searched->Terms(), least, cursor.searched->Power());
  if (match == "\"\"") return;
  Collect(cursor, match);
  if (!sorted) return;  // SQLite sorts them, or needs no order
  std::sort(cursor.rows.begin(), cursor.rows.end(), [&](const Found& a, const Found& b) {
    if (a.second != b.second) return rankDown ? a.second > b.second : a.second < b.second;
    return keyDown ? a.first > b.first : a.first < b.first;
  });
}

int SearchFilter(sqlite3_vtab_cursor* base, int idxNum, const char* idxStr, int, sqlite3_value** argv) {
  auto* cursor = reinterpret_cast<SearchCursor*>(base);
  auto* vtab = reinterpret_cast<SearchVtab*>(base->pVtab);
  cursor->rows.clear();
  cursor->at = 0;
  cursor->lazy = false;
  cursor->parts.clear();
  cursor->nextPart = 0;
  cursor->heavier.clear();
  cursor->searched.reset();
  try {
    RunSearch(*cursor, *vtab->state, idxNum, idxStr ? idxStr : "", argv);
  } catch (const std::exception& e) {
    cursor->rows.clear();
    const auto* error = dynamic_cast<const Error*>(&e);
    sqlite3_free(vtab->base.zErrMsg);
    vtab->base.zErrMsg = sqlite3_mprintf("%s", error ? error->Description().c_str() : e.what());
    return SQLITE_ERROR;
  }
  return SQLITE_OK;
}

int SearchNext(sqlite3_vtab_cursor* base) {
  auto* cursor = reinterpret_cast<SearchCursor*>(base);
  if (!cursor->lazy) {
    ++cursor->at;
    return SQLITE_OK;
  }
  std::pop_heap(cursor->rows.begin(), cursor->rows.end(), Below);
  cursor->rows.pop_back();
  try {
    Fill(*cursor);
  } catch (const std::exception& e) {
    cursor->rows.clear();
    cursor->nextPart = cursor->parts.size();
    auto* vtab = base->pVtab;
    const auto* error = dynamic_cast<const Error*>(&e);
    sqlite3_free(vtab->zErrMsg);
    vtab->zErrMsg = sqlite3_mprintf("%s", error ? error->Description().c_str() : e.what());
    return SQLITE_ERROR;
  }
  return SQLITE_OK;
}

int SearchEof(sqlite3_vtab_cursor* base) {
  auto* cursor = reinterpret_cast<SearchCursor*>(base);
  return cursor->lazy ? cursor->rows.empty() : cursor->at >= cursor->rows.size();
}

const Found& Current(const SearchCursor& cursor) {
  return cursor.lazy ? cursor.rows.front() : cursor.rows[cursor.at];
}

int SearchColumnValue(sqlite3_vtab_cursor* base, sqlite3_context* ctx, int column) {
  const Found& row = Current(*reinterpret_cast<SearchCursor*>(base));
  if (column == kColKey) sqlite3_result_int64(ctx, row.first);
  else if (column == kColRank) sqlite3_result_int(ctx, row.second);
  else sqlite3_result_null(ctx);
  return SQLITE_OK;
}

int SearchRowid(sqlite3_vtab_cursor* base, sqlite_int64* rowid) {
  *rowid = Current(*reinterpret_cast<SearchCursor*>(base)).first;
  return SQLITE_OK;
}

sqlite3_module SearchModule() {
  sqlite3_module m{};
  m.iVersion = 0;
  m.xCreate = nullptr;  // eponymous only: a table-valued function, never CREATE VIRTUAL TABLE
  m.xConnect = SearchConnect;
  m.xBestIndex = SearchBestIndex;
  m.xDisconnect = SearchDisconnect;
  m.xDestroy = SearchDisconnect;
  m.xOpen = SearchOpen;
  m.xClose = SearchClose;
  m.xFilter = SearchFilter;
  m.xNext = SearchNext;
  m.xEof = SearchEof;
  m.xColumn = SearchColumnValue;
  m.xRowid = SearchRowid;
  return m;
}

}  // namespace

void RegisterFullText(sqlite3* db) {
  // FTS5 reads its doclists and the searches' joins read the rows found by
  // key, across the whole table. A server holds a connection per session,
  // so the cache is sized for fifty of them (docs/performance.md): pages
  // it misses come from the OS's cache of the file, shared by all.
  sqlite3_exec(db, ("PRAGMA cache_size = -" + std::to_string(kCachePerConnectionKiB)).c_str(), nullptr, nullptr,
               nullptr);
  fts5_api* api = Fts5Api(db);
  if (api == nullptr)
    throw Error(kErrDatabase, "Corvina20.FullText", "SQLite senza FTS5: ricerca full-text non disponibile");
  static fts5_tokenizer tokenizer{TokenizerCreate, TokenizerDelete, TokenizerTokenize};
  int rc = api->xCreateTokenizer(api, "corvina", nullptr, &tokenizer, nullptr);
  // The state lives as long as the module: SQLite deletes it when the
  // connection closes (or when this is called again on the connection).
  auto* state = new FullTextState(db);
  static const sqlite3_module module = SearchModule();
  if (rc == SQLITE_OK) rc = sqlite3_create_module_v2(db, "corvina_ft_search", &module, state, DestroyState);
  else delete state;
  if (rc == SQLITE_OK) {
    std::lock_guard lock(g_statesMutex);
    States()[db] = state;
  }
  // Deterministic within a statement: the frequencies they read do not
  // change while it runs, so SQLite may compute a constant call once.
  const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
  if (rc == SQLITE_OK)
    rc = sqlite3_create_function_v2(db, "corvina_ft_terms", 1, flags | SQLITE_INNOCUOUS, nullptr, TermsFunction,
                                    nullptr, nullptr, nullptr);
  if (rc == SQLITE_OK)
    rc = sqlite3_create_function_v2(db, "corvina_ft_match", 4, flags, state, MatchFunction, nullptr, nullptr,
                                    nullptr);
  if (rc == SQLITE_OK)
    rc = sqlite3_create_function_v2(db, "corvina_ft_rank", 4, flags, state, RankFunction, nullptr, nullptr,
                                    nullptr);
  if (rc == SQLITE_OK)
    rc = sqlite3_create_function_v2(db, "corvina_ft_frequency", 3, flags, state, FrequencyFunction, nullptr,
                                    nullptr, nullptr);
  if (rc == SQLITE_OK)
    rc = sqlite3_create_function_v2(db, "corvina_ft_follow", 0, SQLITE_UTF8, state, FollowFunction, nullptr, nullptr,
                                    nullptr);
  if (rc != SQLITE_OK)
    throw Error(kErrDatabase, "Corvina20.FullText", std::string("Registrazione full-text: ") + sqlite3_errmsg(db));
}

void ReleaseFullText(sqlite3* db) {
  std::lock_guard lock(g_statesMutex);
  if (auto it = States().find(db); it != States().end()) it->second->Release();
}

std::string IndexTableName(std::string_view table, std::string_view column) {
  return "CORft_" + std::string(table) + "_" + std::string(column);
}

std::string LogTableName(std::string_view table, std::string_view column) {
  return "CORftlog_" + std::string(table) + "_" + std::string(column);
}

}  // namespace corvina20::data::fulltext
