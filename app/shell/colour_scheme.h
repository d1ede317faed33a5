#pragma once
// Whether a view follows the desktop's dark scheme: its palette's background decides, as Qt
// hands the scheme to widgets through their palette.

class QPalette;

namespace kavor::app {

// True when the palette's text background is dark: colourValue(colour, true) is the one to paint.
bool prefersDarkColours(const QPalette& palette);

}  // namespace kavor::app
