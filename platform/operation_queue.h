#pragma once
// Runs operations on worker threads, at most a fixed number at once, in the order they were added.
// Threads start lazily: one more each time an operation finds every thread busy, up to the limit,
// so a queue that is never used costs nothing.

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace kavor {

class OperationQueue {
 public:
  // At least one operation runs at a time, whatever is asked for.
  explicit OperationQueue(int maxConcurrent);
  // Waits for every operation added, then ends the workers.
  ~OperationQueue();
  OperationQueue(const OperationQueue&) = delete;
  OperationQueue& operator=(const OperationQueue&) = delete;

  // Any thread may add, including an operation. Operations must not throw.
  void addOperation(std::function<void()> operation);
  // Returns once nothing is queued or running; must not be called from an operation.
  void waitUntilAllOperationsAreFinished();
  // Worker threads started so far.
  size_t threadCount();

 private:
  void work();

  std::mutex mutex_;
  std::condition_variable wake_;
  std::condition_variable idle_;
  std::deque<std::function<void()>> queue_;
  size_t maxThreads_;
  size_t waiting_ = 0;  // threads waiting for an operation
  int running_ = 0;
  bool stopping_ = false;
  std::vector<std::thread> workers_;
};

}  // namespace kavor
