#include "engine/document/chart_layout.h"

#include <algorithm>

namespace kavor {

namespace {

constexpr double kBarBottom = 6;
// Room left above the tallest bar and below the base line.
constexpr double kVerticalMargin = 10;
// The date line ends near the right edge; the subsystem line starts near the left.
constexpr double kDateInset = 180;
constexpr double kSubsystemInset = 5;
constexpr double kTopLineDrop = 15;
constexpr std::string_view kChartSymbol = "\U0001F4CA ";

}  // namespace

ChartLayout layoutChart(const std::vector<int64_t>& logBarValue, double width, double height,
                        bool drawString, bool hasBinDates) {
  ChartLayout layout;
  const int64_t most =
      logBarValue.empty() ? 0 : *std::max_element(logBarValue.begin(), logBarValue.end());
  if (most >= 1) {
    const double scale = (height - kVerticalMargin) / static_cast<double>(most);
    const double barWidth = width / static_cast<double>(logBarValue.size());
    layout.bars.reserve(logBarValue.size());
    double x = 0;
    for (int64_t count : logBarValue) {
      layout.bars.push_back({x, kBarBottom, barWidth, scale * static_cast<double>(count)});
      x += barWidth;
    }
  }
  if (!drawString) {
    layout.topLine = ChartLayout::TopLine::subsystem;
    layout.textAt = {kSubsystemInset, height - kTopLineDrop};
  } else if (hasBinDates) {
    layout.topLine = ChartLayout::TopLine::date;
    layout.textAt = {width - kDateInset, height - kTopLineDrop};
  }
  return layout;
}

size_t binAtX(double x, double width, size_t binCount) {
  if (binCount == 0) return 0;
  const double bin = x / (width / static_cast<double>(binCount));
  // NaN (a view without width) and anything left of the first bin pick the first.
  if (!(bin >= 0)) return 0;
  if (bin >= static_cast<double>(binCount)) return binCount - 1;
  return static_cast<size_t>(bin);
}

std::optional<int64_t> increasedBinCount(int64_t theNoBins) {
  if (theNoBins >= kMostBins) return std::nullopt;
  return theNoBins + 1;
}

std::optional<int64_t> decreasedBinCount(int64_t theNoBins) {
  if (theNoBins <= kFewestBins) return std::nullopt;
  return theNoBins - 1;
}

std::string allSubsystemsWindowTitle(std::string_view displayName) {
  std::string title(kChartSymbol);
  title += kAllSubsystemsTitle;
  title += ' ';
  title += displayName;
  return title;
}

std::string subsystemWindowTitle(std::string_view subsystem, std::string_view displayName) {
  const size_t dot = subsystem.rfind('.');
  std::string title(kChartSymbol);
  title += dot == std::string_view::npos ? subsystem : subsystem.substr(dot + 1);
  title += ' ';
  title += displayName;
  return title;
}

}  // namespace kavor
