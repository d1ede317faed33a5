#pragma once
// Styled text on a terminal or in a file: ANSI colours, plain text, or markup that tests and
// scripts can read ("<r>red piece </r>").

#include <optional>
#include <string_view>

#include "engine/core/styled_text.h"

namespace kavor::cli {

enum class ColourMode { plain, ansi, markup };

// "auto", "always", "never" or "markup"; auto gives ANSI colours when standard output is a
// terminal and NO_COLOR is not set. None for any other word.
std::optional<ColourMode> colourModeFrom(std::string_view word);

// Writes the whole text to standard output in the given form.
void writeStyled(const StyledText& styled, ColourMode mode);

}  // namespace kavor::cli
