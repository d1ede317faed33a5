#pragma once
// Append-only storage for the texts of a decoded log: large blocks, no allocation per text.
// A text is addressed by a 60-bit reference (block number and offset) that fits in a value cell.

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "platform/memory_block.h"

namespace kavor {

class TextArena {
 public:
  static constexpr int kOffsetBits = 36;

  // Stores the bytes with their length in front; the reference is never 0.
  uint64_t addText(std::string_view text);
  // Stores 8 raw bytes (a number that does not fit in a cell).
  uint64_t addWord(uint64_t bits);

  std::string_view text(uint64_t ref) const {
    const unsigned char* p = at(ref);
    uint64_t len = 0;
    int shift = 0;
    while (*p & 0x80) {
      len |= uint64_t{*p++ & 0x7Fu} << shift;
      shift += 7;
    }
    len |= uint64_t{*p++} << shift;
    return {reinterpret_cast<const char*>(p), static_cast<size_t>(len)};
  }
  uint64_t word(uint64_t ref) const {
    uint64_t bits;
    std::memcpy(&bits, at(ref), sizeof bits);
    return bits;
  }

  size_t usedBytes() const { return used_; }

 private:
  const unsigned char* at(uint64_t ref) const {
    return reinterpret_cast<const unsigned char*>(blocks_[ref >> kOffsetBits].data()) +
           (ref & ((uint64_t{1} << kOffsetBits) - 1));
  }
  char* reserve(size_t bytes, uint64_t& ref);

  std::vector<MemoryBlock> blocks_;
  size_t blockUsed_ = 0;
  size_t used_ = 0;
};

}  // namespace kavor
