#include "engine/core/caseless_search.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/uniset.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace kavor {

namespace {

// Eight bytes at a time: find asks this of every line of the text.
bool isAscii(std::string_view text) {
  size_t at = 0;
  for (uint64_t word; at + sizeof word <= text.size(); at += sizeof word) {
    std::memcpy(&word, text.data() + at, sizeof word);
    if (word & 0x8080808080808080u) return false;
  }
  for (; at < text.size(); ++at)
    if (static_cast<uint8_t>(text[at]) >= 0x80) return false;
  return true;
}

char lowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

char upperAscii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// In ASCII text every byte is a character of its own but for a CR LF pair.
bool insideLineEnd(std::string_view text, size_t at) {
  return at > 0 && at < text.size() && text[at - 1] == '\r' && text[at] == '\n';
}

// Characters beyond ASCII whose folded form is all ASCII: ß, the ligature ﬁ, the Kelvin sign, the
// Greek question mark. Only they can take part in a match of an ASCII needle, since any other
// character beyond ASCII keeps something beyond ASCII when folded.
const icu::UnicodeSet& foldingToAscii() {
  static const icu::UnicodeSet set = [] {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeSet candidates(
        u"[[:Changes_When_Casefolded:][:Changes_When_NFKC_Casefolded:]-[\\u0000-\\u007F]]", status);
    const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(status);
    const icu::Normalizer2* nfd = icu::Normalizer2::getNFDInstance(status);
    icu::UnicodeSet found;
    if (U_FAILURE(status)) return found;
    for (int32_t range = 0; range < candidates.getRangeCount(); ++range) {
      for (UChar32 c = candidates.getRangeStart(range); c <= candidates.getRangeEnd(range); ++c) {
        icu::UnicodeString folded = nfc->normalize(icu::UnicodeString(c), status).foldCase();
        folded = nfd->normalize(folded, status);
        bool ascii = U_SUCCESS(status);
        for (int32_t i = 0; ascii && i < folded.length(); ++i)
          ascii = folded[i] < 0x80;
        if (ascii) found.add(c);
      }
    }
    found.freeze();
    return found;
  }();
  return set;
}

bool holdsFoldingToAscii(std::string_view text) {
  const icu::UnicodeSet& set = foldingToAscii();
  const auto length = static_cast<int32_t>(text.size());
  for (int32_t at = 0; at < length;) {
    if (static_cast<uint8_t>(text[static_cast<size_t>(at)]) < 0x80) {
      ++at;
      continue;
    }
    UChar32 c;
    U8_NEXT(text.data(), at, length, c);
    if (c >= 0 && set.contains(c)) return true;
  }
  return false;
}

// Whether a user-perceived character begins at an ASCII character or at the end of an ASCII one:
// always but after a prepended mark, and before a combining, spacing or joining mark.
bool boundaryBeforeAscii(std::string_view text, size_t at) {
  if (at == 0 || static_cast<uint8_t>(text[at - 1]) < 0x80) return true;
  auto i = static_cast<int32_t>(at);
  UChar32 c;
  U8_PREV(text.data(), 0, i, c);
  return c < 0 || u_getIntPropertyValue(c, UCHAR_GRAPHEME_CLUSTER_BREAK) != U_GCB_PREPEND;
}

bool boundaryAfterAscii(std::string_view text, size_t at) {
  if (at == text.size() || static_cast<uint8_t>(text[at]) < 0x80) return true;
  auto i = static_cast<int32_t>(at);
  UChar32 c;
  U8_NEXT(text.data(), i, static_cast<int32_t>(text.size()), c);
  if (c < 0) return true;
  const auto kind = u_getIntPropertyValue(c, UCHAR_GRAPHEME_CLUSTER_BREAK);
  return kind != U_GCB_EXTEND && kind != U_GCB_ZWJ && kind != U_GCB_SPACING_MARK;
}

}  // namespace

// The needle in canonical caseless form, the scratch a message is folded into, and the breaker
// that finds its user-perceived characters.
struct CaselessText::Folded {
  const icu::Normalizer2* nfc = nullptr;
  const icu::Normalizer2* nfd = nullptr;
  uint32_t foldOptions = U_FOLD_CASE_DEFAULT;
  bool turkic = false;
  icu::UnicodeString needle;
  icu::UnicodeString source;
  icu::UnicodeString scratch;
  std::unique_ptr<icu::BreakIterator> characters;  // made on the first candidate match

  // Composed before folding, so that a decomposed capital İ folds as one letter (to i in
  // Turkish), and decomposed after, so that composed and decomposed letters compare alike.
  bool fold(const icu::UnicodeString& text, icu::UnicodeString& out) {
    UErrorCode status = U_ZERO_ERROR;
    nfc->normalize(text, out, status);
    out.foldCase(foldOptions);
    nfd->normalize(out, scratch, status);
    out = scratch;
    return U_SUCCESS(status);
  }

  bool fold(std::string_view text, icu::UnicodeString& out) {
    source = icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    return fold(source, out);
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

  // The text folded character by character: where each character's folded form begins, and its
  // first byte in the UTF-8 text, so that a match in the folded text maps back to whole
  // characters of the text.
  icu::UnicodeString line;
  icu::UnicodeString piece;
  icu::UnicodeString foldedPiece;
  icu::UnicodeString foldedLine;
  std::vector<int32_t> foldedStarts;
  std::vector<int32_t> byteStarts;

  void forEachIn(std::string_view text, const std::function<bool(size_t, size_t)>& found) {
    line = icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    if (!measure(line)) return;
    foldedLine.remove();
    foldedStarts.clear();
    byteStarts.clear();
    const auto length = static_cast<int32_t>(text.size());
    int32_t byte = 0;
    int32_t start = characters->first();
    for (int32_t end = characters->next(); end != icu::BreakIterator::DONE;
         start = end, end = characters->next()) {
      foldedStarts.push_back(foldedLine.length());
      byteStarts.push_back(byte);
      // Bad UTF-8 became one U+FFFD per bad sequence both here and in the line.
      for (int32_t at = start; at < end; at = line.moveIndex32(at, 1)) {
        UChar32 c;
        U8_NEXT(text.data(), byte, length, c);
        (void)c;
      }
      appendFolded(start, end);
    }
    foldedStarts.push_back(foldedLine.length());
    byteStarts.push_back(byte);
    for (int32_t at = foldedLine.indexOf(needle); at >= 0;) {
      const int32_t end = at + needle.length();
      const auto first = std::lower_bound(foldedStarts.begin(), foldedStarts.end(), at);
      const auto last = std::lower_bound(first, foldedStarts.end(), end);
      if (*first != at || last == foldedStarts.end() || *last != end) {
        at = foldedLine.indexOf(needle, at + 1);
        continue;
      }
      if (!found(static_cast<size_t>(byteStarts[static_cast<size_t>(first - foldedStarts.begin())]),
                 static_cast<size_t>(byteStarts[static_cast<size_t>(last - foldedStarts.begin())])))
        return;
      at = foldedLine.indexOf(needle, end);
    }
  }

  // One character of the line, folded; ASCII letters without ICU, as most are.
  void appendFolded(int32_t start, int32_t end) {
    const char16_t c = line[start];
    if (end - start == 1 && c < 0x80 && !(turkic && (c == 'I' || c == 'i'))) {
      foldedLine.append(static_cast<char16_t>(lowerAscii(static_cast<char>(c))));
      return;
    }
    piece.setTo(line, start, end - start);
    if (fold(piece, foldedPiece)) foldedLine.append(foldedPiece);
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
  folded_->turkic = turkic;
  if (turkic) folded_->foldOptions = U_FOLD_CASE_EXCLUDE_SPECIAL_I;
  if (U_FAILURE(status) || !folded_->fold(needle, folded_->needle)) {
    folded_.reset();
    return;
  }
  // Turkic ASCII I folds beyond ASCII, so there ASCII text may hold any needle.
  for (int32_t i = 0; !turkic && i < folded_->needle.length(); ++i)
    needsOthers_ = needsOthers_ || folded_->needle[i] >= 0x80;
}

CaselessText::~CaselessText() = default;
CaselessText::CaselessText(CaselessText&&) noexcept = default;
CaselessText& CaselessText::operator=(CaselessText&&) noexcept = default;

size_t CaselessText::nextAsAscii(std::string_view text, size_t from) const {
  const size_t n = lowerAscii_.size();
  if (text.size() < n || from > text.size() - n) return std::string_view::npos;
  const size_t last = text.size() - n;  // the last place a match may begin
  const char* data = text.data();
  // The first letter in either case, found by memchr, far quicker than a loop over the bytes.
  const auto next = [&](char c, size_t at) {
    const void* found = at <= last ? std::memchr(data + at, c, last + 1 - at) : nullptr;
    return found ? static_cast<size_t>(static_cast<const char*>(found) - data)
                 : std::string_view::npos;
  };
  const char lower = lowerAscii_[0];
  const char upper = upperAscii(lower);
  size_t nextLower = next(lower, from);
  size_t nextUpper = upper == lower ? std::string_view::npos : next(upper, from);
  while (true) {
    const size_t at = std::min(nextLower, nextUpper);
    if (at == std::string_view::npos) return at;
    size_t k = 1;
    while (k < n && lowerAscii(text[at + k]) == lowerAscii_[k])
      ++k;
    if (k == n && !insideLineEnd(text, at) && !insideLineEnd(text, at + n)) return at;
    if (at == nextLower)
      nextLower = next(lower, at + 1);
    else
      nextUpper = next(upper, at + 1);
  }
}

bool CaselessText::foundIn(std::string_view text) {
  if (empty_) return false;
  if (asciiPath_ && isAscii(text)) return nextAsAscii(text, 0) != std::string_view::npos;
  if (!folded_) return false;
  icu::UnicodeString message;
  if (!folded_->fold(text, message)) return false;
  if (folded_->needle.isEmpty()) return false;
  return folded_->foundIn(message);
}

void CaselessText::forEachAmongOthers(std::string_view text,
                                      const std::function<bool(size_t, size_t)>& found) const {
  const size_t n = lowerAscii_.size();
  for (size_t at = nextAsAscii(text, 0); at != std::string_view::npos;) {
    if (boundaryBeforeAscii(text, at) && boundaryAfterAscii(text, at + n)) {
      if (!found(at, at + n)) return;
      at = nextAsAscii(text, at + n);
    } else {
      at = nextAsAscii(text, at + 1);
    }
  }
}

void CaselessText::forEachIn(std::string_view text,
                             const std::function<bool(size_t, size_t)>& found) {
  // ICU measures text in 32-bit units; a single line of 2 GB is past finding in.
  if (empty_ || text.size() > INT32_MAX) return;
  const bool ascii = isAscii(text);
  if (asciiPath_ && (ascii || !holdsFoldingToAscii(text))) {
    forEachAmongOthers(text, found);
    return;
  }
  if (!folded_ || folded_->needle.isEmpty() || (ascii && needsOthers_)) return;
  // Most lines hold no match: a fold of the whole line tells, before the fold of each character.
  icu::UnicodeString message;
  if (!folded_->fold(text, message) || message.indexOf(folded_->needle) < 0) return;
  folded_->forEachIn(text, found);
}

}  // namespace kavor
