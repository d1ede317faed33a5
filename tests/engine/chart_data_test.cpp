#include "engine/document/chart_data.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "engine/core/date_format.h"
#include "engine/core/entry_decoder.h"

namespace kavor {
namespace {

// 2020-05-01 09:41:07 +0100, the usual start of the entries below.
constexpr double kStart = 610015267.0;

EntryList decode(std::string_view json) {
  Expected<EntryList> list = decodeEntries(json);
  EXPECT_TRUE(list) << list.error().message();
  return list ? std::move(*list) : EntryList{};
}

// The per-entry names as the document holds them after indexing.
std::vector<std::string> entryNames(const Document& doc) {
  std::vector<std::string> names;
  for (const int64_t index : doc.logSSystIndexes)
    names.push_back(doc.popSSystTypes.at(static_cast<size_t>(index)));
  return names;
}

struct ChartDocument {
  FixedClock clock{kStart};
  Document doc{clock};

  explicit ChartDocument(double start = kStart, double end = kStart + 60) {
    doc.startDate = start;
    doc.endDate = end;
  }
  bool collect(std::string_view json) {
    doc.theJSONDictionaries = std::make_shared<const EntryList>(decode(json));
    const uint64_t collection = beginChartCollection(doc);
    return indexSubsystems(
        doc, collectChartEntries(*doc.theJSONDictionaries, doc.startDate, collection), "UTC");
  }
};

TEST(ChartData, NamesAndTheirOrder) {
  ChartDocument chart;
  ASSERT_TRUE(chart.collect(R"([
    {"subsystem" : "small", "processID" : 5},
    {"subsystem" : "com.apple.sandbox", "processID" : 0},
    {"subsystem" : ""},
    {"processID" : 12},
    42,
    {"subsystem" : "Capital"},
    {"subsystem" : "émoi", "processID" : "0"},
    {"subsystem" : "zeta", "processID" : 0.0},
    {"subsystem" : 7},
    {"subsystem" : "small"}
  ])"));
  const Document& doc = chart.doc;
  // Process 0 wins over a subsystem; only an integer 0 is process 0.
  EXPECT_EQ(entryNames(doc),
            (std::vector<std::string>{"small", "*kernel*", "[nil]", "[nil]", "[nil]", "Capital",
                                      "émoi", "zeta", "[nil]", "small"}));
  // Code point order: é (U+00E9) after every ASCII letter.
  EXPECT_EQ(doc.popSSystTypes,
            (std::vector<std::string>{"*kernel*", "Capital", "[nil]", "small", "zeta", "émoi"}));
  EXPECT_EQ(doc.logSSystTypes.size(), doc.popSSystTypes.size());
  ASSERT_EQ(doc.logSubsys.size(), 10u);
  for (size_t i = 0; i < doc.logSubsys.size(); ++i)
    EXPECT_EQ(doc.logSSystTypes[doc.logSubsys[i]], entryNames(doc)[i]);
  EXPECT_EQ(doc.logTimes, std::vector<double>(10, 0.0));
}

TEST(ChartData, EntryTimes) {
  ChartDocument chart;
  ASSERT_TRUE(chart.collect(R"([
    {"timestamp" : "2020-05-01 09:41:08.250999+0100"},
    {"timestamp" : "2020-05-01 08:41:09.5+00:00"},
    {"timestamp" : "2020-05-01 08:41:10.75Z"},
    {"timestamp" : "2020-05-01 09:41:06.000000+0100"},
    {"timestamp" : "2020-5-01 08:41:09.5Z"},
    {"timestamp" : "2020-5-01 8:41:09.5Z"},
    {"timestamp" : "2020-05-01 09:41:09.000000+0100x"},
    {"timestamp" : 610015270},
    {"timestamp" : "2020-02-30 09:41:09.000000+0100"},
    {"eventMessage" : "no time"}
  ])"));
  // Microseconds beyond the millisecond are dropped, as the platform's formatter does.
  const std::vector<double> expected = {1.25, 2.5, 3.75, 0, 2.5, 0, 0, 0, 0, 0};
  ASSERT_EQ(chart.doc.logTimes.size(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i)
    EXPECT_NEAR(chart.doc.logTimes[i], expected[i], 1e-6) << "entry " << i;
  // Before the start, 20 characters even where the formatter reads them (as it does the
  // 21 before), trailing text, an impossible date, a number, none: all time 0.
  EXPECT_TRUE(DateFormatter("yyyy-MM-dd HH:mm:ss.SSSSSSZZZZZ").parse("2020-5-01 8:41:09.5Z"));
}

TEST(ChartData, LaterCollectionWins) {
  ChartDocument chart;
  ASSERT_TRUE(chart.collect(R"([{"subsystem" : "first"}, {"subsystem" : "first"}])"));
  ASSERT_TRUE(chart.collect(R"([{"subsystem" : "second"}])"));
  EXPECT_EQ(chart.doc.popSSystTypes, std::vector<std::string>{"second"});
  EXPECT_EQ(chart.doc.logTimes.size(), 1u);
  EXPECT_EQ(chart.doc.logSSystCount, 1);

  // Two collections under way: the one begun first ends last and is dropped.
  Document& doc = chart.doc;
  const EntryList older = decode(R"([{"subsystem" : "older"}])");
  const EntryList newer = decode(R"([{"subsystem" : "newer"}, {}])");
  const uint64_t first = beginChartCollection(doc);
  const uint64_t second = beginChartCollection(doc);
  EXPECT_TRUE(indexSubsystems(doc, collectChartEntries(newer, doc.startDate, second)));
  EXPECT_FALSE(indexSubsystems(doc, collectChartEntries(older, doc.startDate, first)));
  EXPECT_EQ(doc.popSSystTypes, (std::vector<std::string>{"[nil]", "newer"}));
  EXPECT_EQ(doc.logTimes.size(), 2u);
}

// The per-entry arrays of a large fetch go with it: a smaller one after it keeps only its own room.
TEST(ChartData, LaterSmallerCollectionKeepsNoRoomOfTheLarger) {
  ChartDocument chart;
  std::string many = "[{}";
  for (int i = 1; i < 4096; ++i)
    many += ",{}";
  ASSERT_TRUE(chart.collect(many + "]"));
  ASSERT_TRUE(chart.collect(R"([{"subsystem" : "small"}, {}])"));
  const Document& doc = chart.doc;
  EXPECT_LE(doc.logTimes.capacity(), 2u);
  EXPECT_LE(doc.logSubsys.capacity(), 2u);
  EXPECT_LE(doc.logSSystIndexes.capacity(), 2u);
}

// Entries at given times, each with the subsystem "a" or "b" by turns.
void setEntries(Document& doc, const std::vector<double>& times) {
  doc.logTimes = times;
  doc.popSSystTypes = {"a", "b"};
  doc.logSSystIndexes.clear();
  for (size_t i = 0; i < times.size(); ++i)
    doc.logSSystIndexes.push_back(static_cast<int64_t>(i % 2));
}

TEST(ChartData, BinEdgesAndWindowsOfNoWidth) {
  ChartDocument chart;
  Document& doc = chart.doc;
  // 50 bins over 60 s: 1.2 s each; past the end and without a time are kept at the edges.
  setEntries(doc, {0, 1.19, 1.2, 30, 59.99, 60, 1e9});
  binChartData(doc, 0, "UTC");
  ASSERT_EQ(doc.logBarValue.size(), 50u);
  EXPECT_EQ(doc.logBarValue[0], 2);
  EXPECT_EQ(doc.logBarValue[1], 1);
  EXPECT_EQ(doc.logBarValue[25], 1);
  EXPECT_EQ(doc.logBarValue[49], 3);
  EXPECT_EQ(doc.logSSystCount, 7);
  EXPECT_EQ(std::accumulate(doc.logBarValue.begin(), doc.logBarValue.end(), int64_t{0}), 7);

  // An end before the start is the same window's length.
  std::swap(doc.startDate, doc.endDate);
  doc.startDate -= 120;
  binChartData(doc, 0, "UTC");
  EXPECT_EQ(doc.logBarValue[1], 1);
  EXPECT_EQ(doc.logBarValue[49], 3);

  // No width to divide by: entries at the start in the first bin, every later one in the last.
  doc.endDate = doc.startDate;
  setEntries(doc, {0, 0.001, 5});
  binChartData(doc, 0, "UTC");
  EXPECT_EQ(doc.logBarValue.front(), 1);
  EXPECT_EQ(doc.logBarValue.back(), 2);
  EXPECT_EQ(doc.logBarDate.back(), doc.startDate);
}

TEST(ChartData, SelectionLeavesTheNamesAlone) {
  ChartDocument chart;
  Document& doc = chart.doc;
  setEntries(doc, {0, 10, 20, 30, 40, 50});
  const auto popBefore = doc.popSSystTypes;
  const auto indexesBefore = doc.logSSystIndexes;

  binChartData(doc, 2, "UTC");  // "b": the entries at 10, 30, 50
  EXPECT_EQ(doc.logSSystCount, 3);
  EXPECT_EQ(doc.logBarValue[8], 1);  // 10 / 1.2
  EXPECT_EQ(doc.logBarValue[0], 0);

  for (const int64_t outside : {3, -1}) {
    binChartData(doc, outside, "UTC");
    EXPECT_EQ(doc.logSSystCount, 0) << outside;
  }
  EXPECT_EQ(doc.popSSystTypes, popBefore);
  EXPECT_EQ(doc.logSSystIndexes, indexesBefore);
}

TEST(ChartData, Labels) {
  // 2020-11-16 10:20:30.5 UTC.
  ChartDocument chart(627214830.5, 627214830.5 + 60);
  setEntries(chart.doc, std::vector<double>(17, 0.5));
  binChartData(chart.doc, 0, "UTC");
  EXPECT_EQ(chart.doc.logBarLabel[0], "2020-11-16\n10:20:30.500\n17");
  EXPECT_EQ(chart.doc.logBarLabel[1], "2020-11-16\n10:20:31.700\n0");
  EXPECT_EQ(chart.doc.logBarDate[1], 627214830.5 + 1.2);
  binChartData(chart.doc, 0, "Europe/Paris");
  EXPECT_EQ(chart.doc.logBarLabel[0], "2020-11-16\n11:20:30.500\n17");
}

// The hand-written reader agrees with the formatter on the log tool's shape, accepting and
// refusing the same texts and giving the same double, whatever the formatter's own zone.
TEST(ChartData, ToolTimestampsReadAsTheFormatterDoes) {
  const DateFormatter formatter("yyyy-MM-dd HH:mm:ss.SSSSSSZZZZZ", "America/New_York");
  std::mt19937 random(7);
  const auto upTo = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  int accepted = 0;
  for (int i = 0; i < 4000; ++i) {
    // Mostly valid fields, sometimes one past its range.
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%06d%c%02d%02d",
                  1600 + upTo(8400), 1 + upTo(i % 7 ? 12 : 13), 1 + upTo(i % 5 ? 28 : 31),
                  upTo(i % 11 ? 24 : 25), upTo(60), upTo(i % 13 ? 60 : 61), upTo(1000000),
                  upTo(2) ? '+' : '-', upTo(i % 17 ? 24 : 25), upTo(i % 19 ? 60 : 61));
    const auto fast = parseToolTimestamp(text);
    EXPECT_EQ(fast, formatter.parse(text)) << text;
    accepted += fast.has_value();
  }
  EXPECT_GT(accepted, 3000);
  for (const char* leap : {"2000-02-29 12:00:00.000000+0000", "1900-02-29 12:00:00.000000+0000",
                           "2024-02-29 23:59:59.999999-2359"})
    EXPECT_EQ(parseToolTimestamp(leap), formatter.parse(leap)) << leap;

  // Other shapes are left to the formatter.
  for (const char* other : {"2020-05-01 09:41:07.123+0100", "2020-05-01 09:41:07.123456+01:00",
                            "2020-05-01 09:41:07.123456Z", "1582-10-10 00:00:00.000000+0000",
                            "2020-05-01 09:41:07.123456+0100 ", "2020-05-01T09:41:07.123456+0100"})
    EXPECT_FALSE(parseToolTimestamp(other).has_value()) << other;
}

}  // namespace
}  // namespace kavor
