#include "platform/folders.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <cstring>
#include <map>

#include "platform/clock.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

using testing_support::TempFolder;
using testing_support::writeFile;

TEST(Folders, ListingTellsItemsApartAndReadsTheirTimes) {
  TempFolder folder;
  writeFile(folder / ".hidden", "abc");
  writeFile(folder / "0000000000000123.tracev3", "12345");
  std::filesystem::create_directory(folder / "sub");
  // Followed, the link would pass for the folder it names.
  std::filesystem::create_directory_symlink("sub", folder / "link");
  const timespec times[2] = {{1605019315, 250000000}, {1605019315, 250000000}};
  ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "0000000000000123.tracev3").c_str(), times, 0), 0);

  const Expected<std::vector<FolderItem>> items = listFolder(folder.path());
  ASSERT_TRUE(items.ok()) << items.error().message();
  std::map<std::string, FolderItem> byName;
  for (const FolderItem& item : *items)
    byName[item.name] = item;
  ASSERT_EQ(byName.size(), 4u);
  const FolderItem& file = byName.at("0000000000000123.tracev3");
  EXPECT_FALSE(file.metadataError);
  EXPECT_TRUE(file.isRegularFile && !file.isDirectory);
  EXPECT_EQ(file.size, 5u);
  EXPECT_DOUBLE_EQ(file.modified, 1605019315.25 - kUnixToAbsoluteTime);
  // Born now, after its backdated modification, or, without a birth time, at that time itself.
  EXPECT_GE(file.created, file.modified);
  EXPECT_LE(file.created, SystemClock().now());
  EXPECT_TRUE(byName.at("sub").isDirectory);
  EXPECT_FALSE(byName.at("link").isDirectory || byName.at("link").isRegularFile);
}

TEST(Folders, FailuresNameThePathInTheSystemsWords) {
  TempFolder folder;
  const std::filesystem::path missing = folder / "Signpost";
  const std::string listing =
      "Cannot list the folder " + missing.string() + ": " + std::strerror(ENOENT);
  EXPECT_EQ(listFolder(missing).error().message(), listing);
  EXPECT_EQ(listFolderNames(missing).error().message(), listing);

  EXPECT_TRUE(createFolder(folder / "Extra").ok() &&
              std::filesystem::is_directory(folder / "Extra"));
  EXPECT_EQ(createFolder(folder / "Extra").error().sysErrno, EEXIST);
  EXPECT_EQ(createFolder(folder / "a" / "b").error().sysErrno, ENOENT);  // no intermediates
}

}  // namespace
}  // namespace kavor
