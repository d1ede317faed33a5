#pragma once
// Running a program as a child process: the program and its arguments as a list, never through a
// shell, so that a predicate or path with spaces and quotes arrives whole. Standard output goes
// to the caller as it arrives; standard error is kept for messages; standard input is shared.
//
// Nothing outlives its caller: a run can be stopped, which ends the child (terminated, then
// killed after a short grace); and on Linux a child is killed when the thread that started it
// ends, the whole program included, however it ends. (macOS has no such link: there a child
// outlives a program that is killed outright.)

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "platform/expected.h"
#include "platform/system_paths.h"

namespace kavor {

// Where standard output goes: the child's bytes are read straight into the room it offers.
class OutputSink {
 public:
  virtual ~OutputSink();
  virtual std::span<char> room() = 0;
  virtual void commit(size_t bytes) = 0;
  // False once the sink needs nothing more, such as output already known to be unusable: the
  // child is then ended and the rest of its output left unread.
  virtual bool wantsMore() const { return true; }
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
  // As the platform's termination status has it: the exit status, or, when signalled, the
  // number of the signal that ended the child.
  int status = 0;
  bool signalled = false;
  // The child was ended before it finished, on a stop request or because the sink wanted no
  // more; its status then says how it was ended, not what it made of its work.
  bool stopped = false;
  std::string standardError;      // its first 64 KiB
  size_t standardErrorLines = 0;  // lines it wrote there, kept or not
};

// Runs program with args (without the program itself) and waits for it. Fails only when the
// program cannot be started, with the system's reason. Safe to call from several threads at once.
// When stop is requested the child is ended promptly and the call returns; a child that can be
// stopped leads a process group of its own, so that what it started ends with it.
Expected<ChildExit> runChildProcess(const std::filesystem::path& program,
                                    std::span<const std::string> args, OutputSink& output,
                                    std::stop_token stop = {});

// Starts program with args and lets it go: in a session of its own, its standard streams on
// /dev/null, never waited for, outliving Kavor. Fails only when it cannot be started.
Status startDetachedProcess(const std::filesystem::path& program,
                            std::span<const std::string> args);

// The executable of that name in the absolute folders of PATH, the first as a shell finds it;
// none without one.
std::optional<std::filesystem::path> findProgramInPath(std::string_view name, const EnvLookup& env);

}  // namespace kavor
