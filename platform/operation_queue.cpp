#include "platform/operation_queue.h"

#include <algorithm>

namespace kavor {

OperationQueue::OperationQueue(int maxConcurrent)
    : maxThreads_(static_cast<size_t>(std::max(1, maxConcurrent))) {}

OperationQueue::~OperationQueue() {
  waitUntilAllOperationsAreFinished();
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  wake_.notify_all();
  for (std::thread& worker : workers_)
    worker.join();
}

void OperationQueue::addOperation(std::function<void()> operation) {
  {
    const std::lock_guard lock(mutex_);
    queue_.push_back(std::move(operation));
    if (queue_.size() > waiting_ && workers_.size() < maxThreads_)
      workers_.emplace_back([this] { work(); });
  }
  wake_.notify_one();
}

size_t OperationQueue::threadCount() {
  const std::lock_guard lock(mutex_);
  return workers_.size();
}

void OperationQueue::waitUntilAllOperationsAreFinished() {
  std::unique_lock lock(mutex_);
  idle_.wait(lock, [this] { return queue_.empty() && running_ == 0; });
}

// Runs on each worker thread: takes the oldest operation and runs it outside the lock.
void OperationQueue::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    ++waiting_;
    wake_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
    --waiting_;
    if (queue_.empty()) return;  // stopping, and nothing is left
    std::function<void()> operation = std::move(queue_.front());
    queue_.pop_front();
    ++running_;
    lock.unlock();
    operation();
    operation = nullptr;  // the operation's captures die on the worker, outside the lock
    lock.lock();
    --running_;
    if (queue_.empty() && running_ == 0) idle_.notify_all();
  }
}

}  // namespace kavor
