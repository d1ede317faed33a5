#include "engine/shell/settings_trouble.h"

#include <algorithm>

#include "engine/shell/menu_texts.h"

namespace kavor {

namespace {

std::string quoted(const std::filesystem::path& file) {
  return "\u201C" + file.string() + "\u201D";
}

// The settings file and the system's reason alone: the error's own context may name a file the
// user never sees.
SettingsNotice writeFailureNotice(const std::filesystem::path& file, const Error& error) {
  return {"Your settings could not be saved.",
          std::string(kApplicationName) + " could not write its settings file " + quoted(file) +
              " (" + error.reason() + "). Changes to the settings may be lost when " +
              std::string(kApplicationName) + " quits."};
}

SettingsNotice setAsideNotice(const std::filesystem::path& file,
                              const std::filesystem::path& aside) {
  return {"Your settings could not be read.",
          "The settings file " + quoted(file) + " could not be read, so " +
              std::string(kApplicationName) +
              " starts from its factory settings. The unreadable file was kept as " +
              quoted(aside) + "."};
}

}  // namespace

std::vector<SettingsNotice> SettingsTrouble::noticesAfter(const SettingsStore& store,
                                                          const Status& written) {
  std::vector<SettingsNotice> notices;
  if (!written) {
    const std::pair problem{written.error().kind, written.error().sysErrno};
    if (std::find(toldFailures_.begin(), toldFailures_.end(), problem) == toldFailures_.end()) {
      toldFailures_.push_back(problem);
      notices.push_back(writeFailureNotice(store.location(), written.error()));
    }
  }
  if (const auto aside = store.setAside();
      aside &&
      std::find(toldSetAside_.begin(), toldSetAside_.end(), *aside) == toldSetAside_.end()) {
    toldSetAside_.push_back(*aside);
    notices.push_back(setAsideNotice(store.location(), *aside));
  }
  return notices;
}

}  // namespace kavor
