#include "engine/query/log_runner.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <new>

#include "engine/core/memory_budget.h"
#include "engine/query/log_fetch.h"
#include "platform/clock.h"
#include "platform/main_thread.h"
#include "platform/operation_queue.h"
#include "tests/platform/process_state.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

using testing_support::processGone;
using testing_support::TempFolder;
using testing_support::waitForPidFile;

// 2020-05-01 09:40:00 UTC as an absolute time.
constexpr double kStart = 610018800.0;

class LogRunner : public ::testing::Test {
 protected:
  // A stand-in for the log tool: a shell script with this body.
  std::filesystem::path tool(const std::string& name, const std::string& body) {
    const auto path = folder_ / name;
    testing_support::writeFile(path, "#!/bin/sh\n" + body + "\n");
    ::chmod(path.c_str(), 0755);
    return path;
  }
  LogShowCompletion complete(LogShowOutput&& out, bool dontShowGraphView = false) {
    StylerInput style;
    style.styleText = "0h 4 10";
    style.osVersion = 17;
    return completeLogShow(std::move(out), document_, style,
                           {formatter_, kStart, kStart + 5, dontShowGraphView});
  }
  // A document that already shows one fetch.
  void fetchedBefore() {
    const auto ok = tool("one", "echo '[{\"eventMessage\" : \"before\"}]'");
    ASSERT_TRUE(complete(runLogShow(ok, {})).redraw);
    ASSERT_EQ(document_.theJSONDictionaries->size(), 1u);
  }

  // Where a script says a process number: "echo $$ > " + pidFile("tool").
  std::string pidFile(const std::string& name) { return "'" + (folder_ / name).string() + ".pid'"; }
  pid_t pidOf(const std::string& name) { return waitForPidFile(folder_ / (name + ".pid")); }
  // Runs what the workers have posted so far.
  void runPosted() {
    bool reached = false;
    mainLoop_.post([&] { reached = true; });
    mainLoop_.runUntil([&] { return reached; });
  }

  TempFolder folder_;
  FixedClock clock_{0};
  Document document_{clock_};
  DateFormatter formatter_{"yyyy-MM-dd HH:mm:ss", "UTC"};
  // Declared before the queue, whose workers post to it, so that it outlives them.
  SimpleMainLoop mainLoop_;
  OperationQueue queue_{Document::kMaxConcurrentOperations};
  LogFetch fetch_{queue_, mainLoop_};
};

// A tool that fails with its complaint is a window test; one that cannot start is here.
TEST_F(LogRunner, AToolThatCannotStartGivesTheAlertAndChangesNothing) {
  fetchedBefore();
  const LogShowCompletion missing = complete(runLogShow(folder_ / "no-such-log", {}));
  ASSERT_TRUE(missing.alertText.has_value());
  EXPECT_TRUE(missing.alertText->starts_with("log command could not be started: "));
  EXPECT_NE(missing.alertText->find("No such file or directory"), std::string::npos);
  EXPECT_FALSE(missing.redraw);
  EXPECT_EQ(document_.theJSONDictionaries->size(), 1u);
}

TEST_F(LogRunner, AToolEndedByASignalReportsTheSignal) {
  const LogShowCompletion done = complete(runLogShow(tool("killed", "kill -TERM $$"), {}));
  EXPECT_EQ(done.alertText, "log command returned error number 15");
}

TEST_F(LogRunner, ALongComplaintShowsItsFirstLinesAndCountsTheRest) {
  const auto many = tool("many", "seq 5000 | sed 's/^/log: error /' >&2; exit 1");
  LogShowCompletion done = complete(runLogShow(many, {}));
  ASSERT_TRUE(done.alertText.has_value());
  const std::string& text = *done.alertText;
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2 + 20);
  EXPECT_TRUE(text.starts_with("log command returned error number 1\n\nlog: error 1\n"));
  EXPECT_TRUE(text.ends_with("\nlog: error 20\n\u2026 and 4980 more lines")) << text;

  const auto wide =
      tool("wide", "head -c 5000 /dev/zero | tr '\\0' x >&2; echo >&2; echo last >&2; exit 1");
  done = complete(runLogShow(wide, {}));
  EXPECT_EQ(done.alertText,
            "log command returned error number 1\n\n" + std::string(300, 'x') + "\u2026\nlast");
}

TEST_F(LogRunner, OutputThatDoesNotDecodeEmptiesTheEntriesOnly) {
  fetchedBefore();
  for (const char* body : {"exit 0", "echo 'log: no entries found'", "echo '{\"a\" : 1}'"}) {
    document_.displayName = "kept";
    const LogShowCompletion done = complete(runLogShow(tool("quiet", body), {}));
    EXPECT_FALSE(done.alertText.has_value());
    EXPECT_EQ(done.theNowStr, "2020-05-01 09:40:05");
    EXPECT_FALSE(done.redraw) << body;
    // Why travels on to whoever shows it.
    EXPECT_TRUE(done.decodeError.has_value()) << body;
    EXPECT_TRUE(document_.theJSONDictionaries->empty());
    EXPECT_EQ(document_.displayName, "kept");
    fetchedBefore();
  }
}

TEST_F(LogRunner, OutputKnownNotToDecodeEndsTheToolAtOnce) {
  const auto noisy =
      tool("noisy", "echo $$ > " + pidFile("noisy") + "; echo 'log: no entries'; exec sleep 1000");
  LogShowOutput out = runLogShow(noisy, {});
  EXPECT_TRUE(out.endedEarly);
  EXPECT_TRUE(processGone(pidOf("noisy")));
  const LogShowCompletion done = complete(std::move(out));
  EXPECT_FALSE(done.alertText.has_value());  // the status is the ending's, not the tool's
  ASSERT_TRUE(done.decodeError.has_value());
  EXPECT_EQ(done.decodeError->kind, ErrorKind::parse);
}

TEST_F(LogRunner, EntriesAreStyledAndChartedUnlessTheChartIsOffOrThereAreNone) {
  const auto sample = tool("sample", "cat '" KAVOR_TEST_DATA "/cli/worked_example.json'");
  LogShowCompletion done = complete(runLogShow(sample, {}));
  EXPECT_EQ(done.styled.text.text, "09:41:07.123456 com.apple.xpc hello \n");
  EXPECT_EQ(paragraphCount(done.styled.text.text), 1u);
  EXPECT_TRUE(done.queueChart);
  done = complete(runLogShow(sample, {}), true);
  EXPECT_FALSE(done.queueChart);

  done = complete(runLogShow(tool("empty", "echo '[]'"), {}));
  EXPECT_TRUE(done.redraw);
  EXPECT_EQ(done.displayName, "Kavor_2020-05-01 09:40:00");
  EXPECT_EQ(document_.displayName, done.displayName);
  EXPECT_EQ(paragraphCount(done.styled.text.text), 0u);
  EXPECT_FALSE(done.queueChart);
}

TEST_F(LogRunner, ArgumentsReachTheToolUnchanged) {
  const auto echoing = tool("args", "printf '[{\"eventMessage\" : \"%s|%s|%s\"}]' \"$@\"");
  const std::vector<std::string> args = {"--predicate", "eventMessage CONTAINS[c] 'it''s'",
                                         "/path/with space/x.logarchive"};
  complete(runLogShow(echoing, args));
  ASSERT_EQ(document_.theJSONDictionaries->size(), 1u);
  EXPECT_EQ(document_.theJSONDictionaries->value(0, EntryKey::eventMessage).text(),
            "--predicate|eventMessage CONTAINS[c] 'it''s'|/path/with space/x.logarchive");
}

TEST_F(LogRunner, FourRunsAtOnceEachDeliverTheirOwn) {
  const auto slow = tool("slow", "sleep 0.3; printf '[{\"eventMessage\" : \"%s\"}]' \"$1\"");
  std::vector<std::string> delivered;
  for (int i = 0; i < 4; ++i)
    fetch_.start(slow, {"run " + std::to_string(i)}, [&](LogShowOutput&& out) {
      complete(std::move(out));
      delivered.emplace_back(
          document_.theJSONDictionaries->value(0, EntryKey::eventMessage).text());
    });
  EXPECT_EQ(fetch_.runsInFlight(), 4u);
  mainLoop_.runUntil([&] { return delivered.size() == 4; });
  EXPECT_EQ(fetch_.runsInFlight(), 0u);
  std::sort(delivered.begin(), delivered.end());
  EXPECT_EQ(delivered, (std::vector<std::string>{"run 0", "run 1", "run 2", "run 3"}));
}

TEST_F(LogRunner, CancellingEndsTheToolsAndDropsTheirRuns) {
  bool completed = false;
  // One with a child of its own, one that ignores the request to end and is killed after the
  // grace. Each says its number last, once all is set.
  const auto parent = tool("parent", "sleep 1000 & echo $! > " + pidFile("child") + "; echo $$ > " +
                                         pidFile("parent") + "; wait");
  const auto stubborn =
      tool("stubborn", "trap '' TERM; echo $$ > " + pidFile("stubborn") + "; exec sleep 1000");
  for (const auto& endless : {parent, stubborn})
    fetch_.start(endless, {}, [&](LogShowOutput&&) { completed = true; });
  const pid_t running[] = {pidOf("parent"), pidOf("stubborn"), pidOf("child")};
  for (const pid_t pid : running)
    ASSERT_GT(pid, 0);
  fetch_.cancel();
  EXPECT_EQ(fetch_.runsInFlight(), 0u);
  queue_.waitUntilAllOperationsAreFinished();  // the runs have returned
  EXPECT_TRUE(processGone(running[0]));
  EXPECT_TRUE(processGone(running[1]));
  // Not the tool's own child, so reaped by whoever adopted it.
  EXPECT_TRUE(testing_support::waitUntilEnded(running[2]));
  runPosted();
  EXPECT_FALSE(completed);
}

TEST_F(LogRunner, AResultThatArrivesForAFetchGoneIsDropped) {
  bool completed = false;
  auto fetch = std::make_unique<LogFetch>(queue_, mainLoop_);
  fetch->start(tool("quick", "echo '[]'"), {}, [&](LogShowOutput&&) { completed = true; });
  queue_.waitUntilAllOperationsAreFinished();  // its result is posted
  fetch.reset();
  runPosted();
  EXPECT_FALSE(completed);
}

TEST_F(LogRunner, RunningOutOfMemoryIsAnAlertNotAnEnd) {
  fetchedBefore();
  std::optional<LogShowCompletion> done;
  fetch_.start([](std::stop_token) -> LogShowOutput { throw std::bad_alloc(); },
               [&](LogShowOutput&& out) { done = complete(std::move(out)); });
  mainLoop_.runUntil([&] { return done.has_value(); });
  EXPECT_EQ(done->alertText, memoryRefusedError().message());
  EXPECT_EQ(document_.theJSONDictionaries->size(), 1u);

  // An endless output passes the budget: the tool is ended and the old results stay.
  done.reset();
  LogFetch budgeted(queue_, mainLoop_, {.memoryBudget = size_t{1} << 20});
  budgeted.start(tool("endless", "echo '['; yes '{\"eventMessage\" : \"again\"},'"), {},
                 [&](LogShowOutput&& out) { done = complete(std::move(out)); });
  mainLoop_.runUntil([&] { return done.has_value(); });
  ASSERT_TRUE(done->alertText.has_value());
  EXPECT_TRUE(done->alertText->starts_with(kOutputTooLarge)) << *done->alertText;
  EXPECT_EQ(document_.theJSONDictionaries->size(), 1u);
}

TEST(ParagraphCount, CountsAsATextViewDoes) {
  EXPECT_EQ(paragraphCount(""), 0u);
  EXPECT_EQ(paragraphCount("one"), 1u);
  EXPECT_EQ(paragraphCount("one\n"), 1u);
  EXPECT_EQ(paragraphCount("one\ntwo"), 2u);
  EXPECT_EQ(paragraphCount("\n\n"), 2u);
  EXPECT_EQ(paragraphCount("a\r\nb\rc\u2029d"), 4u);
  EXPECT_EQ(paragraphCount("dash \u2014 and \u2028 line"), 1u);
}

}  // namespace
}  // namespace kavor
