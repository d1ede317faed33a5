#include "tools/log/live_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>

#include "engine/query/settings_texts.h"
#include "tests/platform/temp_folder.h"
#include "tools/log/container.h"
#include "tools/log/predicate.h"
#include "tools/log/time_window.h"

namespace kavor::standin {
namespace {

constexpr int64_t kSecond = 1000000;
// 2020-11-16 10:00:00 UTC.
constexpr int64_t kBase = int64_t{1605520800} * kSecond;

bool sameEntry(const LogEntry& a, const LogEntry& b) {
  return a.timeMicros == b.timeMicros && a.traceID == b.traceID &&
         a.eventMessage == b.eventMessage && a.subsystem == b.subsystem &&
         a.messageType == b.messageType && a.eventType == b.eventType &&
         a.signpostName == b.signpostName && a.processID == b.processID &&
         a.hasBacktrace == b.hasBacktrace;
}

TEST(LiveLog, SameWindowSameEntriesWhateverTheCut) {
  const auto whole = liveEntries(kBase, kBase + 90 * kSecond);
  auto pieces = liveEntries(kBase, kBase + 17 * kSecond + 123);
  const auto rest = liveEntries(kBase + 17 * kSecond + 123, kBase + 90 * kSecond);
  pieces.insert(pieces.end(), rest.begin(), rest.end());
  ASSERT_EQ(whole.size(), pieces.size());
  for (size_t i = 0; i < whole.size(); ++i)
    ASSERT_TRUE(sameEntry(whole[i], pieces[i])) << i;
  for (size_t i = 1; i < whole.size(); ++i)
    ASSERT_LT(whole[i - 1].timeMicros, whole[i].timeMicros);
  // Another window is another log.
  EXPECT_FALSE(sameEntry(whole.front(), liveEntries(kBase + kSecond, kBase + 2 * kSecond).front()));
}

TEST(LiveLog, ThirtyASecondInBurstsOfEveryKind) {
  const auto entries = liveEntries(kBase, kBase + 600 * kSecond);
  const double perSecond = static_cast<double>(entries.size()) / 600;
  EXPECT_GT(perSecond, 22);
  EXPECT_LT(perSecond, 40);
  std::map<int64_t, int> perSecondCounts;
  std::map<std::string, int> types;
  bool kernel = false, noSubsystem = false, quote = false, lineFeed = false, nonAscii = false;
  for (const LogEntry& e : entries) {
    ++perSecondCounts[e.timeMicros / kSecond];
    ++types[e.eventType + "/" + e.messageType];
    kernel |= e.processID == 0 && e.subsystem.empty() && e.processImagePath == "/kernel";
    noSubsystem |= e.processID != 0 && e.subsystem.empty();
    quote |= e.eventMessage.find('"') != std::string::npos;
    lineFeed |= e.eventMessage.find('\n') != std::string::npos;
    nonAscii |= std::any_of(e.eventMessage.begin(), e.eventMessage.end(),
                            [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
  }
  const int busiest =
      std::max_element(perSecondCounts.begin(), perSecondCounts.end(), [](auto& a, auto& b) {
        return a.second < b.second;
      })->second;
  EXPECT_GT(busiest, 120);  // bursts
  for (const char* t :
       {"logEvent/Default", "logEvent/Info", "logEvent/Debug", "logEvent/Error", "logEvent/Fault",
        "signpostEvent/Default", "activityCreateEvent/", "activityTransitionEvent/", "traceEvent/",
        "stateEvent/", "lossEvent/", "timesyncEvent/", "userActionEvent/"})
    EXPECT_GT(types[t], 0) << t;
  EXPECT_TRUE(kernel && noSubsystem && quote && lineFeed && nonAscii);
}

// Every factory filter, looked for as the window does (in the message, ignoring ASCII case), and
// every factory predicate find entries.
TEST(LiveLog, EveryFactoryRowFindsEntriesInAnyTenMinutes) {
  const auto lower = [](std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
  };
  for (int64_t start : {kBase, kBase + 7777 * kSecond, int64_t{1800000000} * kSecond}) {
    const auto entries = liveEntries(start, start + 600 * kSecond);
    for (const std::string_view filter : kFactoryFilterNames) {
      if (filter == kNoneName) continue;
      EXPECT_TRUE(std::any_of(entries.begin(), entries.end(), [&](const LogEntry& e) {
        return lower(e.eventMessage).find(filter) != std::string::npos;
      })) << filter;
    }
    for (const ListEntryText& factory : kFactoryPredicates) {
      if (factory.text.empty()) continue;
      auto predicate = Predicate::parse(factory.text);
      ASSERT_TRUE(predicate.ok()) << factory.text;
      EXPECT_TRUE(std::any_of(entries.begin(), entries.end(), [&](const LogEntry& e) {
        return predicate->matches(e);
      })) << factory.name;
    }
  }
}

// Written and read back whole, archives included, by the LogTool collection test.
TEST(Container, ForeignAndDamagedFilesAreRefused) {
  const testing_support::TempFolder dir;
  // A real data file, a truncated one, and one with a count beyond its bytes.
  for (const std::string& bad : {std::string("\x00\x10\x00\x00\x11\x00\x00\x00", 8),
                                 std::string("KVLOGST1\x05\0\0\0\0\0\0\0", 16),
                                 std::string("KVLOGST1\xff\xff\xff\xff\xff\xff\xff\x7f", 16)}) {
    testing_support::writeFile(dir / "b.tracev3", bad);
    const auto read = readContainer(dir / "b.tracev3");
    ASSERT_FALSE(read.ok());
    EXPECT_EQ(read.error().kind, ErrorKind::parse);
  }
}

TEST(TimeWindow, TimesAndSpans) {
  setenv("TZ", "UTC", 1);
  tzset();
  EXPECT_EQ(parseLocalTime("2020-11-16 10:00:00"), kBase);
  EXPECT_EQ(parseLocalTime("2020-11-16"), kBase - 10 * 3600 * kSecond);
  for (const char* bad : {"2020-11-16 10:00", "2020-13-01", "2021-02-30", "2020-11-16T10:00:00",
                          "20-11-16", "", "2020-11-16 24:00:00"})
    EXPECT_FALSE(parseLocalTime(bad).has_value()) << bad;
  EXPECT_EQ(parseSpan("90"), 90 * kSecond);
  EXPECT_EQ(parseSpan("5m"), 300 * kSecond);
  EXPECT_EQ(parseSpan("2h"), 7200 * kSecond);
  EXPECT_EQ(parseSpan("1d"), 86400 * kSecond);
  for (const char* bad : {"", "m", "5x", "-5m", "5 m", "99999999999999d"})
    EXPECT_FALSE(parseSpan(bad).has_value()) << bad;
}

}  // namespace
}  // namespace kavor::standin
