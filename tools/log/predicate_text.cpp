#include "tools/log/predicate_text.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace kavor::standin::predicate {

namespace {

bool isAscii(std::string_view text) {
  size_t i = 0;
  for (; i + 8 <= text.size(); i += 8) {
    uint64_t word = 0;
    std::memcpy(&word, text.data() + i, 8);
    if (word & 0x8080808080808080ULL) return false;
  }
  for (; i < text.size(); ++i)
    if (static_cast<uint8_t>(text[i]) >= 0x80) return false;
  return true;
}

char lowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Composed before case folding, so that a decomposed capital folds as one letter, and
// decomposed after, so that composed and decomposed letters compare alike.
void foldInto(std::string_view text, Folding folding, std::string& out) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(status);
  const icu::Normalizer2* nfd = icu::Normalizer2::getNFDInstance(status);
  icu::UnicodeString source = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
  icu::UnicodeString result;
  if (U_SUCCESS(status) && folding.caseless) {
    nfc->normalize(source, result, status);
    result.foldCase(U_FOLD_CASE_DEFAULT);
    source = result;
  }
  if (U_SUCCESS(status)) nfd->normalize(source, result, status);
  out.clear();
  if (U_FAILURE(status)) {
    out.assign(text);  // ICU without its data: compare as written rather than not at all
    return;
  }
  if (folding.diacriticless) {
    source.remove();
    for (int32_t i = 0; i < result.length();) {
      const UChar32 c = result.char32At(i);
      i += U16_LENGTH(c);
      if (u_charType(c) != U_NON_SPACING_MARK) source.append(c);
    }
    result = source;
  }
  result.toUTF8String(out);
}

// Where the character at `at` ends, marks that combine with it included.
size_t nextCharacter(std::string_view text, size_t at) {
  if (static_cast<uint8_t>(text[at]) < 0x80) return at + 1;
  UChar32 c = 0;
  U8_NEXT(text.data(), at, text.size(), c);
  while (at < text.size() && static_cast<uint8_t>(text[at]) >= 0x80) {
    size_t next = at;
    U8_NEXT(text.data(), next, text.size(), c);
    if (!u_hasBinaryProperty(c, UCHAR_GRAPHEME_EXTEND)) break;
    at = next;
  }
  return at;
}

// In folded text a match that ends before a combining mark stops inside a letter: "e" is not
// in "é".
bool endsInsideLetter(const Prepared& text, size_t end) {
  if (!text.folded || end >= text.text.size()) return false;
  UChar32 c = 0;
  U8_NEXT(text.text.data(), end, text.text.size(), c);
  return u_hasBinaryProperty(c, UCHAR_GRAPHEME_EXTEND);
}

bool sameAt(const Prepared& text, size_t at, std::string_view constant) {
  if (!text.lowerAscii) return text.text.compare(at, constant.size(), constant) == 0;
  for (size_t i = 0; i < constant.size(); ++i)
    if (lowerAscii(text.text[at + i]) != constant[i]) return false;
  return true;
}

}  // namespace

std::string fold(std::string_view text, Folding folding) {
  std::string out;
  if (!folding.any() || isAscii(text)) {
    out.assign(text);
    if (folding.caseless)
      for (char& c : out)
        c = lowerAscii(c);
  } else {
    foldInto(text, folding, out);
  }
  return out;
}

Prepared prepare(std::string_view text, Folding folding, std::string& scratch) {
  if (!folding.any()) return {text, false, false};
  if (isAscii(text)) return {text, folding.caseless, false};
  foldInto(text, folding, scratch);
  return {scratch, false, true};
}

bool equalText(const Prepared& text, std::string_view constant) {
  return text.text.size() == constant.size() && sameAt(text, 0, constant);
}

std::strong_ordering compareText(const Prepared& text, std::string_view constant) {
  if (!text.lowerAscii) return text.text <=> constant;
  const size_t common = std::min(text.text.size(), constant.size());
  for (size_t i = 0; i < common; ++i) {
    const auto a = static_cast<uint8_t>(lowerAscii(text.text[i]));
    const auto b = static_cast<uint8_t>(constant[i]);
    if (a != b) return a <=> b;
  }
  return text.text.size() <=> constant.size();
}

bool containsText(const Prepared& text, std::string_view constant) {
  if (constant.empty() || constant.size() > text.text.size()) return false;
  const size_t last = text.text.size() - constant.size();
  const char first = constant[0];
  const char firstUpper = first >= 'a' && first <= 'z' ? static_cast<char>(first - 32) : first;
  for (size_t at = 0; at <= last; ++at) {
    if (!text.lowerAscii) {
      at = text.text.find(constant, at);
      if (at == std::string_view::npos) return false;
    } else if ((text.text[at] != first && text.text[at] != firstUpper) ||
               !sameAt(text, at, constant)) {
      continue;
    }
    if (!endsInsideLetter(text, at + constant.size())) return true;
  }
  return false;
}

bool beginsWithText(const Prepared& text, std::string_view constant) {
  return !constant.empty() && constant.size() <= text.text.size() && sameAt(text, 0, constant) &&
         !endsInsideLetter(text, constant.size());
}

bool endsWithText(const Prepared& text, std::string_view constant) {
  return !constant.empty() && constant.size() <= text.text.size() &&
         sameAt(text, text.text.size() - constant.size(), constant);
}

bool likeText(const Prepared& prepared, std::string_view pattern) {
  const std::string_view text = prepared.text;
  size_t t = 0;
  size_t p = 0;
  size_t starP = std::string_view::npos;  // just after the last *, to retry from
  size_t starT = 0;                       // where that * stopped taking characters
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      starP = ++p;
      starT = t;
      continue;
    }
    if (p < pattern.size() && pattern[p] == '?') {
      t = nextCharacter(text, t);
      ++p;
      continue;
    }
    if (p < pattern.size()) {
      const size_t literal = pattern[p] == '\\' && p + 1 < pattern.size() ? p + 1 : p;
      const char c = prepared.lowerAscii ? lowerAscii(text[t]) : text[t];
      if (c == pattern[literal]) {
        ++t;
        p = literal + 1;
        continue;
      }
    }
    if (starP == std::string_view::npos) return false;
    starT = nextCharacter(text, starT);
    t = starT;
    p = starP;
  }
  while (p < pattern.size() && pattern[p] == '*')
    ++p;
  return p == pattern.size();
}

Number Number::ofSigned(int64_t n) {
  Number number;
  number.negative = n < 0;
  number.magnitude = n < 0 ? 0 - static_cast<uint64_t>(n) : static_cast<uint64_t>(n);
  return number;
}

Number Number::ofUnsigned(uint64_t n) {
  Number number;
  number.magnitude = n;
  return number;
}

Number Number::ofReal(double x) {
  Number number;
  number.real = true;
  number.value = x;
  return number;
}

namespace {

std::strong_ordering compareIntegers(const Number& a, const Number& b) {
  if (a.negative != b.negative)
    return a.negative ? std::strong_ordering::less : std::strong_ordering::greater;
  return a.negative ? b.magnitude <=> a.magnitude : a.magnitude <=> b.magnitude;
}

// Exact: the real's whole part is compared as an integer, its fraction breaks a tie.
std::partial_ordering compareWithReal(const Number& a, double x) {
  constexpr double kTwoTo64 = 18446744073709551616.0;
  if (std::isnan(x)) return std::partial_ordering::unordered;
  if (x >= kTwoTo64) return std::partial_ordering::less;
  if (x <= -kTwoTo64) return std::partial_ordering::greater;
  const double whole = std::floor(x);
  Number integer;
  integer.negative = whole < 0;
  integer.magnitude = static_cast<uint64_t>(std::fabs(whole));
  const std::strong_ordering order = compareIntegers(a, integer);
  if (order != 0) return order;
  return whole == x ? std::partial_ordering::equivalent : std::partial_ordering::less;
}

}  // namespace

std::partial_ordering compareNumbers(const Number& a, const Number& b) {
  if (a.real && b.real) return a.value <=> b.value;
  if (a.real) return 0 <=> compareWithReal(b, a.value);
  if (b.real) return compareWithReal(a, b.value);
  return compareIntegers(a, b);
}

std::optional<Number> parseNumber(std::string_view text) {
  const bool negative = !text.empty() && text[0] == '-';
  const std::string_view body = text.substr(negative ? 1 : 0);
  // from_chars would also take "inf" and "nan", which are words here, not numbers.
  if (body.empty() || !((body[0] >= '0' && body[0] <= '9') || body[0] == '.')) return std::nullopt;
  const char* end = text.data() + text.size();
  uint64_t magnitude = 0;
  auto [stop, ec] = std::from_chars(body.data(), end, magnitude);
  if (ec == std::errc() && stop == end) {
    Number number = Number::ofUnsigned(magnitude);
    number.negative = negative && magnitude != 0;
    return number;
  }
  double x = 0;
  const std::from_chars_result real = std::from_chars(text.data(), end, x);
  if (real.ec == std::errc() && real.ptr == end && std::isfinite(x)) return Number::ofReal(x);
  return std::nullopt;
}

}  // namespace kavor::standin::predicate
