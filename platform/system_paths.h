#pragma once
// Where the system Kavor reads lives. On macOS that is "/"; elsewhere a stand-in system root laid
// out like the parts of macOS that Kavor reads. Every fixed path of the system goes through here.

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kavor {

// Reads one environment variable; injected so that tests never see the real environment.
using EnvLookup = std::function<std::optional<std::string>(std::string_view name)>;
EnvLookup processEnvironment();

class SystemPaths {
 public:
  explicit SystemPaths(std::filesystem::path root);

  const std::filesystem::path& root() const { return root_; }
  // A fixed absolute path of the system ("/usr/bin/log", "/var/db/diagnostics/Persist") as it
  // is found under the root. Texts shown to the user keep the fixed path, not this one.
  std::filesystem::path resolve(std::string_view fixedPath) const;

 private:
  std::filesystem::path root_;
};

// KAVOR_SYSTEM_ROOT when set and not empty; "/" on macOS; otherwise the per-user demo root,
// $XDG_DATA_HOME/Kavor/system-root (XDG_DATA_HOME defaulting to ~/.local/share).
std::filesystem::path systemRootFrom(const EnvLookup& env);

// $XDG_CONFIG_HOME/Kavor/Kavor.plist (XDG_CONFIG_HOME defaulting to ~/.config).
std::filesystem::path settingsFilePathFrom(const EnvLookup& env);

}  // namespace kavor
