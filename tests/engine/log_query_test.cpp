// The whole argument list for the usual forms of the query (a zero or positive period, the
// predicate rows "none" and typed "none", the live log) is checked by the kavor-cli query cases;
// these are its other windows, awkward texts and the form's fields.

#include "engine/query/log_query.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "engine/query/named_lists.h"

namespace kavor {
namespace {

using Args = std::vector<std::string>;

// 2020-05-01 10:00:00 in Paris (summer time, +0200).
constexpr double kBase = 610012800.0;

class LogQueryTest : public ::testing::Test {
 protected:
  const DateFormatter paris{kQueryDatePattern, "Europe/Paris"};

  QueryInput input(int64_t period, int64_t unit) const {
    QueryInput in;
    in.theTimePeriod = period;
    in.unitIndex = unit;
    in.baseDate = kBase;
    in.osVersion = 15;
    return in;
  }
};

TEST_F(LogQueryTest, TimeWindows) {
  struct Case {
    int64_t period;
    int64_t unit;
    double start;
    double end;
  };
  const Case cases[] = {
      {-2, 3, kBase - 2 * 86400, kBase},  // days
      {-5, -1, kBase - 5, kBase},         // no unit selected counts as seconds
      {1, 7, kBase, kBase + 86400},       // an index past "day" still multiplies as a day
      {-1000, 3, kBase - 1000 * 86400.0, kBase},
  };
  for (const Case& c : cases) {
    const LogQuery q = buildLogQuery(input(c.period, c.unit), paris);
    EXPECT_EQ(q.startDate, c.start) << c.period << " unit " << c.unit;
    EXPECT_EQ(q.endDate, c.end) << c.period << " unit " << c.unit;
  }
}

TEST_F(LogQueryTest, AwkwardTextsStayOneArgumentEach) {
  QueryInput in = input(-20, 0);
  const std::string predicate = "eventMessage CONTAINS[c] \"it's \\\"odd\\\"\"\nOR 1 = 1; rm -rf";
  in.predicate = predicate;
  in.source = sourceFromPath("/Volumes/My Disk/it's \"here\"/0000000000000001.tracev3");
  const Args args = buildLogQuery(in, paris).theFullCmdStr;
  ASSERT_GE(args.size(), 5u);
  EXPECT_EQ(Args(args.begin(), args.begin() + 5),
            (Args{"show", "--file", "/Volumes/My Disk/it's \"here\"/0000000000000001.tracev3",
                  "--predicate", predicate}));
}

TEST(PeriodFromText, ReadsClampsAndKeepsUnreadableText) {
  struct Case {
    const char* text;
    int64_t period;
    std::optional<std::string> writeBack;
  };
  const Case cases[] = {
      {"-20", -20, {}},       {"12.7", 12, {}},          {"-3.9", -3, {}},  // cut toward zero
      {"-0.5", 0, {}},        {" +7. ", 7, {}},          {".5", 0, {}},
      {"-1000", -1000, {}},   {"1000.9", 1000, {}},  // not clamped: the field keeps it
      {"5000", 1000, "1000"}, {"-1001", -1000, "-1000"}, {"99999999999999999999999", 1000, "1000"},
  };
  for (const Case& c : cases) {
    const PeriodFromText p = periodFromText(c.text);
    EXPECT_EQ(p.theTimePeriod, c.period) << '"' << c.text << '"';
    EXPECT_TRUE(p.readable) << '"' << c.text << '"';
    EXPECT_EQ(p.writeBack, c.writeBack) << '"' << c.text << '"';
  }
  for (const char* text : {"abc", "", "-", ".", "1e3", "1,000", "1.2.3", "12abc"}) {
    const PeriodFromText p = periodFromText(text);
    EXPECT_TRUE(p.theTimePeriod == -10 && !p.readable && !p.writeBack) << '"' << text << '"';
  }
}

TEST(PredicateFromBox, RowsAndTypedText) {
  const NamedList preds = {{"none", ""}, {"empty", ""}, {"word", "none"}, {"kernel", "pid = 0"}};
  ComboBoxModel box;
  for (const ListEntry& entry : preds)
    box.addItem(entry.name);

  box.selectItem(1);
  EXPECT_EQ(predicateFromBox(box, preds), std::nullopt);
  box.selectItem(2);  // a row whose text is "none"
  EXPECT_EQ(predicateFromBox(box, preds), std::nullopt);
  box.selectItem(3);
  EXPECT_EQ(predicateFromBox(box, preds), "pid = 0");

  box.typeText("");
  EXPECT_EQ(predicateFromBox(box, preds), std::nullopt);

  // A row the list does not reach has no text.
  box.addItem("stray");
  box.selectItem(4);
  EXPECT_EQ(predicateFromBox(box, preds), std::nullopt);
}

TEST(SourceFromPath, ExtensionDecidesTheKind) {
  const LogSource archive = sourceFromPath("/tmp/system_logs.logarchive/");
  EXPECT_EQ(archive.theSourcePath, "/tmp/system_logs.logarchive");
  EXPECT_TRUE(archive.theSourceLogarchive);
  EXPECT_FALSE(archive.theSourceFile);

  for (const char* path : {"/tmp/0000000000000001.tracev3", "/tmp/x.LOGARCHIVE", "/tmp/logarchive",
                           "/tmp/.logarchive", "/tmp/a.logarchive.zip"}) {
    const LogSource file = sourceFromPath(path);
    EXPECT_FALSE(file.theSourceLogarchive) << path;
    EXPECT_TRUE(file.theSourceFile) << path;
  }

  EXPECT_EQ(sourceWindowTitle("/tmp/system_logs.logarchive/"), "\U0001F4D5 system_logs.logarchive");
  EXPECT_EQ(sourceWindowTitle("a.tracev3"), "\U0001F4D5 a.tracev3");
}

}  // namespace
}  // namespace kavor
