#pragma once
// One piece of the log tool's output, a JSON array of entries: parsed (checking every byte),
// then stored into an EntryListBuilder. The two steps may run on different threads, one after
// the other.

#include <cstddef>
#include <memory>

#include "engine/core/entry_list_builder.h"
#include "platform/expected.h"

namespace kavor {

class EntryChunkParser {
 public:
  static constexpr size_t kPadding = 64;

  EntryChunkParser();
  ~EntryChunkParser();
  EntryChunkParser(const EntryChunkParser&) = delete;
  EntryChunkParser& operator=(const EntryChunkParser&) = delete;

  // data[0, length) is one JSON array, and kPadding bytes after it must be readable (the parser
  // reads whole blocks). Returns how many elements it has. The bytes are not needed afterwards.
  Expected<size_t> parse(const char* data, size_t length);
  // Appends the elements of the last successful parse to the builder.
  void store(EntryListBuilder& out) const;

  // What parsing `length` bytes makes the parser hold: simdjson keeps, per byte of its capacity,
  // a tape of 8 bytes, structural indexes of 4 and room for a copy of the strings, and stacks as
  // deep as the deepest nesting it accepts.
  static constexpr size_t kMemoryPerByte = 14;
  static constexpr size_t kMemoryFixed = size_t{16} << 10;
  static constexpr size_t memoryFor(size_t length) {
    return length ? length * kMemoryPerByte + kMemoryFixed : 0;
  }
  // What the parser holds now; it keeps its largest capacity.
  size_t memoryBytes() const;
  // About how much the last parse adds to a list when stored: a row per element and no more
  // text than its bytes.
  size_t storedBytesEstimate() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace kavor
