// A regular-expression filter within its time budget: the clock is the test's, so the pass ends
// at the same place on any machine.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "engine/core/entry_decoder.h"
#include "engine/query/entry_styler.h"

namespace kavor {
namespace {

using std::chrono::seconds;

// A clock that moves one second each time it is read.
FilterBudget budgetOf(seconds total) {
  auto readings = std::make_shared<int64_t>(0);
  return {total, [readings] { return seconds((*readings)++); }};
}

// A clock that never moves: only ICU's own limit on each match applies.
FilterBudget unlimited() {
  return {seconds(1), [] { return seconds(0); }};
}

// Entries whose messages are the given texts.
EntryList messages(const std::vector<std::string>& texts) {
  std::string json;
  for (const std::string& text : texts)
    json += (json.empty() ? "[" : ",") + std::string(R"({"eventMessage" : ")") + text + "\"}";
  auto list = decodeEntries(json + "]");
  EXPECT_TRUE(list.ok());
  return list ? std::move(*list) : EntryList{};
}

StyledEntries styled(const EntryList& list, std::string_view expression, FilterBudget budget) {
  StylerInput input;
  input.entries = &list;
  input.styleText = "10";
  input.filter = FilterChoice::row("*slow", std::string(expression));
  input.filterBudget = std::move(budget);
  return styleEntries(input);
}

// What a pass shows, whether it stopped early, and how many messages it left undecided.
std::tuple<std::string, bool, size_t> outcome(const StyledEntries& out) {
  return {out.text.text, out.filterStopped, out.undecidedMessages};
}

const std::string kHopeless = std::string(30, 'a') + "b";  // (a+)+$ backtracks without end

TEST(FilterBudget, SpentBudgetEndsThePassWithWhatMatchedSoFar) {
  // Every third message does not match; the budget is read every few matches.
  const size_t n = MatchTimer::kMatchesPerReading * 20;
  std::vector<std::string> texts;
  for (size_t i = 0; i < n; ++i)
    texts.push_back((i % 3 ? "m" : "x") + std::to_string(i));
  const EntryList list = messages(texts);
  const StyledEntries whole = styled(list, "m\\d", unlimited());
  const std::string& all = whole.text.text;
  EXPECT_EQ(static_cast<size_t>(std::count(all.begin(), all.end(), '\n')), n - (n + 2) / 3);
  EXPECT_FALSE(whole.filterStopped || whole.notice);

  const StyledEntries cut = styled(list, "m\\d", budgetOf(seconds(5)));
  EXPECT_TRUE(cut.filterStopped);
  EXPECT_FALSE(cut.text.text.empty());
  EXPECT_LT(cut.text.text.size(), all.size());
  EXPECT_TRUE(all.starts_with(cut.text.text)) << cut.text.text;
  EXPECT_EQ(cut.notice,
            "The filter's regular expression is too slow: showing the entries "
            "matched in the first 5 s.");
  // The count label still counts what was fetched.
  EXPECT_EQ(cut.entryCount, "(" + std::to_string(n) + ")");
}

TEST(FilterBudget, HopelessMatchesAreUndecidedAndSaidSo) {
  const EntryList list = messages({kHopeless, "aaa", kHopeless, "aab"});
  // ICU gives up on each hopeless message after its own limit; the pass goes on.
  const StyledEntries out = styled(list, "(a+)+$", unlimited());
  EXPECT_EQ(outcome(out), std::make_tuple("aaa \n", false, size_t{2}));
  EXPECT_EQ(out.notice,
            "The filter's regular expression is too slow for some messages: "
            "2 entries are left out.");
  // A budget smaller than one hopeless match cuts it short and ends the pass there.
  const StyledEntries cut = styled(list, "(a+)+$", budgetOf(seconds(50)));
  EXPECT_EQ(outcome(cut), std::make_tuple("", true, size_t{1}));
  EXPECT_EQ(cut.notice,
            "The filter's regular expression is too slow: showing the entries "
            "matched in the first 50 s.");
}

TEST(FilterBudget, OnlyFewEntriesWithoutAnExpressionStyleQuickly) {
  const EntryList list = messages(std::vector<std::string>(kQuickStyledEntries + 1, "m"));
  StylerInput input;
  input.entries = &list;
  EXPECT_TRUE(stylesQuickly(input));  // the limit bounds the entries styled
  input.filter = FilterChoice::row("*any", "m");
  EXPECT_FALSE(stylesQuickly(input));
  input.filter = FilterChoice::typed("m");
  EXPECT_TRUE(stylesQuickly(input));
  input.limitEntries = false;
  EXPECT_FALSE(stylesQuickly(input));
}

}  // namespace
}  // namespace kavor
