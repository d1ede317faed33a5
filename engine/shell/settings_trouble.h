#pragma once
// What the user is told when the settings cannot be kept: a write of the settings file that
// failed (a read-only folder, a full disk), or a settings file that could not be read and was
// moved aside. Each problem is told once, so that a read-only folder does not raise an alert
// at every change.

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/expected.h"
#include "platform/settings_store.h"

namespace kavor {

struct SettingsNotice {
  std::string message;
  std::string informative;
  bool operator==(const SettingsNotice&) const = default;
};

class SettingsTrouble {
 public:
  // What to tell after the store was used (written, with this outcome, or only read): the
  // write's failure and a file the store moved aside, each unless it was told before.
  std::vector<SettingsNotice> noticesAfter(const SettingsStore& store,
                                           const Status& written = okStatus());

 private:
  // A failure is the same problem when the system gave the same reason.
  std::vector<std::pair<ErrorKind, int>> toldFailures_;
  std::vector<std::filesystem::path> toldSetAside_;
};

}  // namespace kavor
