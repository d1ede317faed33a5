#include "tools/log/system_layout.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <map>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/file_bytes.h"
#include "platform/plist_value.h"
#include "platform/system_version.h"
#include "tools/log/container.h"
#include "tools/log/live_log.h"

namespace kavor::standin {

namespace {

namespace fs = std::filesystem;

constexpr int64_t kSecond = 1'000'000;
constexpr int64_t kHour = 3600 * kSecond;

bool isSignpost(const LogEntry& e) {
  return e.eventType == "signpostEvent";
}
bool isLoud(const LogEntry& e) {
  return e.messageType == "Error" || e.messageType == "Fault";
}
bool isQuiet(const LogEntry& e) {
  return e.messageType == "Info" || e.messageType == "Debug";
}
// Each entry goes to one place only, so an archive made from the store shows it once.
bool persistHolds(const LogEntry& e) {
  return !isSignpost(e) && !isLoud(e) && !isQuiet(e);
}
bool specialHolds(const LogEntry& e) {
  return !isSignpost(e) && isLoud(e);
}
bool liveDataHolds(const LogEntry& e) {
  return !isSignpost(e) && isQuiet(e);
}

struct StoreFolder {
  std::string_view name;
  int files;
  int64_t fileSpan;
  bool (*holds)(const LogEntry&);
};

constexpr StoreFolder kStoreFolders[] = {
    {"Persist", 6, 4 * kHour, persistHolds},
    {"Special", 3, 12 * kHour, specialHolds},
    {"Signpost", 2, 3 * kHour, isSignpost},
};
constexpr int kSlicesPerFile = 12;
constexpr int64_t kSliceSpan = 2 * kSecond;
constexpr int64_t kLiveDataSpan = 30 * kSecond;
// The store numbers its files with one counter; the ones below were deleted long ago.
constexpr uint64_t kFirstFileNumber = 0x1f8;
// As many processes as a rotate record lists.
constexpr size_t kProcessesPerRecord = 20;
constexpr std::string_view kRecordSeparator = "--- !logd statistics record\n";

Error ioFailure(const std::string& what, const std::error_code& ec) {
  return ioError(what, ec.value());
}

Status makeFolder(const fs::path& folder) {
  std::error_code ec;
  fs::create_directories(folder, ec);
  if (ec) return ioFailure("cannot make the folder " + folder.string(), ec);
  return okStatus();
}

Status setModified(const fs::path& file, int64_t micros) {
  const int64_t seconds = micros >= 0 ? micros / kSecond : -((-micros + kSecond - 1) / kSecond);
  timespec times[2];
  times[0].tv_sec = static_cast<time_t>(seconds);
  times[0].tv_nsec = static_cast<long>((micros - seconds * kSecond) * 1000);
  times[1] = times[0];
  if (::utimensat(AT_FDCWD, file.c_str(), times, 0) != 0)
    return ioError("cannot set the dates of " + file.string(), errno);
  return okStatus();
}

Status writeText(const fs::path& file, std::string_view text, int64_t modifiedMicros) {
  if (auto written = writeNewFileDurably(file, text); !written) return written;
  return setModified(file, modifiedMicros);
}

// "2024-11-14 09:00:00+0000": the daemon's own time stamps, kept in UTC so that a layout does not
// depend on the time zone of the machine that made it.
std::string utcStamp(int64_t micros) {
  using namespace std::chrono;
  const auto secs = floor<seconds>(sys_time<microseconds>(microseconds(micros)));
  const auto day = floor<days>(secs);
  const year_month_day date(day);
  const hh_mm_ss time(secs - day);
  char text[48];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d+0000",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
  return text;
}

std::string traceFileName(uint64_t number) {
  char text[32];
  std::snprintf(text, sizeof text, "%016llx.tracev3", static_cast<unsigned long long>(number));
  return text;
}

// Roughly what an entry costs in a real store file: a header and its texts.
uint64_t entryWeight(const LogEntry& e) {
  return 48 + e.eventMessage.size() + e.formatString.size() + e.subsystem.size() +
         e.category.size() + e.signpostName.size();
}

struct ProcessShare {
  std::string path;
  uint64_t bytes = 0;
};

struct TimeMark {
  int64_t timeMicros;
  uint64_t machTimestamp;
  std::string bootUUID;
};

struct ImageText {
  std::string path;
  std::set<std::string> formats;
};

struct StoreFile {
  std::string_view folder;
  uint64_t number = 0;
  int64_t fromMicros = 0;
  int64_t toMicros = 0;
  bool rotated = false;  // a newer file of its folder followed it
  uint64_t bytes = 0;
  std::vector<ProcessShare> processes;  // largest first
};

// What the store files hold, gathered while they are written, for the files that describe them.
struct StoreContents {
  std::vector<StoreFile> files;
  std::vector<TimeMark> timeMarks;
  std::map<std::string, ImageText> images;  // by image UUID

  void note(const std::vector<LogEntry>& entries) {
    if (!entries.empty())
      timeMarks.push_back(
          {entries.front().timeMicros, entries.front().machTimestamp, entries.front().bootUUID});
    for (const LogEntry& e : entries) {
      images[e.processImageUUID].path = e.processImagePath;
      ImageText& sender = images[e.senderImageUUID];
      sender.path = e.senderImagePath;
      if (!e.formatString.empty()) sender.formats.insert(e.formatString);
    }
  }
};

std::vector<LogEntry> entriesOf(int64_t fromMicros, int64_t toMicros,
                                bool (*holds)(const LogEntry&)) {
  std::vector<LogEntry> kept;
  forEachLiveEntry(fromMicros, toMicros, [&](const LogEntry& e) {
    if (holds(e)) kept.push_back(e);
  });
  return kept;
}

// Slices at the end of each twelfth of the window, so the last entry lies just before its end.
std::vector<LogEntry> sampledEntries(const StoreFile& file, bool (*holds)(const LogEntry&)) {
  std::vector<LogEntry> kept;
  const int64_t step = (file.toMicros - file.fromMicros) / kSlicesPerFile;
  for (int i = 1; i <= kSlicesPerFile; ++i) {
    const int64_t end = file.fromMicros + step * i;
    auto slice = entriesOf(end - kSliceSpan, end, holds);
    kept.insert(kept.end(), std::make_move_iterator(slice.begin()),
                std::make_move_iterator(slice.end()));
  }
  return kept;
}

std::vector<ProcessShare> processShares(const std::vector<LogEntry>& entries, uint64_t bytes) {
  std::map<std::string, uint64_t> weights;
  uint64_t total = 0;
  for (const LogEntry& e : entries) {
    const uint64_t w = entryWeight(e);
    weights[e.processImagePath.empty() ? "unknown" : e.processImagePath] += w;
    total += w;
  }
  std::vector<ProcessShare> shares;
  for (const auto& [path, weight] : weights)
    shares.push_back({path, bytes * weight / total});
  std::stable_sort(shares.begin(), shares.end(),
                   [](const ProcessShare& a, const ProcessShare& b) { return a.bytes > b.bytes; });
  if (shares.size() > kProcessesPerRecord) shares.resize(kProcessesPerRecord);
  return shares;
}

// Windows end at now and reach back file by file; numbers follow the order the files began in.
std::vector<StoreFile> planStoreFiles(int64_t nowMicros) {
  std::vector<StoreFile> files;
  for (const StoreFolder& folder : kStoreFolders) {
    for (int i = folder.files; i >= 1; --i) {
      const int64_t to = nowMicros - (i - 1) * folder.fileSpan;
      files.push_back({folder.name, 0, to - folder.fileSpan, to, i > 1, 0, {}});
    }
  }
  std::stable_sort(files.begin(), files.end(), [](const StoreFile& a, const StoreFile& b) {
    return a.fromMicros < b.fromMicros;
  });
  for (size_t i = 0; i < files.size(); ++i)
    files[i].number = kFirstFileNumber + i;
  return files;
}

Status writeStoreFiles(const fs::path& diagnostics, int64_t nowMicros, StoreContents& contents) {
  contents.files = planStoreFiles(nowMicros);
  for (StoreFile& file : contents.files) {
    const auto folder = std::find_if(std::begin(kStoreFolders), std::end(kStoreFolders),
                                     [&](const StoreFolder& f) { return f.name == file.folder; });
    const auto entries = sampledEntries(file, folder->holds);
    const fs::path path = diagnostics / file.folder / traceFileName(file.number);
    if (auto written = writeContainer(path, entries); !written) return written;
    if (auto dated = setModified(path, file.toMicros); !dated) return dated;
    std::error_code ec;
    file.bytes = fs::file_size(path, ec);
    if (ec) return ioFailure("cannot read the size of " + path.string(), ec);
    file.processes = processShares(entries, file.bytes);
    contents.note(entries);
  }
  const auto live = entriesOf(nowMicros - kLiveDataSpan, nowMicros, liveDataHolds);
  const fs::path livePath = diagnostics / "logdata.LiveData.tracev3";
  if (auto written = writeContainer(livePath, live); !written) return written;
  contents.note(live);
  return setModified(livePath, nowMicros);
}

// One timesync file per boot: the points that tie the boot's continuous time to the wall clock.
Status writeTimesync(const fs::path& folder, std::vector<TimeMark> marks) {
  std::stable_sort(marks.begin(), marks.end(), [](const TimeMark& a, const TimeMark& b) {
    return a.timeMicros < b.timeMicros;
  });
  struct Boot {
    std::string uuid;
    std::string text;
    int64_t lastMicros = 0;
  };
  std::vector<Boot> boots;
  for (const TimeMark& mark : marks) {
    auto boot = std::find_if(boots.begin(), boots.end(),
                             [&](const Boot& b) { return b.uuid == mark.bootUUID; });
    if (boot == boots.end()) boot = boots.insert(boots.end(), Boot{mark.bootUUID, {}, 0});
    boot->text += "boot " + mark.bootUUID + " continuous " + std::to_string(mark.machTimestamp) +
                  " wall " + utcStamp(mark.timeMicros) + "\n";
    boot->lastMicros = mark.timeMicros;
  }
  for (size_t i = 0; i < boots.size(); ++i) {
    char name[40];
    std::snprintf(name, sizeof name, "%016zx.timesync", i + 1);
    if (auto written = writeText(folder / name, boots[i].text, boots[i].lastMicros); !written)
      return written;
  }
  return okStatus();
}

struct StatsRecord {
  int64_t atMicros;
  std::string text;
};

std::string rotateRecord(const StoreFile& file) {
  std::string text = "type  : File Rotate\nfile  : " + std::string(file.folder) + "/" +
                     traceFileName(file.number) + "\ndate  : " + utcStamp(file.toMicros) +
                     "\nsize  : " + std::to_string(file.bytes) +
                     "\nprocs : [ size, percent, process ]\n";
  for (const ProcessShare& p : file.processes) {
    char percent[16];
    std::snprintf(percent, sizeof percent, "%.2f",
                  file.bytes == 0 ? 0.0 : 100.0 * static_cast<double>(p.bytes) / file.bytes);
    text += "    - [ " + std::to_string(p.bytes) + ", " + percent + ", " + p.path + " ]\n";
  }
  return text;
}

// The daemon's records as it would have written them while the store filled: a rotate record
// for every file that a newer one replaced, a summary of the store after each Persist rotation,
// and the deletion of the files that came before the oldest one kept.
std::vector<StatsRecord> statisticsRecords(const std::vector<StoreFile>& files) {
  std::vector<StatsRecord> records;
  const StoreFile& oldestPersist =
      *std::find_if(files.begin(), files.end(),
                    [](const StoreFile& f) { return f.folder == kStoreFolders[0].name; });
  for (uint64_t gone = kFirstFileNumber - 2; gone < kFirstFileNumber; ++gone)
    records.push_back(
        {oldestPersist.fromMicros, "type  : File Delete\nfile  : Persist/" + traceFileName(gone) +
                                       "\ndate  : " + utcStamp(oldestPersist.fromMicros) +
                                       "\nsize  : " + std::to_string(oldestPersist.bytes) + "\n"});
  for (const StoreFile& file : files) {
    if (!file.rotated) continue;
    records.push_back({file.toMicros, rotateRecord(file)});
    if (file.folder != kStoreFolders[0].name) continue;
    uint64_t storeBytes = 0;
    int storeFiles = 0;
    for (const StoreFile& other : files) {
      if (other.fromMicros > file.toMicros) continue;
      storeBytes += other.bytes;
      ++storeFiles;
    }
    records.push_back({file.toMicros, "type  : Statistics\ndate  : " + utcStamp(file.toMicros) +
                                          "\nstore : " + std::to_string(storeBytes) +
                                          "\nfiles : " + std::to_string(storeFiles) + "\n"});
  }
  std::stable_sort(records.begin(), records.end(), [](const StatsRecord& a, const StatsRecord& b) {
    return a.atMicros < b.atMicros;
  });
  return records;
}

// Two files, numbered in the order the daemon wrote them: the older half of the records first.
Status writeStatistics(const fs::path& diagnostics, const std::vector<StoreFile>& files) {
  const auto records = statisticsRecords(files);
  const size_t half = records.size() / 2;
  const std::pair<size_t, size_t> parts[] = {{0, half}, {half, records.size()}};
  for (size_t part = 0; part < 2; ++part) {
    std::string text;
    for (size_t i = parts[part].first; i < parts[part].second; ++i)
      text += std::string(kRecordSeparator) + records[i].text;
    const int64_t last = parts[part].second > parts[part].first
                             ? records[parts[part].second - 1].atMicros
                             : records.front().atMicros;
    const fs::path path = diagnostics / ("logdata.statistics." + std::to_string(part) + ".txt");
    if (auto written = writeText(path, text, last); !written) return written;
  }
  return okStatus();
}

// "4C4C44...": the 32 hex digits of a UUID, upper case as uuidtext names them; empty if malformed.
std::string uuidDigits(std::string_view uuid) {
  std::string digits;
  for (char c : uuid) {
    if (c == '-') continue;
    if (!std::isxdigit(static_cast<unsigned char>(c))) return {};
    digits += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  }
  return digits.size() == 32 ? digits : std::string();
}

uint64_t fnv1a(std::string_view text, uint64_t hash) {
  for (unsigned char c : text)
    hash = (hash ^ c) * 0x100000001b3ULL;
  return hash;
}

// Folders 00 to FF hold one file per image, named by the rest of its UUID; "dsc" the shared cache.
Status writeUuidtext(const fs::path& uuidtext, const std::map<std::string, ImageText>& images,
                     const std::string& systemName, int64_t nowMicros) {
  for (int i = 0; i < 256; ++i) {
    char name[4];
    std::snprintf(name, sizeof name, "%02X", i);
    if (auto made = makeFolder(uuidtext / name); !made) return made;
  }
  for (const auto& [uuid, image] : images) {
    const std::string digits = uuidDigits(uuid);
    if (digits.empty()) continue;
    std::string text = "image " + image.path + "\n";
    for (const std::string& format : image.formats)
      text += "format " + format + "\n";
    const fs::path path = uuidtext / digits.substr(0, 2) / digits.substr(2);
    if (auto written = writeText(path, text, nowMicros); !written) return written;
  }
  if (auto made = makeFolder(uuidtext / "dsc"); !made) return made;
  char cacheName[40];
  std::snprintf(cacheName, sizeof cacheName, "%016llX%016llX",
                static_cast<unsigned long long>(fnv1a(systemName, 0xcbf29ce484222325ULL)),
                static_cast<unsigned long long>(fnv1a(systemName, 0x84222325cbf29ce4ULL)));
  return writeText(uuidtext / "dsc" / cacheName, "shared cache of " + systemName + "\n", nowMicros);
}

// "24B60" for 15.1: the Darwin major, a letter for the minor release (for 10.x the update),
// and a number; real build numbers vary, these only have to look the part.
std::string buildVersion(const SystemVersion& v) {
  const bool modern = v.major >= 11;
  const int darwin = modern ? v.major + 9 : v.minor + 4;
  const char letter = static_cast<char>('A' + std::min(modern ? v.minor : v.patch, 25));
  return std::to_string(darwin) + letter + std::to_string(60 + (modern ? v.patch : 0));
}

Status writeSystemFiles(const fs::path& root, const SystemLayoutOptions& options,
                        const SystemVersion& version, const std::string& build) {
  const fs::path coreServices = root / "System/Library/CoreServices";
  if (auto made = makeFolder(coreServices); !made) return made;
  const PlistValue versionList(PlistDict{
      {"ProductBuildVersion", build},
      {"ProductName", version.major == 10 ? "Mac OS X" : "macOS"},
      {"ProductUserVisibleVersion", options.macosVersion},
      {"ProductVersion", options.macosVersion},
  });
  if (auto written = writeText(coreServices / "SystemVersion.plist", writeXmlPlist(versionList),
                               options.nowMicros);
      !written)
    return written;

  const fs::path bin = root / "usr/bin";
  if (auto made = makeFolder(bin); !made) return made;
  std::error_code ec;
  fs::copy_file(options.logTool, bin / "log", ec);
  if (ec) return ioFailure("cannot copy the log tool " + options.logTool.string(), ec);
  fs::permissions(bin / "log", fs::perms(0755), fs::perm_options::replace, ec);
  if (ec) return ioFailure("cannot make " + (bin / "log").string() + " executable", ec);
  return setModified(bin / "log", options.nowMicros);
}

// The store's format version, which the archives made from it share (3 before 10.15, then 4), and
// how many days each kind of entry is kept.
std::string storeVersionList(const SystemVersion& version) {
  const bool catalina = version.major > 10 || version.minor >= 15;
  return writeXmlPlist(PlistValue(PlistDict{
      {"Version", catalina ? 4 : 3},
      {"Default", 14},
      {"Info", 3},
      {"Error", 30},
      {"Fault", 30},
      {"Signpost", 3},
  }));
}

Status checkRoot(const fs::path& root) {
  std::error_code ec;
  const auto status = fs::status(root, ec);
  if (status.type() == fs::file_type::not_found) return makeFolder(root);
  if (ec) return ioFailure("cannot look at " + root.string(), ec);
  if (status.type() != fs::file_type::directory)
    return Error{ErrorKind::invalidInput, root.string() + " is not a folder"};
  const bool empty = fs::is_empty(root, ec);
  if (ec) return ioFailure("cannot list " + root.string(), ec);
  if (!empty)
    return Error{ErrorKind::invalidInput,
                 root.string() + " is not empty; a system root is made in a new or empty folder"};
  return okStatus();
}

}  // namespace

Status makeSystemLayout(const fs::path& root, const SystemLayoutOptions& options) {
  const auto version = parseProductVersion(options.macosVersion);
  if (!version) return Error{ErrorKind::invalidInput, version.error().context};
  if (version->major < 10 || (version->major == 10 && version->minor < 12))
    return Error{ErrorKind::invalidInput,
                 "macOS " + options.macosVersion + " has no unified log; it began with 10.12"};
  if (options.logTool.empty())
    return Error{ErrorKind::invalidInput, "no log tool to install as /usr/bin/log"};
  if (auto usable = checkRoot(root); !usable) return usable;

  const std::string build = buildVersion(*version);
  if (auto written = writeSystemFiles(root, options, *version, build); !written) return written;

  const fs::path diagnostics = root / "var/db/diagnostics";
  for (std::string_view folder : {"Persist", "Special", "Signpost", "HighVolume", "timesync"})
    if (auto made = makeFolder(diagnostics / folder); !made) return made;
  StoreContents contents;
  if (auto written = writeStoreFiles(diagnostics, options.nowMicros, contents); !written)
    return written;
  if (auto written = writeTimesync(diagnostics / "timesync", contents.timeMarks); !written)
    return written;
  if (auto written = writeStatistics(diagnostics, contents.files); !written) return written;
  if (auto written =
          writeText(diagnostics / "version.plist", storeVersionList(*version), options.nowMicros);
      !written)
    return written;
  return writeUuidtext(root / "var/db/uuidtext", contents.images,
                       "macOS " + options.macosVersion + " (" + build + ")", options.nowMicros);
}

}  // namespace kavor::standin
