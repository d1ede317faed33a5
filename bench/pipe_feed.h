#pragma once
// A child process that writes bytes into a pipe, as the log tool does; the benchmarks read the
// other end.

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

namespace kavor::bench {

class PipeFeed {
 public:
  // Forks a child that writes `bytes` to the pipe and exits.
  explicit PipeFeed(std::string_view bytes);
  // Forks a child that writes whatever `produce` hands it, piece by piece, until it returns
  // false (for outputs too large to hold).
  using Producer = std::function<bool(std::string& piece)>;
  explicit PipeFeed(const Producer& produce);
  ~PipeFeed();
  PipeFeed(const PipeFeed&) = delete;
  PipeFeed& operator=(const PipeFeed&) = delete;

  int fd() const { return readFd_; }
  // Closes our end and reaps the child; true when it wrote everything.
  bool finish();

 private:
  void start(const std::function<void(int)>& childBody);
  int readFd_ = -1;
  pid_t child_ = -1;
};

}  // namespace kavor::bench
