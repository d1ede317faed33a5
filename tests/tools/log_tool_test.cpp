// The stand-in tool run as a program, as Kavor runs it: argument lists, exit statuses, output.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/core/entry_decoder.h"
#include "tests/platform/temp_folder.h"
#include "tests/tools/run_program.h"

namespace {

using ToolRun = kavor::testing_support::ProgramRun;

// Runs the tool with args at the pinned time 2020-11-16 10:00:00 UTC.
ToolRun runTool(std::vector<std::string> args) {
  args.insert(args.begin(), KAVOR_LOG_TOOL);
  return kavor::testing_support::runProgram(args, {{"KAVOR_LOG_NOW", "1605520800"}, {"TZ", "UTC"}});
}

const std::vector<std::string> kEverything = {"--style", "json", "--info", "--debug", "--signpost"};

std::vector<std::string> with(std::vector<std::string> a, const std::vector<std::string>& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

TEST(LogTool, ShowPrintsJsonTheDecoderReads) {
  const ToolRun run = runTool(with({"show", "--last", "30s"}, kEverything));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(run.out.starts_with("[{\n  \""));
  EXPECT_NE(run.out.find("\\/"), std::string::npos);
  EXPECT_NE(run.out.find("\"source\" : null"), std::string::npos);
  EXPECT_NE(run.out.find("\"backtrace\" : {"), std::string::npos);
  const auto list = kavor::decodeEntries(run.out);
  ASSERT_TRUE(list.ok()) << list.error().message();
  EXPECT_GT(list->size(), 300u);
  // The same window asked for by its ends gives the same bytes.
  const ToolRun again = runTool(with(
      {"show", "--start", "2020-11-16 09:59:30", "--end", "2020-11-16 09:59:59"}, kEverything));
  EXPECT_EQ(again.out, run.out);
}

TEST(LogTool, ShowLastTwoSecondsPrintsAHeaderAndTheWindowsEntries) {
  const ToolRun plain = runTool({"show", "--last", "2"});
  ASSERT_EQ(plain.status, 0) << plain.err;
  const std::string header =
      "Timestamp                       Thread     Type        Activity             PID    TTL  \n";
  ASSERT_TRUE(plain.out.starts_with(header)) << plain.out;
  const ToolRun json = runTool({"show", "--style", "json", "--last", "2"});
  const auto list = kavor::decodeEntries(json.out);
  ASSERT_TRUE(list.ok()) << list.error().message();
  ASSERT_GT(list->size(), 0u);
  // One line an entry, each stamped within the two seconds before 10:00:00; messages with a
  // line feed run over into a line of their own.
  size_t entries = 0;
  for (size_t at = header.size(); at < plain.out.size(); at = plain.out.find('\n', at) + 1) {
    const std::string second = plain.out.substr(at, 19);
    if (!second.starts_with("2020-")) continue;
    ++entries;
    EXPECT_TRUE(second == "2020-11-16 09:59:58" || second == "2020-11-16 09:59:59") << second;
  }
  EXPECT_EQ(entries, list->size());
}

TEST(LogTool, TypesLeftOutUnlessAskedFor) {
  const ToolRun plain = runTool({"show", "--last", "1m", "--style", "json"});
  ASSERT_EQ(plain.status, 0);
  const ToolRun all = runTool(with({"show", "--last", "1m"}, kEverything));
  for (const char* t : {"\"Info\"", "\"Debug\"", "signpostEvent"}) {
    EXPECT_EQ(plain.out.find(t), std::string::npos) << t;
    EXPECT_NE(all.out.find(t), std::string::npos) << t;
  }
}

TEST(LogTool, PredicatesArriveWholeAndSelect) {
  const ToolRun kernel = runTool({"show", "--last", "2m", "--style", "json", "--predicate",
                                  "processID = 0 AND eventMessage CONTAINS[c] \"Sandbox: \""});
  ASSERT_EQ(kernel.status, 0) << kernel.err;
  const auto list = kavor::decodeEntries(kernel.out);
  ASSERT_TRUE(list.ok());
  ASSERT_GT(list->size(), 0u);
  for (size_t i = 0; i < list->size(); ++i)
    EXPECT_EQ(list->value(i, kavor::EntryKey::processID).integer(), 0);
  const ToolRun none = runTool({"show", "--last", "2m", "--style", "json", "--predicate",
                                "subsystem == \"no.such.subsystem\""});
  EXPECT_EQ(none.status, 0);
  EXPECT_EQ(none.out, "[]\n");
}

TEST(LogTool, BadInputIsAUsageError) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"frobnicate"}, "unknown command"},
      {{"show", "--colour"}, "unknown option --colour"},
      {{"show", "--last"}, "--last needs a value"},
      {{"show", "--start", "yesterday"}, "bad time"},
      {{"show", "--last", "5y"}, "bad time span"},
      {{"show", "--style", "xml"}, "unknown style"},
      {{"show", "--predicate", "subsystem =="}, "predicate"},
      {{"collect", "--last", "1m"}, "--output"},
  };
  for (const auto& [args, message] : cases) {
    const ToolRun run = runTool(args);
    EXPECT_EQ(run.status, 64) << args.back();
    EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
  }
}

TEST(LogTool, CollectedArchiveShowsTheLiveWindow) {
  const kavor::testing_support::TempFolder dir;
  const std::string archive = (dir / "with space \"q\".logarchive").string();
  ASSERT_EQ(runTool({"collect", "--output", archive, "--last", "2m"}).status, 0);
  const ToolRun again = runTool({"collect", "--output", archive, "--last", "2m"});
  EXPECT_NE(again.status, 0);
  EXPECT_NE(again.err.find("already exists"), std::string::npos);

  const ToolRun live = runTool(with({"show", "--last", "2m"}, kEverything));
  const ToolRun archived = runTool(with({"show", "--archive", archive}, kEverything));
  ASSERT_EQ(archived.status, 0) << archived.err;
  EXPECT_EQ(archived.out, live.out);
  EXPECT_EQ(
      runTool(with({"show", "--archive", archive, "--predicate", "processID == 0"}, kEverything))
          .out,
      runTool(with({"show", "--last", "2m", "--predicate", "processID == 0"}, kEverything)).out);

  // One data file alone, a folder that is no archive, and a file that is not ours.
  const ToolRun persist = runTool(
      {"show", "--file", archive + "/Persist/0000000000000001.tracev3", "--style", "default"});
  EXPECT_EQ(persist.status, 0);
  EXPECT_TRUE(persist.out.starts_with("Timestamp "));
  EXPECT_NE(runTool({"show", "--archive", dir.path().string()}).status, 0);
  const ToolRun foreign = runTool({"show", "--file", archive + "/Info.plist"});
  EXPECT_NE(foreign.status, 0);
  EXPECT_NE(foreign.err.find("not a log data file"), std::string::npos);
}

}  // namespace
