#pragma once
// Counting and cutting UTF-8 text in user-perceived characters: a letter with its combining marks,
// an emoji with its modifiers and joiners, or a CR LF pair is one character, as the user sees it.
// Plain ASCII text (the usual case) is measured in bytes without asking ICU.
// Not shared between threads: each thread that cuts text has its own.

#include <cstddef>
#include <memory>
#include <string_view>

namespace kavor {

class UserCharacters {
 public:
  static constexpr size_t npos = static_cast<size_t>(-1);

  UserCharacters();
  ~UserCharacters();
  UserCharacters(const UserCharacters&) = delete;
  UserCharacters& operator=(const UserCharacters&) = delete;

  // The byte length of the first n characters of text, or npos when it has fewer than n.
  size_t prefixBytes(std::string_view text, size_t n);
  size_t count(std::string_view text);
  // The first n characters (the whole text when it has fewer).
  std::string_view first(std::string_view text, size_t n);

  // True when every byte is ASCII and none is a carriage return, so characters are bytes.
  static bool bytesAreCharacters(std::string_view text);

 private:
  struct Breaker;
  Breaker& breaker(std::string_view text);
  std::unique_ptr<Breaker> breaker_;  // made on the first text that needs it
};

}  // namespace kavor
