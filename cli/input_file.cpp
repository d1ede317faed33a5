#include "cli/input_file.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/regular_file.h"

namespace kavor::cli {

Expected<InputFile> InputFile::open(std::string_view operand) {
  if (operand == "-") return InputFile(STDIN_FILENO, false, "standard input");
  std::string name(operand);
  // A pipe or a device named here could block or never end; standard input may be either.
  const Expected<int> fd = openRegularFile(name);
  if (!fd) return fd.error();
  return InputFile(*fd, true, std::move(name));
}

InputFile::~InputFile() {
  if (owned_) ::close(fd_);
}

InputFile::InputFile(InputFile&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)),
      owned_(std::exchange(other.owned_, false)),
      name_(std::move(other.name_)) {}

Expected<size_t> InputFile::read(std::span<char> into) {
  for (;;) {
    const ssize_t n = ::read(fd_, into.data(), into.size());
    if (n >= 0) return static_cast<size_t>(n);
    if (errno != EINTR) return ioError(name_, errno);
  }
}

}  // namespace kavor::cli
