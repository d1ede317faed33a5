#include "engine/core/text_colours.h"

#include <algorithm>
#include <cmath>

namespace kavor {

namespace {

double linear(uint8_t channel) {
  const double c = channel / 255.0;
  return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

}  // namespace

double relativeLuminance(Rgb colour) {
  return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) + 0.0722 * linear(colour.blue);
}

double contrastRatio(Rgb a, Rgb b) {
  const double la = relativeLuminance(a);
  const double lb = relativeLuminance(b);
  return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

bool isDarkBackground(Rgb background) {
  return contrastRatio(background, Rgb{255, 255, 255}) > contrastRatio(background, Rgb{0, 0, 0});
}

}  // namespace kavor
