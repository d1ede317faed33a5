#include "platform/demo_root.h"

#include <unistd.h>

#include <string>
#include <system_error>

#include "platform/child_process.h"

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
  const std::string args[] = {"make-system", root.string()};
  StringSink ignored;
  const auto ran = runChildProcess(*tool, args, ignored);
  if (!ran) return ran.error();
  if (ran->status != 0)
    return Error{ErrorKind::io,
                 "making the demo system at " + root.string() + " failed: " + ran->standardError,
                 0};
  return okStatus();
}
fs::path runningProgram() {
  std::error_code ec;
  const fs::path self = fs::read_symlink("/proc/self/exe", ec);
  return ec ? fs::path() : self;
}

}  // namespace kavor
