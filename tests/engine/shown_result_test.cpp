#include "engine/document/shown_result.h"

#include <gtest/gtest.h>

#include "engine/core/entry_decoder.h"
#include "engine/document/entry_details.h"
#include "engine/query/log_runner.h"

namespace kavor {
namespace {

// The label's count and the view's lines come from one index; they must agree with the text
// view's own paragraph rule on every kind of break.
TEST(ShownResult, LinesFollowEveryBreakAndCountAsParagraphs) {
  for (std::string text :
       {"", "a", "a\n", "a\n\n", "a\r\nb", "a\rb\n", "a\xE2\x80\xA9z", "\xE2\x82\xAC\nb", "x\r"}) {
    const ShownResult shown(StyledText{text, {}});
    EXPECT_EQ(shown.paragraphCount(), paragraphCount(text)) << text;
    std::string joined;
    for (size_t i = 0; i < shown.lineCount(); ++i) {
      joined += shown.line(i);
      EXPECT_EQ(shown.lineOf(shown.lineStart(i)), i);
    }
    std::string bare = text;
    for (const std::string_view cut : {"\r\n", "\r", "\n", "\xE2\x80\xA9"})
      for (size_t at; (at = bare.find(cut)) != std::string::npos;)
        bare.erase(at, cut.size());
    EXPECT_EQ(joined, bare) << text;
  }
}

TEST(ShownResult, TrailersJoinTheLastBreakAndBelongToNoEntry) {
  ShownResult shown(StyledText{"one\ntwo\r", {{0, 3, TextColour::red}}}, {}, {{0, 7}, {4, 9}});
  // A search off the main thread holds the text as it was; the trailer goes to the result only.
  const std::shared_ptr<const StyledText> searched = shown.sharedStyled();
  shown.appendUnfonted("\nAt noon");
  EXPECT_EQ(searched->text, "one\ntwo\r");
  EXPECT_EQ(shown.text(), "one\ntwo\r\nAt noon");
  EXPECT_EQ(shown.lineCount(), 3u);  // CR then LF is one break
  EXPECT_EQ(shown.line(2), "At noon");
  EXPECT_EQ(shown.fontedLength(), 8u);
  EXPECT_EQ(shown.shownAt(5), std::optional<size_t>(1));
  EXPECT_EQ(shown.shownAt(2), std::optional<size_t>(0));
  EXPECT_EQ(shown.shownAt(10), std::nullopt);
  EXPECT_EQ(shown.runsIn(3, 8).size(), 0u);
  EXPECT_EQ(shown.runsIn(2, 8).size(), 1u);
}

// The detail pane opens nested values and keeps numbers exact.
TEST(EntryDetails, NestedValuesOpenAndIdsStayExact) {
  const auto list = decodeEntries(
      R"([{"traceID" : 18446744073709551615, "source" : {"file" : "c.c", "lines" : [3, 4]},
        "backtrace" : {"frames" : [{"imageOffset" : 1}]}}])");
  ASSERT_TRUE(list.ok());
  const std::vector<DetailRow> rows = entryDetails(*list, 0);
  const std::vector<DetailRow> expected = {{0, "traceID", "18446744073709551615"},
                                           {0, "source", ""},
                                           {1, "file", "c.c"},
                                           {1, "lines", ""},
                                           {2, "0", "3"},
                                           {2, "1", "4"},
                                           {0, "backtrace", ""},
                                           {1, "frames", ""},
                                           {2, "0", ""},
                                           {3, "imageOffset", "1"}};
  EXPECT_EQ(rows, expected);
}

}  // namespace
}  // namespace kavor
