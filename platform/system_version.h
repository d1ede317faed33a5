#pragma once
// The version of the system under the root, and the small integer the rest of Kavor compares.

#include "platform/expected.h"
#include "platform/system_paths.h"

namespace kavor {

struct SystemVersion {
  int major = 0;
  int minor = 0;
  int patch = 0;
  bool operator==(const SystemVersion&) const = default;
};

// "14.5" or "10.13.6": missing parts read as 0; text that does not start with a number fails.
Expected<SystemVersion> parseProductVersion(std::string_view text);

// ProductVersion of System/Library/CoreServices/SystemVersion.plist under the root.
Expected<SystemVersion> readSystemVersion(const SystemPaths& paths);

// Major 10 gives the minor number, 11 gives 16, any other major 17.
int osVersionFrom(const SystemVersion& version);

}  // namespace kavor
