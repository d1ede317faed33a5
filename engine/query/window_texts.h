#pragma once
// Texts of the main window beyond its form's labels: what an empty window suggests.

#include <string_view>

namespace kavor {

// Over the result while it is empty, never part of it.
inline constexpr std::string_view kEmptyResultHint = "Choose a time window and press Get Log";

}  // namespace kavor
