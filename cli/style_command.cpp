// kavor-cli style: the log tool's JSON output as the main window's styled log.

#include <vector>

#include "cli/command.h"
#include "cli/decoded_input.h"
#include "cli/os_version_option.h"
#include "cli/style_options.h"

namespace kavor::cli {

namespace {

std::span<const OptionSpec> options() {
  static constexpr OptionSpec kOwn[] = {kOsVersionOption};
  static const std::vector<OptionSpec> all = joinOptions({styleOptions(), kOwn});
  return all;
}

int runStyle(const Arguments& args) {
  int status = kExitOk;
  const auto choice = styleChoiceFrom(args, status);
  if (!choice) return status;
  const auto osVersion = osVersionOption(args, status);
  if (!osVersion) return status;
  const auto list = decodeInput(args);
  if (!list) return failed(list.error().message());
  return printStyled(*choice, *osVersion, *list);
}
}  // namespace

const Command& styleCommand() {
  static const Command command{
      .name = "style",
      .summary = "print the log tool's JSON output as the styled log of the main window",
      .synopsis = "[--style TEXT | --style-name NAME] [--filter TEXT] [--color WHEN] [FILE]",
      .details =
          "Decodes what \"log show --style json\" prints, read from FILE or from standard\n"
          "input, and prints one line per shown entry: the fields the style names, each\n"
          "followed by a space. A style item is a field number (see \"kavor-cli fields\")\n"
          "with letters: h the time of day and d the date and time of field 0; t the first\n"
          "21 characters, T all but the last 20, f the file name of a path; r, g, b red,\n"
          "green, blue. Entries are dropped by type (logEvent shown, signpostEvent and\n"
          "activityCreateEvent hidden, unless the options say otherwise), then counted\n"
          "toward the limit, then kept only when their message holds the filter.\n"
          "Without --os-version the version is read from the system root\n"
          "(KAVOR_SYSTEM_ROOT when it is set).",
      .options = options(),
      .maxOperands = 1,
      .run = runStyle,
  };
  return command;
}

}  // namespace kavor::cli
