// A saved JSON log opened into a document, as a fetch's output would be.

#include "engine/query/log_file.h"

#include <gtest/gtest.h>

#include "engine/core/date_format.h"
#include "engine/query/log_query.h"
#include "platform/clock.h"
#include "tests/platform/temp_folder.h"

namespace kavor {
namespace {

using testing_support::TempFolder;
using testing_support::writeFile;

// Out of order, with an entry whose time cannot be read.
constexpr std::string_view kSaved = R"([
{"timestamp" : "2020-05-01 09:41:07.000000+0000", "eventType" : "logEvent", "eventMessage" : "b"},
{"timestamp" : "2020-05-01 09:40:00.500000+0000", "eventType" : "logEvent", "eventMessage" : "a"},
{"timestamp" : "soon", "eventType" : "logEvent", "eventMessage" : "c"}
])";
// 2020-05-01 09:40:00 UTC as an absolute time.
constexpr double kNineForty = 610018800.0;

TEST(LogFile, AFileBecomesTheDocumentsEntriesAndALaterFetchForgetsIt) {
  TempFolder folder;
  const auto path = folder / "sent by mail.json";
  writeFile(path, kSaved);
  // Pieces far smaller than the file: it is read in bites, not whole.
  OpenedLogFile opened = readLogFile(path, {}, {.pieceSize = 16, .storeInWorker = true});
  ASSERT_TRUE(opened.entries) << opened.entries.error().message();
  ASSERT_EQ(opened.entries->size(), 3u);
  ASSERT_TRUE(opened.span);
  EXPECT_EQ(opened.span->first, kNineForty + 0.5);
  EXPECT_EQ(opened.span->second, kNineForty + 67);

  const FixedClock clock(kNineForty + 3600);
  Document document(clock);
  const DateFormatter formatter(kQueryDatePattern, "UTC");
  StylerInput style;
  style.styleText = "10";
  const LogShowCompletion done = completeLogFileOpen(std::move(opened), document, style,
                                                     {formatter, 0, clock.now(), false, false});
  EXPECT_TRUE(done.redraw);
  EXPECT_EQ(done.displayName, "sent by mail.json");
  EXPECT_EQ(done.theNowStr, "2020-05-01 10:40:00");
  EXPECT_EQ(done.styled.text.text, "b \na \nc \n");
  EXPECT_TRUE(done.queueChart);
  EXPECT_EQ(document.sourceFile, path);
  EXPECT_EQ(document.startDate, kNineForty + 0.5);
  EXPECT_EQ(document.endDate, kNineForty + 67);

  // The window then fetches: its entries no longer come from the file.
  LogShowOutput fetched;
  fetched.entries = decodeEntries("[]");
  (void)completeLogShow(std::move(fetched), document, style,
                        {formatter, kNineForty, clock.now(), false, false});
  EXPECT_FALSE(document.sourceFile);
}

TEST(LogFile, ABadFileSaysWhatIsWrongAndWhere) {
  TempFolder folder;
  const auto message = [&](std::string_view name, std::string_view bytes) {
    const auto path = folder / name;
    writeFile(path, bytes);
    const OpenedLogFile opened = readLogFile(path);
    return opened.entries ? std::string("opened") : opened.entries.error().message();
  };
  const std::string at = folder.path().string() + "/";
  EXPECT_EQ(message("cut.json", kSaved.substr(0, 150)),
            at + "cut.json: the JSON array is not closed: the output was cut short after byte 150");
  EXPECT_EQ(message("object.json", R"({"eventMessage" : "a"})"),
            at + "object.json: the output is not a JSON array at byte 1");
  EXPECT_EQ(message("latin1.json", "[{\"eventMessage\" : \"caf\xE9\"}]"),
            at + "latin1.json: the output is not valid JSON: The input is not valid UTF-8 in bytes "
                 "2 to 27");
  EXPECT_EQ(message("empty array.json", "[]"), "opened");
  EXPECT_EQ(readLogFile(folder / "gone.json").entries.error().kind, ErrorKind::notFound);

  EXPECT_TRUE(isJsonLogName("/a/B.JSON"));
  EXPECT_FALSE(isJsonLogName("/a/b.jsonl"));
  EXPECT_FALSE(isJsonLogName("/a/json"));
}

}  // namespace
}  // namespace kavor
