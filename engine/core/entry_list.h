#pragma once
// The decoded output of one run of the log tool: the entries in the order the tool printed them.
// Compact by design: one 8-byte cell per kept field, texts in large shared blocks, and texts that
// repeat from entry to entry (subsystems, categories, image paths and UUIDs, types) held once.
// Immutable once decoded, so any number of threads may read it.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/core/entry_key.h"

namespace kavor {

enum class ValueKind : uint8_t {
  absent,
  text,
  integer,          // fits in a signed 64-bit integer
  unsignedInteger,  // above the signed range, up to 2^64-1
  real,
  null,
  boolean,
  other,  // an object or array; its JSON text is kept
};

// One field of one entry. Texts point into the list that made the value and live as long as it.
class FieldValue {
 public:
  FieldValue() = default;
  static FieldValue makeText(ValueKind kind, std::string_view text);
  static FieldValue makeInteger(int64_t v);
  static FieldValue makeUnsigned(uint64_t v);
  static FieldValue makeReal(double v);
  static FieldValue makeBoolean(bool v);
  static FieldValue makeNull();

  ValueKind kind() const { return kind_; }
  bool present() const { return kind_ != ValueKind::absent; }
  bool isNumber() const {
    return kind_ == ValueKind::integer || kind_ == ValueKind::unsignedInteger ||
           kind_ == ValueKind::real;
  }
  // The text of a text value, or the JSON text of an other value; empty for the rest.
  std::string_view text() const { return text_; }
  int64_t integer() const { return i_; }
  uint64_t unsignedInteger() const { return u_; }
  double real() const { return d_; }
  bool boolean() const { return i_ != 0; }

  // The plain text form: a text as it is, numbers in decimal (a real as its shortest round-trip
  // form), null as "null", booleans as "true" or "false", objects and arrays as their JSON text.
  void appendPlainText(std::string& out) const;
  std::string plainText() const;

 private:
  ValueKind kind_ = ValueKind::absent;
  std::string_view text_;
  union {
    int64_t i_ = 0;
    uint64_t u_;
    double d_;
  };
};

class EntryListBuilder;

class EntryList {
 public:
  EntryList();
  ~EntryList();
  EntryList(EntryList&&) noexcept;
  EntryList& operator=(EntryList&&) noexcept;
  EntryList(const EntryList&) = delete;
  EntryList& operator=(const EntryList&) = delete;

  size_t size() const { return count_; }
  bool empty() const { return count_ == 0; }
  // False for elements of the array that were not objects: they have no keys.
  bool isRecord(size_t index) const;
  FieldValue value(size_t index, EntryKey key) const;

  // Bytes held by the list, for memory accounting.
  size_t memoryBytes() const;

 private:
  friend class EntryListBuilder;
  struct Storage;
  std::unique_ptr<Storage> storage_;
  size_t count_ = 0;
};

}  // namespace kavor
