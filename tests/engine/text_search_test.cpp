#include "engine/document/text_search.h"

#include <gtest/gtest.h>

namespace kavor {
namespace {

using Ranges = std::vector<TextRange>;

TextQuery plain(std::string text, bool matchCase = false) {
  return {std::move(text), matchCase, false, "en_US"};
}

TextQuery regex(std::string text, bool matchCase = true) {
  return {std::move(text), matchCase, true, "en_US"};
}

Ranges rangesOf(std::string_view text, const TextQuery& query) {
  auto found = findInText(text, query);
  EXPECT_TRUE(found.ok());
  return found ? found->ranges : Ranges{};
}

// Matches never overlap, in any mode: after a match the search goes on at its end.
TEST(TextSearch, MatchesGoLeftToRightWithoutOverlapping) {
  const Ranges twice{{0, 2}, {2, 4}};
  EXPECT_EQ(rangesOf("aaaa", plain("aa", true)), twice);
  EXPECT_EQ(rangesOf("aaaa", plain("AA")), twice);
  EXPECT_EQ(rangesOf("aaaa", regex("aa")), twice);
  EXPECT_EQ(rangesOf("aaa\naaa", plain("aa")), (Ranges{{0, 2}, {4, 6}}));
}

TEST(TextSearch, CaseMattersOnlyWhenAskedFor) {
  const std::string_view text = "Failed fail\nFAILED";
  EXPECT_EQ(rangesOf(text, plain("fail", true)), (Ranges{{7, 11}}));
  EXPECT_EQ(rangesOf(text, plain("fail")), (Ranges{{0, 4}, {7, 11}, {12, 16}}));
  EXPECT_EQ(rangesOf(text, regex("fail(ed)?", true)), (Ranges{{7, 11}}));
  EXPECT_EQ(rangesOf(text, regex("fail(ed)?", false)), (Ranges{{0, 6}, {7, 11}, {12, 18}}));
}

// Without case, letters fold fully and compare composed or not; the ranges are the text's own
// bytes, whole characters, wherever multi-byte characters come before them.
TEST(TextSearch, CaselessMatchesAreWholeCharactersInTheTextsBytes) {
  const std::string text =
      "\xC3\xBC STRASSE\n"          // ü STRASSE
      "Cafe\xCC\x81 caf\xC3\xA9\n"  // Cafe + combining acute, café
      "cafe";
  EXPECT_EQ(rangesOf(text, plain("stra\xC3\x9F"
                                 "e")),
            (Ranges{{3, 10}}));  // straße
  EXPECT_EQ(rangesOf(text, plain("CAF\xC3\x89")), (Ranges{{11, 17}, {18, 23}}));
  // "e" alone is not the first half of "é": only the plain cafe on the last line.
  EXPECT_EQ(rangesOf(text, plain("cafe")), (Ranges{{24, 28}}));
  EXPECT_EQ(rangesOf(text, plain("\xC3\xBC")), (Ranges{{0, 2}}));
  // An ASCII needle among other characters: those that fold to ASCII (ß, the Kelvin sign) take
  // part; a combining mark after a letter keeps the letter from ending a match.
  const std::string others =
      "\xE2\x86\x92 Stra\xC3\x9F"
      "e 5\xE2\x84\xAA OK stra\xC3\x9F"
      "e\xCC\x81";
  EXPECT_EQ(rangesOf(others, plain("STRASSE")), (Ranges{{4, 11}}));
  EXPECT_EQ(rangesOf(others, plain("5k ok")), (Ranges{{12, 19}}));
  EXPECT_EQ(rangesOf(others, plain("ok stra")), (Ranges{{17, 24}}));
}

// ^ and $ are each line's ends, whatever breaks it; empty matches are not kept.
TEST(TextSearch, RegularExpressionsMatchWithinLines) {
  EXPECT_EQ(rangesOf("ab\nbc\r\nb", regex("^b|b$")), (Ranges{{1, 2}, {3, 4}, {7, 8}}));
  EXPECT_EQ(rangesOf("ab\r\ncb", regex("b$")), (Ranges{{1, 2}, {5, 6}}));
  EXPECT_EQ(rangesOf("xax\nxx", regex("x*")), (Ranges{{0, 1}, {2, 3}, {4, 6}}));
  EXPECT_EQ(rangesOf("a\nb", regex("a\\sb")), Ranges{});
}

TEST(TextSearch, NothingIsFoundForAnEmptyTextAndABadPatternSaysWhy) {
  for (const TextQuery& query : {plain(""), plain("", true), regex("")}) {
    const auto found = findInText("abc", query);
    ASSERT_TRUE(found.ok());
    EXPECT_EQ(found->count.total, 0u);
    EXPECT_EQ(findStatusText(found->count, std::nullopt), "No matches");
  }
  const auto bad = findInText("abc", regex("fail(ed"));
  ASSERT_FALSE(bad.ok());
  EXPECT_EQ(findErrorText(bad.error()),
            "Not a regular expression: U_REGEX_MISMATCHED_PAREN at character 8");
}

// Past the cap matches are counted, not kept, and the status says how many are marked.
TEST(TextSearch, TheCapKeepsTheFirstMatchesAndCountsTheRest) {
  for (const TextQuery& query : {plain("a"), plain("a", true), regex("a")}) {
    const auto found = findInText("a a\na a", query, {}, 3);
    ASSERT_TRUE(found.ok());
    EXPECT_EQ(found->ranges, (Ranges{{0, 1}, {2, 3}, {4, 5}}));
    EXPECT_EQ(found->count.total, 4u);
    EXPECT_EQ(findStatusText(found->count, 1), "2 of 4 (the first 3 marked)");
  }
}

// Exact text is searched a window at a time: a match across two windows is found once.
TEST(TextSearch, ExactMatchesAcrossSearchWindowsAreFoundOnce) {
  std::string text(5'000'000, 'x');
  text.replace(0, 6, "needle");
  text.replace((size_t{1} << 22) - 3, 6, "needle");
  const auto found = findInText(text, plain("needle", true));
  ASSERT_TRUE(found.ok());
  EXPECT_EQ(found->ranges, (Ranges{{0, 6}, {(size_t{1} << 22) - 3, (size_t{1} << 22) + 3}}));
}

TEST(TextSearch, AStopRequestEndsEveryKindOfSearch) {
  std::string text;
  for (int i = 0; i < 20'000; ++i)
    text += "line with a word\n";
  std::stop_source stop;
  stop.request_stop();
  for (const TextQuery& query : {plain("word"), plain("word", true), regex("w.rd")}) {
    const auto found = findInText(text, query, stop.get_token());
    ASSERT_TRUE(found.ok());
    EXPECT_TRUE(found->stopped);
    EXPECT_LT(found->count.total, 20'000u);
  }
}

}  // namespace
}  // namespace kavor
