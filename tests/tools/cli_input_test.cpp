// kavor-cli reading the log tool's output from a file or standard input: it never waits on a
// pipe or a device named as a file, stops reading once the input cannot decode, and keeps to the
// fetch memory budget.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "tests/platform/temp_folder.h"
#include "tests/tools/run_program.h"

namespace {

using kavor::testing_support::ProgramRun;
using kavor::testing_support::runProgram;
using kavor::testing_support::TempFolder;
constexpr auto npos = std::string::npos;

TEST(CliInput, APipeADeviceOrAFolderNamedAsTheFileIsRefusedWithoutWaiting) {
  TempFolder folder;
  // Nobody will ever write to it: opening it to read would wait for ever.
  const std::string fifo = (folder / "output.json").string();
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  for (const std::string& named : {fifo, std::string("/dev/zero"), folder.path().string()}) {
    const ProgramRun run = runProgram({KAVOR_CLI, "entries", named}, {});
    EXPECT_EQ(run.status, 1) << named;
    EXPECT_NE(run.err.find(named + " is not a regular file"), npos) << run.err;
  }
}

TEST(CliInput, StandardInputThatCannotDecodeIsNotReadToItsEnd) {
  // Endless zeros: the first byte already shows that they are no JSON array.
  const ProgramRun run =
      runProgram({"/bin/sh", "-c", "cat /dev/zero | \"$0\" entries -", KAVOR_CLI}, {});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("standard input: the output is not a JSON array"), npos) << run.err;
}

TEST(CliInput, TheFetchMemoryBudgetBoundsTheInput) {
  TempFolder folder;
  const std::string json = (folder / "big.json").string();
  kavor::testing_support::writeFile(
      json, "[{\"eventMessage\" : \"" + std::string(size_t{3} << 20, 'x') + "\"}]");
  EXPECT_EQ(runProgram({KAVOR_CLI, "entries", "--count", json}, {}).out, "1\n");
  // With 32 MiB one entry may take a fifteenth of it.
  const ProgramRun run = runProgram({KAVOR_CLI, "entries", "--count", json},
                                    {{"KAVOR_FETCH_MEMORY_BUDGET", "33554432"}});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find(json + ": the log output is too large: an entry passes 2.2 MB"), npos)
      << run.err;
}

}  // namespace
