#include "engine/core/field_table.h"

#include <gtest/gtest.h>

#include <string>

namespace kavor {
namespace {

// The list of the fields itself is checked by the kavor-cli fields cases.
TEST(EntryKeyFromName, FindsEveryKeptKeyAndNoOther) {
  for (int i = 0; i < kEntryKeyCount; ++i) {
    const auto key = static_cast<EntryKey>(i);
    EXPECT_EQ(entryKeyFromName(entryKeyName(key)), key) << entryKeyName(key);
  }
  for (std::string_view name :
       {"", "s", "userId", "backTrace", "Timestamp", "timestamp ", "timestam", "signpostNamf",
        "sourcesourcesourcesourcesource", "processImagePatH"}) {
    EXPECT_FALSE(entryKeyFromName(name).has_value()) << name;
  }
  // Same length and hash inputs as a kept key, other bytes in between.
  EXPECT_FALSE(entryKeyFromName("tXXXXXXmp").has_value());
  EXPECT_FALSE(entryKeyFromName(std::string_view("source\0", 7)).has_value());
}

}  // namespace
}  // namespace kavor
