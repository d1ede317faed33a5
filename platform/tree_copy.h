#pragma once
// Copying a file or a whole folder tree, as a log store is copied into a logarchive: gigabytes,
// so the bytes move inside the kernel (a reflink where the file system shares blocks, else
// copy_file_range), and the copy reports its progress and stops when asked.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>

#include "platform/expected.h"

namespace kavor {

struct CopyObserver {
  // Called from the copying thread with the bytes of file contents copied so far by this call.
  std::function<void(uint64_t bytesCopied)> progress;
  std::stop_token stop;  // checked between chunks; a stopped copy fails and leaves what it made
};

// Copies from (a file, a folder tree or a symbolic link, copied as a link) to the path to, which
// must not exist yet (its parent must). Keeps modification times and permission bits. The first
// failure ends the copy, leaving what was copied, with the system's description of the failure.
Status copyItem(const std::filesystem::path& from, const std::filesystem::path& to,
                const CopyObserver& observer = {});

// The bytes of the regular files under path (path itself when it is one); 0 when it is missing.
// What copyItem's progress counts up to.
uint64_t treeContentBytes(const std::filesystem::path& path);

}  // namespace kavor
