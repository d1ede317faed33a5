#pragma once
// Handing work to the main thread, where documents, controllers and views are changed. The
// window plugs in its event loop; kavor-cli and tests use SimpleMainLoop.

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace kavor {

class MainThread {
 public:
  virtual ~MainThread();
  // Queues job after what is already queued; callable from any thread.
  virtual void post(std::function<void()> job) = 0;
};

// Whoever posts to it from a worker must be gone (joined) before it is destroyed.
class SimpleMainLoop final : public MainThread {
 public:
  void post(std::function<void()> job) override;
  // Runs queued jobs on the calling thread, which becomes the main thread, until done() holds;
  // done is checked before waiting and after each job.
  void runUntil(const std::function<bool()>& done);

 private:
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<std::function<void()>> jobs_;
};

}  // namespace kavor
