#include "platform/regular_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace kavor {

namespace {

Error notRegular(const std::filesystem::path& file) {
  return Error{ErrorKind::io, file.string() + " is not a regular file"};
}

}  // namespace

Expected<int> openRegularFile(const std::filesystem::path& file, struct stat* info) {
  struct stat st {};
  // A device is not even opened: opening some has effects of its own.
  if (::stat(file.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) return notRegular(file);
  // Without O_NONBLOCK, opening a pipe waits for a writer; something else may have taken the
  // file's place since the check above.
  const int fd = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (fd < 0) {
    Error e = ioError(file.string(), errno);
    if (e.sysErrno == ENOENT) e.kind = ErrorKind::notFound;
    return e;
  }
  if (::fstat(fd, &st) != 0) {
    const int err = errno;
    ::close(fd);
    return ioError(file.string(), err);
  }
  if (!S_ISREG(st.st_mode)) {
    ::close(fd);
    return notRegular(file);
  }
  const int flags = ::fcntl(fd, F_GETFL);
  if (flags >= 0) (void)::fcntl(fd, F_SETFL, flags & ~O_NONBLOCK);
  if (info) *info = st;
  return fd;
}

}  // namespace kavor
