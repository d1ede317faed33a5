#pragma once
// Logarchive folders as the stand-in writes and reads them: the data files in Persist, Special
// and Signpost (and at the top level, where a copied store keeps its live data), an Info.plist,
// and the other folders a logarchive has.

#include <filesystem>
#include <span>
#include <vector>

#include "platform/expected.h"
#include "tools/log/log_entry.h"

namespace kavor::standin {

// Writes a new logarchive at folder, which must not exist yet. endMicros is the time it was
// collected.
Status writeLogArchive(const std::filesystem::path& folder, std::span<const LogEntry> entries,
                       int64_t endMicros);

// Every entry of the archive's data files, in time order. Fails for a folder that is not a
// logarchive (no Info.plist) and for data files that are not the stand-in's.
Expected<std::vector<LogEntry>> readLogArchive(const std::filesystem::path& folder);

}  // namespace kavor::standin
