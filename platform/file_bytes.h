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

// Settings may hold predicates and paths the user would not share: owner only, unless asked.
inline constexpr mode_t kOwnerOnlyMode = 0600;
// Readable as the user's umask allows, like any file a user saves.
inline constexpr mode_t kUserFileMode = 0666;

// Writes bytes to a new file (which must not exist yet) and flushes them to the disk.
// When info is given it receives the status of the written file.
Status writeNewFileDurably(const std::filesystem::path& file, std::string_view bytes,
                           struct stat* info = nullptr, mode_t mode = kOwnerOnlyMode);

// Writes bytes over the file's contents in place (made if missing), as a user's "save" of a
// report does: no temporary, no flush; a failure part-way leaves part of the bytes.
Status writeFileInPlace(const std::filesystem::path& file, std::string_view bytes,
                        mode_t mode = kUserFileMode);

// Replaces the file's contents as one step: the bytes go to a temporary file beside it, which is
// then renamed over it, so a reader never sees a half-written file. Temporary names are the
// file's name followed by kTemporaryInfix and a random part.
Status replaceFileDurably(const std::filesystem::path& file, std::string_view bytes,
                          struct stat* info = nullptr, mode_t mode = kOwnerOnlyMode);
inline constexpr std::string_view kTemporaryInfix = ".tmp-";

}  // namespace kavor
