#pragma once
// The manual's pictures, drawn by the application itself on the offscreen platform: a main
// window after a Get Log on a demo system, and the activity chart of that fetch.

#include <QImage>
#include <QString>
#include <filesystem>
#include <vector>

#include "platform/expected.h"

namespace kavor::manual {

struct Screenshot {
  QString name;  // as the manual's text names the picture
  QImage image;
};

// root: a demo system made by the stand-in log tool; now: the moment the windows take as the
// present, in seconds since 2001, so that the same build draws the same pictures.
Expected<std::vector<Screenshot>> takeScreenshots(const std::filesystem::path& root, double now);

}  // namespace kavor::manual
