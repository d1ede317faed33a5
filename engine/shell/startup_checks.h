#pragma once
// The five checks Kavor runs at start to tell whether this machine and this user can read the
// live log: an administrator, a Persist folder with something in it, a timesync folder with
// something in it, a log tool that returns entries, and one that prints 24-hour time stamps.
// Each rule is a function of what it reads; the runner reads it from a CheckSystem.
//
// Output that is not UTF-8 text fails its check: nothing in it can be trusted to say yes.

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/shell/check_system.h"

namespace kavor {

// The rules, on what was read.

// Whether the group tool's output names one of adminGroups. The output is split at every single
// space and nothing is trimmed, so the line break that ends it stays on the last piece.
bool adminFromGroups(std::string_view idOutput, std::span<const std::string> adminGroups);
// Whether a folder listing succeeded with at least one name.
bool folderHasItems(const Expected<std::vector<std::string>>& listing);
// Whether "log show --last 2" succeeded with at least one line break in its output.
bool logHasEntries(int status, std::string_view output);
// Whether the sample date, written under the user's clock setting, carries no trace of an am or
// pm marker ("m" or "M").
bool clockSampleIsTwentyFourHour(std::string_view formattedSample);
// Whether "log show --style json --last 2" succeeded and one of the first ten elements of its
// array has a text "timestamp" of exactly 31 characters that reads as "yyyy-MM-dd
// HH:mm:ss.SSSSSSZZZ". Other elements are skipped, a non-text time stamp among them.
bool logTimestampsReadable(int status, std::string_view jsonOutput);

// The checks, reading the system. A tool that cannot be started fails its check.
bool checkAdminUser(CheckSystem& system);
bool checkFolderHasItems(CheckSystem& system, std::string_view fixedPath);
bool checkLogHasEntries(CheckSystem& system);
// The clock setting first: when it fails, the tool is not run.
bool checkLogTimeFormat(CheckSystem& system);

enum class StartupCheck { adminUser, persistFolder, timesyncFolder, logEntries, logTimeFormat };

struct StartupAlert {
  StartupCheck check;
  std::string_view text;  // the informative text under kShellErrorMessage
  // The time-format check: point the user at the clock setting before the alert.
  bool opensClockSettings() const { return check == StartupCheck::logTimeFormat; }
};

struct StartupOutcome {
  int failed = 0;
  bool quit = false;  // the user is no administrator: end after the alert
};

// Runs the checks in order and calls alert for each that fails, going on once it returns (the
// application shows a modal alert there). After a failed administrator check nothing else runs;
// the others all run, whatever the earlier ones gave.
StartupOutcome runStartupChecks(CheckSystem& system,
                                const std::function<void(const StartupAlert&)>& alert);

}  // namespace kavor
