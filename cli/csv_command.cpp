// kavor-cli csv: the log tool's JSON output as the main window's CSV conversion.

#include <algorithm>
#include <string>

#include "cli/command.h"
#include "cli/decoded_input.h"
#include "cli/os_version_option.h"
#include "cli/show_switches_option.h"
#include "engine/query/csv_conversion.h"

namespace kavor::cli {

namespace {

constexpr OptionSpec kOptions[] = {
    kShowSignpostsOption,
    kShowActivitiesOption,
    kHideLogEntriesOption,
    kOsVersionOption,
};

// Written out this many rows at a time (some 64 KiB of usual entries), so that a million rows
// never sit in memory at once.
constexpr size_t kRowsPerPiece = 128;

int runCsv(const Arguments& args) {
  int status = kExitOk;
  const auto osVersion = osVersionOption(args, status);
  if (!osVersion) return status;
  const auto list = decodeInput(args);
  if (!list) return failed(list.error().message());
  // As in the window, no entries means no conversion: not even the header.
  if (list->empty()) return kExitOk;

  CsvWriter writer(*list, *osVersion, showSwitchesFrom(args));
  std::string out;
  writer.appendHeader(out);
  for (size_t from = 0; from < list->size(); from += kRowsPerPiece) {
    writer.appendRows(out, from, std::min(list->size(), from + kRowsPerPiece));
    writeOut(out);
    out.clear();
  }
  return kExitOk;
}

}  // namespace

const Command& csvCommand() {
  static const Command command{
      .name = "csv",
      .summary = "print the log tool's JSON output as the CSV text of the main window",
      .synopsis =
          "[--show-signposts] [--show-activities] [--hide-log-entries] [--os-version N] [FILE]",
      .details =
          "Decodes what \"log show --style json\" prints, read from FILE or from standard\n"
          "input, and prints it as comma-separated text: a header row for the system's\n"
          "columns, then one row per entry that the type switches let through (logEvent\n"
          "written, signpostEvent and activityCreateEvent left out, unless the options say\n"
          "otherwise; entries of other types and elements that are not objects are always\n"
          "written). Texts are quoted, numbers and \"source\" (null) are bare; the timestamp\n"
          "fills the three columns datestamp, timestamp and timecorr; the message is kept\n"
          "on one line and to 255 characters. An empty array prints nothing, not even the\n"
          "header, and succeeds.\n"
          "Without --os-version the version is read from the system root\n"
          "(KAVOR_SYSTEM_ROOT when it is set).",
      .options = kOptions,
      .maxOperands = 1,
      .run = runCsv,
  };
  return command;
}

}  // namespace kavor::cli
