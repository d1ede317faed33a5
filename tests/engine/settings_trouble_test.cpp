#include "engine/shell/settings_trouble.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "platform/file_settings_store.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

namespace fs = std::filesystem;
using testing_support::TempFolder;
using testing_support::writeFile;

bool mentions(const SettingsNotice& notice, const fs::path& file) {
  return notice.informative.find("\u201C" + file.string() + "\u201D") != std::string::npos;
}

TEST(SettingsTrouble, EachFailedWriteIsToldOnceByItsReason) {
  TempFolder tmp;
  writeFile(tmp / "blocker", "a file where the folder should be");
  const fs::path file = tmp / "blocker/Kavor.plist";
  FileSettingsStore store(file);
  SettingsTrouble trouble;
  const Status failed = store.setInteger("n", 1);
  ASSERT_FALSE(failed);

  const auto first = trouble.noticesAfter(store, failed);
  ASSERT_EQ(first.size(), 1u);
  EXPECT_EQ(first[0].message, "Your settings could not be saved.");
  EXPECT_TRUE(mentions(first[0], file)) << first[0].informative;
  EXPECT_TRUE(trouble.noticesAfter(store, store.setInteger("n", 2)).empty());
  EXPECT_TRUE(trouble.noticesAfter(store).empty());

  const Status diskFull = ioError("cannot write " + file.string(), ENOSPC);
  const auto full = trouble.noticesAfter(store, diskFull);
  ASSERT_EQ(full.size(), 1u);
  EXPECT_NE(full[0].informative.find(std::strerror(ENOSPC)), std::string::npos);
  EXPECT_TRUE(trouble.noticesAfter(store, diskFull).empty());
}

TEST(SettingsTrouble, AFileSetAsideIsToldOnceWithBothNames) {
  TempFolder tmp;
  const fs::path file = tmp / "Kavor.plist";
  writeFile(file, "not a property list");
  FileSettingsStore store(file);
  SettingsTrouble trouble;
  EXPECT_TRUE(trouble.noticesAfter(store).empty());  // nothing read yet

  EXPECT_FALSE(store.contains("x"));
  ASSERT_TRUE(store.setAside());
  const auto notices = trouble.noticesAfter(store, store.setInteger("x", 1));
  ASSERT_EQ(notices.size(), 1u);
  EXPECT_EQ(notices[0].message, "Your settings could not be read.");
  EXPECT_TRUE(mentions(notices[0], file)) << notices[0].informative;
  EXPECT_TRUE(mentions(notices[0], *store.setAside())) << notices[0].informative;
  EXPECT_TRUE(trouble.noticesAfter(store).empty());
}

}  // namespace
}  // namespace kavor
