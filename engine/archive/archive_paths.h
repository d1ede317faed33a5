#pragma once
// How the archive tools read names and paths.

#include <filesystem>
#include <string>
#include <string_view>

namespace kavor {

// The part of the name after its last dot; a name without a dot has none.
inline std::string_view extensionOf(std::string_view name) {
  const size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? std::string_view{} : name.substr(dot + 1);
}

// The path as the user chose it, without the trailing separator a typed path often has.
inline std::string shownPath(const std::filesystem::path& folder) {
  std::string path = folder.string();
  while (path.size() > 1 && path.back() == '/')
    path.pop_back();
  return path;
}

}  // namespace kavor
