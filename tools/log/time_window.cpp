#include "tools/log/time_window.h"

#include <charconv>
#include <chrono>
#include <cstdlib>
#include <ctime>

namespace kavor::standin {

namespace {

constexpr int64_t kMicrosPerSecond = 1000000;

// Exactly `digits` decimal digits at text[at].
std::optional<int> digitsAt(std::string_view text, size_t at, size_t digits) {
  if (at + digits > text.size()) return std::nullopt;
  int v = 0;
  for (size_t i = at; i < at + digits; ++i) {
    if (text[i] < '0' || text[i] > '9') return std::nullopt;
    v = v * 10 + (text[i] - '0');
  }
  return v;
}

}  // namespace

std::optional<int64_t> parseLocalTime(std::string_view text) {
  if (text.size() != 10 && text.size() != 19) return std::nullopt;
  if (text[4] != '-' || text[7] != '-') return std::nullopt;
  const auto year = digitsAt(text, 0, 4), month = digitsAt(text, 5, 2), day = digitsAt(text, 8, 2);
  if (!year || !month || !day) return std::nullopt;
  int hour = 0, minute = 0, second = 0;
  if (text.size() == 19) {
    if (text[10] != ' ' || text[13] != ':' || text[16] != ':') return std::nullopt;
    const auto h = digitsAt(text, 11, 2), m = digitsAt(text, 14, 2), s = digitsAt(text, 17, 2);
    if (!h || !m || !s) return std::nullopt;
    hour = *h, minute = *m, second = *s;
  }
  if (*month < 1 || *month > 12 || *day < 1 || *day > 31 || hour > 23 || minute > 59 || second > 59)
    return std::nullopt;
  struct tm local {};
  local.tm_year = *year - 1900;
  local.tm_mon = *month - 1;
  local.tm_mday = *day;
  local.tm_hour = hour;
  local.tm_min = minute;
  local.tm_sec = second;
  local.tm_isdst = -1;
  const time_t t = std::mktime(&local);
  // mktime moves 31 April to 1 May; such a date does not exist.
  if (t == static_cast<time_t>(-1) || local.tm_mday != *day) return std::nullopt;
  return static_cast<int64_t>(t) * kMicrosPerSecond;
}

std::optional<int64_t> parseSpan(std::string_view text) {
  int64_t n = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), n);
  if (ec != std::errc() || n < 0 || end == text.data()) return std::nullopt;
  const std::string_view unit(end, static_cast<size_t>(text.data() + text.size() - end));
  int64_t seconds = 0;
  if (unit.empty() || unit == "s")
    seconds = 1;
  else if (unit == "m")
    seconds = 60;
  else if (unit == "h")
    seconds = 3600;
  else if (unit == "d")
    seconds = 86400;
  else
    return std::nullopt;
  // Beyond about 290 000 years the microseconds would not fit.
  if (n > INT64_MAX / kMicrosPerSecond / seconds) return std::nullopt;
  return n * seconds * kMicrosPerSecond;
}

int64_t nowMicros() {
  if (const char* pinned = std::getenv("KAVOR_LOG_NOW"); pinned && *pinned) {
    int64_t s = 0;
    const std::string_view text(pinned);
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), s);
    if (ec == std::errc() && end == text.data() + text.size()) return s * kMicrosPerSecond;
  }
  return std::chrono::duration_cast<std::chrono::microseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

}  // namespace kavor::standin
