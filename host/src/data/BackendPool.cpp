// Backends taken and given back by the sessions of a server.
#include "data/BackendPool.h"

#include <map>

#include "data/postgres/PgBackend.h"
#include "data/sqlite/SqliteBackend.h"

namespace corvina20::data {

BackendPool::BackendPool(Opener open, Upkeep upkeep, std::size_t idleKept)
    : open_(std::move(open)), upkeep_(std::move(upkeep)), idleKept_(idleKept) {
  std::unique_ptr<Backend> first = open_();
  dialect_ = first->Dialect();
  name_ = first->Name();
  opened_ = 1;
  idle_.push_back(std::move(first));
}

std::shared_ptr<BackendPool> BackendPool::ForLocation(const std::string& location) {
  // As many idle as a two-core server runs requests at once with room to
  // spare: at fifty users about five are busy at the worst moments, and
  // opening one more costs a few milliseconds.
  constexpr std::size_t kIdleKept = 8;
  static std::mutex mutex;
  static std::map<std::string, std::weak_ptr<BackendPool>> pools;
  std::lock_guard lock(mutex);
  std::shared_ptr<BackendPool> pool = pools[location].lock();
  if (!pool) {
    Opener open = [location]() -> std::unique_ptr<Backend> {
      if (IsPostgresLocation(location)) return OpenPgBackend(location);
      return OpenSqliteBackend(location);
    };
    // A backend waiting idle must not keep an older full-text copy alive.
    pool = std::make_shared<BackendPool>(std::move(open), [](Backend& b) { b.FollowNewestCopies(); }, kIdleKept);
    std::erase_if(pools, [](const auto& entry) { return entry.second.expired(); });
    pools[location] = pool;
  }
  return pool;
}

std::unique_ptr<Backend> BackendPool::Take() {
  {
    std::lock_guard lock(mutex_);
    if (!idle_.empty()) {
      std::unique_ptr<Backend> backend = std::move(idle_.back());
      idle_.pop_back();
      return backend;
    }
    ++opened_;
  }
  // Opened outside the lock: the others keep taking and giving meanwhile.
  try {
    return open_();
  } catch (...) {
    std::lock_guard lock(mutex_);
    --opened_;
    throw;
  }
}

void BackendPool::Give(std::unique_ptr<Backend> backend) {
  if (!backend) return;
  if (upkeep_) upkeep_(*backend);
  std::unique_ptr<Backend> closing;
  {
    std::lock_guard lock(mutex_);
    if (idle_.size() < idleKept_) idle_.push_back(std::move(backend));
    else closing = std::move(backend);
  }
  // closing, if any, is closed here, outside the lock.
}

std::size_t BackendPool::Opened() const {
  std::lock_guard lock(mutex_);
  return opened_;
}

std::size_t BackendPool::Idle() const {
  std::lock_guard lock(mutex_);
  return idle_.size();
}

}  // namespace corvina20::data
