#pragma once
// A settings store in memory that refuses every write of one key, as a disk that fills up
// part-way through a change would: the writes before it have already been made.

#include <cerrno>
#include <string>
#include <utility>

#include "platform/settings_store.h"

namespace kavor::testing_support {

class RefusingSettingsStore final : public SettingsStore {
 public:
  explicit RefusingSettingsStore(std::string_view refusedKey) : refused_(refusedKey) {}

  std::optional<PlistValue> value(std::string_view key) const override { return kept_.value(key); }
  Status setValue(std::string_view key, PlistValue value) override {
    if (key == refused_) return ioError("cannot write " + refused_, ENOSPC);
    return kept_.setValue(key, std::move(value));
  }
  Status removeValue(std::string_view key) override {
    if (key == refused_) return ioError("cannot write " + refused_, ENOSPC);
    return kept_.removeValue(key);
  }
  // Seeds the store before refusals matter.
  MemorySettingsStore& kept() { return kept_; }

 private:
  std::string refused_;
  MemorySettingsStore kept_;
};

}  // namespace kavor::testing_support
