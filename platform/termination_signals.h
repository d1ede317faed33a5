#pragma once
// For a command-line program that must clean up when asked to end (SIGINT, SIGTERM): while one of
// these lives, those signals no longer end the program; each calls a function instead, on a
// thread of its own, where it may do what a signal handler may not (lock, allocate, post).
// One at a time per program.

#include <signal.h>

#include <atomic>
#include <functional>
#include <thread>

namespace kavor {

class TerminationSignals {
 public:
  // onSignal gets the signal's number, on the watching thread.
  explicit TerminationSignals(std::function<void(int)> onSignal);
  // The signals have their earlier effect again.
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

  // The last signal received, or 0.
  int received() const { return received_.load(); }

 private:
  std::function<void(int)> onSignal_;
  std::atomic<int> received_{0};
  int pipe_[2] = {-1, -1};
  struct sigaction before_[2] = {};  // SIGINT's and SIGTERM's actions before
  std::thread watcher_;
};

}  // namespace kavor
