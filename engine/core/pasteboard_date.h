#pragma once
// The clipboard form of a date: plain text giving the seconds since 2001-01-01 00:00:00 UTC, so
// that a date copied from one window pastes exactly into another, or into a script.

#include <optional>
#include <string>
#include <string_view>

namespace kavor {

// The shortest decimal text that reads back to the same double, in fixed notation (never an
// exponent) and with at least one digit after the point: 610024800 gives "610024800.0".
// A value that is not finite gives "inf", "-inf" or "nan", which reads back as none.
std::string pasteboardTextFromDate(double absoluteTime);

// The date when the whole text is one decimal floating-point number in the C locale: an optional
// sign, digits with an optional point, an optional exponent; nothing before or after it, and a
// finite value. Too small a magnitude reads as zero, as it would anywhere else on the system.
std::optional<double> dateFromPasteboardText(std::string_view text);

}  // namespace kavor
