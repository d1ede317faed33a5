#include "platform/file_reader.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/regular_file.h"

namespace kavor {

Expected<FileReader> FileReader::open(const std::filesystem::path& file) {
  // A pipe or a device named here could block or never end; standard input may be either.
  const Expected<int> fd = openRegularFile(file);
  if (!fd) return fd.error();
  return FileReader(*fd, true, file.string());
}

FileReader FileReader::standardInput() {
  return FileReader(STDIN_FILENO, false, "standard input");
}

FileReader::~FileReader() {
  if (owned_) ::close(fd_);
}

FileReader::FileReader(FileReader&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)),
      owned_(std::exchange(other.owned_, false)),
      name_(std::move(other.name_)) {}

Expected<size_t> FileReader::read(std::span<char> into) {
  for (;;) {
    const ssize_t n = ::read(fd_, into.data(), into.size());
    if (n >= 0) return static_cast<size_t>(n);
    if (errno != EINTR) return ioError(name_, errno);
  }
}

}  // namespace kavor
