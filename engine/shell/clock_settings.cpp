#include "engine/shell/clock_settings.h"

#include <string>

#include "engine/shell/check_texts.h"
#include "platform/child_process.h"

namespace kavor {

bool openClockSettings([[maybe_unused]] const EnvLookup& env) {
#ifdef __APPLE__
  // osascript compiles the script and runs it; an error it reports changes nothing.
  const std::string args[] = {"-e", std::string(kSetClockScript)};
  return startDetachedProcess("/usr/bin/osascript", args).ok();
#else
  const auto settings = findProgramInPath("gnome-control-center", env);
  if (!settings) return false;
  const std::string args[] = {"datetime"};
  return startDetachedProcess(*settings, args).ok();
#endif
}

}  // namespace kavor
