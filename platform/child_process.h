#pragma once
// Running a program as a child process: the program and its arguments as a list, never through a
// shell, so that a predicate or path with spaces and quotes arrives whole. Standard output goes
// to the caller as it arrives; standard error is kept for messages; standard input is shared.

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "platform/expected.h"

namespace kavor {

// Where standard output goes: the child's bytes are read straight into the room it offers.
class OutputSink {
 public:
  virtual ~OutputSink();
  virtual std::span<char> room() = 0;
  virtual void commit(size_t bytes) = 0;
};

// Collects standard output in memory.
class StringSink final : public OutputSink {
 public:
  std::span<char> room() override;
  void commit(size_t bytes) override;
  // What arrived, once the child has ended.
  std::string take();

 private:
  std::string buffer_;  // grows ahead of what arrived, to offer room
  size_t used_ = 0;
};

struct ChildExit {
  // The exit status; a child ended by a signal gives 128 plus the signal's number, as shells do.
  int status = 0;
  std::string standardError;  // its first 64 KiB
};

// Runs program with args (without the program itself) and waits for it. Fails only when the
// program cannot be started, with the system's reason. Safe to call from several threads at once.
Expected<ChildExit> runChildProcess(const std::filesystem::path& program,
                                    std::span<const std::string> args, OutputSink& output);

}  // namespace kavor
