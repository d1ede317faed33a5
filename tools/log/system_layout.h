#pragma once
// Lays out a simulated system root: the parts of macOS that Kavor reads (the version file, the
// log tool, the log store and its uuidtext folders), filled from the synthetic live log.
//
// The store under var/db/diagnostics covers the 36 hours before `nowMicros`:
//   Persist/   6 files of 4 hours each: entries other than signposts, Info, Debug, Error, Fault;
//   Special/   3 files of 12 hours each: Error and Fault entries, which the store keeps longer;
//   Signpost/  2 files of 3 hours each: signposts;
//   logdata.LiveData.tracev3: the Info and Debug entries of the last 30 seconds;
//   HighVolume/ (empty), timesync/, version.plist and the log daemon's statistics files
//   logdata.statistics.0.txt and .1.txt.
// A store file holds only short slices of its window, spread over it, so that a day of log costs
// a few megabytes and little time; its modification time is the end of its window. Creation
// times cannot be set on Linux: they stay the time the layout was made.

#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/expected.h"

namespace kavor::standin {

struct SystemLayoutOptions {
  std::string macosVersion = "15.1";  // ProductVersion; 10.12 or later, the first unified log
  std::filesystem::path logTool;      // installed as usr/bin/log (copied, mode 0755)
  int64_t nowMicros = 0;              // the simulated present, microseconds since 1970 UTC
};

// Lays out a simulated system at root, made if missing. A root that exists must be an empty
// folder: the layout never mixes with or replaces what is there. The same options give the same
// files, byte for byte, and the same modification times. On failure what was made stays, for
// the error to be looked into.
Status makeSystemLayout(const std::filesystem::path& root, const SystemLayoutOptions& options);

}  // namespace kavor::standin
