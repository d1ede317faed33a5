#include "platform/system_paths.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace kavor {

namespace fs = std::filesystem;

EnvLookup processEnvironment() {
  return [](std::string_view name) -> std::optional<std::string> {
    const char* value = std::getenv(std::string(name).c_str());
    if (!value) return std::nullopt;
    return std::string(value);
  };
}

SystemPaths::SystemPaths(fs::path root) : root_(std::move(root)) {}

// The fixed path is read lexically, relative or not: "." is dropped and ".." never climbs
// above the root (it stops there, as it does at "/"), so no input reaches outside the root.
fs::path SystemPaths::resolve(std::string_view fixedPath) const {
  std::vector<std::string_view> parts;
  size_t start = 0;
  while (start <= fixedPath.size()) {
    size_t end = fixedPath.find('/', start);
    if (end == std::string_view::npos) end = fixedPath.size();
    const std::string_view part = fixedPath.substr(start, end - start);
    if (part == "..") {
      if (!parts.empty()) parts.pop_back();
    } else if (!part.empty() && part != ".") {
      parts.push_back(part);
    }
    start = end + 1;
  }
  fs::path result = root_.empty() ? fs::path("/") : root_;
  for (const std::string_view part : parts)
    result /= part;
  return result;
}

namespace {

// XDG folders must be absolute; a relative value is ignored, as the base directory rules say.
std::optional<fs::path> absoluteVariable(const EnvLookup& env, std::string_view name) {
  const auto value = env(name);
  if (!value || value->empty() || (*value)[0] != '/') return std::nullopt;
  return fs::path(*value);
}

fs::path homeFolder(const EnvLookup& env) {
  if (auto home = absoluteVariable(env, "HOME")) return *home;
  // Without $HOME, the account database still knows; "/" is the last resort.
  std::vector<char> buffer(16384);
  struct passwd entry {};
  struct passwd* found = nullptr;
  if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found &&
      found->pw_dir && found->pw_dir[0] == '/')
    return fs::path(found->pw_dir);
  return fs::path("/");
}

fs::path xdgFolder(const EnvLookup& env, std::string_view variable, std::string_view fallback) {
  if (auto folder = absoluteVariable(env, variable)) return *folder;
  return homeFolder(env) / fallback;
}

}  // namespace

fs::path systemRootFrom(const EnvLookup& env) {
  if (auto root = env("KAVOR_SYSTEM_ROOT"); root && !root->empty()) return fs::path(*root);
#ifdef __APPLE__
  return fs::path("/");
#else
  return xdgFolder(env, "XDG_DATA_HOME", ".local/share") / "Kavor" / "system-root";
#endif
}

fs::path settingsFilePathFrom(const EnvLookup& env) {
  return xdgFolder(env, "XDG_CONFIG_HOME", ".config") / "Kavor" / "Kavor.plist";
}

}  // namespace kavor
