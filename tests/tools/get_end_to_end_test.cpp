// kavor-cli get against a simulated system: the whole Get Log path, tool included.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/platform/process_state.h"
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

TEST_F(GetEndToEnd, TheEntryLimitSaysWhereItCut) {
  const ProgramRun got = get({"--period", "-2", "--unit", "min", "--cap", "1"});
  ASSERT_EQ(got.status, 0) << got.err;
  EXPECT_EQ(std::count(got.out.begin(), got.out.end(), '\n'), 2);
  EXPECT_NE(got.err.find("Showing the first 2 of "), std::string::npos) << got.err;
  EXPECT_NE(got.err.find(" entries: the entry limit is on\n"), std::string::npos) << got.err;
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

// A system whose log tool is a script, for what the stand-in tool never does.
class GetWithScriptedTool : public ::testing::Test {
 protected:
  void useTool(const std::string& body) {
    const auto tool = folder_ / "usr/bin/log";
    kavor::testing_support::writeFile(tool, "#!/bin/sh\n" + body + "\n");
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    kavor::testing_support::writeFile(
        folder_ / "System/Library/CoreServices/SystemVersion.plist",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
        "<key>ProductVersion</key><string>10.15.7</string></dict></plist>\n");
  }
  // A tool that says its process number, then runs until it is ended.
  void useEndlessTool() { useTool("echo $$ > \"$0.pid\"; exec sleep 1000"); }
  pid_t toolPid() const {
    return kavor::testing_support::waitForPidFile(folder_ / "usr/bin/log.pid");
  }
  // kavor-cli get started in the background, its output thrown away.
  pid_t startGet() const {
    const std::string root = folder_.path().string();
    const pid_t pid = ::fork();
    if (pid == 0) {
      ::setenv("KAVOR_SYSTEM_ROOT", root.c_str(), 1);
      const int null = ::open("/dev/null", O_WRONLY);
      ::dup2(null, 1);
      ::dup2(null, 2);
      ::execl(KAVOR_CLI, KAVOR_CLI, "get", static_cast<char*>(nullptr));
      ::_exit(127);
    }
    return pid;
  }

  kavor::testing_support::TempFolder folder_;
};

TEST_F(GetWithScriptedTool, ASignalEndsTheToolThenTheCommand) {
  useEndlessTool();
  for (const int signal : {SIGTERM, SIGINT}) {
    std::filesystem::remove(folder_ / "usr/bin/log.pid");
    const pid_t get = startGet();
    const pid_t tool = toolPid();
    ASSERT_GT(tool, 0);
    ::kill(get, signal);
    int status = 0;
    ASSERT_EQ(::waitpid(get, &status, 0), get);
    ASSERT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 128 + signal);
    EXPECT_TRUE(kavor::testing_support::processGone(tool)) << signal;
  }
}

#ifdef __linux__
TEST_F(GetWithScriptedTool, AKilledCommandTakesItsToolWithIt) {
  useEndlessTool();
  const pid_t get = startGet();
  const pid_t tool = toolPid();
  ASSERT_GT(tool, 0);
  ::kill(get, SIGKILL);
  ::waitpid(get, nullptr, 0);
  EXPECT_TRUE(kavor::testing_support::waitUntilEnded(tool));
}
#endif

TEST_F(GetWithScriptedTool, OutputThatDoesNotDecodeGivesTheReason) {
  useTool("echo 'log: no entries found'");
  const ProgramRun got =
      runProgram({KAVOR_CLI, "get"}, {{"KAVOR_SYSTEM_ROOT", folder_.path().string()}});
  EXPECT_EQ(got.status, 1);
  EXPECT_NE(got.err.find("the log tool's output does not decode: "), std::string::npos) << got.err;
  EXPECT_NE(got.err.find("JSON array"), std::string::npos) << got.err;
}

}  // namespace
