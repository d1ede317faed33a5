#include "cli/os_version_option.h"

#include <string>

#include "cli/command.h"
#include "platform/demo_root.h"
#include "platform/system_paths.h"
#include "platform/system_version.h"

namespace kavor::cli {

std::optional<int> osVersionOption(const Arguments& args, int& exitStatus) {
  if (const auto text = args.value(kOsVersion)) {
    const auto n = positiveNumber(kOsVersion, *text);
    if (n) return *n;
    exitStatus = badUsage(n.error().message());
    return std::nullopt;
  }
  const EnvLookup env = processEnvironment();
  // On first use the demo system is made, so that there is a system to read.
  if (const auto made = ensureDemoRoot(env, runningProgram()); !made)
    printError(made.error().message());
  const SystemPaths paths(systemRootFrom(env));
  const auto version = readSystemVersion(paths);
  if (version) return osVersionFrom(*version);
  printError(version.error().message());
  exitStatus = failed("the system root is " + paths.root().string() +
                      "; pass --os-version N to give the system's version");
  return std::nullopt;
}

}  // namespace kavor::cli
