#include "tools/log/log_archive.h"

#include <algorithm>
#include <cstdio>
#include <system_error>

#include "platform/file_bytes.h"
#include "platform/plist_value.h"
#include "tools/log/container.h"

namespace kavor::standin {

namespace fs = std::filesystem;

namespace {

constexpr const char* kDataFolders[] = {"Persist", "Special", "Signpost", "HighVolume"};
constexpr std::string_view kDataExtension = ".tracev3";

// Where an entry is kept: signposts apart, errors and faults in Special, the rest in Persist.
const char* folderFor(const LogEntry& e) {
  if (e.eventType == "signpostEvent") return "Signpost";
  if (e.messageType == "Error" || e.messageType == "Fault") return "Special";
  return "Persist";
}

PlistValue timeReference(int64_t endMicros) {
  char uuid[40];
  const auto u = static_cast<unsigned long long>(endMicros);
  std::snprintf(uuid, sizeof uuid, "%08llX-0000-4000-8000-%012llX", (u >> 20) & 0xFFFFFFFFull,
                u & 0xFFFFFFFFFFFFull);
  return PlistDict{{"ContinuousTime", PlistValue(endMicros * 24)}, {"UUID", std::string(uuid)}};
}

Status makeFolder(const fs::path& folder) {
  std::error_code ec;
  fs::create_directory(folder, ec);
  if (ec) return ioError("making " + folder.string(), ec.value());
  return okStatus();
}

}  // namespace

Status writeLogArchive(const fs::path& folder, std::span<const LogEntry> entries,
                       int64_t endMicros) {
  std::error_code ec;
  if (fs::exists(folder, ec))
    return Error{ErrorKind::invalidInput, folder.string() + " already exists", 0};
  if (auto made = makeFolder(folder); !made) return made;
  for (const char* sub : {"Persist", "Special", "Signpost", "HighVolume", "timesync", "Extra"})
    if (auto made = makeFolder(folder / sub); !made) return made;
  // The copied uuidtext folders lie at an archive's top level.
  for (int i = 0; i < 256; ++i) {
    char name[3];
    std::snprintf(name, sizeof name, "%02X", i);
    if (auto made = makeFolder(folder / name); !made) return made;
  }
  for (const char* sub : {"Persist", "Special", "Signpost"}) {
    std::vector<LogEntry> part;
    for (const LogEntry& e : entries)
      if (std::string_view(folderFor(e)) == sub) part.push_back(e);
    if (auto written = writeContainer(folder / sub / "0000000000000001.tracev3", part); !written)
      return written;
  }
  const PlistValue ref = timeReference(endMicros);
  const PlistValue info = PlistDict{
      {"EndTimeRef", ref},
      {"LiveMetadata", PlistDict{{"OldestTimeRef", ref}}},
      {"OSArchiveVersion", 4},
      {"OSLoggingSupportProject", "libtrace-1147.80.3"},
      {"OSLoggingSupportVersion", 1147.8},
      {"PersistMetadata", PlistDict{{"OldestTimeRef", ref}}},
      {"SpecialMetadata", PlistDict{{"OldestTimeRef", ref}, {"TTL", PlistDict{}}}},
  };
  return writeNewFileDurably(folder / "Info.plist", writeXmlPlist(info));
}

Expected<std::vector<LogEntry>> readLogArchive(const fs::path& folder) {
  std::error_code ec;
  if (!fs::is_directory(folder, ec) || !fs::exists(folder / "Info.plist", ec))
    return Error{ErrorKind::invalidInput, folder.string() + " is not a logarchive", 0};
  std::vector<fs::path> files;
  const auto collect = [&files](const fs::path& dir) {
    std::error_code e;
    for (const fs::directory_entry& item : fs::directory_iterator(dir, e))
      if (item.is_regular_file(e) && item.path().extension() == kDataExtension)
        files.push_back(item.path());
  };
  collect(folder);
  for (const char* sub : kDataFolders)
    if (fs::is_directory(folder / sub, ec)) collect(folder / sub);
  std::sort(files.begin(), files.end());
  std::vector<LogEntry> entries;
  for (const fs::path& file : files) {
    auto part = readContainer(file);
    if (!part) return part.error();
    std::move(part->begin(), part->end(), std::back_inserter(entries));
  }
  std::stable_sort(entries.begin(), entries.end(), [](const LogEntry& a, const LogEntry& b) {
    return a.timeMicros < b.timeMicros;
  });
  return entries;
}

}  // namespace kavor::standin
