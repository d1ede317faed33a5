#pragma once
// A file descriptor closed on every path out of the scope that owns it.

#include <unistd.h>

namespace kavor {

class OwnedFd {
 public:
  explicit OwnedFd(int fd) : fd_(fd) {}
  ~OwnedFd() {
    if (fd_ >= 0) ::close(fd_);
  }
  OwnedFd(const OwnedFd&) = delete;
  OwnedFd& operator=(const OwnedFd&) = delete;
  int get() const { return fd_; }
  // Closing can report a delayed write error, so writers close explicitly.
  int close() {
    const int r = ::close(fd_);
    fd_ = -1;
    return r;
  }

 private:
  int fd_;
};

}  // namespace kavor
