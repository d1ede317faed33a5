#include "platform/tree_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <linux/fs.h>
#include <sys/ioctl.h>
#endif

#include <array>
#include <cerrno>
#include <string>
#include <vector>

#include "platform/folders.h"
#include "platform/owned_fd.h"

namespace kavor {

namespace {

namespace fs = std::filesystem;

// Large enough that the system calls cost nothing beside the bytes, small enough that progress
// moves and a stop request is seen within a fraction of a second.
constexpr size_t kChunkBytes = size_t{16} << 20;
constexpr size_t kBufferBytes = size_t{1} << 20;

std::array<timespec, 2> accessAndModification(const struct stat& st) {
#ifdef __APPLE__
  return {st.st_atimespec, st.st_mtimespec};
#else
  return {st.st_atim, st.st_mtim};
#endif
}

Error failed(const fs::path& from, const fs::path& to, int err) {
  return ioError("Cannot copy " + from.string() + " to " + to.string(), err);
}

class TreeCopy {
 public:
  TreeCopy(const fs::path& from, const fs::path& to, const CopyObserver& observer)
      : from_(from), to_(to), observer_(observer) {}

  // One item, and everything under it when it is a folder.
  Status copy(const fs::path& from, const fs::path& to) {
    if (stopped()) return stopError();
    struct stat st {};
    if (::lstat(from.c_str(), &st) != 0) return failed(from, to, errno);
    if (S_ISREG(st.st_mode)) return copyFile(from, to);
    if (S_ISDIR(st.st_mode)) return copyFolder(from, to, st);
    if (S_ISLNK(st.st_mode)) return copyLink(from, to, st);
    return Error{ErrorKind::invalidInput, "Cannot copy " + from.string() + " to " + to.string() +
                                              ": it is not a file, a folder or a link"};
  }

 private:
  bool stopped() const { return observer_.stop.stop_requested(); }

  Error stopError() const {
    return Error{ErrorKind::io,
                 "The copy of " + from_.string() + " to " + to_.string() + " was stopped"};
  }

  void advance(uint64_t bytes) {
    copied_ += bytes;
    if (observer_.progress) observer_.progress(copied_);
  }

  Status copyFolder(const fs::path& from, const fs::path& to, const struct stat& st) {
    // Listed before the target exists, so that a folder copied into itself never meets its copy.
    Expected<std::vector<std::string>> names = listFolderNames(from);
    if (!names) return names.error();
    // Owner-only while it fills, so that the contents of a read-only folder still go in.
    if (::mkdir(to.c_str(), 0700) != 0) return failed(from, to, errno);
    for (const std::string& name : *names) {
      if (Status done = copy(from / name, to / name); !done) return done;
    }
    // Last, because every item added to the folder moves its modification time.
    const std::array<timespec, 2> times = accessAndModification(st);
    if (::chmod(to.c_str(), st.st_mode & 07777) != 0 ||
        ::utimensat(AT_FDCWD, to.c_str(), times.data(), AT_SYMLINK_NOFOLLOW) != 0)
      return failed(from, to, errno);
    return okStatus();
  }

  Status copyLink(const fs::path& from, const fs::path& to, const struct stat& st) {
    std::error_code error;
    const fs::path target = fs::read_symlink(from, error);
    if (!error) fs::create_symlink(target, to, error);
    if (error) return failed(from, to, error.value());
    const std::array<timespec, 2> times = accessAndModification(st);
    if (::utimensat(AT_FDCWD, to.c_str(), times.data(), AT_SYMLINK_NOFOLLOW) != 0)
      return failed(from, to, errno);
    return okStatus();
  }

  Status copyFile(const fs::path& from, const fs::path& to) {
    const OwnedFd in(::open(from.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    struct stat st {};
    if (in.get() < 0 || ::fstat(in.get(), &st) != 0) return failed(from, to, errno);
    // Owner-only until the contents are in; the source's bits come last.
    OwnedFd out(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (out.get() < 0) return failed(from, to, errno);
    if (Status moved =
            copyContents(in.get(), out.get(), static_cast<uint64_t>(st.st_size), from, to);
        !moved)
      return moved;
    const std::array<timespec, 2> times = accessAndModification(st);
    if (::fchmod(out.get(), st.st_mode & 07777) != 0 || ::futimens(out.get(), times.data()) != 0)
      return failed(from, to, errno);
    // A delayed write error shows only here.
    if (out.close() != 0) return failed(from, to, errno);
    return okStatus();
  }

  Status copyContents(int in, int out, uint64_t size, const fs::path& from, const fs::path& to) {
    if (stopped()) return stopError();
    off_t done = 0;
#ifdef __linux__
    // Where the file system shares blocks between files, no byte moves at all.
    if (::ioctl(out, FICLONE, in) == 0) {
      advance(size);
      return okStatus();
    }
    // Otherwise the kernel moves the bytes, without a trip through this process.
    while (true) {
      if (stopped()) return stopError();
      off_t outAt = done;
      const ssize_t n = ::copy_file_range(in, &done, out, &outAt, kChunkBytes, 0);
      if (n < 0 && errno == EINTR) continue;
      if (n < 0 && (errno == EXDEV || errno == ENOSYS || errno == EINVAL || errno == EOPNOTSUPP))
        break;
      if (n < 0) return failed(from, to, errno);
      // Some file systems give nothing here for contents they do have: read them instead.
      if (n == 0 && static_cast<uint64_t>(done) < size) break;
      if (n == 0) return okStatus();
      advance(static_cast<uint64_t>(n));
    }
#endif
    std::vector<char> buffer(kBufferBytes);
    while (true) {
      if (stopped()) return stopError();
      const ssize_t n = ::pread(in, buffer.data(), buffer.size(), done);
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) return failed(from, to, errno);
      if (n == 0) return okStatus();
      for (ssize_t written = 0; written < n;) {
        const ssize_t w = ::pwrite(out, buffer.data() + written, n - written, done + written);
        if (w < 0 && errno == EINTR) continue;
        if (w < 0) return failed(from, to, errno);
        written += w;
      }
      done += n;
      advance(static_cast<uint64_t>(n));
    }
  }

  const fs::path& from_;
  const fs::path& to_;
  const CopyObserver& observer_;
  uint64_t copied_ = 0;
};

}  // namespace

Status copyItem(const fs::path& from, const fs::path& to, const CopyObserver& observer) {
  return TreeCopy(from, to, observer).copy(from, to);
}

uint64_t treeContentBytes(const fs::path& path) {
  struct stat st {};
  if (::lstat(path.c_str(), &st) != 0) return 0;
  if (S_ISREG(st.st_mode)) return static_cast<uint64_t>(st.st_size);
  if (!S_ISDIR(st.st_mode)) return 0;
  Expected<std::vector<std::string>> names = listFolderNames(path);
  if (!names) return 0;
  uint64_t total = 0;
  for (const std::string& name : *names)
    total += treeContentBytes(path / name);
  return total;
}

}  // namespace kavor
