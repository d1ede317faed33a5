#pragma once
// Fills an EntryList one entry at a time; used by the decoder and by tests that need lists.

#include <cstdint>
#include <memory>
#include <string_view>

#include "engine/core/entry_list.h"

namespace kavor {

class EntryListBuilder {
 public:
  EntryListBuilder();
  ~EntryListBuilder();
  EntryListBuilder(const EntryListBuilder&) = delete;
  EntryListBuilder& operator=(const EntryListBuilder&) = delete;

  // Starts a record with every key absent; the setters below fill its fields.
  void beginRecord();
  // Appends an element of the array that is not an object.
  void addNonRecord();

  void setText(EntryKey key, std::string_view text);
  void setInteger(EntryKey key, int64_t v);
  void setUnsigned(EntryKey key, uint64_t v);
  void setReal(EntryKey key, double v);
  void setBoolean(EntryKey key, bool v);
  void setNull(EntryKey key);
  // An object or array: its JSON text.
  void setOther(EntryKey key, std::string_view json);

  size_t size() const { return list_.count_; }
  size_t memoryBytes() const { return list_.memoryBytes(); }
  EntryList finish();
  // Frees what was built; nothing may be added afterwards.
  void discard() noexcept;

 private:
  uint64_t& cell(EntryKey key) { return row_[static_cast<int>(key)]; }
  EntryList list_;
  uint64_t* row_ = nullptr;
};

}  // namespace kavor
