#pragma once
// The stand-in's own log data files: what "collect" writes into a logarchive's Persist, Special
// and Signpost folders and the simulated store holds, and what "show --archive" and
// "show --file" read back. They carry the extension of the real files (".tracev3") but not their
// format; a real file is recognised as foreign and refused.

#include <filesystem>
#include <span>
#include <vector>

#include "platform/expected.h"
#include "tools/log/log_entry.h"

namespace kavor::standin {

Status writeContainer(const std::filesystem::path& file, std::span<const LogEntry> entries);

// Fails with ErrorKind::parse for a file that is not one of ours or is damaged.
Expected<std::vector<LogEntry>> readContainer(const std::filesystem::path& file);

}  // namespace kavor::standin
