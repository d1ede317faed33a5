#pragma once
// Texts and numbers as predicates compare them: the [c] and [d] modifiers' folding, LIKE
// wildcards, and numbers that may be integers of either sign or reals.

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavor::standin::predicate {

// [c]: full Unicode case folding; [d]: diacritics removed (decomposed, combining marks
// dropped). Either way composed and decomposed letters compare alike.
struct Folding {
  bool caseless = false;
  bool diacriticless = false;
  bool any() const { return caseless || diacriticless; }
};

std::string fold(std::string_view text, Folding folding);

// An entry's text ready to compare with constants folded by fold(): ASCII text is used as is,
// lowered byte by byte on the fly when lowerAscii is set; other text is folded into scratch.
struct Prepared {
  std::string_view text;
  bool lowerAscii = false;
  bool folded = false;  // a match must not end inside a letter with marks
};
Prepared prepare(std::string_view text, Folding folding, std::string& scratch);

// Comparisons of a prepared text with a folded constant. An empty constant is found nowhere.
bool equalText(const Prepared& text, std::string_view constant);
std::strong_ordering compareText(const Prepared& text, std::string_view constant);
bool containsText(const Prepared& text, std::string_view constant);
bool beginsWithText(const Prepared& text, std::string_view constant);
bool endsWithText(const Prepared& text, std::string_view constant);
// The whole text against a pattern where * stands for any run of characters, ? for one
// character and a backslash makes the next character literal.
bool likeText(const Prepared& text, std::string_view pattern);

// An integer of either sign with the range of both int64_t and uint64_t, or a real.
struct Number {
  bool real = false;
  bool negative = false;
  uint64_t magnitude = 0;
  double value = 0;

  static Number ofSigned(int64_t n);
  static Number ofUnsigned(uint64_t n);
  static Number ofReal(double x);
};

// unordered when a real is NaN.
std::partial_ordering compareNumbers(const Number& a, const Number& b);

// Decimal integers and reals, with an optional minus sign, the whole text; none otherwise.
std::optional<Number> parseNumber(std::string_view text);

}  // namespace kavor::standin::predicate
