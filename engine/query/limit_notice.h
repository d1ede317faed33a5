#pragma once
// What the main window and kavor-cli say when the entry limit stopped the styler before the end
// of the entries: how many it counted, of how many it would have counted without the limit.

#include <cstddef>
#include <string>
#include <string_view>

namespace kavor {

// Entries that pass the View switches' type test: those the limit counts.
struct LimitCut {
  size_t counted = 0;  // up to the cap, then the walk stopped
  size_t total = 0;    // in the whole list
  bool operator==(const LimitCut&) const = default;
};

// The button beside the notice, which turns the limit off.
inline constexpr std::string_view kLimitOffButtonTitle = "Show All Entries";

// "Showing the first 1,000 of 30,020 entries: the entry limit is on", the numbers grouped as
// the ICU locale does (empty: the user's).
std::string limitNotice(const LimitCut& cut, std::string_view locale);

}  // namespace kavor
