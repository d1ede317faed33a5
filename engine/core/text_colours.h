#pragma once
// The concrete colours behind TextColour, in one place so that the window and the saved RTF show
// a log in the same colours. Chosen to read well on a light background.

#include <cstdint>

#include "engine/core/styled_text.h"

namespace kavor {

struct Rgb {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  bool operator==(const Rgb&) const = default;
};

constexpr Rgb colourValue(TextColour colour) {
  switch (colour) {
    case TextColour::red:
      return {255, 59, 48};
    case TextColour::green:
      return {40, 205, 65};
    case TextColour::blue:
      return {0, 122, 255};
    case TextColour::text:
      break;
  }
  return {0, 0, 0};
}

}  // namespace kavor
