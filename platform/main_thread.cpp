#include "platform/main_thread.h"

namespace kavor {

MainThread::~MainThread() = default;

void SimpleMainLoop::post(std::function<void()> job) {
  // Notified under the lock: once the loop can see the job it may return and the loop be
  // destroyed, so the poster must not touch it after unlocking.
  const std::lock_guard lock(mutex_);
  jobs_.push_back(std::move(job));
  wake_.notify_one();
}

void SimpleMainLoop::runUntil(const std::function<bool()>& done) {
  while (!done()) {
    std::function<void()> job;
    {
      std::unique_lock lock(mutex_);
      wake_.wait(lock, [this] { return !jobs_.empty(); });
      job = std::move(jobs_.front());
      jobs_.pop_front();
    }
    job();
  }
}

}  // namespace kavor
