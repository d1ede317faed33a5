#include "engine/shell/settings_trouble.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "platform/file_settings_store.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

using testing_support::TempFolder;
using testing_support::writeFile;

TEST(SettingsTrouble, EachFailedWriteIsToldOnceByItsReason) {
  TempFolder tmp;
  writeFile(tmp / "blocker", "a file where the folder should be");
  const std::filesystem::path file = tmp / "blocker/Kavor.plist";
  FileSettingsStore store(file);
  SettingsTrouble trouble;
  const Status failed = store.setInteger("n", 1);
  ASSERT_FALSE(failed);

  const auto first = trouble.noticesAfter(store, failed);
  ASSERT_EQ(first.size(), 1u);
  EXPECT_EQ(first[0].message, "Your settings could not be saved.");
  EXPECT_TRUE(trouble.noticesAfter(store, store.setInteger("n", 2)).empty());
  EXPECT_TRUE(trouble.noticesAfter(store).empty());

  const Status diskFull = ioError("cannot write " + file.string(), ENOSPC);
  const auto full = trouble.noticesAfter(store, diskFull);
  ASSERT_EQ(full.size(), 1u);
  EXPECT_NE(full[0].informative.find(std::strerror(ENOSPC)), std::string::npos);
  EXPECT_TRUE(trouble.noticesAfter(store, diskFull).empty());
}

}  // namespace
}  // namespace kavor
