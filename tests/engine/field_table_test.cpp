#include "engine/core/field_table.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kavor {
namespace {

TEST(FieldTable, SizesAndHighestNumberFollowTheSystem) {
  struct Case {
    int osVersion;
    size_t count;
    int highest;
  };
  for (const Case c :
       {Case{12, 16, 15}, Case{13, 22, 21}, Case{14, 26, 25}, Case{15, 26, 25}, Case{17, 26, 25}}) {
    SCOPED_TRACE(c.osVersion);
    EXPECT_EQ(fieldTable(c.osVersion).size(), c.count);
    EXPECT_EQ(highestFieldNumber(c.osVersion), c.highest);
    EXPECT_EQ(fieldListLines(c.osVersion).size(), c.count);
  }
}

TEST(FieldTable, LinesBelow13) {
  const auto lines = fieldListLines(12);
  EXPECT_EQ(lines.front(), "0 timestamp");
  EXPECT_EQ(lines[1], "1 machTimestamp no.");
  EXPECT_EQ(lines[10], "10 eventMessage");
  EXPECT_EQ(lines.back(), "15 timezoneName");
}

TEST(FieldTable, On13SourceFollowsSignpostID) {
  const auto lines = fieldListLines(13);
  const std::vector<std::string> tail(lines.begin() + 16, lines.end());
  EXPECT_EQ(tail,
            (std::vector<std::string>{"16 eventType", "17 activityIdentifier no.",
                                      "18 parentActivityIdentifier no.", "19 creatorActivityID no.",
                                      "20 signpostID no.", "21 source (null)"}));
  EXPECT_EQ(fieldTable(13)[21], (Field{EntryKey::source, FieldKind::null}));
}

TEST(FieldTable, From14AllKeysInOrder) {
  for (int os : {14, 15}) {
    const auto lines = fieldListLines(os);
    const auto on13 = fieldListLines(13);
    EXPECT_TRUE(std::equal(on13.begin(), on13.begin() + 21, lines.begin()));
    EXPECT_EQ(std::vector<std::string>(lines.begin() + 21, lines.end()),
              (std::vector<std::string>{"21 signpostName", "22 signpostType", "23 signpostScope",
                                        "24 formatString", "25 source (null)"}));
    const auto table = fieldTable(os);
    for (int n = 0; n < kEntryKeyCount; ++n)
      EXPECT_EQ(table[n].key, static_cast<EntryKey>(n));
  }
}

TEST(FieldTable, OnlyTheExpectedFieldsAreNumbers) {
  const auto table = fieldTable(15);
  for (int n = 0; n < kEntryKeyCount; ++n) {
    const bool number = n == 1 || (n >= 5 && n <= 9) || (n >= 17 && n <= 20);
    const FieldKind expected =
        n == 25 ? FieldKind::null : (number ? FieldKind::number : FieldKind::text);
    EXPECT_EQ(table[n].kind, expected) << n;
  }
}

TEST(EntryKeyFromName, FindsEveryKeptKey) {
  for (int i = 0; i < kEntryKeyCount; ++i) {
    const auto key = static_cast<EntryKey>(i);
    EXPECT_EQ(entryKeyFromName(entryKeyName(key)), key) << entryKeyName(key);
  }
}

TEST(EntryKeyFromName, RejectsOtherKeys) {
  for (std::string_view name :
       {"", "s", "bootUUID", "userID", "backtrace", "Timestamp", "timestamp ", "timestam",
        "signpostNamf", "sourcesourcesourcesourcesource", "processImagePatH"}) {
    EXPECT_FALSE(entryKeyFromName(name).has_value()) << name;
  }
  // Same length and hash inputs as a kept key, other bytes in between.
  EXPECT_FALSE(entryKeyFromName("tXXXXXXmp").has_value());
  EXPECT_FALSE(entryKeyFromName(std::string_view("source\0", 7)).has_value());
}

}  // namespace
}  // namespace kavor
