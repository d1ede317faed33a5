#pragma once
// --os-version, which every command that depends on the system's version takes.

#include <optional>

#include "cli/arguments.h"

namespace kavor::cli {

inline constexpr std::string_view kOsVersion = "--os-version";
inline constexpr OptionSpec kOsVersionOption = {
    kOsVersion, "N",
    "the system's version number: 12-15 for 10.12-10.15, 16 for 11, 17 for 12 and later"};
// The version given, or else the system root's. When there is none, the problem has been
// reported and exitStatus holds the status to exit with.
std::optional<int> osVersionOption(const Arguments& args, int& exitStatus);

}  // namespace kavor::cli
