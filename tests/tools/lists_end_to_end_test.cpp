// kavor-cli lists export and import on a user's settings file of their own: a round trip, a merge
// of the binary form, and a file that is refused leaving the settings file byte for byte.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/plist_value.h"
#include "tests/platform/temp_folder.h"
#include "tests/tools/run_program.h"

namespace {

using kavor::testing_support::ProgramRun;
using kavor::testing_support::readFile;
using kavor::testing_support::runProgram;
using kavor::testing_support::TempFolder;
using kavor::testing_support::writeFile;
constexpr auto npos = std::string::npos;

class ListsCommands : public testing::Test {
 protected:
  ProgramRun lists(std::vector<std::string> args) {
    args.insert(args.begin(), {KAVOR_CLI, "lists"});
    return runProgram(std::move(args), {{"XDG_CONFIG_HOME", (home_ / "config").string()},
                                        {"XDG_DATA_HOME", (home_ / "data").string()}});
  }
  std::string settings() const { return readFile(home_ / "config/Kavor/Kavor.plist"); }
  std::string file(std::string_view name) const { return (home_ / name).string(); }

  TempFolder home_;
};

TEST_F(ListsCommands, ExportedListsImportBackAndMergeOnlyNewNames) {
  // Nothing stored yet: the factory lists go out, and an import brings the factory settings along.
  ASSERT_EQ(lists({"export", "--os-version", "15", file("factory.plist")}).status, 0);
  ASSERT_EQ(lists({"import", "--os-version", "15", file("factory.plist")}).status, 0);
  EXPECT_NE(settings().find("<key>timePeriod</key>"), npos);
  const ProgramRun first = lists({"export", "-"});
  EXPECT_EQ(first.out, readFile(home_ / "factory.plist"));

  // The binary file's "none" entries are there already; "X", "msg" and "err" are new.
  const ProgramRun merged = lists({"import", "--merge", KAVOR_TEST_DATA "/prefs/lists.bplist"});
  ASSERT_EQ(merged.status, 0) << merged.err;
  const auto after = kavor::parsePlist(lists({"export", "-"}).out);
  ASSERT_TRUE(after);
  const std::pair<const char*, kavor::PlistValue> lastEntries[] = {
      {"specPredList", kavor::arrayValue({"X", "a"})},
      {"specStyleList", kavor::arrayValue({"msg", "10"})},
      {"specFiltList", kavor::arrayValue({"err", "error"})}};
  const size_t factorySizes[] = {7, 6, 10};
  for (size_t i = 0; i < 3; ++i) {
    const auto* list = after->find(lastEntries[i].first)->get<kavor::PlistArray>();
    ASSERT_TRUE(list);
    EXPECT_EQ(list->size(), factorySizes[i] + 1) << lastEntries[i].first;
    EXPECT_EQ(list->back(), lastEntries[i].second);
  }

  // Replacing brings the exported lists back as they were.
  ASSERT_EQ(lists({"import", file("factory.plist")}).status, 0);
  EXPECT_EQ(lists({"export", "-"}).out, first.out);
}

TEST_F(ListsCommands, ARefusedFileLeavesTheSettingsFileAsItWas) {
  ASSERT_EQ(lists({"import", "--os-version", "13", KAVOR_TEST_DATA "/prefs/lists.bplist"}).status,
            0);
  const std::string before = settings();
  writeFile(home_ / "half.plist",
            "<plist><dict><key>specPredList</key><array><array><string>p</string><string>1"
            "</string></array></array><key>specStyleList</key><array/></dict></plist>");
  const ProgramRun run = lists({"import", file("half.plist")});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("half.plist\": it has no \"specFiltList\""), npos) << run.err;
  EXPECT_EQ(settings(), before);

  const ProgramRun unsaved = lists({"export", file("missing/folder.plist")});
  EXPECT_EQ(unsaved.status, 1);
  EXPECT_NE(unsaved.err.find("Couldn't save exported file."), npos) << unsaved.err;
}

}  // namespace
