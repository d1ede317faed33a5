#include "engine/core/date_format.h"

#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace kavor {

struct DateFormatter::Impl {
  std::unique_ptr<icu::SimpleDateFormat> format;
};

DateFormatter::DateFormatter(std::string_view pattern, std::string_view timeZone)
    : impl_(std::make_unique<Impl>()) {
  UErrorCode status = U_ZERO_ERROR;
  impl_->format = std::make_unique<icu::SimpleDateFormat>(
      icu::UnicodeString::fromUTF8(
          icu::StringPiece(pattern.data(), static_cast<int32_t>(pattern.size()))),
      icu::Locale("en_US_POSIX"), status);
  if (U_FAILURE(status)) {
    impl_->format.reset();
    return;
  }
  impl_->format->setLenient(false);
  if (!timeZone.empty())
    impl_->format->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(
        icu::StringPiece(timeZone.data(), static_cast<int32_t>(timeZone.size())))));
  else
    impl_->format->adoptTimeZone(icu::TimeZone::detectHostTimeZone());
}

DateFormatter::~DateFormatter() = default;
DateFormatter::DateFormatter(DateFormatter&&) noexcept = default;
DateFormatter& DateFormatter::operator=(DateFormatter&&) noexcept = default;

std::string DateFormatter::format(double absoluteTime) const {
  std::string out;
  if (!impl_->format) return out;
  icu::UnicodeString text;
  impl_->format->format((absoluteTime + kAbsoluteTimeSince1970) * 1000.0, text);
  text.toUTF8String(out);
  return out;
}

std::optional<double> DateFormatter::parse(std::string_view text) const {
  if (!impl_->format) return std::nullopt;
  const icu::UnicodeString input = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
  icu::ParsePosition at(0);
  const UDate date = impl_->format->parse(input, at);
  if (at.getErrorIndex() >= 0 || at.getIndex() != input.length()) return std::nullopt;
  return date / 1000.0 - kAbsoluteTimeSince1970;
}

}  // namespace kavor
