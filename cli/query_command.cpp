// kavor-cli query: the main window's query form as the log tool's argument list.

#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/query_options.h"

namespace kavor::cli {

namespace {

constexpr std::string_view kNull = "--null";

// One argument a line: a line feed inside one is shown as \n so that lines stay arguments.
void writeArguments(const std::vector<std::string>& args, bool nulTerminated) {
  std::string out;
  for (const std::string& arg : args) {
    if (nulTerminated) {
      out += arg;
      out += '\0';
      continue;
    }
    for (const char c : arg) {
      if (c == '\n')
        out += "\\n";
      else
        out += c;
    }
    out += '\n';
  }
  writeOut(out);
}

std::span<const OptionSpec> options() {
  static constexpr OptionSpec kOwn[] = {
      {kNull, {}, "end each argument with a NUL byte instead of a line feed"}};
  static const std::vector<OptionSpec> all = joinOptions({queryOptions(), kOwn});
  return all;
}

int runQuery(const Arguments& args) {
  const DateFormatter formatter(kQueryDatePattern);
  int status = kExitOk;
  const auto input = queryInputFrom(args, formatter, status);
  if (!input) return status;
  writeArguments(buildLogQuery(*input, formatter).theFullCmdStr, args.has(kNull));
  return kExitOk;
}
}  // namespace

const Command& queryCommand() {
  static const Command command{
      .name = "query",
      .summary = "print the log tool's arguments that the main window's query form gives",
      .synopsis = "[--period TEXT] [--unit UNIT] [--base DATE] [--predicate TEXT] [--archive PATH]",
      .details =
          "Prints the arguments that Get Log passes to /usr/bin/log, from \"show\" on, one a\n"
          "line; a line feed inside an argument is written as \\n (--null writes every\n"
          "argument as it is, ending it with a NUL byte). The period text is read as the\n"
          "field reads it: a decimal number with the fraction cut off, clamped to -1000 to\n"
          "1000; text that is no number gives -10. Either case is noted on standard error.\n"
          "A negative period is the window before the base date, a positive one the window\n"
          "after it, and 0 the minute before it. A predicate row whose text is \"none\" or\n"
          "empty sends no predicate; a typed predicate is always sent. --archive and --file\n"
          "name the source; a --source ending in .logarchive is read as an archive,\n"
          "anything else as a single log file, as the window's open panel decides.\n"
          "Signposts are fetched only from system version 13 on.\n"
          "Without --os-version the version is read from the system root\n"
          "(KAVOR_SYSTEM_ROOT when it is set).",
      .options = options(),
      .maxOperands = 0,
      .run = runQuery,
  };
  return command;
}

}  // namespace kavor::cli
