#pragma once
// The decoded output of one run of the log tool: the entries in the order the tool printed them.
// Compact by design: one 8-byte cell per kept field, texts in large shared blocks, and texts that
// repeat from entry to entry (subsystems, categories, image paths and UUIDs, types) held once.
// Immutable once decoded, so any number of threads may read it.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
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

  ValueKind kind() const { return kind_; }
  bool present() const { return kind_ != ValueKind::absent; }
  bool isNumber() const {
    return kind_ == ValueKind::integer || kind_ == ValueKind::unsignedInteger ||
           kind_ == ValueKind::real;
  }
  // The text of a text value, or the JSON text of an other value; empty for the rest.
  std::string_view text() const { return text_; }
  int64_t integer() const { return static_cast<int64_t>(bits_); }
  uint64_t unsignedInteger() const { return bits_; }
  double real() const { return std::bit_cast<double>(bits_); }
  bool boolean() const { return bits_ != 0; }

  // The plain text form: a text as it is, numbers in decimal (a real as its shortest round-trip
  // form), null as "null", booleans as "true" or "false", objects and arrays as their JSON text.
  void appendPlainText(std::string& out) const;
  std::string plainText() const;

 private:
  friend class EntryList;
  FieldValue(ValueKind kind, std::string_view text) : kind_(kind), text_(text) {}
  // Numbers and booleans: an integer's two's complement, a real's bits, or 0 and 1.
  FieldValue(ValueKind kind, uint64_t bits) : kind_(kind), bits_(bits) {}

  ValueKind kind_ = ValueKind::absent;
  std::string_view text_;
  uint64_t bits_ = 0;
};

class EntryListBuilder;

struct TextTally {
  std::string_view text;
  size_t count = 0;
};

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
  // False for elements of the array that were not objects (they have no keys), and past the end.
  bool isRecord(size_t index) const;
  FieldValue value(size_t index, EntryKey key) const;
  // How many entries hold each text "eventType", in order of first appearance; entries with
  // none, or another kind of value, are left out. Counted once, on first asking, from any
  // thread: every restyle that the limit cuts needs the whole list's count.
  std::span<const TextTally> eventTypeTally() const;

  // Bytes held by the list, for memory accounting.
  size_t memoryBytes() const;

 private:
  friend class EntryListBuilder;
  struct Storage;
  std::unique_ptr<Storage> storage_;
  size_t count_ = 0;
};

}  // namespace kavor
