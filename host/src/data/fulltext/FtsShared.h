// The copies of the full-text indexes shared by every connection of the
// process to one database (one MirrorData per database and index, FtsMirror.h):
// fifty sessions of the web host rank from one copy instead of building fifty.
//
// A shared copy only ever holds committed rows: it is made or advanced by a
// connection with no write transaction open. It is replaced, never changed:
// readers hold the copy they took (a shared_ptr) for as long as they use it,
// and a newer one is swapped in under a short lock. Making the first copy
// takes a second at a million rows; the web host starts it in the
// background when it starts (WarmFullText), and a search that comes first
// waits for that copy rather than making a second one.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "data/fulltext/FtsMirror.h"

namespace corvina20::data::fulltext {

class SharedMirror {
 public:
  // The shared copy of index table.column of `database` (a file name; names
  // of the index in any case). A `database` of "" gives a new one, not
  // shared, on every call (a database no other connection can open).
  static std::shared_ptr<SharedMirror> Of(const std::string& database, std::string_view table,
                                          std::string_view column);

  SharedMirror(std::string table, std::string column) : table_(std::move(table)), column_(std::move(column)) {}

  // The newest copy; null before the first is made.
  std::shared_ptr<const MirrorData> Current() const;
  // The newest copy; when there is none, waits for the one being made, or
  // makes it from `source` (shared unless the source sees uncommitted
  // changes: then a copy of its own is returned). Throws as MirrorData::Load.
  std::shared_ptr<const MirrorData> Obtain(MirrorSource& source);
  // A copy made whole from `source` (the shared one could not be related to
  // what the source sees); shared when the source sees no uncommitted
  // change and the newest copy is still `replaced`.
  std::shared_ptr<const MirrorData> Reload(MirrorSource& source, const MirrorData* replaced);
  // Advances `base` to what `source` sees, when the source sees only
  // committed rows, `base` is still the newest copy and no other thread is
  // advancing it; the new copy is shared and returned. Null otherwise.
  std::shared_ptr<const MirrorData> TryAdvance(MirrorSource& source, const std::shared_ptr<const MirrorData>& base);

  // Copies made whole (Load) and advanced so far: what tests and the
  // benchmarks check sessions do not rebuild.
  int Loads() const;
  int Advances() const;

 private:

  std::string table_, column_;
  mutable std::mutex mutex_;
  std::condition_variable made_;
  std::shared_ptr<const MirrorData> current_;
  bool making_ = false;     // a first copy is being made
  bool advancing_ = false;  // a newer copy is being made from the current one
  int loads_ = 0, advances_ = 0;
};

}  // namespace corvina20::data::fulltext
