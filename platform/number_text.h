#pragma once
// Reading numbers out of text the way the platform's string class does: lenient, never failing.

#include <cstdint>
#include <string>
#include <string_view>

namespace kavor {

// Optional leading white space and sign, then decimal digits; reading stops at the first other
// character; no digits read as 0; values beyond the 64-bit range clamp to its ends.
int64_t integerValueOf(std::string_view text);

// Leading white space, then the longest prefix that reads as a decimal floating-point number;
// 0.0 when there is none.
double doubleValueOf(std::string_view text);

// The shortest decimal text that reads back as the same double ("1.5", "610024800", "1e+300").
std::string shortestDoubleText(double value);

}  // namespace kavor
