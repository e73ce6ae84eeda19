// The HTTP server's growing pool of workers; see WorkerPool.h.
#include "web/WorkerPool.h"

namespace corvina20::web {

WorkerPool::WorkerPool(std::size_t initial, std::size_t max) : max_(max) {
  std::lock_guard lock(mutex_);
  for (std::size_t i = 0; i < initial && i < max_; ++i) StartOne();
}

WorkerPool::~WorkerPool() { shutdown(); }

void WorkerPool::StartOne() {
  threads_.emplace_back([this] { Work(); });
}

void WorkerPool::enqueue(std::function<void()> job) {
  {
    std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
    // Every thread busy (or already promised to an earlier job): one more.
    if (idle_ < jobs_.size() && threads_.size() < max_) StartOne();
  }
  ready_.notify_one();
}

void WorkerPool::shutdown() {
  std::vector<std::thread> threads;
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
    threads.swap(threads_);
  }
  ready_.notify_all();
  for (std::thread& t : threads) t.join();
}

std::size_t WorkerPool::Threads() const {
  std::lock_guard lock(mutex_);
  return threads_.size();
}

void WorkerPool::Work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    ++idle_;
    ready_.wait(lock, [this] { return stopping_ || !jobs_.empty(); });
    --idle_;
    if (jobs_.empty()) return;  // stopping, and nothing left to do
    std::function<void()> job = std::move(jobs_.front());
    jobs_.pop_front();
    lock.unlock();
    job();
    lock.lock();
  }
}

}  // namespace corvina20::web
