#pragma once
// The logarchive builder: a new logarchive made by copying a log store (the folder that holds
// its "uuidtext" and "diagnostics" folders) into the layout of an archive, then its Info.plist.
// Progress messages are written only while debug is on; errors always, each directly after what
// stands before it. A store is gigabytes: the copy reports its progress and stops when asked.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <stop_token>
#include <string>

#include "engine/archive/archive_output.h"
#include "platform/plist_value.h"

namespace kavor {

// What one build records of its moment: the monotonic tick counter and a new UUID.
struct TimeReference {
  uint64_t continuousTime = 0;
  std::string uuid;
};
TimeReference currentTimeReference();

// The Info.plist of an archive: one time reference wherever one stands, the store's imported
// version dictionary as the TTL of its Special metadata, and the archive format of the running
// system (modernSystem: macOS 10.15 or later).
PlistValue archiveInfo(const TimeReference& reference, PlistDict imported, bool modernSystem);

struct BuildOptions {
  // Read at each message, so that the debug switch counts at the moment of the step.
  std::function<bool()> debug = [] { return false; };
  // Bytes of file contents copied so far, out of the store's total; from the building thread.
  std::function<void(uint64_t copied, uint64_t total)> progress;
  std::stop_token stop;
};

class LogarchiveBuilder {
 public:
  LogarchiveBuilder(std::filesystem::path source, std::filesystem::path destination,
                    ArchiveOutput& output, BuildOptions options = {});

  // Copies the store's folders and loose files into the archive.
  void buildLogarchive();
  // Writes the archive's Info.plist, whatever the copy achieved.
  void writeArchiveInfo(const TimeReference& reference, bool modernSystem);
  // The steps that failed so far, each told in the output.
  int failures() const { return failures_; }

 private:
  void fail(std::string_view message);
  void debugMessage(std::initializer_list<std::string_view> pieces);
  bool copyStep(const std::filesystem::path& from, const std::filesystem::path& to);

  std::filesystem::path source_;
  std::filesystem::path destination_;
  ArchiveOutput& output_;
  BuildOptions options_;
  uint64_t total_ = 0;
  uint64_t copiedBefore_ = 0;
  int failures_ = 0;
};

// The whole build as the window and kavor-cli run it: the destination line, the copy, the
// Info.plist. (The source line comes before, when the source is chosen.) The steps that failed.
int runBuild(const std::filesystem::path& source, const std::filesystem::path& destination,
             bool modernSystem, ArchiveOutput& output, BuildOptions options = {});

}  // namespace kavor
