#include "app/shell/colour_scheme.h"

#include <QPalette>

#include "engine/core/text_colours.h"

namespace kavor::app {

bool prefersDarkColours(const QPalette& palette) {
  const QColor base = palette.color(QPalette::Base).toRgb();
  return isDarkBackground({static_cast<uint8_t>(base.red()), static_cast<uint8_t>(base.green()),
                           static_cast<uint8_t>(base.blue())});
}

}  // namespace kavor::app
