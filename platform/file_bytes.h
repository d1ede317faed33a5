#pragma once
// Whole-file reads and writes for the platform layer, with the errors as values.

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "platform/expected.h"

namespace kavor {

// Reads the file in one go; a file larger than maxBytes gives ErrorKind::tooLarge and a missing
// one ErrorKind::notFound. When info is given it receives the status of the very file read.
Expected<std::string> readFileBytes(const std::filesystem::path& file, uint64_t maxBytes,
                                    struct stat* info = nullptr);

// Writes bytes to a new file (which must not exist yet) and flushes them to the disk.
// When info is given it receives the status of the written file.
Status writeNewFileDurably(const std::filesystem::path& file, std::string_view bytes,
                           struct stat* info = nullptr);

}  // namespace kavor
