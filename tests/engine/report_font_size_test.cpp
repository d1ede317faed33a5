#include "engine/shell/report_font_size.h"

#include <gtest/gtest.h>

#include <limits>

namespace kavor {
namespace {

constexpr std::string_view kKey = "archFontSize";

double opened(std::optional<double> stored) {
  MemorySettingsStore store;
  if (stored) (void)store.setDouble(kKey, *stored);
  return reportFontSizeFromStore(store, kKey);
}

TEST(ReportFontSize, OpensAtTheStoredSizeFromFourUpAndStepsWithinFourAndSixty) {
  EXPECT_EQ(opened(std::nullopt), 12.0);
  EXPECT_EQ(opened(3.5), 12.0);
  EXPECT_EQ(opened(4.0), 4.0);
  EXPECT_EQ(opened(72.0), 72.0);
  EXPECT_EQ(opened(std::numeric_limits<double>::quiet_NaN()), 12.0);
  EXPECT_EQ(opened(1e9), 12.0);

  MemorySettingsStore store;
  double size = 72.0;
  ASSERT_TRUE(stepReportFontSize(size, store, kKey, 1).ok());
  EXPECT_EQ(size, 60.0);
  ASSERT_TRUE(stepReportFontSize(size, store, kKey, 1).ok());
  EXPECT_EQ(store.doubleValue(kKey), 60.0);
  size = 72.0;
  ASSERT_TRUE(stepReportFontSize(size, store, kKey, -1).ok());
  EXPECT_EQ(size, 71.0);
  size = 4.0;
  (void)store.setDouble(kKey, 9.0);
  ASSERT_TRUE(stepReportFontSize(size, store, kKey, -1).ok());
  EXPECT_EQ(size, 4.0);
  EXPECT_EQ(store.doubleValue(kKey), 4.0);  // stored even when it stays
}

}  // namespace
}  // namespace kavor
