#include "platform/termination_signals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <iterator>

namespace kavor {

namespace {

constexpr int kWatched[] = {SIGINT, SIGTERM};
// Written by the destructor: the watcher ends.
constexpr unsigned char kStopWatching = 0;

// The handler's way to the watcher; a signal handler can reach nothing else.
std::atomic<int> signalPipe{-1};

void onSignal(int number) {
  const int saved = errno;
  const auto byte = static_cast<unsigned char>(number);
  (void)!::write(signalPipe.load(), &byte, 1);
  errno = saved;
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void(int)> handler)
    : onSignal_(std::move(handler)) {
  if (::pipe(pipe_) != 0) return;  // without a pipe the signals keep their usual effect
  for (int fd : pipe_)
    ::fcntl(fd, F_SETFD, FD_CLOEXEC);
  signalPipe.store(pipe_[1]);
  watcher_ = std::thread([this] {
    // On the watching thread.
    for (;;) {
      unsigned char byte = kStopWatching;
      const ssize_t n = ::read(pipe_[0], &byte, 1);
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0 || byte == kStopWatching) return;
      received_.store(byte);
      onSignal_(byte);
    }
  });
  struct sigaction action {};
  action.sa_handler = onSignal;
  action.sa_flags = SA_RESTART;
  ::sigemptyset(&action.sa_mask);
  for (size_t i = 0; i < std::size(kWatched); ++i)
    ::sigaction(kWatched[i], &action, &before_[i]);
}

TerminationSignals::~TerminationSignals() {
  if (!watcher_.joinable()) return;
  for (size_t i = 0; i < std::size(kWatched); ++i)
    ::sigaction(kWatched[i], &before_[i], nullptr);
  const unsigned char stop = kStopWatching;
  (void)!::write(pipe_[1], &stop, 1);
  watcher_.join();
  signalPipe.store(-1);
  for (int fd : pipe_)
    ::close(fd);
}

}  // namespace kavor
