// SQLite glue of the text semantics; the rules themselves are in
// text/TextFold.cpp. LIKE is overridden rather than left to SQLite because
// SQLite's own LIKE folds ASCII only and knows no `[...]` sets, which the
// query builder uses to match %, _ and [ literally.
#include "data/sqlite/SqliteText.h"

#include <sqlite3.h>

#include <string>
#include <string_view>

#include "corvina20/Error.h"
#include "data/text/TextFold.h"

namespace corvina20::data {
namespace {

int Collate(void*, int lengthA, const void* a, int lengthB, const void* b) {
  return text::CompareNoCase(std::string_view(static_cast<const char*>(a), static_cast<std::size_t>(lengthA)),
                             std::string_view(static_cast<const char*>(b), static_cast<std::size_t>(lengthB)));
}

std::string_view TextOf(sqlite3_value* value) {
  const auto* data = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return data ? std::string_view(data, static_cast<std::size_t>(sqlite3_value_bytes(value))) : std::string_view();
}

// like(pattern, text[, escape]): SQLite calls it for "text LIKE pattern".
void Like(sqlite3_context* context, int argc, sqlite3_value** argv) {
  for (int i = 0; i < argc; ++i) {
    if (sqlite3_value_type(argv[i]) == SQLITE_NULL) {
      sqlite3_result_null(context);
      return;
    }
  }
  char32_t escape = 0;
  if (argc == 3) {
    const std::string_view e = TextOf(argv[2]);
    std::size_t i = 0;
    if (!e.empty()) escape = text::DecodeUtf8(e, i);
    if (e.empty() || i != e.size()) {
      sqlite3_result_error(context, "ESCAPE expression must be a single character", -1);
      return;
    }
  }
  sqlite3_result_int(context, text::LikeMatch(TextOf(argv[1]), TextOf(argv[0]), escape) ? 1 : 0);
}

void Check(sqlite3* db, int rc, const char* what) {
  if (rc != SQLITE_OK) {
    throw Error(kErrDatabase, "Corvina20.SQLite", std::string(what) + ": " + sqlite3_errmsg(db));
  }
}

}  // namespace

void RegisterTextSemantics(sqlite3* db) {
  Check(db, sqlite3_create_collation_v2(db, kTextCollation, SQLITE_UTF8, nullptr, Collate, nullptr),
        "Collazione del testo");
  constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  Check(db, sqlite3_create_function_v2(db, "like", 2, kFlags, nullptr, Like, nullptr, nullptr, nullptr),
        "Funzione LIKE");
  Check(db, sqlite3_create_function_v2(db, "like", 3, kFlags, nullptr, Like, nullptr, nullptr, nullptr),
        "Funzione LIKE");
}

}  // namespace corvina20::data
