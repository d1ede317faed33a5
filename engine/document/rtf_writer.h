#pragma once
// The result view saved as RTF, so that a word processor or text editor opens the log with its
// colours and font. Plain RTF 1.x: a font table, a colour table and the text, every character
// outside 7-bit ASCII written as \uN? so that no code page is needed to read it.

#include <cstddef>
#include <string>

#include "engine/core/styled_text.h"

namespace kavor {

struct RtfFont {
  std::string family;
  double pointSize = 12;
};

// The whole text as RTF. Bytes [0, fontedLength) carry the given font; bytes after it carry none
// (text appended after the font was applied), which the view shows in its default font, written
// as Helvetica 12 pt. Every character carries a colour: its run's, or the text colour outside
// runs. A fontedLength past the end means the whole text.
//
// Control words (\f, \fs, \cf, \tab) end with one space; \par ends with a line feed and \uN with
// its '?' stand-in. Line feeds, CR LF pairs and lone CRs each end one paragraph; other ASCII
// controls are dropped; bytes that are not UTF-8 are written as U+FFFD.
std::string rtfFromStyledText(const StyledText& text, const RtfFont& font, size_t fontedLength);

}  // namespace kavor
