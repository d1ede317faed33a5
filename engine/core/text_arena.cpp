#include "engine/core/text_arena.h"

#include <algorithm>

namespace kavor {

namespace {
constexpr size_t kFirstBlock = size_t{64} << 10;
constexpr size_t kLargestBlock = size_t{64} << 20;
}  // namespace

char* TextArena::reserve(size_t bytes, uint64_t& ref) {
  if (blocks_.empty() || blockUsed_ + bytes > blocks_.back().size()) {
    // Blocks double up to a ceiling, so small lists stay small and large ones need few blocks.
    size_t next =
        blocks_.empty() ? kFirstBlock : std::min(blocks_.back().size() * 2, kLargestBlock);
    next = std::max(next, bytes + 1);
    blocks_.emplace_back(next);
    blockUsed_ =
        blocks_.size() == 1 ? 1 : 0;  // offset 0 of block 0 stays unused: no reference is 0
  }
  ref = (uint64_t{blocks_.size() - 1} << kOffsetBits) | blockUsed_;
  char* p = blocks_.back().data() + blockUsed_;
  blockUsed_ += bytes;
  used_ += bytes;
  return p;
}

uint64_t TextArena::addText(std::string_view text) {
  unsigned char prefix[10];
  size_t n = 0;
  uint64_t len = text.size();
  while (len >= 0x80) {
    prefix[n++] = static_cast<unsigned char>(len | 0x80);
    len >>= 7;
  }
  prefix[n++] = static_cast<unsigned char>(len);
  uint64_t ref = 0;
  char* p = reserve(n + text.size(), ref);
  std::memcpy(p, prefix, n);
  if (!text.empty()) std::memcpy(p + n, text.data(), text.size());
  return ref;
}

uint64_t TextArena::addWord(uint64_t bits) {
  uint64_t ref = 0;
  std::memcpy(reserve(sizeof bits, ref), &bits, sizeof bits);
  return ref;
}

}  // namespace kavor
