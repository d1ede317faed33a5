#pragma once
// The per-user demo system on systems without macOS: made on first use by the stand-in log
// tool's "make-system", so that Kavor has a log to read from its very first start.

#include <filesystem>
#include <optional>

#include "platform/expected.h"
#include "platform/system_paths.h"

namespace kavor {

// The stand-in tool: KAVOR_LOG_TOOL when set; else "kavor-log" beside the running program, or
// in the build tree's tools folder next to its own folder. None when neither exists.
std::optional<std::filesystem::path> standInLogTool(const EnvLookup& env,
                                                    const std::filesystem::path& program);

// When root has no system yet (no SystemVersion.plist) and is the demo root, that is, not one
// named by KAVOR_SYSTEM_ROOT, lays it out with the stand-in tool. Anything else is left alone.
Status ensureDemoRoot(const EnvLookup& env, const std::filesystem::path& program);

// The running program's own path, for the lookups above.
std::filesystem::path runningProgram();

}  // namespace kavor
