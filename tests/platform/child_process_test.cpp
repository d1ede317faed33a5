// Arguments that arrive whole and a program that cannot start are checked where the log tool and
// the collection run.

#include "platform/child_process.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <thread>
#include <vector>

#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

ChildExit runShell(const std::string& script, std::vector<std::string> more, std::string& out) {
  std::vector<std::string> args = {"-c", script, "sh"};
  args.insert(args.end(), more.begin(), more.end());
  StringSink sink;
  const auto ran = runChildProcess("/bin/sh", args, sink);
  EXPECT_TRUE(ran.ok());
  out = sink.take();
  return ran ? *ran : ChildExit{};
}

TEST(ChildProcess, StatusAndStandardErrorAreKept) {
  std::string out;
  ChildExit exit = runShell("echo partial; echo 'log: bad predicate' >&2; exit 64", {}, out);
  EXPECT_EQ(exit.status, 64);
  EXPECT_EQ(out, "partial\n");
  EXPECT_EQ(exit.standardError, "log: bad predicate\n");
  EXPECT_EQ(exit.standardErrorLines, 1u);
  // A signal is reported by its own number, as the platform's termination status has it.
  exit = runShell("kill -9 $$", {}, out);
  EXPECT_EQ(exit.status, 9);
  EXPECT_TRUE(exit.signalled);
  EXPECT_FALSE(exit.stopped);
  // Far more than a pipe holds, on both streams at once; every line of standard error counts.
  exit = runShell("head -c 3000000 /dev/zero; seq 30000 >&2; printf end >&2", {}, out);
  EXPECT_EQ(out.size(), 3000000u);
  EXPECT_EQ(exit.standardError.size(), size_t{64} << 10);
  EXPECT_EQ(exit.standardErrorLines, 30001u);
}

TEST(ChildProcess, RunsAtOnceKeepTheirOwnOutput) {
  std::vector<std::string> outs(4);
  std::vector<std::thread> threads;
  for (size_t i = 0; i < outs.size(); ++i)
    threads.emplace_back([&outs, i] {
      const ChildExit exit =
          runShell("sleep 0.2; printf '%s' \"$1\"", {std::to_string(i)}, outs[i]);
      EXPECT_EQ(exit.status, 0);
    });
  for (std::thread& t : threads)
    t.join();
  for (size_t i = 0; i < outs.size(); ++i)
    EXPECT_EQ(outs[i], std::to_string(i));
}

TEST(DetachedProcess, RunsOnItsOwnWithItsArgumentsWhole) {
  const testing_support::TempFolder folder;
  const auto said = folder / "said";
  const auto release = folder / "release";
  ASSERT_EQ(::mkfifo(said.c_str(), 0600), 0);
  ASSERT_EQ(::mkfifo(release.c_str(), 0600), 0);
  // The program says who it is, then waits until it is let go: the fifos order everything.
  const std::vector<std::string> args = {"-c", "echo \"$$ $1\" > \"$0\"; read x < \"$2\"",
                                         said.string(), "two 'words'", release.string()};
  ASSERT_TRUE(startDetachedProcess("/bin/sh", args).ok());
  const std::string line = testing_support::readFile(said);
  const pid_t pid = std::stoi(line);
  EXPECT_EQ(line.substr(line.find(' ')), " two 'words'\n");
  EXPECT_EQ(::getsid(pid), pid);
  EXPECT_EQ(::waitpid(pid, nullptr, WNOHANG), -1);  // nobody's child here to wait for
  testing_support::writeFile(release, "go\n");

  const auto missing = startDetachedProcess(folder / "missing", {});
  ASSERT_FALSE(missing.ok());
  EXPECT_EQ(missing.error().sysErrno, ENOENT);
}

}  // namespace
}  // namespace kavor
