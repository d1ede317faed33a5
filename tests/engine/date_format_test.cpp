#include "engine/core/date_format.h"

#include <gtest/gtest.h>

namespace kavor {
namespace {

TEST(DateFormatter, FormatsAndParsesInTheGivenZone) {
  const DateFormatter paris("yyyy-MM-dd HH:mm:ss", "Europe/Paris");
  EXPECT_EQ(paris.format(610012800.0), "2020-05-01 10:00:00");  // summer time, +0200
  EXPECT_EQ(paris.parse("2020-05-01 10:00:00"), 610012800.0);
  EXPECT_EQ(paris.parse("2020-01-01 00:00:00"), 599526000.0);  // winter, +0100
  for (const char* bad : {"2020-05-01", "2020-05-01 10:00:00x", "2020-13-01 10:00:00", ""})
    EXPECT_FALSE(paris.parse(bad).has_value()) << bad;
  // The offset in the text wins over the formatter's zone; milliseconds are kept.
  const DateFormatter stamped("yyyy-MM-dd HH:mm:ss.SSSSSSZZZZZ", "UTC");
  EXPECT_NEAR(*stamped.parse("2020-05-01 09:41:07.123456+0100"), 610015267.123, 1e-6);
  const DateFormatter label("yyyy-MM-dd\nHH:mm:ss.SSS", "UTC");
  EXPECT_EQ(label.format(627214830.5), "2020-11-16\n10:20:30.500");
}

}  // namespace
}  // namespace kavor
