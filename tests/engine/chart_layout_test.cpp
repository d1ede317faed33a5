#include "engine/document/chart_layout.h"

#include <gtest/gtest.h>

namespace kavor {
namespace {

TEST(ChartLayoutTest, BarsScaleToTheTallestAndEveryBinGetsOne) {
  const ChartLayout layout = layoutChart({0, 3, 1}, 300, 110, true, true);
  ASSERT_EQ(layout.bars.size(), 3u);
  EXPECT_EQ(layout.bars[0], (ChartRect{0, 6, 100, 0}));
  EXPECT_EQ(layout.bars[1], (ChartRect{100, 6, 100, 100}));
  EXPECT_EQ(layout.bars[2].x, 200);
  EXPECT_NEAR(layout.bars[2].height, 100.0 / 3, 1e-9);
  EXPECT_EQ(layout.baseLineY, 5);
  EXPECT_EQ(layout.topLine, ChartLayout::TopLine::date);
  EXPECT_EQ(layout.textAt, (ChartPoint{120, 95}));
}

TEST(ChartLayoutTest, TopLineFollowsTheDatesAndTheImageSwitch) {
  const ChartLayout zeros = layoutChart({0, 0, 0}, 300, 110, true, true);
  EXPECT_TRUE(zeros.bars.empty());
  EXPECT_EQ(zeros.topLine, ChartLayout::TopLine::date);

  EXPECT_EQ(layoutChart({}, 300, 110, true, false).topLine, ChartLayout::TopLine::none);
  for (bool dates : {true, false}) {
    const ChartLayout image = layoutChart({2}, 300, 110, false, dates);
    EXPECT_EQ(image.topLine, ChartLayout::TopLine::subsystem);
    EXPECT_EQ(image.textAt, (ChartPoint{5, 95}));
  }
}

TEST(ChartLayoutTest, ClicksPickABinWithinTheChart) {
  EXPECT_EQ(binAtX(0, 300, 3), 0u);
  EXPECT_EQ(binAtX(99.9, 300, 3), 0u);
  EXPECT_EQ(binAtX(100, 300, 3), 1u);
  EXPECT_EQ(binAtX(300, 300, 3), 2u);
  EXPECT_EQ(binAtX(-4, 300, 3), 0u);
  EXPECT_EQ(binAtX(10, 0, 3), 2u);  // no width: every x is past the end
  EXPECT_EQ(binAtX(0, 0, 3), 0u);
}

TEST(ChartLayoutTest, WindowTitlesNameTheLastPartOfTheSubsystem) {
  // The chart window's tests see the other titles.
  EXPECT_EQ(subsystemWindowTitle("com.apple.TimeMachine", "Kavor_x"),
            "\U0001F4CA TimeMachine Kavor_x");
}

}  // namespace
}  // namespace kavor
