#include "platform/tree_copy.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <vector>

#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

namespace fs = std::filesystem;
using testing_support::readFile;
using testing_support::TempFolder;
using testing_support::writeFile;

constexpr size_t kBigBytes = size_t{20} << 20;  // more than one chunk

// A store in small: nested folders, an empty file, a big one and a link to it, each with its own
// modification time (to the nanosecond) and mode.
void makeStore(const fs::path& store) {
  std::string big(kBigBytes, '\0');
  for (size_t i = 0; i < big.size(); i += 4096)
    big[i] = static_cast<char>(i / 4096);
  writeFile(store / "Persist" / "big.tracev3", big);
  writeFile(store / "Persist" / "empty", "");
  writeFile(store / "Signpost" / "deep" / "note", "hi");
  fs::create_symlink("Persist/big.tracev3", store / "current");
  // Folders last, since filling them moves their times.
  const char* items[] = {"Persist/big.tracev3", "Signpost/deep/note", "current", "Signpost/deep",
                         "Persist"};
  const mode_t modes[] = {0640, 0600, 0, 0750, 0555};
  for (int i = 0; i < 5; ++i) {
    const fs::path item = store / items[i];
    if (modes[i] != 0) {
      ASSERT_EQ(::chmod(item.c_str(), modes[i]), 0);
    }
    const timespec times[2] = {{1400000000 + i, 123 + i}, {1400000000 + i, 123 + i}};
    ASSERT_EQ(::utimensat(AT_FDCWD, item.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
  }
}

TEST(TreeCopy, CopiesATreeWithItsTimesModesAndLinks) {
  TempFolder temp;
  const fs::path store = temp / "diagnostics";
  makeStore(store);
  EXPECT_EQ(treeContentBytes(store), kBigBytes + 2);  // the link is not followed
  std::vector<uint64_t> progress;
  const Status copied =
      copyItem(store, temp / "archive", {[&](uint64_t n) { progress.push_back(n); }, {}});
  ASSERT_TRUE(copied.ok()) << copied.error().message();
  EXPECT_GE(progress.size(), 2u);
  EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
  EXPECT_EQ(progress.back(), kBigBytes + 2);

  std::vector<fs::path> items = {store};
  for (const fs::directory_entry& e : fs::recursive_directory_iterator(store))
    items.push_back(e);
  EXPECT_EQ(items.size(), 8u);
  for (const fs::path& item : items) {
    const fs::path copy = temp / "archive" / item.lexically_relative(store);
    struct stat a {};
    struct stat b {};
    ASSERT_EQ(::lstat(item.c_str(), &a), 0);
    ASSERT_EQ(::lstat(copy.c_str(), &b), 0) << copy;
    EXPECT_EQ(a.st_mode, b.st_mode) << copy;
    EXPECT_EQ(a.st_mtim.tv_sec, b.st_mtim.tv_sec) << copy;
    EXPECT_EQ(a.st_mtim.tv_nsec, b.st_mtim.tv_nsec) << copy;
    if (S_ISREG(a.st_mode)) {
      EXPECT_TRUE(readFile(item) == readFile(copy)) << copy;
    }
  }
  EXPECT_EQ(fs::read_symlink(temp / "archive" / "current"), "Persist/big.tracev3");
}

TEST(TreeCopy, RefusesAnExistingTargetAndEndsOnAStopOrAMissingSource) {
  TempFolder temp;
  const fs::path store = temp / "diagnostics";
  makeStore(store);
  writeFile(temp / "target" / "a", "old");
  const Status refused = copyItem(store, temp / "target");
  EXPECT_EQ(refused.error().message(), "Cannot copy " + store.string() + " to " +
                                           (temp / "target").string() + ": File exists");
  EXPECT_EQ(readFile(temp / "target" / "a"), "old");

  // Asked during the copy, it ends at the next chunk; asked before, nothing is made.
  std::stop_source stop;
  int reports = 0;
  const CopyObserver observer{[&](uint64_t) { ++reports, stop.request_stop(); }, stop.get_token()};
  EXPECT_NE(copyItem(store, temp / "during", observer).error().message().find("stopped"),
            std::string::npos);
  EXPECT_EQ(reports, 1);
  EXPECT_FALSE(copyItem(store, temp / "before", observer).ok());
  EXPECT_FALSE(fs::exists(temp / "before"));

  EXPECT_EQ(copyItem(temp / "nothing", temp / "copy").error().sysErrno, ENOENT);
  EXPECT_FALSE(fs::exists(temp / "copy"));
  EXPECT_EQ(treeContentBytes(temp / "nothing"), 0u);
}

}  // namespace
}  // namespace kavor
