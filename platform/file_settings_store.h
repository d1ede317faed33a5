#pragma once
// Settings in one XML property list per user. Every write goes to a temporary file that is then
// renamed over the store, so a crash never leaves a half-written file. A file changed by another
// process is read again before a write, so no key another process wrote is lost. A file that
// cannot be read is kept aside under another name and the store starts empty.

#include <filesystem>
#include <optional>
#include <string>

#include "platform/settings_store.h"

struct stat;

namespace kavor {

class FileSettingsStore final : public SettingsStore {
 public:
  explicit FileSettingsStore(std::filesystem::path file);

  std::optional<PlistValue> value(std::string_view key) const override;
  Status setValue(std::string_view key, PlistValue value) override;
  Status removeValue(std::string_view key) override;
  void beginBatch() override;
  Status endBatch() override;
  void leaveBatch() override;

  std::filesystem::path location() const override { return file_; }
  // The latest place an unreadable file was moved to, on opening or on reading it again.
  std::optional<std::filesystem::path> setAside() const override { return setAside_; }

 private:
  struct Stamp {
    bool exists = false;
    std::filesystem::file_time_type mtime{};
    uintmax_t size = 0;
    uint64_t inode = 0;
    bool operator==(const Stamp&) const = default;
  };
  static Stamp stampFrom(const struct stat& info);
  Stamp stampOfFile() const;
  void reloadIfChanged() const;
  void load() const;
  void keepAside() const;
  void removeStaleTemporaries() const;
  void remember(std::string_view key, std::optional<PlistValue> value);
  Status write();

  std::filesystem::path file_;
  mutable PlistValue values_{PlistDict{}};
  mutable Stamp loaded_;
  mutable bool loadedOnce_ = false;
  // An existing file could be neither read nor moved aside: writing would destroy it.
  mutable bool unreadableInPlace_ = false;
  mutable std::optional<std::filesystem::path> setAside_;
  // Keys changed since the last write, replayed over a newer file before writing it.
  std::vector<std::pair<std::string, std::optional<PlistValue>>> pending_;
  int batchDepth_ = 0;
};

}  // namespace kavor
