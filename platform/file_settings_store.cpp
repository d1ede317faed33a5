#include "platform/file_settings_store.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <ctime>

#include "platform/file_bytes.h"

namespace kavor {

namespace fs = std::filesystem;

namespace {

// Far beyond any real settings file; a larger one is treated as unreadable.
constexpr uint64_t kMaxStoreBytes = uint64_t{256} << 20;
// A temporary file this much older than the store cannot belong to a write still under way.
constexpr auto kStaleTemporaryAge = std::chrono::minutes(10);

std::string localTimeText() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  ::localtime_r(&now, &parts);
  char text[32];
  std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &parts);
  return text;
}

}  // namespace

FileSettingsStore::FileSettingsStore(fs::path file) : file_(std::move(file)) {}

FileSettingsStore::Stamp FileSettingsStore::stampFrom(const struct stat& info) {
#ifdef __APPLE__
  const struct timespec& t = info.st_mtimespec;
#else
  const struct timespec& t = info.st_mtim;
#endif
  const auto sinceEpoch = std::chrono::seconds(t.tv_sec) + std::chrono::nanoseconds(t.tv_nsec);
  Stamp stamp;
  stamp.exists = true;
  stamp.mtime = std::chrono::time_point_cast<fs::file_time_type::duration>(
      std::chrono::file_clock::from_sys(std::chrono::sys_time<std::chrono::nanoseconds>(
          std::chrono::duration_cast<std::chrono::nanoseconds>(sinceEpoch))));
  stamp.size = static_cast<uintmax_t>(info.st_size);
  stamp.inode = static_cast<uint64_t>(info.st_ino);
  return stamp;
}

FileSettingsStore::Stamp FileSettingsStore::stampOfFile() const {
  struct stat info {};
  if (::stat(file_.c_str(), &info) != 0) return Stamp{};
  return stampFrom(info);
}

void FileSettingsStore::reloadIfChanged() const {
  if (loadedOnce_ && stampOfFile() == loaded_) return;
  load();
}

void FileSettingsStore::load() const {
  loadedOnce_ = true;
  unreadableInPlace_ = false;
  values_ = PlistValue(PlistDict{});
  struct stat info {};
  auto bytes = readFileBytes(file_, kMaxStoreBytes, &info);
  if (!bytes && bytes.error().kind == ErrorKind::notFound) {
    loaded_ = Stamp{};
  } else if (!bytes && (bytes.error().sysErrno == EMFILE || bytes.error().sysErrno == ENFILE ||
                        bytes.error().sysErrno == ENOMEM)) {
    // The process, not the file, is at fault: try again on the next access.
    loadedOnce_ = false;
    unreadableInPlace_ = true;
  } else {
    auto parsed = bytes ? parsePlist(*bytes) : Expected<PlistValue>(bytes.error());
    if (parsed && parsed->is<PlistDict>()) {
      values_ = std::move(parsed).value();
      loaded_ = stampFrom(info);
      removeStaleTemporaries();
    } else {
      keepAside();
    }
  }
  for (const auto& [key, change] : pending_) {
    if (change)
      values_.set(key, *change);
    else
      values_.erase(key);
  }
}

void FileSettingsStore::keepAside() const {
  const std::string base = file_.string() + ".unreadable-" + localTimeText();
  fs::path aside = base;
  for (int n = 2; fs::symlink_status(aside).type() != fs::file_type::not_found; ++n)
    aside = base + "-" + std::to_string(n);
  if (::rename(file_.c_str(), aside.c_str()) == 0) {
    setAside_ = aside;
    loaded_ = Stamp{};
  } else {
    unreadableInPlace_ = true;
    loaded_ = stampOfFile();
  }
}

// Left by a crash between writing a temporary file and renaming it; never read.
void FileSettingsStore::removeStaleTemporaries() const {
  std::error_code ec;
  const auto storeTime = fs::last_write_time(file_, ec);
  if (ec) return;
  const std::string prefix = file_.filename().string() + std::string(kTemporaryInfix);
  fs::directory_iterator it(file_.parent_path().empty() ? fs::path(".") : file_.parent_path(), ec);
  for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
    if (!it->path().filename().string().starts_with(prefix)) continue;
    std::error_code timeError;
    const auto tempTime = it->last_write_time(timeError);
    if (!timeError && tempTime + kStaleTemporaryAge < storeTime) {
      std::error_code ignored;
      fs::remove(it->path(), ignored);
    }
  }
}

std::optional<PlistValue> FileSettingsStore::value(std::string_view key) const {
  reloadIfChanged();
  if (const PlistValue* v = values_.find(key)) return *v;
  return std::nullopt;
}

void FileSettingsStore::remember(std::string_view key, std::optional<PlistValue> value) {
  for (auto& [k, change] : pending_) {
    if (k == key) {
      change = std::move(value);
      return;
    }
  }
  pending_.emplace_back(std::string(key), std::move(value));
}

Status FileSettingsStore::setValue(std::string_view key, PlistValue value) {
  reloadIfChanged();
  values_.set(key, value);
  remember(key, std::move(value));
  return batchDepth_ > 0 ? okStatus() : write();
}

Status FileSettingsStore::removeValue(std::string_view key) {
  reloadIfChanged();
  if (!values_.erase(key)) return okStatus();
  remember(key, std::nullopt);
  return batchDepth_ > 0 ? okStatus() : write();
}

void FileSettingsStore::beginBatch() {
  ++batchDepth_;
}

Status FileSettingsStore::endBatch() {
  if (batchDepth_ == 0 || --batchDepth_ > 0 || pending_.empty()) return okStatus();
  return write();
}

void FileSettingsStore::leaveBatch() {
  if (batchDepth_ > 0) --batchDepth_;
}

Status FileSettingsStore::write() {
  // Another process may have written since we read: take its keys, then ours over them.
  reloadIfChanged();
  if (unreadableInPlace_) load();
  if (unreadableInPlace_)
    return Error{ErrorKind::io, "cannot move the unreadable settings file " + file_.string() +
                                    " aside, so it is left unchanged"};

  const std::string xml = writeXmlPlist(values_);
  const fs::path folder = file_.parent_path();
  if (!folder.empty()) {
    std::error_code ec;
    fs::create_directories(folder, ec);
    if (ec) return ioError("cannot create the folder " + folder.string(), ec.value());
  }
  struct stat info {};
  if (Status replaced = replaceFileDurably(file_, xml, &info); !replaced) return replaced;
  // Renaming keeps the inode, size and time, so this is the stamp of the store we just made.
  loaded_ = stampFrom(info);
  pending_.clear();
  return okStatus();
}

}  // namespace kavor
