// kavor-cli get against a simulated system: the whole Get Log path, tool included.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/platform/temp_folder.h"
#include "tests/tools/run_program.h"

namespace {

using kavor::testing_support::ProgramRun;
using kavor::testing_support::runProgram;

class GetEndToEnd : public ::testing::Test {
 protected:
  void SetUp() override {
    root_ = (folder_ / "root").string();
    ASSERT_EQ(
        runProgram({KAVOR_LOG_TOOL, "make-system", root_, "--macos", "10.15.7"}, env()).status, 0);
  }
  std::vector<std::pair<std::string, std::string>> env() const {
    return {{"KAVOR_LOG_NOW", "1605520800"}, {"TZ", "UTC"}, {"KAVOR_SYSTEM_ROOT", root_}};
  }
  ProgramRun get(std::vector<std::string> args) {
    args.insert(args.begin(), {KAVOR_CLI, "get", "--base", "2020-11-16 10:00:00", "--color",
                               "never", "--style", "0 4 10"});
    return runProgram(args, env());
  }

  kavor::testing_support::TempFolder folder_;
  std::string root_;
};

TEST_F(GetEndToEnd, ShowsWhatTheToolPrintsForTheWindow) {
  const ProgramRun got = get({"--period", "-2", "--unit", "min", "--predicate-name", "error"});
  ASSERT_EQ(got.status, 0) << got.err;
  // The same window asked of the tool by hand, styled the same way.
  const ProgramRun shown =
      runProgram({root_ + "/usr/bin/log", "show", "--predicate",
                  "eventMessage CONTAINS[c] \"error\"", "--style", "json", "--info", "--signpost",
                  "--start", "2020-11-16 09:58:00", "--end", "2020-11-16 10:00:00"},
                 env());
  ASSERT_EQ(shown.status, 0);
  const std::string json = (folder_ / "shown.json").string();
  kavor::testing_support::writeFile(json, shown.out);
  const ProgramRun styled =
      runProgram({KAVOR_CLI, "style", "--style", "0 4 10", "--color", "never", json}, env());
  EXPECT_EQ(got.out, styled.out);
  EXPECT_GT(std::count(got.out.begin(), got.out.end(), '\n'), 10);
  EXPECT_NE(got.out.find("error"), std::string::npos);
}

TEST_F(GetEndToEnd, AFailingToolGivesTheAlertText) {
  const ProgramRun got = get({"--predicate", "eventMessage CONTAINS"});
  EXPECT_EQ(got.status, 1);
  EXPECT_NE(got.err.find("An error occurred in your last action: log command returned error "
                         "number 64"),
            std::string::npos)
      << got.err;
  EXPECT_NE(got.err.find("log: predicate:"), std::string::npos);
  EXPECT_EQ(got.out, "");
}

TEST_F(GetEndToEnd, AnArchiveWithSpacesAndQuotesInItsPath) {
  const std::string archive = (folder_ / "it's a \"log\".logarchive").string();
  ASSERT_EQ(
      runProgram({root_ + "/usr/bin/log", "collect", "--output", archive, "--last", "1m"}, env())
          .status,
      0);
  const ProgramRun got = get({"--archive", archive, "--predicate", "processID == 0"});
  ASSERT_EQ(got.status, 0) << got.err;
  EXPECT_GT(std::count(got.out.begin(), got.out.end(), '\n'), 0);
  // Every line is a kernel entry: no subsystem, so two spaces after the timestamp.
  for (size_t at = 0; at < got.out.size(); at = got.out.find('\n', at) + 1)
    EXPECT_EQ(got.out.substr(at + 31, 2), "  ");
}

}  // namespace
