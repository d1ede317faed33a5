#include "engine/shell/report_font_size.h"

#include <algorithm>

namespace kavor {

namespace {
constexpr double kDrawableFontSize = 1000.0;
}

double reportFontSizeFromStore(const SettingsStore& store, std::string_view key) {
  const double size = store.doubleValue(key);
  if (!(size >= kReportSmallestFontSize) || size > kDrawableFontSize) return kReportDefaultFontSize;
  return size;
}

Status stepReportFontSize(double& size, SettingsStore& store, std::string_view key, int points) {
  size = points > 0 ? std::min(size + points, kReportLargestFontSize)
                    : std::max(size + points, kReportSmallestFontSize);
  return store.setDouble(key, size);
}

}  // namespace kavor
