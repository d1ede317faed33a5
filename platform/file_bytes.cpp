#include "platform/file_bytes.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <random>

#include "platform/owned_fd.h"
#include "platform/regular_file.h"

namespace kavor {

namespace {

std::string temporarySuffix() {
  thread_local std::mt19937_64 random{std::random_device{}()};
  char text[64];
  std::snprintf(text, sizeof text, "%.*s%ld-%016llx", static_cast<int>(kTemporaryInfix.size()),
                kTemporaryInfix.data(), static_cast<long>(::getpid()),
                static_cast<unsigned long long>(random()));
  return text;
}

// The rename is durable only once the folder's own entry list reaches the disk.
void syncFolder(const std::filesystem::path& folder) {
  const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return;
  (void)::fsync(fd);
  ::close(fd);
}

}  // namespace

Expected<std::string> readFileBytes(const std::filesystem::path& file, uint64_t maxBytes,
                                    struct stat* info) {
  struct stat st {};
  Expected<int> opened = openRegularFile(file, &st);
  if (!opened) {
    Error e = opened.error();
    if (e.sysErrno != 0) e.context = "cannot open " + e.context;
    return e;
  }
  const OwnedFd fd(*opened);
  if (static_cast<uint64_t>(st.st_size) > maxBytes)
    return Error{ErrorKind::tooLarge,
                 file.string() + " is larger than " + std::to_string(maxBytes) + " bytes"};
  std::string bytes(static_cast<size_t>(st.st_size), '\0');
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n = ::read(fd.get(), bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return ioError("cannot read " + file.string(), errno);
    if (n == 0) break;  // shrank while we read; what was there is what we have
    done += static_cast<size_t>(n);
  }
  bytes.resize(done);
  if (info) *info = st;
  return bytes;
}

namespace {

// Writes every byte to a descriptor just opened for the file, then closes it; flushed to the disk
// first when durable.
Status writeAllAndClose(OwnedFd& fd, const std::filesystem::path& file, std::string_view bytes,
                        bool durable, struct stat* info) {
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n = ::write(fd.get(), bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return ioError("cannot write " + file.string(), errno);
    done += static_cast<size_t>(n);
  }
  if (durable && ::fsync(fd.get()) != 0) return ioError("cannot flush " + file.string(), errno);
  if (info && ::fstat(fd.get(), info) != 0)
    return ioError("cannot examine " + file.string(), errno);
  if (fd.close() != 0) return ioError("cannot close " + file.string(), errno);
  return okStatus();
}

}  // namespace

Status writeNewFileDurably(const std::filesystem::path& file, std::string_view bytes,
                           struct stat* info, mode_t mode) {
  OwnedFd fd(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
  if (fd.get() < 0) return ioError("cannot create " + file.string(), errno);
  return writeAllAndClose(fd, file, bytes, true, info);
}

Status writeFileInPlace(const std::filesystem::path& file, std::string_view bytes, mode_t mode) {
  OwnedFd fd(::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode));
  if (fd.get() < 0) return ioError("cannot open " + file.string() + " for writing", errno);
  return writeAllAndClose(fd, file, bytes, false, nullptr);
}

Status replaceFileDurably(const std::filesystem::path& file, std::string_view bytes,
                          struct stat* info, mode_t mode) {
  const std::filesystem::path temporary = file.string() + temporarySuffix();
  if (Status written = writeNewFileDurably(temporary, bytes, info, mode); !written) {
    ::unlink(temporary.c_str());
    // The temporary name means nothing to whoever reads the message: name the file itself.
    const Error& failure = written.error();
    return Error{failure.kind, "cannot write " + file.string(), failure.sysErrno};
  }
  if (::rename(temporary.c_str(), file.c_str()) != 0) {
    const int err = errno;
    ::unlink(temporary.c_str());
    return ioError("cannot replace " + file.string(), err);
  }
  syncFolder(file.parent_path());
  return okStatus();
}

}  // namespace kavor
