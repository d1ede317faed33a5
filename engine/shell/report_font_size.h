#pragma once
// The font size of the report windows (the Logarchive Tool, the Log Check): each keeps its own
// settings key, steps one point at a time within 4 and 60, and opens at 12 when nothing usable
// is stored. A stored size above 60 is shown as it is until the next step brings it back.

#include <string_view>

#include "platform/settings_store.h"

namespace kavor {

inline constexpr double kReportDefaultFontSize = 12.0;
inline constexpr double kReportSmallestFontSize = 4.0;
inline constexpr double kReportLargestFontSize = 60.0;

// The stored size, or 12 when it is below 4, absent or not a number. Sizes no font machinery
// can draw (past 1000 points) read as absent too.
double reportFontSizeFromStore(const SettingsStore& store, std::string_view key);

// One point larger (points 1) or smaller (-1), within the bounds; stored even when it stays.
[[nodiscard]] Status stepReportFontSize(double& size, SettingsStore& store, std::string_view key,
                                        int points);

}  // namespace kavor
