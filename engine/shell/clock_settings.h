#pragma once
// Pointing the user at the clock setting before the time-format alert: on macOS the Language &
// Region pane, through the script of kSetClockScript; elsewhere the desktop's date-and-time
// settings where one is known (GNOME's), and nothing otherwise. What is started runs on its
// own; the alert follows either way.

#include "platform/system_paths.h"

namespace kavor {

// Whether something was started.
bool openClockSettings(const EnvLookup& env);

}  // namespace kavor
