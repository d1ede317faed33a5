#include "platform/folders.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "platform/clock.h"

namespace kavor {

namespace {

struct DirCloser {
  void operator()(DIR* dir) const { ::closedir(dir); }
};
using OwnedDir = std::unique_ptr<DIR, DirCloser>;

Error listingError(const std::filesystem::path& folder, int err) {
  return ioError("Cannot list the folder " + folder.string(), err);
}

// Calls each(dir, name) for every item but "." and "..", in the order readdir gives them.
template <class Each>
Status forEachName(const std::filesystem::path& folder, Each each) {
  const OwnedDir dir(::opendir(folder.c_str()));
  if (!dir) return listingError(folder, errno);
  while (true) {
    errno = 0;
    const dirent* item = ::readdir(dir.get());
    if (item == nullptr) {
      if (errno != 0) return listingError(folder, errno);
      return okStatus();
    }
    if (std::strcmp(item->d_name, ".") == 0 || std::strcmp(item->d_name, "..") == 0) continue;
    each(dir.get(), item->d_name);
  }
}

// Whole seconds are shifted before the fraction is added, so nanoseconds survive the double.
double absoluteTime(int64_t seconds, int64_t nanoseconds) {
  return static_cast<double>(seconds - static_cast<int64_t>(kUnixToAbsoluteTime)) +
         static_cast<double>(nanoseconds) / 1e9;
}

Error metadataError(const std::filesystem::path& folder, const std::string& name, int err) {
  return ioError("Cannot read the metadata of " + (folder / name).string(), err);
}

void readMetadata(DIR* dir, const std::filesystem::path& folder, FolderItem& item) {
  mode_t mode = 0;
#ifdef __APPLE__
  struct stat st {};
  if (::fstatat(::dirfd(dir), item.name.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0) {
    item.metadataError = metadataError(folder, item.name, errno);
    return;
  }
  mode = st.st_mode;
  item.size = static_cast<uint64_t>(st.st_size);
  item.modified = absoluteTime(st.st_mtimespec.tv_sec, st.st_mtimespec.tv_nsec);
  item.created = absoluteTime(st.st_birthtimespec.tv_sec, st.st_birthtimespec.tv_nsec);
#else
  struct statx st {};
  if (::statx(::dirfd(dir), item.name.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME,
              &st) != 0) {
    item.metadataError = metadataError(folder, item.name, errno);
    return;
  }
  mode = st.stx_mode;
  item.size = st.stx_size;
  item.modified = absoluteTime(st.stx_mtime.tv_sec, st.stx_mtime.tv_nsec);
  // Many file systems keep no birth time; the modification time is the closest stand-in.
  item.created = (st.stx_mask & STATX_BTIME) != 0
                     ? absoluteTime(st.stx_btime.tv_sec, st.stx_btime.tv_nsec)
                     : item.modified;
#endif
  item.isDirectory = S_ISDIR(mode);
  item.isRegularFile = S_ISREG(mode);
}

}  // namespace

Expected<std::vector<FolderItem>> listFolder(const std::filesystem::path& folder) {
  std::vector<FolderItem> items;
  Status listed = forEachName(folder, [&](DIR* dir, const char* name) {
    FolderItem& item = items.emplace_back();
    item.name = name;
    readMetadata(dir, folder, item);
  });
  if (!listed) return listed.error();
  return items;
}

Expected<std::vector<std::string>> listFolderNames(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  Status listed = forEachName(folder, [&](DIR*, const char* name) { names.emplace_back(name); });
  if (!listed) return listed.error();
  return names;
}

Status createFolder(const std::filesystem::path& folder) {
  if (::mkdir(folder.c_str(), 0777) != 0)
    return ioError("Cannot create the folder " + folder.string(), errno);
  return okStatus();
}

}  // namespace kavor
