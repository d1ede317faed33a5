#pragma once
// Cutting the log daemon's statistics text the way its records are laid out: pieces between
// separators, lines at every newline character, characters (code points) dropped from either end
// and white space trimmed, never inside a character. Any bytes are read without harm: bytes that
// begin no well-formed character count as characters of their own, as ICU reads them.

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace kavor::stats_text {

// Piece n (from 0) of text cut at every occurrence of separator; none when there are fewer.
std::optional<std::string_view> piece(std::string_view text, std::string_view separator, size_t n);
// The last piece of text cut at every occurrence of separator: all of it when there is none.
std::string_view lastPiece(std::string_view text, char separator);

// The first maxLines lines of text, cut at every LF, VT, FF, CR, NEL, LS and PS. Every cut ends a
// line, so "\r\n" leaves an empty line between its two and a final line feed an empty last line.
std::vector<std::string_view> firstLines(std::string_view text, size_t maxLines);

// text less its first n characters; empty when it has no more than n.
std::string_view dropFirst(std::string_view text, size_t n);
// text less its last n characters; none when it has fewer than n.
std::optional<std::string_view> dropLast(std::string_view text, size_t n);

// text without white space and newlines at either end: tab to carriage return, NEL and every
// separator character (spaces of any width, LS, PS).
std::string_view trimmed(std::string_view text);

}  // namespace kavor::stats_text
