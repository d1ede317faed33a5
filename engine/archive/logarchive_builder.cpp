#include "engine/archive/logarchive_builder.h"

#include <utility>

#include "engine/archive/archive_texts.h"
#include "platform/file_bytes.h"
#include "platform/folders.h"
#include "platform/system_identity.h"
#include "platform/tree_copy.h"

namespace kavor {

namespace fs = std::filesystem;

namespace {

// The store's folders that an archive keeps, and where they go in it.
constexpr std::pair<std::string_view, std::string_view> kStoreFolders[] = {
    {"/diagnostics/Persist", "/Persist"},   {"/diagnostics/Special", "/Special"},
    {"/diagnostics/Signpost", "/Signpost"}, {"/diagnostics/HighVolume", "/HighVolume"},
    {"/diagnostics/timesync", "/timesync"},
};

// A version.plist is a few hundred bytes; anything past this is not one.
constexpr uint64_t kVersionPlistLimit = 16 << 20;

fs::path joined(const fs::path& base, std::string_view tail) {
  return fs::path(base.string() + std::string(tail));
}

PlistValue withOldest(const PlistValue& reference) {
  return PlistDict{{"OldestTimeRef", reference}};
}

// The store's version dictionary, or an empty one when it is missing, unreadable or not one.
PlistDict importedVersion(const fs::path& file) {
  Expected<std::string> bytes = readFileBytes(file, kVersionPlistLimit);
  if (!bytes) return {};
  Expected<PlistValue> parsed = parsePlist(*bytes);
  if (!parsed) return {};
  if (const PlistDict* dict = parsed->get<PlistDict>()) return *dict;
  return {};
}

}  // namespace

TimeReference currentTimeReference() {
  return {monotonicTicks(), randomUuidString()};
}

PlistValue archiveInfo(const TimeReference& reference, PlistDict imported, bool modernSystem) {
  // A property list's integers are signed; the tick counter does not reach 2^63 in practice.
  const PlistValue timeRef = PlistDict{
      {"ContinuousTime", static_cast<int64_t>(reference.continuousTime)},
      {"UUID", reference.uuid},
  };
  PlistDict special{{"OldestTimeRef", timeRef}, {"TTL", PlistValue(std::move(imported))}};
  return PlistDict{
      {"EndTimeRef", timeRef},
      {"LiveMetadata", withOldest(timeRef)},
      {"OSArchiveVersion", modernSystem ? 4 : 3},
      {"OSLoggingSupportProject", modernSystem ? "libtrace-1147.80.3" : "libtrace-518.70.1"},
      {"OSLoggingSupportVersion", modernSystem ? 1147.8 : 518.7},
      {"PersistMetadata", withOldest(timeRef)},
      {"SpecialMetadata", PlistValue(std::move(special))},
  };
}

LogarchiveBuilder::LogarchiveBuilder(fs::path source, fs::path destination, ArchiveOutput& output,
                                     BuildOptions options)
    : source_(std::move(source)),
      destination_(std::move(destination)),
      output_(output),
      options_(std::move(options)) {}

void LogarchiveBuilder::debugMessage(std::initializer_list<std::string_view> pieces) {
  if (!options_.debug()) return;
  std::string message;
  for (std::string_view piece : pieces)
    message.append(piece);
  output_.appendOutputText(message);
}

void LogarchiveBuilder::fail(std::string_view message) {
  ++failures_;
  output_.appendOutputText(message);
}

bool LogarchiveBuilder::copyStep(const fs::path& from, const fs::path& to) {
  debugMessage({kCopyingFrom, from.string(), kCopyingTo, to.string(), "\n"});
  CopyObserver observer;
  observer.stop = options_.stop;
  uint64_t copiedHere = 0;
  if (options_.progress)
    observer.progress = [this, &copiedHere](uint64_t copied) {
      copiedHere = copied;
      options_.progress(copiedBefore_ + copied, total_);
    };
  const Status copied = copyItem(from, to, observer);
  copiedBefore_ += copiedHere;
  if (!copied) fail(copied.error().message());
  return copied.ok();
}

void LogarchiveBuilder::buildLogarchive() {
  const fs::path diagnostics = joined(source_, "/diagnostics");
  Expected<std::vector<FolderItem>> loose = listFolder(diagnostics);
  total_ = treeContentBytes(joined(source_, "/uuidtext"));
  for (const auto& [from, to] : kStoreFolders)
    total_ += treeContentBytes(joined(source_, from));
  if (loose)
    for (const FolderItem& item : *loose)
      if (item.isRegularFile) total_ += item.size;

  copyStep(joined(source_, "/uuidtext"), destination_);
  for (const auto& [from, to] : kStoreFolders) {
    if (options_.stop.stop_requested()) return;
    copyStep(joined(source_, from), joined(destination_, to));
  }

  const fs::path extra = joined(destination_, "/Extra");
  debugMessage({kCreatingFolderAt, extra.string(), "\n"});
  if (Status made = createFolder(extra); !made) {
    fail(made.error().message());
    return;
  }
  debugMessage({kGettingContentsAt, diagnostics.string(), "\n"});
  Expected<std::vector<std::string>> names = listFolderNames(diagnostics);
  if (!names) {
    fail(names.error().message());
    return;
  }
  for (const std::string& name : *names) {
    if (options_.stop.stop_requested()) return;
    const fs::path item = joined(diagnostics, "/" + name);
    std::error_code ignored;
    if (fs::is_directory(item, ignored)) continue;
    copyStep(item,
             name == kLiveDataName ? joined(destination_, "/" + name) : joined(extra, "/" + name));
  }
}

void LogarchiveBuilder::writeArchiveInfo(const TimeReference& reference, bool modernSystem) {
  const fs::path versionFile = joined(destination_, "/Extra/version.plist");
  debugMessage({kOpeningPlistAt, versionFile.string(), "\n"});
  PlistDict imported = importedVersion(versionFile);
  if (imported.empty()) {
    debugMessage({kImportDictEmpty});
  } else {
    PlistValue dict(std::move(imported));
    dict.erase("Version");
    imported = std::move(*dict.get<PlistDict>());
  }
  debugMessage({kBuildingExportDict});
  const PlistValue info = archiveInfo(reference, std::move(imported), modernSystem);
  const fs::path infoFile = joined(destination_, "/Info.plist");
  debugMessage({kWritingExportDictTo, infoFile.string(), "\n"});
  if (!writeFileInPlace(infoFile, writeXmlPlist(info))) fail(kCouldNotSaveExport);
}

int runBuild(const fs::path& source, const fs::path& destination, bool modernSystem,
             ArchiveOutput& output, BuildOptions options) {
  output.appendOutputText(std::string(kDestinationLine) + destination.string() + "\n");
  LogarchiveBuilder builder(source, destination, output, std::move(options));
  builder.buildLogarchive();
  builder.writeArchiveInfo(currentTimeReference(), modernSystem);
  return builder.failures();
}

}  // namespace kavor
