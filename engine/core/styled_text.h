#pragma once
// Text with a colour per piece, as the result view shows it: the window turns it into rich text,
// kavor-cli into terminal colours or markup.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kavor {

enum class TextColour : uint8_t { text, red, green, blue };

// One coloured piece: bytes [begin, begin + length) of the text.
struct ColourRun {
  size_t begin = 0;
  size_t length = 0;
  TextColour colour = TextColour::text;
  bool operator==(const ColourRun&) const = default;
};

struct StyledText {
  std::string text;  // UTF-8
  // The pieces in other colours than the text colour, in order and apart; adjacent pieces of one
  // colour stay separate runs, so the pieces a style made can be told apart.
  std::vector<ColourRun> runs;
};

}  // namespace kavor
