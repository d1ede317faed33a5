#pragma once
// Opening a file that the user named, for reading, without ever waiting: a pipe with no writer,
// a device or a folder in its place is refused, never read from.

#include <sys/stat.h>

#include <filesystem>

#include "platform/expected.h"

namespace kavor {

// A descriptor of the regular file, open for reading (reads wait as usual; close-on-exec); the
// caller closes it. info receives the file's status when given. Failures name the file:
// ErrorKind::notFound when it does not exist, "... is not a regular file" for anything else in
// its place, or the system's reason.
Expected<int> openRegularFile(const std::filesystem::path& file, struct stat* info = nullptr);

}  // namespace kavor
