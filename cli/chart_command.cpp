// kavor-cli chart: the activity chart's bins for the log tool's JSON output.

#include <charconv>
#include <string>

#include "cli/command.h"
#include "cli/decoded_input.h"
#include "engine/core/date_format.h"
#include "engine/document/chart_data.h"
#include "engine/query/log_query.h"
#include "platform/clock.h"

namespace kavor::cli {

namespace {

constexpr std::string_view kStart = "--start";
constexpr std::string_view kEnd = "--end";
constexpr std::string_view kBins = "--bins";
constexpr std::string_view kSubsystem = "--subsystem";
constexpr std::string_view kListSubsystems = "--list-subsystems";

// The chart window's range.
constexpr int kFewestBins = 19;
constexpr int kMostBins = 191;

constexpr std::string_view kBinStartPattern = "yyyy-MM-dd HH:mm:ss.SSS";

constexpr OptionSpec kOptions[] = {
    {kStart, "TIME", "the start of the time window, \"yyyy-MM-dd HH:mm:ss\" in local time"},
    {kEnd, "TIME", "its end, the same way"},
    {kBins, "N", "the number of bins, 19 to 191 (default: 50)"},
    {kSubsystem, "NAME", "count only the entries of this subsystem, \"[nil]\" or \"*kernel*\""},
    {kListSubsystems, {}, "print the subsystems in the order of the chart's menu instead"},
};

Expected<double> timeOption(const Arguments& args, std::string_view option,
                            const DateFormatter& formatter) {
  const auto text = args.value(option);
  if (!text) return Error{ErrorKind::invalidInput, std::string(option) + " is needed", 0};
  if (const auto time = formatter.parse(*text)) return *time;
  return Error{ErrorKind::invalidInput,
               std::string(option) + " wants a time as " + std::string(kQueryDatePattern) +
                   ", not \"" + std::string(*text) + "\"",
               0};
}

// The menu index of the subsystem option: 0 for all entries.
Expected<int64_t> selectionFrom(const Arguments& args, const Document& doc) {
  const auto name = args.value(kSubsystem);
  if (!name) return 0;
  for (size_t k = 0; k < doc.popSSystTypes.size(); ++k)
    if (doc.popSSystTypes[k] == *name) return static_cast<int64_t>(k + 1);
  return Error{ErrorKind::invalidInput, "no entry has the subsystem \"" + std::string(*name) + "\"",
               0};
}

int runChart(const Arguments& args) {
  const bool listing = args.has(kListSubsystems);
  if (listing && (args.has(kSubsystem) || args.has(kBins)))
    return badUsage("--list-subsystems goes without --subsystem and --bins");
  FixedClock clock(0);
  Document doc(clock);
  if (!listing) {
    const DateFormatter formatter(kQueryDatePattern);
    const auto start = timeOption(args, kStart, formatter);
    if (!start) return badUsage(start.error().message());
    const auto end = timeOption(args, kEnd, formatter);
    if (!end) return badUsage(end.error().message());
    doc.startDate = *start;
    doc.endDate = *end;
  }
  if (const auto bins = args.value(kBins)) {
    const auto n = positiveNumber(kBins, *bins);
    if (!n || *n < kFewestBins || *n > kMostBins)
      return badUsage("--bins wants a number from 19 to 191, not \"" + std::string(*bins) + "\"");
    doc.theNoBins = *n;
  }

  auto list = decodeInput(args);
  if (!list) return failed(list.error().message());
  doc.theJSONDictionaries = std::make_shared<const EntryList>(std::move(*list));
  indexSubsystems(doc, collectChartEntries(*doc.theJSONDictionaries, doc.startDate));

  std::string out;
  if (listing) {
    for (const std::string& name : doc.popSSystTypes)
      out += name + "\n";
    writeOut(out);
    return kExitOk;
  }
  const auto selection = selectionFrom(args, doc);
  if (!selection) return badUsage(selection.error().message());
  if (*selection != 0) binChartData(doc, *selection);
  const DateFormatter formatter(kBinStartPattern);
  for (size_t i = 0; i < doc.logBarValue.size(); ++i) {
    out += formatter.format(doc.logBarDate[i]);
    out += '\t';
    out += std::to_string(doc.logBarValue[i]);
    out += '\n';
  }
  writeOut(out);
  return kExitOk;
}

}  // namespace

const Command& chartCommand() {
  static const Command command{
      .name = "chart",
      .summary = "print the activity chart's bins for the log tool's JSON output",
      .synopsis =
          "--start TIME --end TIME [--bins N] [--subsystem NAME] [FILE]\n"
          "       kavor-cli chart --list-subsystems [FILE]",
      .details =
          "Decodes what \"log show --style json\" prints, read from FILE or from standard\n"
          "input, and counts its entries into equal time bins from --start to --end, as the\n"
          "chart window does: one line per bin, its start (yyyy-MM-dd HH:mm:ss.SSS, local\n"
          "time), a tab and its count. Entries without a usable timestamp or before the\n"
          "start count in the first bin, those after the end in the last. An entry's\n"
          "subsystem is \"*kernel*\" for process 0 and \"[nil]\" when it has none.",
      .options = kOptions,
      .maxOperands = 1,
      .run = runChart,
  };
  return command;
}

}  // namespace kavor::cli
