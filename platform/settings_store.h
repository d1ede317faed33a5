#pragma once
// The per-user settings store: typed values under text keys, plus the notifications that tell
// every window when shared settings changed. Backends: a property-list file, or memory for tests.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/expected.h"
#include "platform/notification_center.h"
#include "platform/plist_value.h"

namespace kavor {

// One row of a named list: the name shown in a combo box and the text it stands for.
struct ListEntry {
  std::string name;
  std::string text;
  bool operator==(const ListEntry&) const = default;
};
using NamedList = std::vector<ListEntry>;

// A named list as read from the store: absent (no value under its key), usable, or corrupt (a
// value that is not an array, or an element that is not an array of at least two strings).
// Only an absent list may be replaced by the factory one in the store: a corrupt one is the
// user's data and stays as it is.
struct NamedListRead {
  enum class Status { absent, ok, corrupt };
  Status status = Status::absent;
  NamedList list;
};

class SettingsStore {
 public:
  virtual ~SettingsStore();

  virtual std::optional<PlistValue> value(std::string_view key) const = 0;
  virtual Status setValue(std::string_view key, PlistValue value) = 0;
  virtual Status removeValue(std::string_view key) = 0;
  // Between begin and end, a backend may hold writes back and make them as one. Leaving a
  // batch ends it without writing: what it held goes with the next write.
  virtual void beginBatch() {}
  [[nodiscard]] virtual Status endBatch() { return okStatus(); }
  virtual void leaveBatch() {}

  // The file the settings live in, for messages; empty when there is none.
  virtual std::filesystem::path location() const { return {}; }
  // Where a settings file that could not be read was moved, if the store had to.
  virtual std::optional<std::filesystem::path> setAside() const { return std::nullopt; }

  // Typed reads convert as the platform's defaults do; an absent or unusable value reads as
  // false, 0, 0.0 or none.
  bool boolValue(std::string_view key) const;
  int64_t integerValue(std::string_view key) const;
  double doubleValue(std::string_view key) const;
  std::optional<std::string> stringValue(std::string_view key) const;
  NamedListRead namedList(std::string_view key) const;
  bool contains(std::string_view key) const { return value(key).has_value(); }

  Status setBool(std::string_view key, bool v) { return setValue(key, PlistValue(v)); }
  Status setInteger(std::string_view key, int64_t v) { return setValue(key, PlistValue(v)); }
  Status setDouble(std::string_view key, double v) { return setValue(key, PlistValue(v)); }
  Status setString(std::string_view key, std::string v) {
    return setValue(key, PlistValue(std::move(v)));
  }
  Status setNamedList(std::string_view key, const NamedList& list);

  NotificationCenter& notifications() { return notifications_; }

 private:
  NotificationCenter notifications_;
};

// Groups writes so that the store may make them as one. The writes' outcome is the result of
// commit; a batch left without commit (an early return) writes nothing itself, and what it
// held goes with the store's next write.
class SettingsBatch {
 public:
  explicit SettingsBatch(SettingsStore& store) : store_(store) { store_.beginBatch(); }
  ~SettingsBatch();
  SettingsBatch(const SettingsBatch&) = delete;
  SettingsBatch& operator=(const SettingsBatch&) = delete;

  // A write through the store; its failure is kept for commit.
  void set(std::string_view key, PlistValue value);
  // Ends the batch, making the writes held back; the first failure of the batch, if any.
  [[nodiscard]] Status commit();

 private:
  SettingsStore& store_;
  std::optional<Error> failure_;
  bool open_ = true;
};

// Converts a stored value the way the store's typed reads do.
NamedListRead namedListFromPlist(const PlistValue& value);
PlistValue namedListToPlist(const NamedList& list);

class MemorySettingsStore final : public SettingsStore {
 public:
  std::optional<PlistValue> value(std::string_view key) const override;
  Status setValue(std::string_view key, PlistValue value) override;
  Status removeValue(std::string_view key) override;
  const PlistDict& all() const { return values_; }
  int writeCount() const { return writes_; }

 private:
  PlistDict values_;
  int writes_ = 0;
};

}  // namespace kavor
