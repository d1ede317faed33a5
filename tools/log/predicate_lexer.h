#pragma once
// The tokens of a predicate: words (keys, keywords, type names), quoted strings with their
// escapes decoded, numbers as written, and symbols ("==", "&&", "(", "[", ...).

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/expected.h"

namespace kavor::standin::predicate {

struct Token {
  enum class Kind { end, word, string, number, symbol };
  Kind kind = Kind::end;
  std::string_view spelling;  // as written, quotes included
  std::string value;          // a string's text, escapes decoded
  size_t offset = 0;          // in bytes; the text's length for the end
};

// The tokens, the end last.
Expected<std::vector<Token>> tokenize(std::string_view text);

// "predicate: <problem> at character <n>", n counting characters from 1.
Error predicateError(std::string_view text, size_t offset, const std::string& problem);

}  // namespace kavor::standin::predicate
