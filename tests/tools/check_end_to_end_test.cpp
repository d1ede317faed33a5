// kavor-cli check against simulated systems: the report and the start-up checks, tools included.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "engine/shell/check_texts.h"
#include "engine/shell/machine_check_system.h"
#include "engine/shell/startup_checks.h"
#include "platform/clock.h"
#include "tests/platform/temp_folder.h"
#include "tests/tools/run_program.h"

namespace {

using kavor::testing_support::ProgramRun;
using kavor::testing_support::runProgram;

class CheckEndToEnd : public ::testing::Test {
 protected:
  void SetUp() override {
    root_ = (folder_ / "root").string();
    ASSERT_EQ(runProgram({KAVOR_LOG_TOOL, "make-system", root_}, env()).status, 0);
  }
  std::vector<std::pair<std::string, std::string>> env() const {
    return {{"KAVOR_LOG_NOW", "1605520800"}, {"TZ", "UTC"}, {"KAVOR_SYSTEM_ROOT", root_}};
  }
  ProgramRun check(std::vector<std::string> args = {}) const {
    args.insert(args.begin(), {KAVOR_CLI, "check"});
    return runProgram(args, env());
  }
  // Whether the user running the tests is an administrator of this machine, which no root can
  // change: the command is held to the alerts that follow from it either way.
  static bool administrator() {
    const kavor::SystemClock clock;
    kavor::MachineCheckSystem machine(kavor::SystemPaths("/"), clock);
    return kavor::checkAdminUser(machine);
  }
  static std::string alerts(std::initializer_list<std::string_view> texts) {
    std::string out;
    for (const std::string_view text : texts)
      out += (out.empty() ? "" : "\n") + std::string(text) + "\n";
    return out;
  }

  kavor::testing_support::TempFolder folder_;
  std::string root_;
};

TEST_F(CheckEndToEnd, ADemoSystemPassesEveryCheck) {
  const ProgramRun got = check({"--startup"});
  if (administrator()) {
    EXPECT_EQ(got.status, 0) << got.out;
    EXPECT_EQ(got.out, "");
  } else {
    EXPECT_EQ(got.status, 1);
    EXPECT_EQ(got.out, alerts({kavor::kNotAdminAlert}));
  }
}

TEST_F(CheckEndToEnd, TheReportOfADemoSystemVouchesForTheTool) {
  const ProgramRun got = check();
  ASSERT_EQ(got.status, 0) << got.err;
  EXPECT_NE(got.out.find("There are 257 folders in the /var/db/uuidtext folder.\n"),
            std::string::npos);
  EXPECT_TRUE(
      got.out.ends_with(" log entries.\n"
                        "The log show command appears to be working correctly.\n"))
      << got.out;
}

TEST_F(CheckEndToEnd, AnEmptyStoreAndAFailingToolRaiseFourAlerts) {
  std::filesystem::remove_all(root_ + "/var/db/diagnostics/Persist");
  std::filesystem::create_directory(root_ + "/var/db/diagnostics/Persist");
  std::filesystem::remove_all(root_ + "/var/db/diagnostics/timesync");
  const auto tool = root_ + "/usr/bin/log";
  std::filesystem::remove(tool);
  kavor::testing_support::writeFile(tool, "#!/bin/sh\nexit 3\n");
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);

  const ProgramRun got = check({"--startup"});
  EXPECT_EQ(got.status, 1);
  if (administrator())
    EXPECT_EQ(got.out, alerts({kavor::kNoLogFilesAlert, kavor::kNoTimesyncAlert,
                               kavor::kNoLogEntriesAlert, kavor::kTimeFormatAlert}));
  else
    EXPECT_EQ(got.out, alerts({kavor::kNotAdminAlert}));
}

}  // namespace
