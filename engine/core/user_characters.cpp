#include "engine/core/user_characters.h"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <cstdint>
#include <cstring>

namespace kavor {

struct UserCharacters::Breaker {
  std::unique_ptr<icu::BreakIterator> iterator;
  UText text = UTEXT_INITIALIZER;

  Breaker() {
    UErrorCode status = U_ZERO_ERROR;
    // Character boundaries do not depend on the language.
    iterator.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status)) iterator.reset();
  }
  ~Breaker() { utext_close(&text); }
};

UserCharacters::UserCharacters() = default;
UserCharacters::~UserCharacters() = default;

bool UserCharacters::bytesAreCharacters(std::string_view text) {
  const char* p = text.data();
  size_t n = text.size();
  uint64_t high = 0;
  for (; n >= 8; p += 8, n -= 8) {
    uint64_t word;
    std::memcpy(&word, p, 8);
    high |= word;
  }
  for (; n > 0; ++p, --n)
    high |= static_cast<uint8_t>(*p);
  if (high & 0x8080808080808080ull) return false;
  return text.find('\r') == std::string_view::npos;
}

UserCharacters::Breaker& UserCharacters::breaker(std::string_view text) {
  if (!breaker_) breaker_ = std::make_unique<Breaker>();
  UErrorCode status = U_ZERO_ERROR;
  utext_openUTF8(&breaker_->text, text.data(), static_cast<int64_t>(text.size()), &status);
  if (breaker_->iterator && U_SUCCESS(status)) breaker_->iterator->setText(&breaker_->text, status);
  if (U_FAILURE(status)) breaker_->iterator.reset();
  return *breaker_;
}

size_t UserCharacters::prefixBytes(std::string_view text, size_t n) {
  if (n == 0) return 0;
  if (n > text.size()) {
    if (bytesAreCharacters(text)) return npos;
  } else if (bytesAreCharacters(text.substr(0, n + 1))) {
    // The byte after the first n starts a character of its own, so they end there: accents or
    // emoji further on need no counting.
    return n;
  }
  Breaker& b = breaker(text);
  // Without ICU's rules, code points are the best measure left.
  if (!b.iterator) {
    size_t seen = 0;
    for (size_t i = 0; i < text.size(); ++i) {
      if ((static_cast<uint8_t>(text[i]) & 0xC0) == 0x80) continue;
      if (seen++ == n) return i;
    }
    return seen == n ? text.size() : npos;
  }
  int32_t at = b.iterator->first();
  for (size_t i = 0; i < n; ++i) {
    at = b.iterator->next();
    if (at == icu::BreakIterator::DONE) return npos;
  }
  return static_cast<size_t>(at);
}

size_t UserCharacters::count(std::string_view text) {
  if (bytesAreCharacters(text)) return text.size();
  Breaker& b = breaker(text);
  size_t n = 0;
  if (!b.iterator) {
    for (const char c : text)
      n += (static_cast<uint8_t>(c) & 0xC0) != 0x80;
    return n;
  }
  b.iterator->first();
  while (b.iterator->next() != icu::BreakIterator::DONE)
    ++n;
  return n;
}

std::string_view UserCharacters::first(std::string_view text, size_t n) {
  const size_t bytes = prefixBytes(text, n);
  return bytes == npos ? text : text.substr(0, bytes);
}

}  // namespace kavor
