#pragma once
// Keeps one copy of each distinct text: the log repeats the same subsystems, categories, image
// paths and UUIDs in every entry, so a million entries hold only a few thousand distinct ones.

#include <cstdint>
#include <string_view>
#include <vector>

#include "engine/core/text_arena.h"

namespace kavor {

class TextInterner {
 public:
  explicit TextInterner(TextArena& arena) : arena_(&arena) {}

  // The reference of an equal text stored before, or of this text, stored now.
  uint64_t intern(std::string_view text);
  size_t memoryBytes() const { return slots_.capacity() * sizeof(Slot); }

 private:
  struct Slot {
    uint64_t hash;
    uint64_t ref;  // 0: empty
  };
  void grow();

  TextArena* arena_;
  std::vector<Slot> slots_;
  size_t count_ = 0;
};

}  // namespace kavor
