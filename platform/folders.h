#pragma once
// Shallow folder listings with the metadata the archive tools read, and folder creation. Errors
// carry the system's own description of what went wrong, for the tools to show as they stand.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/expected.h"

namespace kavor {

struct FolderItem {
  std::string name;  // the last path component, as the file system gives it
  bool isDirectory = false;
  bool isRegularFile = false;
  uint64_t size = 0;
  // Absolute times (seconds since 2001-01-01 UTC). created is the birth time where the file
  // system keeps one, and the modification time where it keeps none.
  double created = 0;
  double modified = 0;
  // Set when the item's metadata could not be read; then only name is meaningful.
  std::optional<Error> metadataError;
};

// The items of a folder (hidden ones included, "." and ".." not), in the order the system lists
// them, each with its metadata; symbolic links are described as themselves, not followed.
Expected<std::vector<FolderItem>> listFolder(const std::filesystem::path& folder);

// The names alone, in the system's order.
Expected<std::vector<std::string>> listFolderNames(const std::filesystem::path& folder);

// One new folder; its parent must exist, and nothing may stand at the path yet.
Status createFolder(const std::filesystem::path& folder);

}  // namespace kavor
