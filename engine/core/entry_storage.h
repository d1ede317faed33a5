#pragma once
// How an EntryList keeps its values; shared by the list and the builder that fills it.
//
// Each entry has one 8-byte cell per EntryKey. A cell is a 4-bit tag and a 60-bit payload: small
// integers, booleans and null live in the cell; texts, JSON texts of objects and arrays, and
// numbers that do not fit are in the arena and the payload is their reference.

#include <bit>
#include <cstdint>
#include <mutex>
#include <vector>

#include "engine/core/entry_key.h"
#include "engine/core/entry_list.h"
#include "engine/core/text_arena.h"
#include "engine/core/text_interner.h"
#include "platform/memory_block.h"

namespace kavor::cells {

enum Tag : uint64_t {
  kAbsent = 0,
  kText = 1,
  kSmallInt = 2,  // payload: a 60-bit two's-complement integer
  kInt64 = 3,
  kUInt64 = 4,
  kReal = 5,
  kNull = 6,
  kBool = 7,
  kOther = 8,
};

inline constexpr int kTagShift = 60;
inline constexpr uint64_t kPayloadMask = (uint64_t{1} << kTagShift) - 1;
inline constexpr int64_t kSmallMin = -(int64_t{1} << 59);
inline constexpr int64_t kSmallMax = (int64_t{1} << 59) - 1;

constexpr uint64_t make(Tag tag, uint64_t payload) {
  return (uint64_t{tag} << kTagShift) | payload;
}
constexpr Tag tagOf(uint64_t cell) {
  return static_cast<Tag>(cell >> kTagShift);
}
constexpr uint64_t payloadOf(uint64_t cell) {
  return cell & kPayloadMask;
}
constexpr int64_t smallIntOf(uint64_t cell) {
  // Sign-extend the 60-bit payload.
  return static_cast<int64_t>(cell << (64 - kTagShift)) >> (64 - kTagShift);
}

// Cells in blocks that double in size: block k holds kBase << k entries, so a list never moves
// its cells and small lists stay small.
class CellBlocks {
 public:
  static constexpr size_t kBase = 2048;

  uint64_t* row(size_t index) const {
    const size_t k = blockOf(index);
    return reinterpret_cast<uint64_t*>(blocks_[k].data()) +
           (index - kBase * ((size_t{1} << k) - 1)) * kEntryKeyCount;
  }
  // The row of a new entry, all cells absent.
  uint64_t* append(size_t index) {
    if (blockOf(index) >= blocks_.size())
      blocks_.emplace_back((kBase << blocks_.size()) * kEntryKeyCount * sizeof(uint64_t));
    return row(index);
  }

 private:
  static size_t blockOf(size_t index) { return std::bit_width(index / kBase + 1) - 1; }
  std::vector<MemoryBlock> blocks_;
};

}  // namespace kavor::cells

namespace kavor {

struct EntryList::Storage {
  cells::CellBlocks cells;
  TextArena arena;
  TextInterner interner{arena};
  std::vector<size_t> nonRecords;  // indices of elements that were not objects, ascending
  std::once_flag eventTypesTallied;
  std::vector<TextTally> eventTypes;
};

}  // namespace kavor
