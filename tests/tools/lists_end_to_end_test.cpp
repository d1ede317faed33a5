// kavor-cli lists export and import on a user's settings file of their own.

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

TEST_F(ListsCommands, ExportedListsImportBackMergeOnlyNewNamesAndABadFileChangesNothing) {
  // Nothing stored yet: the factory lists go out, and an import brings the factory settings along.
  ASSERT_EQ(lists({"export", "--os-version", "15", file("factory.plist")}).status, 0);
  ASSERT_EQ(lists({"import", "--os-version", "15", file("factory.plist")}).status, 0);
  EXPECT_NE(settings().find("<key>timePeriod</key>"), npos);
  const ProgramRun first = lists({"export", "-"});
  EXPECT_EQ(first.out, readFile(home_ / "factory.plist"));

  // Merged: the binary file's "none" is there already, its "X" is new.
  ASSERT_EQ(lists({"import", "--merge", KAVOR_TEST_DATA "/prefs/lists.bplist"}).status, 0);
  const auto after = kavor::parsePlist(lists({"export", "-"}).out);
  ASSERT_TRUE(after);
  const auto* predicates = after->find("specPredList")->get<kavor::PlistArray>();
  ASSERT_TRUE(predicates);
  EXPECT_EQ(predicates->size(), 8u);
  EXPECT_EQ(predicates->back(), kavor::arrayValue({"X", "a"}));

  // A file refused part-way leaves the settings file byte for byte.
  const std::string before = settings();
  writeFile(home_ / "half.plist",
            "<plist><dict><key>specPredList</key><array/><key>specStyleList</key><array/>"
            "</dict></plist>");
  const ProgramRun refused = lists({"import", file("half.plist")});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("half.plist\": it has no \"specFiltList\""), npos) << refused.err;
  EXPECT_EQ(settings(), before);

  // Replacing brings the exported lists back as they were.
  ASSERT_EQ(lists({"import", file("factory.plist")}).status, 0);
  EXPECT_EQ(lists({"export", "-"}).out, first.out);
}

}  // namespace
