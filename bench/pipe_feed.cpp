#include "bench/pipe_feed.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <system_error>

namespace kavor::bench {

namespace {

bool writeAll(int fd, const char* p, size_t n) {
  while (n > 0) {
    const ssize_t w = ::write(fd, p, std::min<size_t>(n, size_t{1} << 20));
    if (w <= 0) return false;
    p += w;
    n -= static_cast<size_t>(w);
  }
  return true;
}

}  // namespace

void PipeFeed::start(const std::function<void(int)>& childBody) {
  int fds[2];
  if (::pipe(fds) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  // The default 64 KiB pipe makes both sides switch far more often than the tool's output needs.
  ::fcntl(fds[1], F_SETPIPE_SZ, 1 << 20);
  child_ = ::fork();
  if (child_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (child_ == 0) {
    ::close(fds[0]);
    childBody(fds[1]);
    ::_exit(1);
  }
  ::close(fds[1]);
  readFd_ = fds[0];
}

PipeFeed::PipeFeed(std::string_view bytes) {
  start([bytes](int fd) { ::_exit(writeAll(fd, bytes.data(), bytes.size()) ? 0 : 1); });
}

PipeFeed::PipeFeed(const Producer& produce) {
  start([&produce](int fd) {
    std::string piece;
    bool more = true;
    while (more) {
      piece.clear();
      more = produce(piece);
      if (!writeAll(fd, piece.data(), piece.size())) ::_exit(1);
    }
    ::_exit(0);
  });
}

bool PipeFeed::finish() {
  if (readFd_ >= 0) ::close(readFd_);
  readFd_ = -1;
  int status = 0;
  if (child_ > 0 && ::waitpid(child_, &status, 0) == child_) {
    child_ = -1;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }
  return false;
}

PipeFeed::~PipeFeed() {
  finish();
}

}  // namespace kavor::bench
