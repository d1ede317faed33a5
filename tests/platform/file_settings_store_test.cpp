#include "platform/file_settings_store.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

#include "platform/file_bytes.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

namespace fs = std::filesystem;
using testing_support::readFile;
using testing_support::TempFolder;
using testing_support::writeFile;

std::vector<std::string> namesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

TEST(FileSettingsStore, ValuesSurviveReopeningAndTheFolderIsMadeWhenMissing) {
  TempFolder tmp;
  const fs::path file = tmp / "a/b/Kavor/Kavor.plist";
  {
    FileSettingsStore store(file);
    EXPECT_FALSE(store.contains("anything"));
    ASSERT_TRUE(store.setInteger("count", 12));
    ASSERT_TRUE(store.setString("name", "x & <y>"));
    ASSERT_TRUE(store.setNamedList("list", {{"n", "t"}}));
    ASSERT_TRUE(store.setBool("gone", true));
    ASSERT_TRUE(store.removeValue("gone"));
  }
  FileSettingsStore reopened(file);
  EXPECT_EQ(reopened.integerValue("count"), 12);
  EXPECT_EQ(reopened.stringValue("name"), "x & <y>");
  EXPECT_EQ(reopened.namedList("list").list, (NamedList{{"n", "t"}}));
  EXPECT_FALSE(reopened.contains("gone"));
  EXPECT_EQ(reopened.setAside(), std::nullopt);
  EXPECT_EQ(namesIn(file.parent_path()), std::vector<std::string>{"Kavor.plist"});
}

TEST(FileSettingsStore, WritesOfAnotherProcessAreSeenAndNeverLost) {
  TempFolder tmp;
  const fs::path file = tmp / "Kavor.plist";
  FileSettingsStore ours(file);
  ASSERT_TRUE(ours.setString("shared", "ours"));
  ASSERT_TRUE(ours.setString("doomed", "ours"));

  FileSettingsStore theirs(file);
  ASSERT_TRUE(theirs.setString("theirs", "1"));
  ASSERT_TRUE(theirs.setString("shared", "theirs"));
  ASSERT_TRUE(theirs.removeValue("doomed"));
  EXPECT_EQ(ours.stringValue("shared"), "theirs");

  // Only our own change is replayed: their keys stay, and their removal is not undone.
  ASSERT_TRUE(ours.setString("mine", "2"));
  FileSettingsStore third(file);
  EXPECT_EQ(third.stringValue("theirs"), "1");
  EXPECT_EQ(third.stringValue("shared"), "theirs");
  EXPECT_EQ(third.stringValue("mine"), "2");
  EXPECT_FALSE(third.contains("doomed"));
}

TEST(FileSettingsStore, BatchesWriteOnceAtTheOutermostCommit) {
  TempFolder tmp;
  const fs::path file = tmp / "Kavor.plist";
  FileSettingsStore store(file);
  {
    SettingsBatch outer(store);
    outer.set("a", 1);
    {
      SettingsBatch inner(store);
      inner.set("b", 2);
      ASSERT_TRUE(store.removeValue("a"));
      inner.set("a", 3);
      ASSERT_TRUE(inner.commit());
    }
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(store.integerValue("a"), 3);
    ASSERT_TRUE(outer.commit());
  }
  FileSettingsStore reader(file);
  EXPECT_EQ(reader.integerValue("a"), 3);
  EXPECT_EQ(reader.integerValue("b"), 2);

  // A batch that changed nothing leaves the file alone.
  const auto before = fs::last_write_time(file);
  store.beginBatch();
  ASSERT_TRUE(store.removeValue("absent"));
  ASSERT_TRUE(store.endBatch());
  EXPECT_EQ(fs::last_write_time(file), before);
  EXPECT_TRUE(store.endBatch());  // unmatched end: nothing to do

  // A batch left without commit writes nothing; what it held goes with the next write.
  {
    SettingsBatch left(store);
    left.set("c", 4);
  }
  EXPECT_FALSE(FileSettingsStore(file).contains("c"));
  ASSERT_TRUE(store.setInteger("d", 5));
  EXPECT_EQ(FileSettingsStore(file).integerValue("c"), 4);
}

TEST(FileSettingsStore, ACrashBeforeTheRenameKeepsTheOldValues) {
  TempFolder tmp;
  const fs::path file = tmp / "Kavor.plist";
  ASSERT_TRUE(FileSettingsStore(file).setString("kept", "yes"));
  const fs::path fresh = tmp / "Kavor.plist.tmp-999-fresh";
  const fs::path stale = tmp / "Kavor.plist.tmp-999-stale";
  writeFile(fresh, "<plist><dict><key>kept</key><string>half writ");
  writeFile(stale, "garbage");
  fs::last_write_time(stale, fs::last_write_time(file) - std::chrono::hours(24));

  FileSettingsStore store(file);
  EXPECT_EQ(store.stringValue("kept"), "yes");
  EXPECT_EQ(store.setAside(), std::nullopt);
  ASSERT_TRUE(store.setString("more", "1"));
  EXPECT_EQ(FileSettingsStore(file).stringValue("kept"), "yes");
  // A temporary file that may still belong to a writer under way is left alone.
  EXPECT_TRUE(fs::exists(fresh));
  EXPECT_FALSE(fs::exists(stale));
}

TEST(FileSettingsStore, AnUnreadableFileIsKeptAsideAndTheStoreStartsEmpty) {
  for (const std::string bad : {"not a property list", "<plist><array/></plist>", ""}) {
    TempFolder tmp;
    const fs::path file = tmp / "Kavor.plist";
    writeFile(file, bad);
    FileSettingsStore store(file);
    EXPECT_FALSE(store.contains("x"));
    ASSERT_TRUE(store.setAside().has_value()) << bad;
    EXPECT_TRUE(store.setAside()->filename().string().starts_with("Kavor.plist.unreadable-"));
    EXPECT_EQ(readFile(*store.setAside()), bad);
    ASSERT_TRUE(store.setInteger("x", 1));
    EXPECT_EQ(FileSettingsStore(file).integerValue("x"), 1);
  }
}

TEST(FileSettingsStore, APipeInPlaceOfTheFileIsUnreadableNotWaitedOn) {
  TempFolder tmp;
  const fs::path file = tmp / "Kavor.plist";
  // Nobody will ever write to it: opening it to read would wait for ever.
  ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
  FileSettingsStore store(file);
  EXPECT_FALSE(store.contains("x"));
  ASSERT_TRUE(store.setAside().has_value());
  EXPECT_EQ(fs::status(*store.setAside()).type(), fs::file_type::fifo);
  ASSERT_TRUE(store.setInteger("x", 1));
  EXPECT_EQ(FileSettingsStore(file).integerValue("x"), 1);
}

TEST(FileSettingsStore, AFailedWriteIsReportedAndTheValueStillChanges) {
  TempFolder tmp;
  writeFile(tmp / "blocker", "a file where the folder should be");
  FileSettingsStore store(tmp / "blocker/Kavor.plist");
  const Status written = store.setInteger("n", 5);
  ASSERT_FALSE(written);
  EXPECT_EQ(written.error().kind, ErrorKind::io);
  EXPECT_EQ(store.integerValue("n"), 5);
  SettingsBatch batch(store);
  batch.set("m", 6);
  EXPECT_FALSE(batch.commit());
}

// Messages name the file the user knows, never the temporary one written beside it.
TEST(FileSettingsStore, AFailedWriteNamesTheStoreNotItsTemporaryFile) {
  if (!fs::is_directory("/proc/self")) GTEST_SKIP() << "needs /proc, where no file can be made";
  const fs::path file = "/proc/kavor-settings-test.plist";
  FileSettingsStore store(file);
  const Status written = store.setInteger("n", 1);
  ASSERT_FALSE(written);
  const std::string message = written.error().message();
  EXPECT_NE(message.find(file.string()), std::string::npos) << message;
  EXPECT_EQ(message.find(kTemporaryInfix), std::string::npos) << message;
}

}  // namespace
}  // namespace kavor
