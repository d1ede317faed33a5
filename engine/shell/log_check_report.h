#pragma once
// The Log Check report: how many items lie in the log store's folders and in uuidtext, how old
// the oldest Persist file is, and whether "log show" returns entries, as plain text built in
// order from what a CheckSystem reads. Rebuilt from scratch each time it is asked for.
//
// Output of "log show" that is not UTF-8 text is reported like a failing tool.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "engine/shell/check_system.h"

namespace kavor {

// How a folder is named to the count: as a path, which counts only when it is an existing
// folder, quietly 0 otherwise; or as a folder, whose listing is tried whatever the path is.
enum class FolderName { asPath, asFolder };

// The number of names in the folder. When the listing fails: the system's reason and one space
// are appended to report, in front of the line that shows the count, and the count is 0.
size_t countFolderItems(CheckSystem& system, std::string_view fixedPath, FolderName name,
                        std::string& report);

// "\nThe oldest log entry has a datestamp of 2020-11-10T08_15_02Z, 6.042 days ago.\n": the
// earliest creation time among the Persist items whose metadata could be read (now when there
// are none), in GMT, and the days since then in numberLocale (empty: the user's locale) with at
// most 4 significant digits. kOldestUnknown when the folder cannot be listed.
std::string describeOldestEntry(const Expected<std::vector<FolderItem>>& persist, double now,
                                std::string_view numberLocale = {});
std::string describeOldestEntry(CheckSystem& system, std::string_view numberLocale = {});

// What "log show --last 2" gave: its output, or " error " and the exit status when it failed.
std::string logShowLastText(const Expected<ToolOutput>& run);
std::string runLogShowLast(CheckSystem& system);

// The whole report.
std::string logCheckReport(CheckSystem& system, std::string_view numberLocale = {});

}  // namespace kavor
