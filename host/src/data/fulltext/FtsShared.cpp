// The process's shared copies of the full-text indexes; see FtsShared.h.
#include "data/fulltext/FtsShared.h"

#include <unordered_map>

#include "core/Text.h"

namespace corvina20::data::fulltext {

std::shared_ptr<SharedMirror> SharedMirror::Of(const std::string& database, std::string_view table,
                                               std::string_view column) {
  if (database.empty()) return std::make_shared<SharedMirror>(std::string(table), std::string(column));
  static std::mutex mutex;
  // Kept for the process's life: a server opens the same few databases.
  static auto* all = new std::unordered_map<std::string, std::shared_ptr<SharedMirror>>();
  std::string key = database + '\n' + text::Upper(std::string(table) + "." + std::string(column));
  std::lock_guard lock(mutex);
  auto& slot = (*all)[key];
  if (!slot) slot = std::make_shared<SharedMirror>(std::string(table), std::string(column));
  return slot;
}

std::shared_ptr<const MirrorData> SharedMirror::Current() const {
  std::lock_guard lock(mutex_);
  return current_;
}

std::shared_ptr<const MirrorData> SharedMirror::Obtain(MirrorSource& source) {
  std::unique_lock lock(mutex_);
  made_.wait(lock, [this] { return current_ || !making_; });
  if (current_) return current_;
  if (source.Uncommitted()) {
    // Its rows may never be committed: a copy for this connection alone.
    ++loads_;
    lock.unlock();
    return MirrorData::Load(source, table_, column_);
  }
  making_ = true;
  lock.unlock();
  std::shared_ptr<const MirrorData> copy;
  try {
    copy = MirrorData::Load(source, table_, column_);
  } catch (...) {
    lock.lock();
    making_ = false;
    made_.notify_all();
    throw;
  }
  lock.lock();
  making_ = false;
  ++loads_;
  if (!current_) current_ = copy;
  made_.notify_all();
  return copy;
}

std::shared_ptr<const MirrorData> SharedMirror::Reload(MirrorSource& source, const MirrorData* replaced) {
  std::shared_ptr<const MirrorData> copy = MirrorData::Load(source, table_, column_);
  const bool committed = !source.Uncommitted();
  std::lock_guard lock(mutex_);
  ++loads_;
  if (committed && current_.get() == replaced) current_ = copy;
  return copy;
}

std::shared_ptr<const MirrorData> SharedMirror::TryAdvance(MirrorSource& source,
                                                           const std::shared_ptr<const MirrorData>& base) {
  if (!base->Last() || source.Uncommitted()) return nullptr;
  {
    std::lock_guard lock(mutex_);
    if (advancing_ || current_ != base) return nullptr;
    advancing_ = true;
  }
  std::shared_ptr<const MirrorData> copy;
  try {
    // Only while the log still holds the copy's entry: the entries after it
    // are then all there.
    if (source.TagAt(base->Last()->seq) == base->Last()->tag) {
      std::vector<LogEntry> entries = source.EntriesSince(base->Last()->seq);
      if (!entries.empty()) copy = MirrorData::Advance(*base, source, entries);
    }
  } catch (...) {
    std::lock_guard lock(mutex_);
    advancing_ = false;
    throw;
  }
  std::lock_guard lock(mutex_);
  advancing_ = false;
  if (!copy || current_ != base) return nullptr;
  ++advances_;
  current_ = copy;
  return copy;
}

int SharedMirror::Loads() const {
  std::lock_guard lock(mutex_);
  return loads_;
}

int SharedMirror::Advances() const {
  std::lock_guard lock(mutex_);
  return advances_;
}

}  // namespace corvina20::data::fulltext
