// kavor-cli archive catalogue | stats | build: the Logarchive Tool's three tools, with the texts
// of its window, written to standard output as they come.

#include <cstdio>
#include <filesystem>
#include <string>

#include "cli/command.h"
#include "cli/os_version_option.h"
#include "engine/archive/archive_texts.h"
#include "engine/archive/log_store_catalogue.h"
#include "engine/archive/logarchive_builder.h"
#include "engine/archive/statistics_analysis.h"
#include "platform/folders.h"

namespace kavor::cli {

namespace {

namespace fs = std::filesystem;

// A terminal cannot take back what it printed: each run replaces the output once, at its start.
class StandardOutput final : public ArchiveOutput {
 public:
  void replaceOutputText(std::string_view text) override { appendOutputText(text); }
  void appendOutputText(std::string_view text) override {
    if (text.empty()) return;
    writeOut(text);
    std::fflush(stdout);
    endsLine_ = text.back() == '\n';
  }
  // Error texts come without a line break of their own; a terminal's prompt should not follow.
  void finishLine() {
    if (!endsLine_) appendOutputText("\n");
  }

 private:
  bool endsLine_ = true;
};

std::optional<fs::path> oneOperand(const Arguments& args, std::string_view what, int& status) {
  if (args.operands.size() == 1) return fs::path(args.operands.front());
  status = badUsage("give the " + std::string(what) + " to read");
  return std::nullopt;
}

// The tools tell what they cannot read in their output, as the window does; a terminal's user
// also needs the exit status when the archive itself, or the folder a tool reads, is not there.
int unreadable(const fs::path& folder) {
  const auto listed = listFolderNames(folder);
  return listed ? kExitOk : failed(listed.error().message());
}

constexpr OptionSpec kStatsOptions[] = {
    {"--csv", {}, "write CSV: one line per process of each record, with a header line"},
};
constexpr OptionSpec kBuildOptions[] = {
    {"--debug", {}, "tell every step: each copy, the Extra folder, the Info.plist"},
    kOsVersionOption,
};

int runCatalogueCommand(const Arguments& args) {
  int status = kExitOk;
  const auto archive = oneOperand(args, "logarchive", status);
  if (!archive) return status;
  StandardOutput output;
  runCatalogue(*archive, output);
  output.finishLine();
  return unreadable(*archive);
}

int runStatsCommand(const Arguments& args) {
  int status = kExitOk;
  const auto archive = oneOperand(args, "logarchive", status);
  if (!archive) return status;
  StandardOutput output;
  runAnalysis(*archive, args.has("--csv") ? StatsForm::csv : StatsForm::text, output);
  output.finishLine();
  return unreadable(*archive / "Extra");
}

int runBuildCommand(const Arguments& args) {
  if (args.operands.size() != 2) return badUsage("give the log store and the new archive");
  const fs::path source(args.operands[0]);
  const fs::path destination(args.operands[1]);
  int status = kExitOk;
  const auto osVersion = osVersionOption(args, status);
  if (!osVersion) return status;
  // The window's save panel asks before it replaces an archive; a command line cannot ask.
  std::error_code ec;
  if (fs::symlink_status(destination, ec).type() != fs::file_type::not_found)
    return failed(destination.string() + " already exists; name a new archive");
  if (const int sourceStatus = unreadable(source); sourceStatus != kExitOk) return sourceStatus;

  StandardOutput output;
  output.replaceOutputText(std::string(kSourceLine) + source.string() + "\n");
  BuildOptions options;
  const bool debug = args.has("--debug");
  options.debug = [debug] { return debug; };
  const int failures = runBuild(source, destination, *osVersion >= 15, output, options);
  output.finishLine();
  if (failures == 0) return kExitOk;
  return failed(std::to_string(failures) + (failures == 1 ? " step" : " steps") +
                " of the build failed, as told above");
}

}  // namespace

const Command& archiveCatalogueCommand() {
  static const Command command{
      .name = "archive catalogue",
      .summary = "list the log data files of a logarchive with their dates, sizes and periods",
      .synopsis = "ARCHIVE",
      .details =
          "Lists the .tracev3 files of the logarchive's top level and of its Persist, Special\n"
          "and Signpost folders: folder and name, creation and modification dates, size, and\n"
          "the minutes between the two dates, sorted by folder and name. Folders that cannot\n"
          "be read are told where they occur. Exit 1 when the archive cannot be read.",
      .options = {},
      .maxOperands = 1,
      .run = runCatalogueCommand,
  };
  return command;
}

const Command& archiveStatsCommand() {
  static const Command command{
      .name = "archive stats",
      .summary = "report the File Rotate records of a logarchive's log statistics",
      .synopsis = "[--csv] ARCHIVE",
      .details =
          "Reads the log daemon's statistics files (.txt) in the logarchive's Extra folder and\n"
          "reports each rotated Persist file with its date, total size and processes, sorted\n"
          "by file name. Exit 1 when the archive or its Extra folder cannot be read.",
      .options = kStatsOptions,
      .maxOperands = 1,
      .run = runStatsCommand,
  };
  return command;
}

const Command& archiveBuildCommand() {
  static const Command command{
      .name = "archive build",
      .summary = "make a logarchive from a copy of a log store",
      .synopsis = "[--debug] [--os-version N] SOURCE DEST",
      .details =
          "Copies the log store in SOURCE (the folder that holds \"uuidtext\" and\n"
          "\"diagnostics\", such as the system root's var/db) into the new logarchive DEST,\n"
          "which must not exist, and writes its Info.plist. The archive format follows the\n"
          "system's version (from the system root unless --os-version is given). Steps that\n"
          "fail are told and the build goes on where it can; then the exit status is 1.",
      .options = kBuildOptions,
      .maxOperands = 2,
      .run = runBuildCommand,
  };
  return command;
}

}  // namespace kavor::cli
