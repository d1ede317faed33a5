// kavor-cli fields: the numbered field list that styles address, for one system version.

#include <string>

#include "cli/command.h"
#include "cli/os_version_option.h"
#include "engine/core/field_table.h"

namespace kavor::cli {

namespace {

constexpr OptionSpec kOptions[] = {kOsVersionOption};

int runFields(const Arguments& args) {
  int status = kExitOk;
  const auto osVersion = osVersionOption(args, status);
  if (!osVersion) return status;
  for (const std::string& line : fieldListLines(*osVersion)) {
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
