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

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace kavor
