#include "platform/demo_root.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <vector>

extern char** environ;

namespace kavor {

namespace fs = std::filesystem;

namespace {

constexpr const char* kToolName = "kavor-log";

bool isProgram(const fs::path& p) {
  return ::access(p.c_str(), X_OK) == 0 && !fs::is_directory(p);
}

}  // namespace

std::optional<fs::path> standInLogTool(const EnvLookup& env, const fs::path& program) {
  if (const auto set = env("KAVOR_LOG_TOOL"); set && !set->empty()) return fs::path(*set);
  const fs::path dir = program.parent_path();
  for (const fs::path& candidate : {dir / kToolName, dir.parent_path() / "tools" / kToolName})
    if (isProgram(candidate)) return candidate;
  return std::nullopt;
}

Status ensureDemoRoot(const EnvLookup& env, const fs::path& program) {
  if (const auto named = env("KAVOR_SYSTEM_ROOT"); named && !named->empty()) return okStatus();
  const fs::path root = systemRootFrom(env);
  std::error_code ec;
  if (root == "/" ||
      fs::exists(SystemPaths(root).resolve("/System/Library/CoreServices/SystemVersion.plist"), ec))
    return okStatus();
  const auto tool = standInLogTool(env, program);
  if (!tool)
    return Error{ErrorKind::notFound,
                 "making the demo system at " + root.string() +
                     ": the stand-in log tool kavor-log is not beside this program",
                 0};
  // A half-made root from an interrupted first start is made again from scratch.
  fs::remove_all(root, ec);
  fs::create_directories(root.parent_path(), ec);
  std::vector<std::string> args = {tool->string(), "make-system", root.string()};
  std::vector<char*> argv;
  for (std::string& a : args)
    argv.push_back(a.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (const int err = ::posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ))
    return ioError("starting " + tool->string(), err);
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0)
    if (errno != EINTR) return ioError("waiting for " + tool->string(), errno);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    return Error{ErrorKind::io, "making the demo system at " + root.string() + " failed", 0};
  return okStatus();
}

fs::path runningProgram() {
  std::error_code ec;
  const fs::path self = fs::read_symlink("/proc/self/exe", ec);
  return ec ? fs::path() : self;
}

}  // namespace kavor
