#include "engine/query/log_runner.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

#include "platform/clock.h"
#include "platform/main_thread.h"
#include "platform/operation_queue.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

using testing_support::TempFolder;

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

  TempFolder folder_;
  FixedClock clock_{0};
  Document document_{clock_};
  DateFormatter formatter_{"yyyy-MM-dd HH:mm:ss", "UTC"};
};

TEST_F(LogRunner, AFailingToolGivesTheAlertAndChangesNothing) {
  fetchedBefore();
  const auto failing = tool("bad", "echo 'log: bad predicate' >&2; echo '[]'; exit 64");
  const LogShowCompletion done = complete(runLogShow(failing, {}));
  EXPECT_EQ(done.alertText, "log command returned error number 64\n\nlog: bad predicate");
  EXPECT_FALSE(done.redraw);
  EXPECT_EQ(done.theNowStr, "");
  EXPECT_EQ(document_.theJSONDictionaries->size(), 1u);

  const LogShowCompletion missing = complete(runLogShow(folder_ / "no-such-log", {}));
  ASSERT_TRUE(missing.alertText.has_value());
  EXPECT_TRUE(missing.alertText->starts_with("log command could not be started: "));
  EXPECT_NE(missing.alertText->find("No such file or directory"), std::string::npos);
  EXPECT_EQ(document_.theJSONDictionaries->size(), 1u);
}

TEST_F(LogRunner, OutputThatDoesNotDecodeEmptiesTheEntriesOnly) {
  fetchedBefore();
  for (const char* body : {"exit 0", "echo 'log: no entries found'", "echo '{\"a\" : 1}'"}) {
    document_.displayName = "kept";
    const LogShowCompletion done = complete(runLogShow(tool("quiet", body), {}));
    EXPECT_FALSE(done.alertText.has_value());
    EXPECT_EQ(done.theNowStr, "2020-05-01 09:40:05");
    EXPECT_FALSE(done.redraw) << body;
    EXPECT_TRUE(document_.theJSONDictionaries->empty());
    EXPECT_EQ(document_.displayName, "kept");
    fetchedBefore();
  }
}

TEST_F(LogRunner, AnEmptyArrayClearsTheViewWithoutAChart) {
  fetchedBefore();
  const LogShowCompletion done = complete(runLogShow(tool("empty", "echo '[]'"), {}));
  EXPECT_TRUE(done.redraw);
  EXPECT_EQ(done.displayName, "Kavor_2020-05-01 09:40:00");
  EXPECT_EQ(document_.displayName, done.displayName);
  EXPECT_EQ(done.styled.text.text, "");
  EXPECT_EQ(done.lineCount, 0u);
  EXPECT_EQ(done.styled.entryCount, "(0)");
  EXPECT_FALSE(done.queueChart);
}

TEST_F(LogRunner, EntriesAreStyledAndChartedUnlessTheChartIsOff) {
  const auto sample = tool("sample", "cat '" KAVOR_TEST_DATA "/cli/worked_example.json'");
  LogShowCompletion done = complete(runLogShow(sample, {}));
  EXPECT_EQ(done.styled.text.text, "09:41:07.123456 com.apple.xpc hello \n");
  EXPECT_EQ(done.lineCount, 1u);
  EXPECT_TRUE(done.queueChart);
  done = complete(runLogShow(sample, {}), true);
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
  OperationQueue processingQueue(Document::kMaxConcurrentOperations);
  SimpleMainLoop mainLoop;
  std::vector<std::string> delivered;
  for (int i = 0; i < 4; ++i) {
    processingQueue.addOperation([&, i] {
      auto out = std::make_shared<LogShowOutput>(runLogShow(slow, {"run " + std::to_string(i)}));
      mainLoop.post([&, out] {
        complete(std::move(*out));
        delivered.emplace_back(
            document_.theJSONDictionaries->value(0, EntryKey::eventMessage).text());
      });
    });
  }
  mainLoop.runUntil([&] { return delivered.size() == 4; });
  std::sort(delivered.begin(), delivered.end());
  EXPECT_EQ(delivered, (std::vector<std::string>{"run 0", "run 1", "run 2", "run 3"}));
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
