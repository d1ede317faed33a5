#pragma once
// Where the chart view draws, in the view's own coordinates with the origin at the lower left:
// the base line, one bar per bin with its tooltip, and the one line of text at the top. Also
// what a click picks, how the bin count steps, and the chart window's titles.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kavor {

// The date line's pattern: "yyyy-MM-dd HH:mm:ss.SSSZZZ".
inline constexpr std::string_view kChartDatePattern = "yyyy-MM-dd HH:mm:ss.SSSZZZ";
// The bin count steps by one within these, starting from the document's 50.
inline constexpr int64_t kFewestBins = 19;
inline constexpr int64_t kMostBins = 191;
// The subsystem menu's first item, which stands for every entry.
inline constexpr std::string_view kAllSubsystemsTitle = "All";

struct ChartRect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  bool operator==(const ChartRect&) const = default;
};

struct ChartPoint {
  double x = 0;
  double y = 0;
  bool operator==(const ChartPoint&) const = default;
};

struct ChartLayout {
  // The grey base line from (0, 5) to (width, 5).
  double baseLineY = 5;
  // One per bin, empty ones included, each with its bin's tooltip; none when no bin counts.
  std::vector<ChartRect> bars;
  enum class TopLine { none, date, subsystem };
  TopLine topLine = TopLine::none;
  ChartPoint textAt;
};

// drawString: the top line shows the chosen date (when there are bin dates); false: the chosen
// subsystem, as a saved image shows it.
ChartLayout layoutChart(const std::vector<int64_t>& logBarValue, double width, double height,
                        bool drawString, bool hasBinDates);

// The bin under a Command-click at x, clamped to the first and the last.
size_t binAtX(double x, double width, size_t binCount);

// One bin more or fewer, or none when the count is already at its limit.
std::optional<int64_t> increasedBinCount(int64_t theNoBins);
std::optional<int64_t> decreasedBinCount(int64_t theNoBins);

// "📊 All " and the display name, as the window first shows.
std::string allSubsystemsWindowTitle(std::string_view displayName);
// "📊 ", the part of the subsystem after its last ".", " " and the display name.
std::string subsystemWindowTitle(std::string_view subsystem, std::string_view displayName);

}  // namespace kavor
