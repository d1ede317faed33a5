#pragma once
// Regular expressions as the filter and find read them: ICU's syntax and engine.

#include <unicode/regex.h>

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/expected.h"

namespace kavor {

// The compiled pattern, or ICU's reason it does not compile and where (an invalidInput error
// whose context reads "U_REGEX_MISMATCHED_PAREN at character 4").
Expected<std::unique_ptr<icu::RegexPattern>> compileRegex(std::string_view text,
                                                          uint32_t flags = 0);

}  // namespace kavor
