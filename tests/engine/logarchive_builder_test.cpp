#include "engine/archive/logarchive_builder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/file_bytes.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

namespace fs = std::filesystem;
using testing_support::readFile;
using testing_support::TempFolder;
using testing_support::writeFile;

constexpr std::string_view kVersionPlist =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
    "<key>Version</key><integer>3</integer><key>Ttl</key><integer>14</integer>"
    "</dict></plist>\n";

// A log store as a system keeps it under /var/db.
void makeStore(const fs::path& store, bool withSignpost = true) {
  writeFile(store / "uuidtext/0A/1B2C3D", "image text");
  writeFile(store / "uuidtext/dsc/CACHE", "shared cache");
  const fs::path diagnostics = store / "diagnostics";
  writeFile(diagnostics / "Persist/0000000000000001.tracev3", std::string(4096, 'p'));
  writeFile(diagnostics / "Special/0000000000000002.tracev3", "special");
  if (withSignpost) fs::create_directories(diagnostics / "Signpost");
  fs::create_directories(diagnostics / "HighVolume");
  writeFile(diagnostics / "timesync/0000000000000001.timesync", "sync");
  writeFile(diagnostics / "logdata.LiveData.tracev3", "live");
  writeFile(diagnostics / "logdata.statistics.0.txt", "--- !logd statistics record\n");
  writeFile(diagnostics / "version.plist", kVersionPlist);
  writeFile(diagnostics / "Other/ignored.txt", "a folder of the store that no archive keeps");
}

PlistValue readInfo(const fs::path& archive) {
  Expected<PlistValue> info = parsePlist(readFile(archive / "Info.plist"));
  EXPECT_TRUE(info.ok());
  return info.ok() ? *info : PlistValue();
}

struct Build {
  TempFolder folder;
  TextOutput output;
  fs::path archive = folder / "new.logarchive";
  std::pair<uint64_t, uint64_t> lastProgress;  // copied, total
};

void build(Build& b, bool debug, bool withSignpost = true) {
  makeStore(b.folder / "db", withSignpost);
  BuildOptions options;
  options.debug = [debug] { return debug; };
  options.progress = [&b](uint64_t copied, uint64_t total) { b.lastProgress = {copied, total}; };
  runBuild(b.folder / "db", b.archive, true, b.output, std::move(options));
}

TEST(LogarchiveBuilder, CopiesTheStoreIntoTheLayoutOfAnArchiveSayingOnlyWhereItWrites) {
  Build b;
  build(b, false);
  EXPECT_EQ(b.output.text(), "Destination:" + b.archive.string() + "\n");
  for (const char* made : {"0A/1B2C3D", "dsc/CACHE", "Persist/0000000000000001.tracev3",
                           "Special/0000000000000002.tracev3", "Signpost", "HighVolume",
                           "timesync/0000000000000001.timesync", "logdata.LiveData.tracev3",
                           "Extra/logdata.statistics.0.txt", "Extra/version.plist", "Info.plist"})
    EXPECT_TRUE(fs::exists(b.archive / made)) << made;
  EXPECT_FALSE(fs::exists(b.archive / "Extra/logdata.LiveData.tracev3"));
  EXPECT_FALSE(fs::exists(b.archive / "Other"));
  EXPECT_FALSE(fs::exists(b.archive / "Extra/Other"));
  // Progress ends at the bytes of everything the archive keeps, the folder it leaves out not
  // counted.
  const uint64_t kept = 10 + 12 + 4096 + 7 + 4 + 4 + 28 + kVersionPlist.size();
  EXPECT_EQ(b.lastProgress, std::make_pair(kept, kept));

  const PlistValue info = readInfo(b.archive);
  const PlistValue* end = info.find("EndTimeRef");
  ASSERT_NE(end, nullptr);
  for (const char* key : {"LiveMetadata", "PersistMetadata", "SpecialMetadata"})
    EXPECT_EQ(*info.find(key)->find("OldestTimeRef"), *end) << key;
  EXPECT_EQ(*info.find("SpecialMetadata")->find("TTL"), PlistValue(PlistDict{{"Ttl", 14}}));
  const std::string* uuid = end->find("UUID")->get<std::string>();
  ASSERT_NE(uuid, nullptr);
  EXPECT_EQ(uuid->size(), 36u);

  Build again;
  build(again, false);
  EXPECT_NE(*readInfo(again.archive).find("EndTimeRef")->find("UUID"), *end->find("UUID"));
}

TEST(LogarchiveBuilder, DebugTellsEveryStepInOrder) {
  Build b;
  build(b, true);
  const std::string s = (b.folder / "db").string(), d = b.archive.string();
  const std::string g = s + "/diagnostics";
  std::string expected = "Destination:" + d + "\n" +  //
                         "copying from " + s + "/uuidtext to " + d + "\n";
  for (const char* folder : {"Persist", "Special", "Signpost", "HighVolume", "timesync"})
    expected += "copying from " + g + "/" + folder + " to " + d + "/" + folder + "\n";
  expected += "creating folder at " + d + "/Extra\ngetting contents of folder at " + g + "\n";
  std::vector<std::string> loose;
  for (const auto& item : fs::directory_iterator(g))
    if (!item.is_directory()) loose.push_back(item.path().filename().string());
  // The listing's order is the file system's; the files it names are the test's.
  const std::string copies = b.output.text().substr(
      expected.size(), b.output.text().find("opening property list") - expected.size());
  for (const std::string& name : loose) {
    const std::string target =
        name == "logdata.LiveData.tracev3" ? d + "/" + name : d + "/Extra/" + name;
    EXPECT_NE(copies.find("copying from " + g + "/" + name + " to " + target + "\n"),
              std::string::npos)
        << name;
  }
  EXPECT_EQ(std::count(copies.begin(), copies.end(), '\n'), 3);
  expected += copies + "opening property list at " + d + "/Extra/version.plist\n" +
              "building export dictionary\nwriting export dictionary to " + d + "/Info.plist\n";
  EXPECT_EQ(b.output.text(), expected);
}

TEST(LogarchiveBuilder, GoesOnPastMissingFoldersAndStopsWhereTheArchiveCannotBeMade) {
  Build missing;
  build(missing, false, false);
  // The system's words, with no line break of their own.
  const std::string& said = missing.output.text();
  EXPECT_NE(said.find("/diagnostics/Signpost"), std::string::npos) << said;
  EXPECT_TRUE(said.ends_with("No such file or directory")) << said;
  EXPECT_TRUE(fs::exists(missing.archive / "Extra/version.plist"));

  // A destination that exists already (replaced in the save panel): the first copy fails and
  // the later steps fill the folder where they can.
  Build existing;
  fs::create_directories(existing.archive);
  build(existing, false);
  EXPECT_NE(existing.output.text().find("File exists"), std::string::npos);
  EXPECT_FALSE(fs::exists(existing.archive / "0A"));
  EXPECT_TRUE(fs::exists(existing.archive / "Persist/0000000000000001.tracev3"));
  EXPECT_TRUE(fs::exists(existing.archive / "Info.plist"));

  // A destination whose folder is gone: every copy fails, Extra cannot be made, nothing more is
  // copied, and the Info.plist cannot be written either.
  Build nowhere;
  nowhere.archive = nowhere.folder / "gone/new.logarchive";
  build(nowhere, true);
  const std::string& text = nowhere.output.text();
  EXPECT_NE(text.find("creating folder at " + nowhere.archive.string() + "/Extra\n"),
            std::string::npos);
  EXPECT_EQ(text.find("getting contents"), std::string::npos);
  EXPECT_TRUE(
      text.ends_with("theImportDict is empty or missing.\nbuilding export dictionary\n"
                     "writing export dictionary to " +
                     nowhere.archive.string() + "/Info.plist\nCouldn't save exported file."))
      << text;
}

TEST(LogarchiveBuilder, ImportsTheVersionListLessItsVersion) {
  Build b;
  makeStore(b.folder / "db");
  writeFile(b.folder / "db/diagnostics/version.plist",
            "<plist version=\"1.0\"><dict><key>Version</key><integer>3</integer></dict></plist>");
  BuildOptions options;
  options.debug = [] { return true; };
  runBuild(b.folder / "db", b.archive, false, b.output, std::move(options));
  EXPECT_EQ(b.output.text().find("theImportDict"), std::string::npos);
  const PlistValue info = readInfo(b.archive);
  EXPECT_EQ(*info.find("SpecialMetadata")->find("TTL"), PlistValue(PlistDict{}));
}

TEST(ArchiveInfo, NamesTheArchiveFormatOfTheRunningSystem) {
  const TimeReference ref{123456789, "4C4C4455-5555-3144-A1E2-EEEEEEEEEEEE"};
  const PlistValue modern = archiveInfo(ref, {}, true);
  const PlistValue older = archiveInfo(ref, {}, false);
  EXPECT_EQ(*modern.find("OSArchiveVersion"), PlistValue(4));
  EXPECT_EQ(*older.find("OSArchiveVersion"), PlistValue(3));
  EXPECT_EQ(*modern.find("EndTimeRef")->find("ContinuousTime"), PlistValue(int64_t{123456789}));
  // What the writer makes, a reader reads back the same.
  EXPECT_EQ(*parsePlist(writeXmlPlist(modern)), modern);
}

}  // namespace
}  // namespace kavor
