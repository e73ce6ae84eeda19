// The tokenizer and SQL functions of full text on SQLite; see FtsSqlite.h.
// The searched text is a constant of the statement, so what it costs to
// prepare (its terms, their weights, the frequency lookup) is done once per
// statement and kept as SQLite auxiliary data on that argument; the weights
// of the rows' own terms are remembered there too.
#include "data/fulltext/FtsSqlite.h"

#include <sqlite3.h>

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "corvina20/Error.h"
#include "data/fulltext/FtsRank.h"
#include "data/fulltext/FtsTokenizer.h"

namespace corvina20::data::fulltext {
namespace {

// --- the FTS5 tokenizer -------------------------------------------------------

int TokenizerCreate(void*, const char**, int, Fts5Tokenizer** out) {
  static int instance = 0;  // stateless: every table shares one
  *out = reinterpret_cast<Fts5Tokenizer*>(&instance);
  return SQLITE_OK;
}

void TokenizerDelete(Fts5Tokenizer*) {}

int TokenizerTokenize(Fts5Tokenizer*, void* context, int, const char* text, int length,
                      int (*emit)(void*, int, const char*, int, int, int)) {
  if (text == nullptr || length <= 0) return SQLITE_OK;
  try {
    for (const FtsToken& t : TokenizeText(std::string_view(text, static_cast<std::size_t>(length)))) {
      int rc = emit(context, 0, t.term.data(), static_cast<int>(t.term.size()), t.start, t.end);
      if (rc != SQLITE_OK) return rc;
    }
  } catch (...) {
    return SQLITE_NOMEM;
  }
  return SQLITE_OK;
}

fts5_api* Fts5Api(sqlite3* db) {
  fts5_api* api = nullptr;
  sqlite3_stmt* st = nullptr;
  if (sqlite3_prepare_v2(db, "SELECT fts5(?1)", -1, &st, nullptr) == SQLITE_OK) {
    sqlite3_bind_pointer(st, 1, &api, "fts5_api_ptr", nullptr);
    sqlite3_step(st);
  }
  sqlite3_finalize(st);
  return api;
}

// --- per-statement state of one searched text ----------------------------------

std::string Text(sqlite3_value* v) {
  const unsigned char* s = sqlite3_value_text(v);
  return s ? std::string(reinterpret_cast<const char*>(s), static_cast<std::size_t>(sqlite3_value_bytes(v)))
           : std::string();
}

class Search {
 public:
  Search(sqlite3* db, const std::string& table, const std::string& column, const std::string& text) {
    std::string sql = "SELECT df FROM \"" + FrequencyTableName(table, column) + "\" WHERE term = ?1";
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &frequency_, nullptr) != SQLITE_OK)
      throw Error(kErrDatabase, "Corvina20.FullText",
                  "Indice full-text assente: " + table + "." + column + " (" + sqlite3_errmsg(db) + ")");
    rows_ = Frequency("");
    for (std::string& term : DistinctTerms(text)) {
      double df = Frequency(term);
      WeightedTerm w{term, TermWeight(df, rows_), df > 0};
      queryWeight_ += w.weight;
      weights_.emplace(w.term, w.weight);
      query_.emplace(w.term, w.weight);
      terms_.push_back(std::move(w));
    }
  }
  ~Search() { sqlite3_finalize(frequency_); }
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;

  const std::vector<WeightedTerm>& Terms() const { return terms_; }

  // The unrounded rank of a row's text; negative when it shares no term.
  double Rank(std::string_view rowText) {
    double shared = 0, best = 0, rowWeight = 0;
    std::vector<FtsToken> tokens = TokenizeText(rowText);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      const std::string& term = tokens[i].term;
      // Rows hold a handful of words: a linear look back finds repeats.
      bool repeated = false;
      for (std::size_t k = 0; k < i && !repeated; ++k) repeated = tokens[k].term == term;
      if (repeated) continue;
      if (auto q = query_.find(term); q != query_.end()) {
        shared += q->second;
        best = std::max(best, q->second);
      }
      rowWeight += Weight(term);
    }
    return shared > 0 ? RankScore(shared, queryWeight_, rowWeight, best) : -1;
  }

 private:
  double Frequency(const std::string& term) {
    sqlite3_reset(frequency_);
    sqlite3_bind_text(frequency_, 1, term.data(), static_cast<int>(term.size()), SQLITE_STATIC);
    double df = 0;
    int rc = sqlite3_step(frequency_);
    if (rc == SQLITE_ROW) df = sqlite3_column_double(frequency_, 0);
    else if (rc != SQLITE_DONE)
      throw Error(kErrDatabase, "Corvina20.FullText", sqlite3_errmsg(sqlite3_db_handle(frequency_)));
    sqlite3_reset(frequency_);
    return df;
  }

  double Weight(const std::string& term) {
    auto it = weights_.find(term);
    if (it == weights_.end()) it = weights_.emplace(term, TermWeight(Frequency(term), rows_)).first;
    return it->second;
  }

  sqlite3_stmt* frequency_ = nullptr;
  double rows_ = 0;
  double queryWeight_ = 0;
  std::vector<WeightedTerm> terms_;
  std::unordered_map<std::string, double> query_;
  std::unordered_map<std::string, double> weights_;
};

// The state of the text in argument 2, made on the first row of a statement.
Search& SearchOf(sqlite3_context* ctx, sqlite3_value** argv) {
  if (auto* s = static_cast<Search*>(sqlite3_get_auxdata(ctx, 2))) return *s;
  auto* s = new Search(sqlite3_context_db_handle(ctx), Text(argv[0]), Text(argv[1]), Text(argv[2]));
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
    std::string query = CandidateQuery(search.Terms(), sqlite3_value_int(argv[3]));
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
    double score = SearchOf(ctx, argv).Rank(text);
    if (score < 0) sqlite3_result_null(ctx);
    else sqlite3_result_int(ctx, RoundRank(score));
  });
}

}  // namespace

void RegisterFullText(sqlite3* db) {
  // Ranking reads each candidate row by key, at random across the table: with
  // SQLite's default cache of 2 MiB every such read goes back to the OS.
  // 64 MiB keeps a register of a million parties' searched columns at hand.
  sqlite3_exec(db, "PRAGMA cache_size = -65536", nullptr, nullptr, nullptr);
  fts5_api* api = Fts5Api(db);
  if (api == nullptr)
    throw Error(kErrDatabase, "Corvina20.FullText", "SQLite senza FTS5: ricerca full-text non disponibile");
  static fts5_tokenizer tokenizer{TokenizerCreate, TokenizerDelete, TokenizerTokenize};
  int rc = api->xCreateTokenizer(api, "corvina", nullptr, &tokenizer, nullptr);
  // Deterministic within a statement: the frequencies they read do not
  // change while it runs, so SQLite may compute a constant call once.
  const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
  if (rc == SQLITE_OK)
    rc = sqlite3_create_function_v2(db, "corvina_ft_terms", 1, flags | SQLITE_INNOCUOUS, nullptr, TermsFunction,
                                    nullptr, nullptr, nullptr);
  if (rc == SQLITE_OK)
    rc = sqlite3_create_function_v2(db, "corvina_ft_match", 4, flags, nullptr, MatchFunction, nullptr,
                                    nullptr, nullptr);
  if (rc == SQLITE_OK)
    rc = sqlite3_create_function_v2(db, "corvina_ft_rank", 4, flags, nullptr, RankFunction, nullptr,
                                    nullptr, nullptr);
  if (rc != SQLITE_OK)
    throw Error(kErrDatabase, "Corvina20.FullText", std::string("Registrazione full-text: ") + sqlite3_errmsg(db));
}

std::string IndexTableName(std::string_view table, std::string_view column) {
  return "CORft_" + std::string(table) + "_" + std::string(column);
}

std::string FrequencyTableName(std::string_view table, std::string_view column) {
  return "CORftdf_" + std::string(table) + "_" + std::string(column);
}

}  // namespace corvina20::data::fulltext
