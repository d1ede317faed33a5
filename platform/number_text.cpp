#include "platform/number_text.h"

#include <charconv>
#include <cstdlib>
#include <limits>

namespace kavor {

namespace {
bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}
}  // namespace

int64_t integerValueOf(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && isSpace(text[i]))
    ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  // Accumulate as a negative number so that the minimum value reads without overflow.
  constexpr int64_t kMin = std::numeric_limits<int64_t>::min();
  int64_t acc = 0;
  bool overflow = false;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    const int digit = text[i] - '0';
    if (acc < (kMin + digit) / 10) {
      overflow = true;
    } else {
      acc = acc * 10 - digit;
    }
  }
  if (overflow) return negative ? kMin : std::numeric_limits<int64_t>::max();
  if (negative) return acc;
  if (acc == kMin) return std::numeric_limits<int64_t>::max();
  return -acc;
}

double doubleValueOf(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && isSpace(text[i]))
    ++i;
  const char* first = text.data() + i;
  const char* last = text.data() + text.size();
  if (first != last && *first == '+') ++first;
  double value = 0.0;
  auto [ptr, ec] = std::from_chars(first, last, value, std::chars_format::general);
  if (ec == std::errc::result_out_of_range) {
    // from_chars leaves the value alone on overflow; the platform gives infinity or zero.
    std::string copy(first, static_cast<size_t>(ptr - first));
    return std::strtod(copy.c_str(), nullptr);
  }
  return ec == std::errc() ? value : 0.0;
}

std::string shortestDoubleText(double value) {
  char buf[64];
  auto [ptr, ec] = std::to_chars(buf, buf + sizeof buf, value);
  return ec == std::errc() ? std::string(buf, ptr) : std::string("0");
}

}  // namespace kavor
