#pragma once
// Find in a window's result: every place a text or a regular expression occurs in the shown
// text, as byte ranges for the find bar to mark and step through. Runs on any thread; each call
// makes its own ICU objects, and a stop request ends it early.

#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/expected.h"

namespace kavor {

struct TextQuery {
  std::string text;
  bool matchCase = false;
  bool regularExpression = false;
  std::string locale;  // ICU locale id for matching without case; empty for the user's
};

using TextRange = std::pair<size_t, size_t>;  // bytes [first, second)

// Matches past this many are counted but not kept: two million ranges take 32 MB.
inline constexpr size_t kMaxKeptMatches = 2'000'000;

struct MatchCount {
  size_t total = 0;      // every match, those past the cap too
  size_t kept = 0;       // the ranges kept: the first ones, up to the cap
  size_t slowLines = 0;  // lines a regular expression gave up on
};

struct TextMatches {
  std::vector<TextRange> ranges;  // in order and apart
  MatchCount count;
  bool stopped = false;  // a stop request ended the search: the ranges are partial
};

// Matches go left to right and never overlap: the search goes on where a match ends ("aa" is
// twice in "aaaa"). Plain text matches byte for byte with case, or else as CaselessText does,
// in whole user-perceived characters. A regular expression is matched within each line (^ and $
// are a line's ends) and its empty matches are not kept. An empty text is found nowhere. A
// pattern that does not compile is an error with ICU's reason.
Expected<TextMatches> findInText(std::string_view text, const TextQuery& query,
                                 std::stop_token stop = {}, size_t cap = kMaxKeptMatches);

// What the find bar says of a search: "No matches", "3 of 120" for the match at index current,
// or "120 matches" with none current; then how many are marked when the cap cut, and the lines
// given up on.
std::string findStatusText(const MatchCount& count, std::optional<size_t> current);
// What it says of a pattern that does not compile.
std::string findErrorText(const Error& error);

}  // namespace kavor
