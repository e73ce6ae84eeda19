// The backends of one database that the sessions of a server take turns on.
// A web session is busy for a few milliseconds a second and idle the rest:
// holding an open backend each (SQLite's parsed schema alone is close to a
// megabyte, plus its page cache and statements) made the server's memory grow
// with its users. A pooled Connection borrows a backend when a statement needs
// one and gives it back between requests (Connection::ReleaseBackend), so a
// server holds about as many backends as it runs requests at once.
// Not for: sessions that keep work of their own on the backend between calls
// (the command line, the tests): they open one with OpenDatabase.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "data/Backend.h"

namespace corvina20::data {

class BackendPool {
 public:
  using Opener = std::function<std::unique_ptr<Backend>()>;
  // Run on a backend as it comes back, before another session may take it.
  using Upkeep = std::function<void(Backend&)>;

  // Opens the first backend at once (so a location that cannot be opened
  // fails here, as OpenDatabase does) and keeps it idle. Up to `idleKept`
  // backends wait idle; one given back beyond that is closed.
  // Throws as `open` throws.
  BackendPool(Opener open, Upkeep upkeep, std::size_t idleKept);
  BackendPool(const BackendPool&) = delete;
  BackendPool& operator=(const BackendPool&) = delete;

  // The pool of the process for `location` (OpenDatabase's locations): the
  // one in use, or a new one when nobody holds it any more (its backends
  // closed with it, so a database file deleted and made again is never read
  // through an old handle).
  // Throws corvina20::Error kErrDatabase when it cannot be opened.
  static std::shared_ptr<BackendPool> ForLocation(const std::string& location);

  // An idle backend, or a new one when none waits. Thread-safe.
  std::unique_ptr<Backend> Take();
  // Gives back a backend taken from this pool, outside any transaction.
  // Thread-safe.
  void Give(std::unique_ptr<Backend> backend);

  SqlDialect Dialect() const { return dialect_; }
  const std::string& Name() const { return name_; }
  // Backends opened since the pool was made, and those waiting idle now.
  std::size_t Opened() const;
  std::size_t Idle() const;

 private:
  Opener open_;
  Upkeep upkeep_;
  const std::size_t idleKept_;
  SqlDialect dialect_;
  std::string name_;
  mutable std::mutex mutex_;
  std::vector<std::unique_ptr<Backend>> idle_;
  std::size_t opened_ = 0;
};

}  // namespace corvina20::data
