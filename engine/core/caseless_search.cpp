#include "engine/core/caseless_search.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <cstdint>

namespace kavor {

namespace {

bool isAscii(std::string_view text) {
  for (const char c : text)
    if (static_cast<uint8_t>(c) >= 0x80) return false;
  return true;
}

char lowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// In ASCII text every byte is a character of its own but for a CR LF pair.
bool insideLineEnd(std::string_view text, size_t at) {
  return at > 0 && at < text.size() && text[at - 1] == '\r' && text[at] == '\n';
}

}  // namespace

// The needle in canonical caseless form, the scratch a message is folded into, and the breaker
// that finds its user-perceived characters.
struct CaselessText::Folded {
  const icu::Normalizer2* nfc = nullptr;
  const icu::Normalizer2* nfd = nullptr;
  uint32_t foldOptions = U_FOLD_CASE_DEFAULT;
  icu::UnicodeString needle;
  icu::UnicodeString scratch;
  std::unique_ptr<icu::BreakIterator> characters;  // made on the first candidate match

  // Composed before folding, so that a decomposed capital İ folds as one letter (to i in
  // Turkish), and decomposed after, so that composed and decomposed letters compare alike.
  bool fold(std::string_view text, icu::UnicodeString& out) {
    UErrorCode status = U_ZERO_ERROR;
    scratch = icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    nfc->normalize(scratch, out, status);
    out.foldCase(foldOptions);
    nfd->normalize(out, scratch, status);
    out = scratch;
    return U_SUCCESS(status);
  }

  // Whether the needle occurs in message with its first and last characters whole: "가" is in
  // "가다" but not in "각", a flag's first letter not in the flag, "e" not in "é".
  bool foundIn(const icu::UnicodeString& message) {
    bool measured = false;
    for (int32_t at = message.indexOf(needle); at >= 0; at = message.indexOf(needle, at + 1)) {
      if (isBoundary(message, at, measured) && isBoundary(message, at + needle.length(), measured))
        return true;
    }
    return false;
  }

  // Between two ASCII characters there is a boundary but inside CR LF, so ICU's rules are only
  // asked where a match meets other characters.
  bool isBoundary(const icu::UnicodeString& message, int32_t at, bool& measured) {
    if (at <= 0 || at >= message.length()) return true;
    const char16_t before = message[at - 1];
    const char16_t after = message[at];
    if (before < 0x80 && after < 0x80) return before != '\r' || after != '\n';
    if (!measured) {
      // Without ICU's rules, code points are the best measure left.
      if (!measure(message)) return true;
      measured = true;
    }
    return characters->isBoundary(at);
  }

  bool measure(const icu::UnicodeString& message) {
    if (!characters) {
      UErrorCode status = U_ZERO_ERROR;
      // Character boundaries do not depend on the language.
      characters.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
      if (U_FAILURE(status)) characters.reset();
    }
    if (characters) characters->setText(message);
    return characters != nullptr;
  }
};

CaselessText::CaselessText(std::string_view needle, std::string_view locale) {
  empty_ = needle.empty();
  if (empty_) return;
  const icu::Locale where =
      locale.empty() ? icu::Locale::getDefault() : icu::Locale(std::string(locale).c_str());
  const std::string_view language = where.getLanguage();
  const bool turkic = language == "tr" || language == "az";
  // Turkic languages pair I with ı and İ with i, so ASCII i and I no longer match each other.
  asciiPath_ = isAscii(needle) && !(turkic && needle.find_first_of("iI") != std::string_view::npos);
  if (asciiPath_) {
    lowerAscii_.reserve(needle.size());
    for (const char c : needle)
      lowerAscii_ += lowerAscii(c);
  }
  folded_ = std::make_unique<Folded>();
  UErrorCode status = U_ZERO_ERROR;
  folded_->nfc = icu::Normalizer2::getNFCInstance(status);
  folded_->nfd = icu::Normalizer2::getNFDInstance(status);
  if (turkic) folded_->foldOptions = U_FOLD_CASE_EXCLUDE_SPECIAL_I;
  if (U_FAILURE(status) || !folded_->fold(needle, folded_->needle)) folded_.reset();
}

CaselessText::~CaselessText() = default;
CaselessText::CaselessText(CaselessText&&) noexcept = default;
CaselessText& CaselessText::operator=(CaselessText&&) noexcept = default;

bool CaselessText::foundAsAscii(std::string_view text) const {
  const size_t n = lowerAscii_.size();
  if (text.size() < n) return false;
  const char first = lowerAscii_[0];
  for (size_t at = 0; at + n <= text.size(); ++at) {
    if (lowerAscii(text[at]) != first) continue;
    size_t k = 1;
    while (k < n && lowerAscii(text[at + k]) == lowerAscii_[k])
      ++k;
    if (k == n && !insideLineEnd(text, at) && !insideLineEnd(text, at + n)) return true;
  }
  return false;
}

bool CaselessText::foundIn(std::string_view text) {
  if (empty_) return false;
  if (asciiPath_ && isAscii(text)) return foundAsAscii(text);
  if (!folded_) return false;
  icu::UnicodeString message;
  if (!folded_->fold(text, message)) return false;
  if (folded_->needle.isEmpty()) return false;
  return folded_->foundIn(message);
}

}  // namespace kavor
