#include "engine/core/icu_regex.h"

#include <string>

namespace kavor {

Expected<std::unique_ptr<icu::RegexPattern>> compileRegex(std::string_view text, uint32_t flags) {
  UErrorCode status = U_ZERO_ERROR;
  UParseError where{};
  std::unique_ptr<icu::RegexPattern> pattern(
      icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(icu::StringPiece(
                                     text.data(), static_cast<int32_t>(text.size()))),
                                 flags, where, status));
  if (U_SUCCESS(status) && pattern) return pattern;
  std::string reason = u_errorName(status);
  // ICU counts the pattern's UTF-16 units from 0; a person counts characters from 1.
  if (where.offset >= 0) reason += " at character " + std::to_string(where.offset + 1);
  return Error{ErrorKind::invalidInput, reason};
}

}  // namespace kavor
