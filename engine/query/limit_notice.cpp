#include "engine/query/limit_notice.h"

#include <unicode/locid.h>
#include <unicode/numberformatter.h>

namespace kavor {

namespace {

std::string groupedNumber(size_t n, const icu::Locale& locale) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString text = icu::number::NumberFormatter::withLocale(locale)
                                      .formatInt(static_cast<int64_t>(n), status)
                                      .toString(status);
  std::string out;
  if (U_SUCCESS(status)) text.toUTF8String(out);
  // A locale ICU cannot format for still gets the digits.
  return out.empty() ? std::to_string(n) : out;
}

}  // namespace

std::string limitNotice(const LimitCut& cut, std::string_view locale) {
  const icu::Locale where =
      locale.empty() ? icu::Locale::getDefault() : icu::Locale(std::string(locale).c_str());
  return "Showing the first " + groupedNumber(cut.counted, where) + " of " +
         groupedNumber(cut.total, where) + " entries: the entry limit is on";
}

}  // namespace kavor
