// The HTTP server's workers: a pool that grows with the connections being
// served, up to a bound. The library's own pool has a fixed handful of
// threads, and a connection holds its thread for as long as it is open: a
// few browsers idling on keep-alive, or clients sending their headers slowly,
// took every thread and stalled everyone else for seconds. Here a connection
// that finds every thread busy gets a new one, up to kMaxWorkers; only
// beyond that does it wait in the queue.
#pragma once

#include <httplib.h>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace corvina20::web {

class WorkerPool : public httplib::TaskQueue {
 public:
  // Enough for ~50 users with a few connections each, plus slow or idle
  // ones; a thread costs little more than its stack while it waits.
  static constexpr std::size_t kMaxWorkers = 256;

  // Starts `initial` threads; more are started as the work needs them.
  explicit WorkerPool(std::size_t initial, std::size_t max = kMaxWorkers);
  ~WorkerPool() override;

  void enqueue(std::function<void()> job) override;
  // Runs the jobs queued, then joins every thread. Called by the server on stop.
  void shutdown() override;

  // Threads started so far (for tests and diagnostics).
  std::size_t Threads() const;

 private:
  void Work();
  void StartOne();  // REQUIRES: mutex_ held

  const std::size_t max_;
  mutable std::mutex mutex_;
  std::condition_variable ready_;
  std::deque<std::function<void()>> jobs_;
  std::vector<std::thread> threads_;
  std::size_t idle_ = 0;
  bool stopping_ = false;
};

}  // namespace corvina20::web
