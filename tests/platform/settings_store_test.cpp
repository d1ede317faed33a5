#include "platform/settings_store.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace kavor {
namespace {

TEST(SettingsStore, BoolReadsYesTrueAndNonZeroNumbers) {
  MemorySettingsStore s;
  const std::vector<PlistValue> yes = {true, "YES", "yes", "True", " 12abc", "-1", 2, 0.5};
  const std::vector<PlistValue> no = {
      false, "NO", "no", "0", "", 0, 0.0, arrayValue({true}), PlistData{"1"}};
  for (const auto& [values, expected] : {std::pair(yes, true), std::pair(no, false)}) {
    for (const PlistValue& stored : values) {
      ASSERT_TRUE(s.setValue("k", stored));
      EXPECT_EQ(s.boolValue("k"), expected) << writeXmlPlist(stored);
    }
  }
  EXPECT_FALSE(s.boolValue("absent"));
}

TEST(SettingsStore, IntegerAndDoubleReadTheLeadingNumberOfTextAndClamp) {
  MemorySettingsStore s;
  constexpr int64_t kMax = std::numeric_limits<int64_t>::max();
  const std::pair<PlistValue, int64_t> integers[] = {{" 12abc", 12},
                                                     {"-7", -7},
                                                     {"abc", 0},
                                                     {"99999999999999999999", kMax},
                                                     {3.9, 3},
                                                     {-3.9, -3},
                                                     {1e300, kMax},
                                                     {true, 1},
                                                     {int64_t{-42}, -42},
                                                     {PlistDict{}, 0}};
  for (const auto& [stored, expected] : integers) {
    ASSERT_TRUE(s.setValue("k", stored));
    EXPECT_EQ(s.integerValue("k"), expected) << writeXmlPlist(stored);
  }
  const std::pair<PlistValue, double> doubles[] = {
      {"2.5xyz", 2.5}, {" -1e3", -1000.0}, {"x", 0.0}, {3, 3.0}, {true, 1.0}, {0.25, 0.25}};
  for (const auto& [stored, expected] : doubles) {
    ASSERT_TRUE(s.setValue("k", stored));
    EXPECT_DOUBLE_EQ(s.doubleValue("k"), expected) << writeXmlPlist(stored);
  }
  EXPECT_EQ(s.integerValue("absent"), 0);
  EXPECT_EQ(s.doubleValue("absent"), 0.0);
}

TEST(SettingsStore, NamedListsReadAsOkAbsentOrCorrupt) {
  MemorySettingsStore s;
  const NamedList list{{"Errors", "messageType == error"}, {"Kernel", "process == \"kernel\""}};
  ASSERT_TRUE(s.setNamedList("l", list));
  NamedListRead read = s.namedList("l");
  EXPECT_EQ(read.status, NamedListRead::Status::ok);
  EXPECT_EQ(read.list, list);

  EXPECT_EQ(s.namedList("absent").status, NamedListRead::Status::absent);

  // Extra strings after the first two are ignored; an empty list is a list.
  ASSERT_TRUE(s.setValue("l", arrayValue({arrayValue({"a", "b", "c"})})));
  read = s.namedList("l");
  EXPECT_EQ(read.status, NamedListRead::Status::ok);
  EXPECT_EQ(read.list, (NamedList{{"a", "b"}}));
  ASSERT_TRUE(s.setValue("l", arrayValue({})));
  EXPECT_EQ(s.namedList("l").status, NamedListRead::Status::ok);

  // A value of another type is corrupt too, not absent: nothing may replace it unasked.
  const PlistValue corrupt[] = {
      arrayValue({arrayValue({"a", "b"}), arrayValue({"only one"})}),
      arrayValue({arrayValue({"a", 2})}),
      arrayValue({arrayValue({"a", "b", 3})}),
      arrayValue({"a", "b"}),
      arrayValue({PlistDict{}}),
      "not a list",
      PlistDict{},
  };
  for (const PlistValue& v : corrupt) {
    ASSERT_TRUE(s.setValue("l", v));
    read = s.namedList("l");
    EXPECT_EQ(read.status, NamedListRead::Status::corrupt) << writeXmlPlist(v);
    EXPECT_TRUE(read.list.empty());
  }
}

}  // namespace
}  // namespace kavor
