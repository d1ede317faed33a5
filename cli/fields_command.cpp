// kavor-cli fields: the numbered field list that styles address, for one system version.

#include <string>

#include "cli/command.h"
#include "engine/core/field_table.h"
#include "platform/system_paths.h"
#include "platform/system_version.h"

namespace kavor::cli {

namespace {

constexpr std::string_view kOsVersion = "--os-version";

constexpr OptionSpec kOptions[] = {
    {kOsVersion, "N",
     "the system's version number: 12-15 for 10.12-10.15, 16 for 11, 17 for 12 and later"},
};

int runFields(const Arguments& args) {
  int osVersion = 0;
  if (const auto text = args.value(kOsVersion)) {
    const auto n = positiveNumber(kOsVersion, *text);
    if (!n) return badUsage(n.error().message());
    osVersion = *n;
  } else {
    const SystemPaths paths(systemRootFrom(processEnvironment()));
    const auto version = readSystemVersion(paths);
    if (!version) {
      printError(version.error().message());
      return failed("the system root is " + paths.root().string() +
                    "; pass --os-version N to list the fields of a given version");
    }
    osVersion = osVersionFrom(*version);
  }
  for (const std::string& line : fieldListLines(osVersion)) {
    writeOut(line);
    writeOut("\n");
  }
  return kExitOk;
}

}  // namespace

const Command& fieldsCommand() {
  static const Command command{
      .name = "fields",
      .summary = "print the numbered fields of log entries that styles address",
      .synopsis = "[--os-version N]",
      .details =
          "Prints the field list of a system version, one field per line: its number, its\n"
          "key, \"no.\" for numbers and \"(null)\" for the field that is never read.\n"
          "Without --os-version the version is read from the system root\n"
          "(KAVOR_SYSTEM_ROOT when it is set).",
      .options = kOptions,
      .maxOperands = 0,
      .run = runFields,
  };
  return command;
}

}  // namespace kavor::cli
