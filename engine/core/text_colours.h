#pragma once
// The concrete colours behind TextColour, in one place so that the window and the saved RTF show
// a log in the same colours. Each reads on the result's background, light or dark, at a contrast
// of at least 4.5:1 while staying clearly red, green or blue; saved RTF keeps the light ones,
// since a document is read on white.

#include <cstdint>

#include "engine/core/styled_text.h"

namespace kavor {

struct Rgb {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  bool operator==(const Rgb&) const = default;
};

// The colour on a light background, or on a dark one.
constexpr Rgb colourValue(TextColour colour, bool dark) {
  switch (colour) {
    case TextColour::red:
      return dark ? Rgb{255, 105, 97} : Rgb{215, 0, 21};
    case TextColour::green:
      return dark ? Rgb{50, 215, 75} : Rgb{0, 128, 0};
    case TextColour::blue:
      return dark ? Rgb{100, 170, 255} : Rgb{0, 90, 230};
    case TextColour::text:
      break;
  }
  return dark ? Rgb{230, 230, 230} : Rgb{0, 0, 0};
}

// On a light background: what saved RTF holds.
constexpr Rgb colourValue(TextColour colour) {
  return colourValue(colour, false);
}

// The backgrounds the colours are made for: white, and the dark grey of a dark desktop scheme.
constexpr Rgb resultBackground(bool dark) {
  return dark ? Rgb{30, 30, 30} : Rgb{255, 255, 255};
}

// WCAG 2 relative luminance, 0 for black to 1 for white.
double relativeLuminance(Rgb colour);
// WCAG 2 contrast ratio, 1 to 21, whichever colour is the lighter.
double contrastRatio(Rgb a, Rgb b);
// True when light text reads better on it than dark text: the dark colours are the ones to use.
bool isDarkBackground(Rgb background);

}  // namespace kavor
