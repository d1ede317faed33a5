#include "engine/core/caseless_search.h"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
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

}  // namespace

// The needle in canonical caseless form, and the scratch a message is folded into.
struct CaselessText::Folded {
  const icu::Normalizer2* nfc = nullptr;
  const icu::Normalizer2* nfd = nullptr;
  uint32_t foldOptions = U_FOLD_CASE_DEFAULT;
  icu::UnicodeString needle;
  icu::UnicodeString scratch;

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
    if (k == n) return true;
  }
  return false;
}

bool CaselessText::foundIn(std::string_view text) {
  if (empty_) return false;
  if (asciiPath_ && isAscii(text)) return foundAsAscii(text);
  if (!folded_) return false;
  icu::UnicodeString message;
  if (!folded_->fold(text, message)) return false;
  const icu::UnicodeString& needle = folded_->needle;
  if (needle.isEmpty()) return false;
  for (int32_t at = message.indexOf(needle); at >= 0; at = message.indexOf(needle, at + 1)) {
    // A match that ends before a combining mark stops inside a character.
    const int32_t end = at + needle.length();
    if (end >= message.length() ||
        !u_hasBinaryProperty(message.char32At(end), UCHAR_GRAPHEME_EXTEND))
      return true;
  }
  return false;
}

}  // namespace kavor
