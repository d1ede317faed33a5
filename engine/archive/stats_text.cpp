#include "engine/archive/stats_text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

namespace kavor::stats_text {

namespace {

struct Character {
  UChar32 code;   // negative for bytes that begin no well-formed character
  size_t length;  // in bytes, at least one
};

// The character at byte i. A window of one character's most bytes keeps ICU's 32-bit offsets
// valid in text of any length and reads ill-formed bytes exactly as a whole-text walk would.
Character characterAt(std::string_view text, size_t i) {
  const uint8_t first = static_cast<uint8_t>(text[i]);
  if (first < 0x80) return {first, 1};
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data() + i);
  const int32_t length = static_cast<int32_t>(std::min<size_t>(U8_MAX_LENGTH, text.size() - i));
  int32_t used = 0;
  UChar32 code = 0;
  U8_NEXT(bytes, used, length, code);
  return {code, static_cast<size_t>(used)};
}

bool isNewline(UChar32 c) {
  return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

bool isSpace(UChar32 c) {
  if (c == ' ' || (c >= 0x09 && c <= 0x0D) || c == 0x85) return true;
  return c >= 0x80 && (U_GET_GC_MASK(c) & U_GC_Z_MASK) != 0;
}

// The byte offset after the first n characters, or none when text has fewer.
std::optional<size_t> offsetAfter(std::string_view text, size_t n) {
  size_t i = 0;
  for (; n > 0 && i < text.size(); --n)
    i += characterAt(text, i).length;
  if (n > 0) return std::nullopt;
  return i;
}

size_t characterCount(std::string_view text) {
  size_t count = 0;
  for (size_t i = 0; i < text.size(); ++count)
    i += characterAt(text, i).length;
  return count;
}

}  // namespace

std::optional<std::string_view> piece(std::string_view text, std::string_view separator, size_t n) {
  size_t start = 0;
  for (; n > 0; --n) {
    const size_t found = text.find(separator, start);
    if (found == std::string_view::npos) return std::nullopt;
    start = found + separator.size();
  }
  return text.substr(start, text.find(separator, start) - start);
}

std::string_view lastPiece(std::string_view text, char separator) {
  const size_t found = text.rfind(separator);
  return found == std::string_view::npos ? text : text.substr(found + 1);
}

std::vector<std::string_view> firstLines(std::string_view text, size_t maxLines) {
  std::vector<std::string_view> lines;
  size_t start = 0;
  for (size_t i = 0; i < text.size() && lines.size() < maxLines;) {
    const Character c = characterAt(text, i);
    if (isNewline(c.code)) {
      lines.push_back(text.substr(start, i - start));
      start = i + c.length;
    }
    i += c.length;
  }
  if (lines.size() < maxLines) lines.push_back(text.substr(start));
  return lines;
}

std::string_view dropFirst(std::string_view text, size_t n) {
  const std::optional<size_t> at = offsetAfter(text, n);
  return at ? text.substr(*at) : std::string_view{};
}

std::optional<std::string_view> dropLast(std::string_view text, size_t n) {
  const size_t count = characterCount(text);
  if (count < n) return std::nullopt;
  return text.substr(0, *offsetAfter(text, count - n));
}

std::string_view trimmed(std::string_view text) {
  size_t begin = text.size();
  size_t end = 0;
  for (size_t i = 0; i < text.size();) {
    const Character c = characterAt(text, i);
    if (!isSpace(c.code)) {
      begin = std::min(begin, i);
      end = i + c.length;
    }
    i += c.length;
  }
  return begin < end ? text.substr(begin, end - begin) : std::string_view{};
}

}  // namespace kavor::stats_text
