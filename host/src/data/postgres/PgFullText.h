// Full text on PostgreSQL with SQLite's contract and ranks: the same
// in-memory mirrors (fulltext/FtsMirror.h) and the same ranking
// (SearchedText), fed from PostgreSQL. Each catalogue index of T.C is a
// change log corftlog_t_c kept by a trigger on T, read by the mirrors as on
// SQLite, and a view corft_t_c (the key and C) that names the index for the
// translator's check. FREETEXTTABLE(T, C, 'text') is evaluated by the host
// before its statement runs: its KEY and RANK rows go into the translated
// statement as two constant arrays (unnest), which it joins.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "corvina20/Connection.h"
#include "data/Backend.h"

namespace corvina20::data::pg {

// Makes the database's full-text logs and views those of the catalogue
// (data/fulltext.tsv): creates what is missing, idempotent. Throws
// corvina20::Error kErrDatabase when a catalogue column does not exist.
void EnsureFullTextIndexes(Connection& connection);

// The full-text state of one connection: its mirrors, by index.
class FullTextSearch {
 public:
  // `backend` is the connection's; `database` names the database for the
  // mirrors shared by the process's connections to it.
  // `inTransaction` tells whether the connection has a transaction open
  // (what it reads then is never shared with other connections).
  FullTextSearch(Backend& backend, std::string database, std::function<bool()> inTransaction);
  ~FullTextSearch();
  FullTextSearch(const FullTextSearch&) = delete;
  FullTextSearch& operator=(const FullTextSearch&) = delete;

  // The rows of table.column that share a word with `text`, as (key, rank),
  // rank from 0 to 1000 as on SQLite, those below `minRank` left out.
  // Throws corvina20::Error kErrDatabase when the index is missing.
  std::vector<std::pair<std::int64_t, int>> Search(const std::string& table, const std::string& column,
                                                   const std::string& text, int minRank);
  // IndexMirror::FollowNewest on every mirror. Throws as it does.
  void FollowNewest();

 private:
  struct Index;
  Backend& backend_;
  std::string database_;
  std::function<bool()> inTransaction_;
  std::vector<std::unique_ptr<Index>> indexes_;
};

}  // namespace corvina20::data::pg
