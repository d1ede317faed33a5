// kavor-cli archive build, catalogue and stats on a simulated log store, and the log tool
// reading the archive that was built.

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "tests/platform/temp_folder.h"
#include "tests/tools/run_program.h"

namespace {

using kavor::testing_support::ProgramRun;

// Whether text has the shape: '#' stands for one digit, '*' for a run of one or more characters
// other than the shape's next one, anything else for itself.
bool shaped(std::string_view text, std::string_view shape) {
  size_t at = 0;
  for (size_t i = 0; i < shape.size(); ++i) {
    if (shape[i] == '*') {
      const char next = i + 1 < shape.size() ? shape[i + 1] : '\n';
      const size_t start = at;
      while (at < text.size() && text[at] != next)
        ++at;
      if (at == start) return false;
    } else if (at >= text.size() ||
               (shape[i] == '#' ? !std::isdigit(static_cast<unsigned char>(text[at]))
                                : text[at] != shape[i])) {
      return false;
    } else {
      ++at;
    }
  }
  return at == text.size();
}
using kavor::testing_support::runProgram;

class ArchiveEndToEnd : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new kavor::testing_support::TempFolder;
    ASSERT_EQ(runProgram({KAVOR_LOG_TOOL, "make-system", root(), "--macos", "14.4"}, env()).status,
              0);
    built_ = new ProgramRun(cli({"archive", "build", root() + "/var/db", archive()}));
  }
  static void TearDownTestSuite() {
    delete built_;
    delete folder_;
  }
  static std::string root() { return (*folder_ / "root").string(); }
  static std::string archive() { return (*folder_ / "demo.logarchive").string(); }
  static std::vector<std::pair<std::string, std::string>> env() {
    return {{"KAVOR_LOG_NOW", "1605520800"}, {"TZ", "UTC"}, {"KAVOR_SYSTEM_ROOT", root()}};
  }
  static ProgramRun cli(std::vector<std::string> args) {
    args.insert(args.begin(), KAVOR_CLI);
    return runProgram(args, env());
  }

  static kavor::testing_support::TempFolder* folder_;
  static ProgramRun* built_;
};
kavor::testing_support::TempFolder* ArchiveEndToEnd::folder_ = nullptr;
ProgramRun* ArchiveEndToEnd::built_ = nullptr;

TEST_F(ArchiveEndToEnd, BuildsAnArchiveThatTheLogToolShows) {
  ASSERT_EQ(built_->status, 0) << built_->err;
  EXPECT_EQ(built_->out, "Source: " + root() + "/var/db\nDestination:" + archive() + "\n");
  const ProgramRun shown =
      runProgram({root() + "/usr/bin/log", "show", "--archive", archive(), "--style", "json",
                  "--info", "--start", "2020-11-16 00:00:00"},
                 env());
  ASSERT_EQ(shown.status, 0) << shown.err;
  EXPECT_NE(shown.out.find("\"eventMessage\""), std::string::npos);

  // A second build into the same place is refused before anything is touched.
  const ProgramRun again = cli({"archive", "build", "--debug", root() + "/var/db", archive()});
  EXPECT_EQ(again.status, 1);
  EXPECT_EQ(again.out, "");
  EXPECT_NE(again.err.find("already exists"), std::string::npos);
}

TEST_F(ArchiveEndToEnd, CataloguesAndAnalysesTheBuiltArchive) {
  const ProgramRun catalogue = cli({"archive", "catalogue", archive()});
  ASSERT_EQ(catalogue.status, 0) << catalogue.err;
  const std::string dates =
      "####-##-## ##:##:## +0000  ####-##-## ##:##:## +0000  * bytes, period *.# min";
  size_t lines = 0;
  std::istringstream in(catalogue.out);
  std::string text;
  std::getline(in, text);
  EXPECT_EQ(text, "Catalogue listing of " + archive() + " :");
  while (std::getline(in, text)) {
    const size_t tab = text.find(".tracev3\t");
    const std::string folder = text.substr(0, text.find('/') + 1);
    EXPECT_TRUE(
        tab != std::string::npos && shaped(text.substr(tab + 9), dates) &&
        (folder == "/" || folder == "Persist/" || folder == "Special/" || folder == "Signpost/"))
        << text;
    ++lines;
  }
  EXPECT_GE(lines, 12u);  // 6 Persist, 3 Special, 2 Signpost and the live data
  EXPECT_NE(catalogue.out.find("\n/logdata.LiveData.tracev3\t"), std::string::npos);

  const ProgramRun csv = cli({"archive", "stats", "--csv", archive()});
  ASSERT_EQ(csv.status, 0) << csv.err;
  EXPECT_TRUE(csv.out.starts_with("date,time,totalsize,filename,size,percent,process\n"));
  const std::string row = "####-##-##,##:##:##,*,*.tracev3,*,*.##,*";
  std::istringstream rows(csv.out.substr(csv.out.find('\n') + 1));
  size_t count = 0;
  while (std::getline(rows, text)) {
    EXPECT_TRUE(shaped(text, row) && text.find('/') == std::string::npos) << text;
    ++count;
  }
  EXPECT_GT(count, 10u);

  const ProgramRun missing = cli({"archive", "stats", root()});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(missing.out.starts_with("Analysis of " + root() + " :\n")) << missing.out;
}

}  // namespace
