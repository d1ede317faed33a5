#pragma once
// Parses one piece of the log tool's output, a JSON array of entries, into an EntryListBuilder.

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
  // reads whole blocks). Appends every element to the builder and returns how many there were.
  Expected<size_t> parse(const char* data, size_t length, EntryListBuilder& out);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace kavor
