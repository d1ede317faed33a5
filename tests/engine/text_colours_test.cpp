#include "engine/core/text_colours.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kavor {
namespace {

constexpr TextColour kAll[] = {TextColour::text, TextColour::red, TextColour::green,
                               TextColour::blue};

// How far a colour's own channel leads the other two; the text colour has none.
int lead(TextColour colour, bool dark) {
  const Rgb c = colourValue(colour, dark);
  const int own[] = {255, c.red, c.green, c.blue};
  const int rest[] = {0, std::max(c.green, c.blue), std::max(c.red, c.blue),
                      std::max(c.red, c.green)};
  const auto i = static_cast<size_t>(colour);
  return own[i] - rest[i];
}

TEST(TextColours, EachReadsOnItsBackgroundAndStaysClearlyItsColour) {
  // The formula against known values: black on white, and the colours the issue measured.
  EXPECT_NEAR(contrastRatio({0, 0, 0}, {255, 255, 255}), 21.0, 1e-9);
  EXPECT_NEAR(contrastRatio({40, 205, 65}, {255, 255, 255}), 2.1, 0.05);
  EXPECT_NEAR(contrastRatio({255, 59, 48}, {255, 255, 255}), 3.5, 0.1);

  for (const bool dark : {false, true}) {
    const Rgb background = resultBackground(dark);
    EXPECT_EQ(isDarkBackground(background), dark);
    for (const TextColour colour : kAll) {
      const int c = static_cast<int>(colour);
      EXPECT_GE(contrastRatio(colourValue(colour, dark), background), 4.5) << c << " " << dark;
      EXPECT_GE(lead(colour, dark), 80) << c << " " << dark;
    }
  }
  // Dark desktop schemes paint a little lighter than ours; the dark colours still read there.
  for (const TextColour colour : kAll)
    EXPECT_GE(contrastRatio(colourValue(colour, true), {45, 45, 45}), 4.5);
  // Saved RTF keeps the light colours.
  EXPECT_EQ(colourValue(TextColour::green), colourValue(TextColour::green, false));
}

}  // namespace
}  // namespace kavor
