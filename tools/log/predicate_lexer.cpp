#include "tools/log/predicate_lexer.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <array>
#include <charconv>
#include <cstdint>
#include <optional>

namespace kavor::standin::predicate {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isWordStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isWordPart(char c) {
  return isWordStart(c) || isDigit(c);
}

bool isHexDigit(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

constexpr std::array<std::string_view, 9> kPairs = {
    "==", "!=", "<>", "<=", ">=", "=<", "=>", "&&", "||"};
constexpr std::string_view kSingles = "=<>!(){}[],";

class Lexer {
 public:
  explicit Lexer(std::string_view text) : text_(text) {}

  Expected<std::vector<Token>> run() {
    std::vector<Token> tokens;
    for (;;) {
      while (at_ < text_.size() &&
             (text_[at_] == ' ' || text_[at_] == '\t' || text_[at_] == '\n' || text_[at_] == '\r'))
        ++at_;
      Token token;
      token.offset = at_;
      if (at_ == text_.size()) {
        tokens.push_back(std::move(token));
        return tokens;
      }
      const char c = text_[at_];
      if (c == '"' || c == '\'') {
        if (auto failure = readString(token)) return std::move(*failure);
      } else if (isDigit(c) || (c == '-' && at_ + 1 < text_.size() && isDigit(text_[at_ + 1]))) {
        readNumber(token);
      } else if (isWordStart(c)) {
        token.kind = Token::Kind::word;
        while (at_ < text_.size() && isWordPart(text_[at_]))
          ++at_;
      } else if (!readSymbol(token)) {
        size_t end = at_;
        UChar32 ignored = 0;
        U8_NEXT(text_.data(), end, text_.size(), ignored);
        return predicateError(
            text_, at_,
            "unexpected character \"" + std::string(text_.substr(at_, end - at_)) + "\"");
      }
      token.spelling = text_.substr(token.offset, at_ - token.offset);
      tokens.push_back(std::move(token));
    }
  }

 private:
  void readNumber(Token& token) {
    token.kind = Token::Kind::number;
    if (text_[at_] == '-') ++at_;
    if (text_.substr(at_, 2) == "0x" || text_.substr(at_, 2) == "0X") {
      at_ += 2;
      while (at_ < text_.size() && isHexDigit(text_[at_]))
        ++at_;
      return;
    }
    const auto digits = [this] {
      while (at_ < text_.size() && isDigit(text_[at_]))
        ++at_;
    };
    digits();
    if (at_ + 1 < text_.size() && text_[at_] == '.' && isDigit(text_[at_ + 1])) {
      ++at_;
      digits();
    }
    if (at_ < text_.size() && (text_[at_] == 'e' || text_[at_] == 'E')) {
      size_t exponent = at_ + 1;
      if (exponent < text_.size() && (text_[exponent] == '+' || text_[exponent] == '-')) ++exponent;
      if (exponent < text_.size() && isDigit(text_[exponent])) {
        at_ = exponent;
        digits();
      }
    }
  }

  bool readSymbol(Token& token) {
    token.kind = Token::Kind::symbol;
    for (const std::string_view pair : kPairs) {
      if (text_.substr(at_, 2) == pair) {
        at_ += 2;
        return true;
      }
    }
    if (kSingles.find(text_[at_]) == std::string_view::npos) return false;
    ++at_;
    return true;
  }

  // Four hex digits at `from`, or none.
  std::optional<uint16_t> hexUnit(size_t from) const {
    uint16_t unit = 0;
    if (from + 4 > text_.size()) return std::nullopt;
    const char* begin = text_.data() + from;
    const auto [end, ec] = std::from_chars(begin, begin + 4, unit, 16);
    if (ec != std::errc() || end != begin + 4) return std::nullopt;
    return unit;
  }

  // \uXXXX, with a following \uXXXX for the low half of a surrogate pair.
  std::optional<Error> readUnicodeEscape(std::string& out) {
    const size_t escape = at_;
    const auto bad = [&] { return predicateError(text_, escape, "invalid \\u escape"); };
    const std::optional<uint16_t> high = hexUnit(at_ + 2);
    if (!high) return bad();
    at_ += 6;
    UChar32 code = *high;
    if (U16_IS_LEAD(*high)) {
      const std::optional<uint16_t> low =
          text_.substr(at_, 2) == "\\u" ? hexUnit(at_ + 2) : std::nullopt;
      if (!low || !U16_IS_TRAIL(*low)) return bad();
      at_ += 6;
      code = U16_GET_SUPPLEMENTARY(*high, *low);
    } else if (U16_IS_TRAIL(*high) || code == 0) {
      return bad();
    }
    std::array<char, U8_MAX_LENGTH> bytes{};
    size_t length = 0;
    U8_APPEND_UNSAFE(bytes.data(), length, code);
    out.append(bytes.data(), length);
    return std::nullopt;
  }

  // Unknown escapes keep their backslash, so that regular expressions ("\d") and LIKE patterns
  // ("\*") read as their authors mean.
  std::optional<Error> readString(Token& token) {
    token.kind = Token::Kind::string;
    const char quote = text_[at_++];
    for (;;) {
      if (at_ >= text_.size()) return predicateError(text_, token.offset, "unterminated string");
      const char c = text_[at_];
      if (c == quote) {
        ++at_;
        return std::nullopt;
      }
      if (c != '\\' || at_ + 1 >= text_.size()) {
        token.value += c;
        ++at_;
        continue;
      }
      const char next = text_[at_ + 1];
      if (next == 'u') {
        if (auto failure = readUnicodeEscape(token.value)) return failure;
        continue;
      }
      switch (next) {
        case 'n':
          token.value += '\n';
          break;
        case 't':
          token.value += '\t';
          break;
        case 'r':
          token.value += '\r';
          break;
        case '"':
        case '\'':
        case '\\':
          token.value += next;
          break;
        default:
          token.value += '\\';
          token.value += next;
      }
      at_ += 2;
    }
  }

  std::string_view text_;
  size_t at_ = 0;
};

}  // namespace

Expected<std::vector<Token>> tokenize(std::string_view text) {
  return Lexer(text).run();
}

Error predicateError(std::string_view text, size_t offset, const std::string& problem) {
  size_t character = 1;
  for (size_t i = 0; i < offset && i < text.size(); ++i)
    if ((static_cast<uint8_t>(text[i]) & 0xC0) != 0x80) ++character;
  return Error{ErrorKind::invalidInput,
               "predicate: " + problem + " at character " + std::to_string(character)};
}

}  // namespace kavor::standin::predicate
