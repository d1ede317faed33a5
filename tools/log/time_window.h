#pragma once
// The times "show" and "collect" take: "yyyy-MM-dd HH:mm:ss" or "yyyy-MM-dd" in the local time
// zone, and spans such as "10m" for --last.

#include <cstdint>
#include <optional>
#include <string_view>

namespace kavor::standin {

// Microseconds since 1970 UTC; none for text of another shape or an impossible date.
std::optional<int64_t> parseLocalTime(std::string_view text);

// "N", "Ns", "Nm", "Nh" or "Nd" (N a whole number; seconds without a unit) in microseconds.
std::optional<int64_t> parseSpan(std::string_view text);

// The current time; KAVOR_LOG_NOW (seconds since 1970) pins it, so that tests and archives made
// "now" can be compared with the live log of the same window.
int64_t nowMicros();

}  // namespace kavor::standin
