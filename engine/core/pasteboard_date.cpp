#include "engine/core/pasteboard_date.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace kavor {

namespace {

// Room for the longest fixed text of a double: the smallest subnormal has 324 places after the
// point, the largest value 309 digits before it.
constexpr size_t kFixedTextRoom = 400;

// The power of ten of a number's leading digit, roughly: enough to tell a number that is too
// large for a double from one too close to zero, the two ways from_chars is out of range.
int64_t decimalMagnitude(std::string_view number) {
  const size_t exponentAt = number.find_first_of("eE");
  const std::string_view mantissa = number.substr(0, exponentAt);
  int64_t exponent = 0;
  if (exponentAt != std::string_view::npos) {
    std::string_view digits = number.substr(exponentAt + 1);
    const bool negative = !digits.empty() && digits.front() == '-';
    if (!digits.empty() && (digits.front() == '+' || negative)) digits.remove_prefix(1);
    const auto [ptr, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    // An exponent beyond 64 bits decides the magnitude on its own.
    if (ec != std::errc()) exponent = std::numeric_limits<int32_t>::max();
    if (negative) exponent = -exponent;
  }
  const size_t point = std::min(mantissa.find('.'), mantissa.size());
  const size_t leading = mantissa.find_first_of("123456789");
  if (leading == std::string_view::npos) return exponent;
  const int64_t place = leading < point ? static_cast<int64_t>(point - leading)
                                        : -static_cast<int64_t>(leading - point);
  return place + exponent;
}

}  // namespace

std::string pasteboardTextFromDate(double absoluteTime) {
  char text[kFixedTextRoom];
  const char* end =
      std::to_chars(text, text + sizeof text, absoluteTime, std::chars_format::fixed).ptr;
  std::string result(text, static_cast<size_t>(end - text));
  if (std::isfinite(absoluteTime) && result.find('.') == std::string::npos) result += ".0";
  return result;
}

std::optional<double> dateFromPasteboardText(std::string_view text) {
  const char* first = text.data();
  const char* last = text.data() + text.size();
  // from_chars takes a minus sign but no plus sign.
  const bool negative = first != last && *first == '-';
  if (first != last && *first == '+') {
    ++first;
    if (first == last || *first == '-') return std::nullopt;
  }
  const char* start = negative ? first + 1 : first;
  double value = 0;
  const auto [ptr, ec] = std::from_chars(first, last, value, std::chars_format::general);
  if (ptr != last) return std::nullopt;
  if (ec == std::errc::result_out_of_range) {
    // from_chars leaves the value alone; a number that is merely tiny is zero.
    if (decimalMagnitude(std::string_view(start, static_cast<size_t>(last - start))) > 0)
      return std::nullopt;
    return negative ? -0.0 : 0.0;
  }
  // Infinities and NaNs read by from_chars are no dates either.
  if (ec != std::errc() || !std::isfinite(value)) return std::nullopt;
  return value;
}

}  // namespace kavor
