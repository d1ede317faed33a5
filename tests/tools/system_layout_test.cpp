#include "tools/log/system_layout.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <map>
#include <string>

#include "platform/file_bytes.h"
#include "platform/plist_value.h"
#include "platform/system_version.h"
#include "tests/platform/temp_folder.h"
#include "tools/log/container.h"

namespace kavor::standin {
namespace {

namespace fs = std::filesystem;
using testing_support::readFile;
using testing_support::TempFolder;

constexpr int64_t kNow = 1731585600LL * 1000000;  // 2024-11-14 12:00:00 UTC

SystemLayoutOptions optionsFor(std::string version) {
  return {std::move(version), KAVOR_LOG_TOOL, kNow};
}

int64_t modifiedMicros(const fs::path& file) {
  struct stat info {};
  if (::stat(file.c_str(), &info) != 0) return -1;
  return int64_t{info.st_mtim.tv_sec} * 1000000 + info.st_mtim.tv_nsec / 1000;
}

// Exactly `digits` hexadecimal digits from `alphabet`, then `suffix`.
bool isHexName(std::string_view name, size_t digits, std::string_view alphabet,
               std::string_view suffix) {
  return name.size() == digits + suffix.size() && name.ends_with(suffix) &&
         name.substr(0, digits).find_first_not_of(alphabet) == std::string_view::npos;
}

std::map<std::string, fs::path> traceFilesIn(const fs::path& folder) {
  std::map<std::string, fs::path> files;
  for (const auto& item : fs::directory_iterator(folder))
    files[item.path().filename().string()] = item.path();
  return files;
}

class SystemLayout : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    root_ = new TempFolder;
    const auto made = makeSystemLayout(root_->path(), optionsFor("15.1"));
    ASSERT_TRUE(made.ok()) << made.error().message();
  }
  static void TearDownTestSuite() { delete root_; }
  static fs::path at(std::string_view relative) { return root_->path() / relative; }

  static TempFolder* root_;
};
TempFolder* SystemLayout::root_ = nullptr;

TEST_F(SystemLayout, HoldsWhatTheArchiveToolsAndChecksRead) {
  // The store folders and the live data file are read back entry by entry below; the log tool in
  // the root runs in the kavor-cli get tests.
  const fs::path diagnostics = at("var/db/diagnostics");
  EXPECT_TRUE(fs::is_directory(diagnostics / "HighVolume"));
  EXPECT_TRUE(fs::is_regular_file(diagnostics / "timesync/0000000000000001.timesync"));

  for (const char* folder : {"Persist", "Special", "Signpost"})
    for (const auto& [name, path] : traceFilesIn(diagnostics / folder))
      EXPECT_TRUE(isHexName(name, 16, "0123456789abcdef", ".tracev3")) << folder << "/" << name;

  // The builder hands everything but "Version" on as the archive's TTL dictionary.
  const auto versionList = parsePlist(readFile(diagnostics / "version.plist"));
  ASSERT_TRUE(versionList.ok());
  const PlistValue* version = versionList->find("Version");
  EXPECT_TRUE(version && version->is<int64_t>());
  EXPECT_GT(versionList->get<PlistDict>()->size(), 1u);

  int byteFolders = 0, imageFiles = 0;
  for (const auto& item : fs::directory_iterator(at("var/db/uuidtext"))) {
    const std::string name = item.path().filename().string();
    ASSERT_TRUE(item.is_directory()) << name;
    if (name == "dsc") continue;
    EXPECT_TRUE(isHexName(name, 2, "0123456789ABCDEF", "")) << name;
    ++byteFolders;
    for (const auto& file : fs::directory_iterator(item.path())) {
      EXPECT_TRUE(isHexName(file.path().filename().string(), 30, "0123456789ABCDEF", ""));
      ++imageFiles;
    }
  }
  EXPECT_EQ(byteFolders, 256);
  EXPECT_GT(imageFiles, 0);
  EXPECT_FALSE(fs::is_empty(at("var/db/uuidtext/dsc")));
}

TEST_F(SystemLayout, StoreFilesReadBackWithTheEntriesOfTheirWindow) {
  const fs::path diagnostics = at("var/db/diagnostics");
  struct Folder {
    const char* name;
    int files;
    int64_t span;
  };
  for (const Folder& folder : {Folder{"Persist", 6, 4 * 3600}, Folder{"Special", 3, 12 * 3600},
                               Folder{"Signpost", 2, 3 * 3600}}) {
    const auto files = traceFilesIn(diagnostics / folder.name);
    ASSERT_EQ(files.size(), static_cast<size_t>(folder.files)) << folder.name;
    // Names count up with time, and the newest file was written to just now.
    int64_t previousEnd = 0;
    for (const auto& [name, path] : files) {
      const int64_t end = modifiedMicros(path);
      EXPECT_GT(end, previousEnd) << name;
      previousEnd = end;
      const auto entries = readContainer(path);
      ASSERT_TRUE(entries.ok()) << name << ": " << entries.error().message();
      ASSERT_FALSE(entries->empty()) << name;
      for (const LogEntry& e : *entries) {
        ASSERT_LT(e.timeMicros, end) << name;
        ASSERT_GE(e.timeMicros, end - folder.span * 1000000) << name;
        const bool signpost = e.eventType == "signpostEvent";
        const bool loud = e.messageType == "Error" || e.messageType == "Fault";
        const bool quiet = e.messageType == "Info" || e.messageType == "Debug";
        ASSERT_EQ(signpost, std::string(folder.name) == "Signpost") << name;
        if (!signpost) {
          ASSERT_EQ(loud, std::string(folder.name) == "Special") << name;
        }
        ASSERT_FALSE(quiet) << name;
      }
    }
    EXPECT_EQ(previousEnd, kNow) << folder.name;
  }
  const auto live = readContainer(diagnostics / "logdata.LiveData.tracev3");
  ASSERT_TRUE(live.ok());
  ASSERT_FALSE(live->empty());
  for (const LogEntry& e : *live)
    EXPECT_TRUE(e.messageType == "Info" || e.messageType == "Debug");
}

TEST_F(SystemLayout, VersionReadsBackAndTheSameOptionsGiveTheSameFiles) {
  for (const char* text : {"10.13.6", "11.7", "15.1"}) {
    TempFolder folder;
    const fs::path root = folder / "root";
    const auto made = makeSystemLayout(root, optionsFor(text));
    ASSERT_TRUE(made.ok()) << made.error().message();
    const auto version = readSystemVersion(SystemPaths(root));
    ASSERT_TRUE(version.ok()) << version.error().message();
    EXPECT_EQ(*version, *parseProductVersion(text));
    if (std::string_view(text) != "15.1") continue;
    for (const auto& item : fs::recursive_directory_iterator(root)) {
      const fs::path twin = root_->path() / fs::relative(item.path(), root);
      ASSERT_TRUE(fs::exists(twin)) << twin;
      if (!item.is_regular_file()) continue;
      EXPECT_EQ(readFile(item.path()), readFile(twin)) << twin;
      EXPECT_EQ(modifiedMicros(item.path()), modifiedMicros(twin)) << twin;
    }
  }
}

TEST(SystemLayoutRefusal, LeavesAnOccupiedRootAloneAndRefusesSystemsWithoutAUnifiedLog) {
  TempFolder folder;
  testing_support::writeFile(folder / "root/notes.txt", "mine");
  testing_support::writeFile(folder / "plain", "a file");
  for (const fs::path& root : {folder / "root", folder / "plain"}) {
    const auto made = makeSystemLayout(root, optionsFor("15.1"));
    ASSERT_FALSE(made.ok()) << root;
    EXPECT_EQ(made.error().kind, ErrorKind::invalidInput);
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(folder / "root"), fs::directory_iterator()), 1);
  for (const char* version : {"10.11.6", "9.2", "Sequoia", ""}) {
    const auto made = makeSystemLayout(folder / version, optionsFor(version));
    ASSERT_FALSE(made.ok()) << version;
    EXPECT_EQ(made.error().kind, ErrorKind::invalidInput);
  }
  EXPECT_FALSE(makeSystemLayout(folder / "no-tool", {"15.1", "", kNow}).ok());
  EXPECT_FALSE(fs::exists(folder / "no-tool"));
}

}  // namespace
}  // namespace kavor::standin
