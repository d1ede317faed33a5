#pragma once
// Dates as text the way every formatter of Kavor makes them: locale "en_US_POSIX", a fixed
// pattern ("yyyy-MM-dd HH:mm:ss"), and the user's current time zone unless another is given.
// Times are absolute times: seconds since 2001-01-01 00:00:00 UTC, as the platform counts them.
// Not shared between threads: each thread makes its own.

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kavor {

// Seconds between 1970-01-01 and 2001-01-01, both UTC.
inline constexpr double kAbsoluteTimeSince1970 = 978307200.0;

class DateFormatter {
 public:
  // timeZone: an ICU zone id ("UTC", "Europe/Paris"); empty for the current zone (TZ).
  explicit DateFormatter(std::string_view pattern, std::string_view timeZone = {});
  ~DateFormatter();
  DateFormatter(DateFormatter&&) noexcept;
  DateFormatter& operator=(DateFormatter&&) noexcept;

  // Milliseconds are the finest the pattern letters show.
  std::string format(double absoluteTime) const;
  // The whole text must match the pattern; none otherwise.
  std::optional<double> parse(std::string_view text) const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace kavor
