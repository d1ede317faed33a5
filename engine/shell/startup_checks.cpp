#include "engine/shell/startup_checks.h"

#include <simdjson.h>

#include <algorithm>

#include "engine/core/date_format.h"
#include "engine/core/entry_decoder.h"
#include "engine/shell/check_texts.h"

namespace kavor {

CheckSystem::~CheckSystem() = default;

namespace {

bool isUtf8(std::string_view text) {
  return simdjson::validate_utf8(text.data(), text.size());
}

// Characters, not bytes: a time stamp with letters beyond ASCII is as long as it reads.
size_t characterCount(std::string_view utf8) {
  return static_cast<size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

// Whether a tool started, exited with 0 and wrote UTF-8 text.
bool succeeded(const Expected<ToolOutput>& run) {
  return run && run->status == 0 && isUtf8(run->output);
}

}  // namespace

bool adminFromGroups(std::string_view idOutput, std::span<const std::string> adminGroups) {
  if (!isUtf8(idOutput)) return false;
  size_t start = 0;
  while (true) {
    const size_t space = idOutput.find(' ', start);
    const std::string_view piece = idOutput.substr(start, space - start);
    if (std::find(adminGroups.begin(), adminGroups.end(), piece) != adminGroups.end()) return true;
    if (space == std::string_view::npos) return false;
    start = space + 1;
  }
}

bool folderHasItems(const Expected<std::vector<std::string>>& listing) {
  return listing && !listing->empty();
}

bool logHasEntries(int status, std::string_view output) {
  return status == 0 && isUtf8(output) && output.find('\n') != std::string_view::npos;
}

bool clockSampleIsTwentyFourHour(std::string_view formattedSample) {
  return formattedSample.find_first_of("mM") == std::string_view::npos;
}

bool logTimestampsReadable(int status, std::string_view jsonOutput) {
  if (status != 0) return false;
  const auto entries = decodeEntries(jsonOutput);
  if (!entries) return false;
  const DateFormatter stamps(kLogTimestampPattern);
  const size_t examined = std::min(entries->size(), kTimestampsExamined);
  for (size_t i = 0; i < examined; ++i) {
    const FieldValue stamp = entries->value(i, EntryKey::timestamp);
    if (stamp.kind() != ValueKind::text) continue;
    if (characterCount(stamp.text()) == kLogTimestampLength && stamps.parse(stamp.text()))
      return true;
  }
  return false;
}

bool checkAdminUser(CheckSystem& system) {
  const auto run = system.runGroupTool(system.loginName());
  // The tool's exit status says nothing the output does not.
  return run && adminFromGroups(run->output, system.administratorGroups());
}

bool checkFolderHasItems(CheckSystem& system, std::string_view fixedPath) {
  return system.isFolder(fixedPath) && folderHasItems(system.listFolderNames(fixedPath));
}

bool checkLogHasEntries(CheckSystem& system) {
  const auto run = system.runLogTool(kLogShowLastArgs);
  return succeeded(run) && logHasEntries(run->status, run->output);
}

bool checkLogTimeFormat(CheckSystem& system) {
  // A sample the formatter cannot even read says the clock setting is in the way as well.
  const auto sample = system.formattedClockSample();
  if (!sample || !clockSampleIsTwentyFourHour(*sample)) return false;
  const auto run = system.runLogTool(kLogShowJsonLastArgs);
  return succeeded(run) && logTimestampsReadable(run->status, run->output);
}

StartupOutcome runStartupChecks(CheckSystem& system,
                                const std::function<void(const StartupAlert&)>& alert) {
  StartupOutcome outcome;
  const auto report = [&](bool passed, StartupCheck check, std::string_view text) {
    if (passed) return;
    ++outcome.failed;
    alert({check, text});
  };
  if (!checkAdminUser(system)) {
    report(false, StartupCheck::adminUser, kNotAdminAlert);
    outcome.quit = true;
    return outcome;
  }
  report(checkFolderHasItems(system, kPersistPath), StartupCheck::persistFolder, kNoLogFilesAlert);
  report(checkFolderHasItems(system, kTimesyncPath), StartupCheck::timesyncFolder,
         kNoTimesyncAlert);
  report(checkLogHasEntries(system), StartupCheck::logEntries, kNoLogEntriesAlert);
  report(checkLogTimeFormat(system), StartupCheck::logTimeFormat, kTimeFormatAlert);
  return outcome;
}

}  // namespace kavor
