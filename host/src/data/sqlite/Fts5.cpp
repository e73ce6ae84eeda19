// See Fts5.h.
#include "data/sqlite/Fts5.h"

namespace corvina20::data {

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

}  // namespace corvina20::data
